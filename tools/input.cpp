#include "input.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>
#include <string_view>
#include <vector>

#include "concat.h"
#include "pem.h"
#include "report.h"
#include "text.h"

namespace tool {
namespace {

// The library counts octets in 32 bits, and the file must leave room in the address space.
constexpr size_t kLargestFile =
    std::min<uint64_t>(std::numeric_limits<uint32_t>::max(), std::numeric_limits<size_t>::max() / 8);

// Returns why the stream cannot be read; nothing when it could.
std::optional<std::string> ReadStream(std::FILE* stream, std::vector<uint8_t>& octets) {
  std::array<uint8_t, 65536> chunk;
  while (const size_t got = std::fread(chunk.data(), 1, chunk.size(), stream)) {
    if (got > kLargestFile - octets.size()) return Concat("is larger than ", kLargestFile, " octets");
    octets.insert(octets.end(), chunk.begin(), chunk.begin() + static_cast<std::ptrdiff_t>(got));
  }
  if (std::ferror(stream) != 0) return Concat("cannot be read: ", std::strerror(errno));
  return std::nullopt;
}

std::optional<std::string> ReadNamedFile(const char* name, std::vector<uint8_t>& octets) {
  if (std::string_view(name) == "-") return ReadStream(stdin, octets);
  std::FILE* file = std::fopen(name, "rb");
  if (file == nullptr) return Concat("cannot be opened: ", std::strerror(errno));
  std::optional<std::string> problem = ReadStream(file, octets);
  std::fclose(file);
  return problem;
}

std::string InLowerCase(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return lower;
}

bool Refuse(const std::string& where, std::string_view reason) {
  ReportError(where, reason);
  return false;
}

bool HandleBlock(const std::string& file, const PemBlock& block, InputHandler handle) {
  const std::string where =
      Concat(file, ": ", Printable(InLowerCase(block.label)), ' ', block.ordinal, " (line ", block.line, ')');
  if (!block.problem.empty()) return Refuse(where, block.problem);
  if (block.octets.empty()) return Refuse(where, "the block is empty");
  return handle({where, std::string(block.label), block.octets});
}

bool HandlePem(const std::string& file, std::string_view text, InputHandler handle) {
  bool good = true;
  PemBlock block;
  for (PemReader reader(text); reader.Next(block);) good = HandleBlock(file, block, handle) && good;
  return good;
}

}  // namespace

bool HandleFile(const char* name, InputHandler handle) {
  const std::string where = Printable(name);
  std::vector<uint8_t> octets;
  if (const auto problem = ReadNamedFile(name, octets)) return Refuse(where, *problem);
  if (octets.empty()) return Refuse(where, "the file is empty");
  const std::string_view text(reinterpret_cast<const char*>(octets.data()), octets.size());
  if (LooksLikePem(text)) return HandlePem(where, text, handle);
  return handle({where, std::nullopt, octets});
}

}  // namespace tool
