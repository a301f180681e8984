#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

#include "engine/buffer.h"
#include "engine/status.h"
#include "tessel/base64.h"
#include "values/base64.h"

namespace tessel {
namespace {

using Text = std::string_view;

constexpr Text kBegin = "-----BEGIN ";
constexpr Text kEnd = "-----END ";
constexpr Text kMarkerEnd = "-----";

// The beginnings by which markers are recognised in a text that is read.
constexpr std::array<Text, 2> kReadAsBegin = {"-----BEGIN", "----- BEGIN"};
constexpr std::array<Text, 2> kReadAsEnd = {"-----END", "----- END"};

// The size of a PEM text. Every line ends with a break; without octets there is no line between the markers.
uint64_t PemSize(uint64_t size, uint64_t labelSize) {
  const uint64_t beginSize = kBegin.size() + labelSize + kMarkerEnd.size() + kLineBreak.size();
  const uint64_t endSize = kEnd.size() + labelSize + kMarkerEnd.size() + kLineBreak.size();
  return beginSize + Base64Characters(size) + Base64Lines(size) * kLineBreak.size() + endSize;
}

char* Write(Text text, char* out) { return std::copy(text.begin(), text.end(), out); }

char* WriteMarker(Text marker, Text label, char* out) {
  for (const Text part : {marker, label, kMarkerEnd, kLineBreak}) out = Write(part, out);
  return out;
}

void WritePem(Octets data, Text label, char* out) {
  out = WriteMarker(kBegin, label, out);
  if (!data.empty()) out = Write(kLineBreak, WriteBase64Lines(data, out));
  WriteMarker(kEnd, label, out);
}

// The text from `at` on. Unlike substr this function cannot throw, and so needs no code of the C++ library.
Text From(Text text, size_t at) {
  text.remove_prefix(at);
  return text;
}

bool StartsWithOneOf(Text text, const std::array<Text, 2>& markers) {
  return text.starts_with(markers[0]) || text.starts_with(markers[1]);
}

void SkipBlanks(Text& text) {
  while (!text.empty() && (text[0] == '\r' || text[0] == '\n' || text[0] == ' ')) text.remove_prefix(1);
}

// What follows the line of the first BEGIN, or all of a text that has none.
Text AfterBegin(Text text) {
  size_t begin = text.find('-');
  while (begin != Text::npos && !StartsWithOneOf(From(text, begin), kReadAsBegin)) begin = text.find('-', begin + 1);
  // DEVIATES: neither marker is required (RFC 7468, 3), so that bare Base64 is read too.
  if (begin == Text::npos) return text;
  text.remove_prefix(std::min(text.find('\n', begin), text.size()));
  SkipBlanks(text);
  return text;
}

// What stands before END, or all of a text without a hyphen. No Base64 has a hyphen, so the first one must begin END:
// otherwise the body is empty.
Text BeforeEnd(Text text) {
  const size_t end = text.find('-');
  if (end == Text::npos) return text;
  return StartsWithOneOf(From(text, end), kReadAsEnd) ? text.substr(0, end) : Text();
}

// Decodes a group that ends with "=" or "==" and returns how many octets it holds; 0 when it is no such group. With a
// null `out` they are only counted.
size_t DecodePaddedGroup(Text text, uint8_t* out) {
  if (text.size() < 4 || !IsBase64Padding(text[3])) return 0;
  std::array<char, 4> group = {text[0], text[1], text[2], 'A'};
  const size_t size = IsBase64Padding(text[2]) ? 1 : 2;
  if (size == 1) group[2] = 'A';
  std::array<uint8_t, 3> octets{};
  if (DecodeBase64Groups(group.data(), 1, octets.data()) == 0) return 0;
  if (out != nullptr) std::copy_n(octets.begin(), size, out);
  return size;
}

// Decodes a body and returns how many octets it holds; 0 when it is malformed or empty. With a null `out` they are only
// counted.
size_t DecodeBody(Text body, uint8_t* out) {
  size_t size = 0;
  while (!body.empty()) {
    uint8_t* place = out == nullptr ? nullptr : out + size;
    const size_t groups = DecodeBase64Groups(body.data(), body.size() / 4, place);
    const size_t padded = groups > 0 ? 0 : DecodePaddedGroup(body, place);
    if (groups + padded == 0) return 0;
    size += 3 * groups + padded;
    body.remove_prefix(4 * std::max<size_t>(groups, 1));
    SkipBlanks(body);
    if (padded > 0 && !body.empty()) return 0;
  }
  return size;
}

}  // namespace
}  // namespace tessel

using namespace tessel;

uint32_t TESSEL_CALL EncodePem(const uint8_t* data, uint32_t size, const char* label, char* buffer, uint32_t* length) {
  if (data == nullptr || label == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  const Status status = Offer(PemSize(size, std::strlen(label)), buffer, length);
  if (status.Ok() && buffer != nullptr) WritePem({data, size}, label, buffer);
  return status;
}

uint32_t TESSEL_CALL DecodePem(const char* text, uint32_t size, uint8_t* buffer, uint32_t* length) {
  if (text == nullptr || length == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  const Text body = BeforeEnd(AfterBegin({text, size}));
  // The body is decoded into other memory, and copied into the caller's buffer when all of it is well-formed. That is
  // faster than reading the body twice.
  Scratch<uint8_t> octets;
  if (buffer != nullptr) {
    octets.reset(static_cast<uint8_t*>(AllocateOctets(body.size() / 4 * 3)));
    if (octets == nullptr) return Fail(TESSEL_OUT_OF_MEMORY);
  }
  const size_t needed = DecodeBody(body, octets.get());
  if (needed == 0) return Fail(TESSEL_INVALID_PEM);
  return Deliver({octets.get(), needed}, buffer, length);
}
