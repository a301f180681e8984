#include "values/base64.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

#include "engine/buffer.h"
#include "engine/status.h"
#include "tessel/base64.h"

namespace tessel {
namespace {

constexpr std::string_view kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
// The characters of a line that is not the last, with its break.
constexpr size_t kWholeLine = kLineCharacters + kLineBreak.size();
constexpr uint8_t kTopBit = 0x80;

// The two characters for each number of twelve bits.
using Pair = std::array<char, 2>;
constexpr std::array<Pair, 4096> kPairs = [] {
  std::array<Pair, 4096> pairs{};
  for (size_t i = 0; i < pairs.size(); ++i) pairs[i] = {kAlphabet[i / 64], kAlphabet[i % 64]};
  return pairs;
}();

void EncodeGroup(uint8_t first, uint8_t second, uint8_t third, char* out) {
  const uint32_t bits = uint32_t{first} << 16 | uint32_t{second} << 8 | third;
  std::memcpy(out, kPairs[bits >> 12].data(), 2);
  std::memcpy(out + 2, kPairs[bits & 0xFFF].data(), 2);
}

// Encodes the one or two octets behind the last whole group.
void EncodeLastGroup(Octets rest, char* out) {
  EncodeGroup(rest[0], rest.size() > 1 ? rest[1] : 0, 0, out);
  std::fill(out + 1 + rest.size(), out + 4, '=');
}

char* WriteLine(Octets line, char* out) {
  const uint8_t* octets = line.data();
  for (size_t groups = line.size() / 3; groups > 0; --groups, octets += 3, out += 4) {
    EncodeGroup(octets[0], octets[1], octets[2], out);
  }
  if (line.size() % 3 == 0) return out;
  EncodeLastGroup(line.last(line.size() % 3), out);
  return out + 4;
}

// The value of each character. Callers can observe the two large numbers: DecodeFromBase64, which checks nothing, makes
// octets of their bits.
constexpr uint8_t kNotInAlphabet = 254;
constexpr uint8_t kPadding = 255;
constexpr std::array<uint8_t, 256> kValues = [] {
  std::array<uint8_t, 256> values{};
  values.fill(kNotInAlphabet);
  for (size_t i = 0; i < kAlphabet.size(); ++i) values[static_cast<uint8_t>(kAlphabet[i])] = static_cast<uint8_t>(i);
  values['='] = kPadding;
  // DEVIATES: the top bit of a character does not count (RFC 4648, 3.3), so that what could be read so far stays
  // readable.
  std::copy(values.begin(), values.begin() + kTopBit, values.begin() + kTopBit);
  return values;
}();

// What a character in each of the four places of a group adds to the three octets of the group, the first of which is
// in the lowest bits. A character outside the alphabet also sets the bit kIsNotInAlphabet above them.
constexpr uint32_t kIsNotInAlphabet = 0x80000000;
using Parts = std::array<uint32_t, 256>;
constexpr std::array<Parts, 4> kParts = [] {
  std::array<Parts, 4> parts{};
  for (size_t i = 0; i < kValues.size(); ++i) {
    const uint32_t value = kValues[i];
    const uint32_t mark = value < kAlphabet.size() ? 0 : kIsNotInAlphabet;
    parts[0][i] = mark | (value << 2 & 0xFF);
    parts[1][i] = mark | value >> 4 | (value << 4 & 0xFF) << 8;
    parts[2][i] = mark | value >> 2 << 8 | (value << 6 & 0xFF) << 16;
    parts[3][i] = mark | value << 16;
  }
  return parts;
}();

uint32_t Part(size_t place, char character) { return kParts[place][static_cast<uint8_t>(character)]; }

uint32_t GroupOf(const char* text) { return Part(0, text[0]) | Part(1, text[1]) | Part(2, text[2]) | Part(3, text[3]); }

void PutGroup(uint32_t group, uint8_t* out) {
  out[0] = static_cast<uint8_t>(group);
  out[1] = static_cast<uint8_t>(group >> 8);
  out[2] = static_cast<uint8_t>(group >> 16);
}

// How many octets a text decodes to, by its length and its last two characters alone. 1, 2 or 3 characters beyond whole
// groups count for 0, 1 or 2 octets, and the first character of a line break for none, so that the text always has the
// characters of all octets that are counted.
size_t DecodedSize(std::string_view text) {
  const uint64_t characters = text.size() - text.size() / kWholeLine * kLineBreak.size();
  const auto size = static_cast<size_t>(characters * 3 / 4);
  size_t padding = 0;
  if (text.size() >= 2 && IsBase64Padding(text[text.size() - 2])) {
    padding = 2;
  } else if (!text.empty() && IsBase64Padding(text.back())) {
    padding = 1;
  }
  return size - std::min(size, padding);
}

// Decodes the first `size` octets of a text without line breaks. Checks nothing, and reads only the characters that
// hold these octets.
void DecodeUnchecked(const char* text, uint8_t* out, size_t size) {
  for (; size >= 3; size -= 3, text += 4, out += 3) PutGroup(GroupOf(text), out);
  if (size == 0) return;
  // One octet is in two characters, two are in three.
  std::array<char, 4> group = {'A', 'A', 'A', 'A'};
  std::copy_n(text, size + 1, group.begin());
  std::array<uint8_t, 3> octets{};
  PutGroup(GroupOf(group.data()), octets.data());
  std::copy_n(octets.begin(), size, out);
}

void DecodeLines(const char* text, uint8_t* out, size_t size) {
  for (; size > kLineOctets; size -= kLineOctets, text += kWholeLine, out += kLineOctets) {
    DecodeUnchecked(text, out, kLineOctets);
  }
  DecodeUnchecked(text, out, size);
}

}  // namespace

char* WriteBase64Lines(Octets data, char* out) {
  while (data.size() > kLineOctets) {
    out = WriteLine(data.first<kLineOctets>(), out);
    out = std::copy(kLineBreak.begin(), kLineBreak.end(), out);
    data = data.subspan(kLineOctets);
  }
  return WriteLine(data, out);
}

bool IsBase64Padding(char character) { return kValues[static_cast<uint8_t>(character)] == kPadding; }

size_t DecodeBase64Groups(const char* text, size_t groups, uint8_t* out) {
  for (size_t i = 0; i < groups; ++i) {
    const uint32_t group = GroupOf(text + 4 * i);
    if ((group & kIsNotInAlphabet) != 0) return i;
    if (out != nullptr) PutGroup(group, out + 3 * i);
  }
  return groups;
}

}  // namespace tessel

using namespace tessel;

uint32_t TESSEL_CALL EncodeToBase64(const uint8_t* data, uint32_t size, char* buffer, uint32_t* length) {
  if (data == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  const uint64_t breaks = size == 0 ? 0 : Base64Lines(size) - 1;
  const Status status = Offer(Base64Characters(size) + breaks * kLineBreak.size(), buffer, length);
  if (status.Ok() && buffer != nullptr) WriteBase64Lines({data, size}, buffer);
  return status;
}

uint32_t TESSEL_CALL DecodeFromBase64(const char* text, uint32_t size, uint8_t* buffer, uint32_t* length) {
  if (text == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  // DEVIATES: nothing is checked (RFC 4648, 3.3): the function is for what EncodeToBase64 writes, and DecodePem for all
  // else.
  const size_t needed = DecodedSize({text, size});
  const Status status = Offer(needed, buffer, length);
  if (status.Ok() && buffer != nullptr) DecodeLines(text, buffer, needed);
  return status;
}
