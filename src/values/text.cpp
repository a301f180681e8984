#include "values/text.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

#include "engine/buffer.h"
#include "tessel/text.h"

namespace tessel {
namespace {

// The UTF-8 of one character.
struct Utf8 {
  std::array<char, 3> octets{};
  uint8_t size = 0;
};

consteval Utf8 Encoded(uint32_t codePoint) {
  constexpr auto kTail = [](uint32_t bits) { return static_cast<char>(0x80 | (bits & 0x3F)); };
  if (codePoint < 0x80) return {{static_cast<char>(codePoint)}, 1};
  if (codePoint < 0x800) return {{static_cast<char>(0xC0 | codePoint >> 6), kTail(codePoint)}, 2};
  return {{static_cast<char>(0xE0 | codePoint >> 12), kTail(codePoint >> 6), kTail(codePoint)}, 3};
}

// The letters and signs whose octets in Windows-1251 do not follow from kLetterDistance.
struct AnsiRow {
  uint8_t ansi;
  uint16_t codePoint;
};
constexpr AnsiRow kOwnPlaces[] = {{0xA8, 0x0401}, {0xB8, 0x0451}, {0xAA, 0x0404}, {0xBA, 0x0454}, {0xAF, 0x0407},
                                  {0xBF, 0x0457}, {0xA1, 0x040E}, {0xA2, 0x045E}, {0xB0, 0x00B0}, {0xB7, 0x00B7},
                                  {0xA4, 0x00A4}, {0x95, 0x2022}, {0xB9, 0x2116}};

// The difference of a letter's code point and its octet: U+0410 is 0xC0.
constexpr uint32_t kLetterDistance = 848;

// The UTF-8 of each octet of Windows-1251. All octets from 0x80 on are moved by kLetterDistance, which is right for the
// letters from 0xC0 on.
consteval std::array<Utf8, 256> MakeAnsiTable() {
  std::array<Utf8, 256> table{};
  for (uint32_t c = 0; c < 0x80; ++c) table[c] = Encoded(c);
  // DEVIATES: what has no place of its own is moved like the letters, also where Windows-1251 has another sign:
  // programs compare texts that they have stored.
  for (uint32_t c = 0x80; c < 0x100; ++c) table[c] = Encoded(c + kLetterDistance);
  for (const AnsiRow& row : kOwnPlaces) table[row.ansi] = Encoded(row.codePoint);
  return table;
}

constexpr std::array<Utf8, 256> kAnsiTable = MakeAnsiTable();

// The conversion stops when less than this is left of the buffer.
constexpr uint32_t kSpareOctets = 10;

constexpr uint32_t kShortKey = 64;
constexpr uint32_t kLongKey = 128;
constexpr uint32_t kBlockSize = 256;
constexpr uint32_t kPlaceOfY = 64;
constexpr uint32_t kPlaceOfMarker = 252;
constexpr uint8_t kMarker[] = {0x76, 0x35};
constexpr uint32_t kPlaceOfParameterSet = 254;
constexpr std::string_view kLongParameterSets = "123";
constexpr std::string_view kShortParameterSets = "ABCXYDabcxy";

bool IsKeyLength(uint32_t size) { return size == kShortKey || size == kLongKey; }

Status Reverse(const uint8_t* signature, uint32_t size, uint8_t* buffer, uint32_t* length, Caller at = {}) {
  if (signature == nullptr || length == nullptr || !IsKeyLength(size)) return Fail(TESSEL_INVALID_ARGUMENT, at);
  std::array<uint8_t, kLongKey> reversed;
  std::reverse_copy(signature, signature + size, reversed.begin());
  return Deliver({reversed.data(), size}, buffer, length, at);
}

bool StartsWith(Octets octets, const Utf8& character) {
  return octets.size() >= character.size &&
         std::equal(octets.begin(), octets.begin() + character.size, character.octets.begin(),
                    [](uint8_t octet, char c) { return octet == static_cast<uint8_t>(c); });
}

// The octet of Windows-1251 for a UTF-8 sequence of two octets.
uint8_t AnsiOfPair(uint8_t lead, uint8_t continuation) {
  // DEVIATES: a bit of the lead octet is lost (RFC 3629, 3), so that other scripts come out as Cyrillic: programs
  // compare texts that they have shown.
  const uint32_t codePoint = (lead >> 2 & 5U) << 8 | (lead & 3U) << 6 | (continuation & 0x3FU);
  if (codePoint == 0x401) return 0xA8;
  if (codePoint == 0x451) return 0xB8;
  return static_cast<uint8_t>(codePoint - kLetterDistance);
}

}  // namespace

bool TakeAnsi(Octets& utf8, AnsiRepertoire repertoire, uint8_t& ansi) {
  while (!utf8.empty()) {
    if (repertoire == AnsiRepertoire::kAll) {
      for (const AnsiRow& row : kOwnPlaces) {
        if (!StartsWith(utf8, kAnsiTable[row.ansi])) continue;
        utf8 = utf8.subspan(kAnsiTable[row.ansi].size);
        ansi = row.ansi;
        return true;
      }
    }
    const uint8_t first = utf8[0];
    // DEVIATES: sequences of three and four octets, and octets out of place, make nothing (RFC 3629, 3): programs
    // compare texts that they have shown.
    const bool isPair = (first & 0xE0) == 0xC0 && utf8.size() > 1;
    if (first < 0x80) ansi = first;
    if (isPair) ansi = AnsiOfPair(first, utf8[1]);
    utf8 = utf8.subspan(isPair ? 2 : 1);
    if (first < 0x80 || isPair) return true;
  }
  return false;
}

uint8_t AnsiOfUnit(uint16_t unit) {
  // DEVIATES: U+0080 to U+00FF become the octets of the same number, which are others in Windows-1251: programs compare
  // texts that they have shown.
  if (unit < 0x100) return static_cast<uint8_t>(unit);
  for (const AnsiRow& row : kOwnPlaces) {
    if (row.codePoint == unit) return row.ansi;
  }
  return unit >= 0x400 && unit < 0x450 ? static_cast<uint8_t>(unit + 0xB0) : uint8_t{'?'};
}

}  // namespace tessel

