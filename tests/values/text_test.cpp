#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "support/objects.h"
#include "support/octets.h"
#include "tessel/tessel.h"

namespace test {
namespace {

std::string ToUtf8(const std::string& ansi) {
  std::string buffer(3 * ansi.size() + 11, 'x');
  auto length = static_cast<uint32_t>(buffer.size());
  EXPECT_OK(ConvertAnsiToUTF8(ansi.c_str(), buffer.data(), &length));
  EXPECT_EQ('\0', buffer[length]);
  return buffer.substr(0, length);
}

TEST(Text, AnsiBecomesUtf8) {
  EXPECT_EQ("", ToUtf8(""));
  EXPECT_EQ("plain\x7F\x01", ToUtf8("plain\x7F\x01"));
  EXPECT_EQ("Привет, Ёжик ё", ToUtf8("\xCF\xF0\xE8\xE2\xE5\xF2, \xA8\xE6\xE8\xEA \xB8"));
  EXPECT_EQ("Єє Її Ўў ° · ¤ • №", ToUtf8("\xAA\xBA \xAF\xBF \xA1\xA2 \xB0 \xB7 \xA4 \x95 \xB9"));
  EXPECT_EQ("\xCF\x90 \xD0\x8B", ToUtf8("\x80 \xBB"));  // U+03D0, U+040B: moved like the letters
}

TEST(Text, AnsiNeedsRoomToSpare) {
  // Ten letters give 20 octets: the check before the last sees 18, which must not exceed the capacity less 10.
  const std::string ansi(10, '\xC0');
  for (uint32_t capacity = 0; capacity < 40; ++capacity) {
    std::string buffer(40, 'x');
    uint32_t length = capacity;
    const uint32_t status = ConvertAnsiToUTF8(ansi.c_str(), buffer.data(), &length);
    EXPECT_STATUS(capacity >= 28 ? TESSEL_OK : TESSEL_BUFFER_TOO_SMALL, status) << capacity;
    EXPECT_EQ(capacity >= 28 ? 20U : 40U, length);
    EXPECT_EQ(std::string(40 - capacity, 'x'), buffer.substr(capacity));
  }
  char buffer[1] = {'x'};
  uint32_t length = 1;
  EXPECT_OK(ConvertAnsiToUTF8("", buffer, &length));
  EXPECT_EQ('\0', buffer[0]);
  EXPECT_STATUS(TESSEL_BUFFER_TOO_SMALL, ConvertAnsiToUTF8("", buffer, &length));
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, ConvertAnsiToUTF8("", nullptr, &length));
}

Bytes Counting(size_t size) {
  Bytes octets(size);
  for (size_t i = 0; i < size; ++i) octets[i] = static_cast<uint8_t>(i + 1);
  return octets;
}

TEST(Text, KeysMoveIntoTheirBlockAndBack) {
  for (const uint32_t size : {64U, 128U}) {
    const Bytes key = Counting(size);
    Bytes block = FetchChecked(ConvertX509PublicKeyToArdek, key);
    Bytes expected(256);
    std::copy_n(key.begin(), size / 2, expected.begin());
    std::copy_n(key.begin() + size / 2, size / 2, expected.begin() + 64);
    expected[252] = 0x76;
    expected[253] = 0x35;
    EXPECT_EQ(expected, block);
    EXPECT_STATUS(TESSEL_INVALID_KEY, AskSize(ConvertArdekPublicKeyToX509, block));
    for (const char set : std::string(size == 64 ? "ABCXYDabcxy" : "123")) {
      block[254] = static_cast<uint8_t>(set);
      EXPECT_EQ(key, FetchChecked(ConvertArdekPublicKeyToX509, block)) << set;
    }
  }
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, AskSize(ConvertX509PublicKeyToArdek, Counting(65)));
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, AskSize(ConvertArdekPublicKeyToX509, Counting(255)));
}

TEST(Text, SignaturesAreReversed) {
  for (const uint32_t size : {64U, 128U}) {
    Bytes signature = Counting(size);
    uint32_t length = size;
    ASSERT_OK(ConvertX509SignatureToArdek(signature.data(), size, signature.data(), &length)) << "in place";
    const Bytes counting = Counting(size);
    EXPECT_EQ(Bytes(counting.rbegin(), counting.rend()), signature);
    ASSERT_OK(ConvertArdekSignatureToX509(signature.data(), size, signature.data(), &length));
    EXPECT_EQ(counting, signature);
  }
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, AskSize(ConvertArdekSignatureToX509, Counting(63)));
}

TEST(Text, ArraysAreComparedToAStatus) {
  const Bytes octets = Counting(3);
  const Bytes other = FromHex("01 02 04");
  EXPECT_OK(IsArrayEquals(octets.data(), 3, Counting(3).data(), 3));
  EXPECT_OK(IsArrayEquals(octets.data(), 0, other.data(), 0));
  EXPECT_OK(IsArrayEquals(nullptr, 3, nullptr, 5));
  EXPECT_STATUS(TESSEL_DIFFERENT, IsArrayEquals(octets.data(), 3, other.data(), 3));
  EXPECT_STATUS(TESSEL_DIFFERENT, IsArrayEquals(octets.data(), 3, octets.data(), 2));
  EXPECT_STATUS(TESSEL_DIFFERENT, IsArrayEquals(octets.data(), 0, nullptr, 0));
}

}  // namespace
}  // namespace test
