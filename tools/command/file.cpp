#include "command/file.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <limits>
#include <new>
#include <string_view>

#include "command/report.h"
#include "texts/concat.h"

namespace tool {
namespace {

// The library counts octets in 32 bits, and the file must leave room in the address space.
constexpr size_t kLargestFile =
    std::min<uint64_t>(std::numeric_limits<uint32_t>::max(), std::numeric_limits<size_t>::max() / 8);

constexpr size_t kFirstCapacity = 65536;

struct Close {
  void operator()(std::FILE* file) const {
    if (file != stdin) std::fclose(file);
  }
};
using OpenFile = std::unique_ptr<std::FILE, Close>;

[[noreturn]] void RefuseByErrno(std::string_view what) {
  if (errno == ENOMEM) throw std::bad_alloc();
  throw Refusal(Concat(what, ": ", std::strerror(errno)));
}

OpenFile Open(const char* name) {
  if (std::string_view(name) == "-") return OpenFile(stdin);
  OpenFile file(std::fopen(name, "rb"));
  if (file == nullptr) RefuseByErrno("cannot be opened");
  return file;
}

// How many octets are still to come; 0 when nobody knows, as of a pipe.
size_t CountRest(std::FILE* file) {
  const long here = std::ftell(file);
  if (here < 0 || std::fseek(file, 0, SEEK_END) != 0) return 0;
  const long end = std::ftell(file);
  if (std::fseek(file, here, SEEK_SET) != 0) RefuseByErrno("cannot be read");
  return end > here ? static_cast<size_t>(end - here) : 0;
}

}  // namespace

FileOctets::FileOctets(const char* name) {
  const OpenFile file = Open(name);
  size_t capacity = kFirstCapacity;
  for (;;) {
    Reallocate(capacity);
    size_ += std::fread(octets_.get() + size_, 1, capacity - size_, file.get());
    if (size_ < capacity) break;
    const size_t rest = CountRest(file.get());
    if (size_ > kLargestFile || rest > kLargestFile - size_) {
      throw Refusal(Concat("is larger than ", kLargestFile, " octets"));
    }
    // Room for one octet more shows where the file ends.
    capacity = std::min(size_ + (rest != 0 ? rest : size_ / 2), kLargestFile) + 1;
  }
  if (std::ferror(file.get()) != 0) RefuseByErrno("cannot be read");
  Reallocate(size_ + 1);
}

void FileOctets::Reallocate(size_t capacity) {
  void* const moved = std::realloc(octets_.get(), capacity);
  if (moved == nullptr) throw std::bad_alloc();
  static_cast<void>(octets_.release());
  octets_.reset(static_cast<uint8_t*>(moved));
}

}  // namespace tool