using namespace tessel;

uint32_t TESSEL_CALL ConvertAnsiToUTF8(const char* text, char* buffer, uint32_t* length) {
  if (text == nullptr || buffer == nullptr || length == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  const uint32_t capacity = *length;
  const std::string_view ansi(text);
  // DEVIATES: there is no question for the length, ten octets must be to spare, and a short buffer is told a
  // suggestion: programs call again with that.
  const uint64_t suggestion = 2 * (uint64_t{ansi.size()} + kSpareOctets);
  *length = static_cast<uint32_t>(std::min<uint64_t>(suggestion, UINT32_MAX));
  if (capacity == 0) return Fail(TESSEL_BUFFER_TOO_SMALL);
  uint32_t written = 0;
  for (const char c : ansi) {
    if (capacity <= kSpareOctets || written > capacity - kSpareOctets) return Fail(TESSEL_BUFFER_TOO_SMALL);
    const Utf8& utf8 = kAnsiTable[static_cast<uint8_t>(c)];
    std::memcpy(buffer + written, utf8.octets.data(), utf8.size);
    written += utf8.size;
  }
  buffer[written] = '\0';
  *length = written;
  return Status();
}

uint32_t TESSEL_CALL ConvertX509PublicKeyToArdek(const uint8_t* key, uint32_t size, uint8_t* buffer, uint32_t* length) {
  if (key == nullptr || length == nullptr || !IsKeyLength(size)) return Fail(TESSEL_INVALID_ARGUMENT);
  std::array<uint8_t, kBlockSize> block{};
  const uint32_t half = size / 2;
  std::copy_n(key, half, block.begin());
  std::copy_n(key + half, half, block.begin() + kPlaceOfY);
  // DEVIATES: the octet that tells the parameter set stays 0, which the way back refuses: the caller alone knows the
  // set.
  std::copy(std::begin(kMarker), std::end(kMarker), block.begin() + kPlaceOfMarker);
  return Deliver(block, buffer, length);
}

uint32_t TESSEL_CALL ConvertArdekPublicKeyToX509(const uint8_t* block, uint32_t size, uint8_t* buffer,
                                                 uint32_t* length) {
  if (block == nullptr || length == nullptr || size != kBlockSize) return Fail(TESSEL_INVALID_ARGUMENT);
  const char parameterSet = static_cast<char>(block[kPlaceOfParameterSet]);
  if (kLongParameterSets.find(parameterSet) != std::string_view::npos) {
    return Deliver({block, kLongKey}, buffer, length);
  }
  if (kShortParameterSets.find(parameterSet) == std::string_view::npos) return Fail(TESSEL_INVALID_KEY);
  std::array<uint8_t, kShortKey> key;
  std::copy_n(block, kShortKey / 2, key.begin());
  std::copy_n(block + kPlaceOfY, kShortKey / 2, key.begin() + kShortKey / 2);
  return Deliver(key, buffer, length);
}

uint32_t TESSEL_CALL ConvertX509SignatureToArdek(const uint8_t* signature, uint32_t size, uint8_t* buffer,
                                                 uint32_t* length) {
  return Reverse(signature, size, buffer, length);
}

uint32_t TESSEL_CALL ConvertArdekSignatureToX509(const uint8_t* signature, uint32_t size, uint8_t* buffer,
                                                 uint32_t* length) {
  return Reverse(signature, size, buffer, length);
}

uint32_t TESSEL_CALL IsArrayEquals(const uint8_t* first, uint32_t firstLength, const uint8_t* second,
                                   uint32_t secondLength) {
  // DEVIATES: two nulls are the same whatever their lengths, and the answer to yes is 0: programs test for these
  // statuses.
  if (first == nullptr && second == nullptr) return Status();
  if (first == nullptr || second == nullptr || firstLength != secondLength ||
      !std::equal(first, first + firstLength, second)) {
    return Fail(TESSEL_DIFFERENT);
  }
  return Status();
}
