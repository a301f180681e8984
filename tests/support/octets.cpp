#include "support/octets.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <sys/mman.h>
#endif

#include <algorithm>
#include <cstdlib>

namespace test {
namespace {

constexpr size_t kPage = 65536;

uint8_t* MapPages(size_t length) {
#ifdef _WIN32
  auto* pages = static_cast<uint8_t*>(VirtualAlloc(nullptr, length, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
  DWORD before = 0;
  if (pages == nullptr || VirtualProtect(pages + length - kPage, kPage, PAGE_NOACCESS, &before) == 0) std::abort();
  return pages;
#else
  void* pages = mmap(nullptr, length, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (pages == MAP_FAILED) std::abort();
  if (mprotect(static_cast<uint8_t*>(pages) + length - kPage, kPage, PROT_NONE) != 0) std::abort();
  return static_cast<uint8_t*>(pages);
#endif
}

void UnmapPages(uint8_t* pages, size_t length) {
#ifdef _WIN32
  (void)length;
  VirtualFree(pages, 0, MEM_RELEASE);
#else
  munmap(pages, length);
#endif
}

}  // namespace

Bytes FromHex(std::string_view text) {
  Bytes bytes;
  std::string digits;
  for (const char c : text) {
    if (c == ' ') continue;
    digits += c;
    if (digits.size() < 2) continue;
    bytes.push_back(static_cast<uint8_t>(std::stoul(digits, nullptr, 16)));
    digits.clear();
  }
  if (!digits.empty()) std::abort();
  return bytes;
}

std::string ToHex(const Bytes& bytes) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string text;
  for (const uint8_t octet : bytes) {
    if (!text.empty()) text += ' ';
    text += {kDigits[octet >> 4], kDigits[octet & 0xF]};
  }
  return text;
}

Bytes& operator+=(Bytes& bytes, const Bytes& more) {
  bytes.insert(bytes.end(), more.begin(), more.end());
  return bytes;
}

Bytes operator+(Bytes first, const Bytes& second) {
  first += second;
  return first;
}

Bytes Repeat(const Bytes& bytes, size_t times) {
  Bytes all;
  all.reserve(bytes.size() * times);
  for (size_t i = 0; i < times; ++i) all.insert(all.end(), bytes.begin(), bytes.end());
  return all;
}

Bytes Der(uint8_t identifier, const Bytes& content) {
  Bytes length;
  for (size_t left = content.size(); left != 0; left >>= 8) length.insert(length.begin(), static_cast<uint8_t>(left));
  if (content.size() < 0x80) return Bytes{identifier, static_cast<uint8_t>(content.size())} + content;
  return Bytes{identifier, static_cast<uint8_t>(0x80 | length.size())} + length + content;
}

Guarded::Guarded(const Bytes& bytes)
    : length_((bytes.size() / kPage + 2) * kPage), size_(static_cast<uint32_t>(bytes.size())) {
  pages_ = MapPages(length_);
  data_ = pages_ + length_ - kPage - bytes.size();
  std::copy(bytes.begin(), bytes.end(), data_);
}

Guarded::~Guarded() { UnmapPages(pages_, length_); }

}  // namespace test
