// Base64 and PEM.
#include "tessel/base64.h"

#include <gtest/gtest.h>

#include <functional>
#include <sstream>

#include "support/host.h"
#include "support/objects.h"
#include "support/octets.h"
#include "tessel/status.h"
#include "values/inputs.h"

namespace test {
namespace {

// What `call(buffer, &length)` writes, or "error" for malformed text, when the buffer must be as it was.
std::string Written(const std::function<uint32_t(uint8_t*, uint32_t*)>& call) {
  uint32_t size = 99;
  const uint32_t status = call(nullptr, &size);
  if (status == TESSEL_OK) {
    const Bytes octets = FetchChecked(call);
    return {octets.begin(), octets.end()};
  }
  EXPECT_STATUS(TESSEL_INVALID_PEM, status);
  Bytes buffer(1, 0xEE);
  EXPECT_STATUS(status, call(buffer.data(), &size));
  EXPECT_EQ(0xEE, buffer[0]);
  return "error";
}

// Inputs end at a guard page. Without a label no PEM is made.
std::string Encode(const std::string& octets, const char* label = nullptr) {
  const Guarded data(Bytes(octets.begin(), octets.end()));
  return Written([&](uint8_t* buffer, uint32_t* length) {
    char* text = reinterpret_cast<char*>(buffer);
    return label == nullptr ? EncodeToBase64(data.Data(), data.Size(), text, length)
                            : EncodePem(data.Data(), data.Size(), label, text, length);
  });
}

template <class Function>
std::string Decode(Function decode, const std::string& text) {
  const Guarded input(Bytes(text.begin(), text.end()));
  return Written(
      [&](auto... out) { return decode(reinterpret_cast<const char*>(input.Data()), input.Size(), out...); });
}

TEST(Base64, IsThatOfCoreutilsAndIsDecodedAgain) {
  TESSEL_TEST_NEEDS_HOST();
  std::string texts;
  for (const auto& [size, octets] : Inputs()) {
    const std::string text = Encode(octets);
    std::string lines = text + (size == 0 ? "" : "\r\n");
    const std::string pem = Encode(octets, "X Y");
    ASSERT_EQ("-----BEGIN X Y-----\r\n" + lines + "-----END X Y-----\r\n", pem);
    std::erase(lines, '\r');
    texts += lines + '\n';
    ASSERT_EQ(octets, Decode(DecodeFromBase64, text));
    ASSERT_EQ(size == 0 ? "error" : octets, Decode(DecodePem, pem));
    ASSERT_EQ(size == 0 ? "error" : octets, Decode(DecodePem, lines));
    ASSERT_EQ(size <= 48, octets == Decode(DecodeFromBase64, lines.substr(0, lines.size() - (size == 0 ? 0 : 1))));
  }
  EXPECT_TRUE(texts == OutputOnInputs("for size in $(ls | sort -n); do base64 -w64 $size; echo; done"));
}

TEST(Base64, ImpossibleArgumentsAreRefused) {
  const uint8_t octet = 0;
  uint32_t length = 0;
  EXPECT_OK(EncodeToBase64(&octet, 3123612576, nullptr, &length));
  EXPECT_EQ(4294967290, length);
  EXPECT_STATUS(TESSEL_LENGTH_TOO_LARGE, EncodeToBase64(&octet, 3123612577, nullptr, &length));
  EXPECT_STATUS(TESSEL_LENGTH_TOO_LARGE, EncodePem(&octet, 3123612576, "", nullptr, &length));
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, EncodeToBase64(nullptr, 0, nullptr, &length));
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, DecodeFromBase64(nullptr, 0, nullptr, &length));
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, EncodePem(&octet, 1, nullptr, nullptr, &length));
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, DecodePem(nullptr, 0, nullptr, &length));
}

TEST(Base64, AnyTextIsDecodedWithoutAnError) {
  const std::string line = "QUJD" + std::string(60, 'A');
  const std::string octets = "ABC" + std::string(45, '\0');
  const std::pair<std::string, std::string> cases[] = {
      // The padding takes off octets wherever it ends, but never more than there are.
      {"=U", ""},
      {"QU=", "A"},
      {line + "==", octets.substr(0, 46)},
      // What is not Base64 stands for 254, "=" in the middle for 255; top bits are not looked at.
      {"\r\n", "\xFF"},
      {"QU!D", "A\x7F\x83"},
      {"QQ==UUJD", "A?\xFFQBC"},
      {"\xD1\xD5\xCA\xC4\xD1\xD1\xBD\xBD", "ABCA"},
      // Two characters after 64 are not read.
      {line + "==QUJD", octets + "ABC"},
      {line + "\nQUJD", octets + "P\x90"},
  };
  for (const auto& [text, expected] : cases) EXPECT_EQ(expected, Decode(DecodeFromBase64, text)) << text;
}

TEST(Base64, TextThatIsCutOffIsDecodedAsFarAsItGoes) {
  const std::string& octets = Inputs().at(198);
  const std::string text = Encode(octets);
  for (size_t size = 0; size < text.size(); ++size) {
    const std::string expected = octets.substr(0, (size - 2 * (size / 66)) * 3 / 4);
    EXPECT_EQ(expected, Decode(DecodeFromBase64, text.substr(0, size))) << size;
  }
}

TEST(Pem, IsReadTolerantly) {
  for (const std::string begin : {"-----BEGIN", "----- BEGIN", "-----END -----BEGI ------BEGIN"}) {
    EXPECT_EQ("error", Decode(DecodePem, begin + " A-----QUJD")) << begin;
    EXPECT_EQ("ABC", Decode(DecodePem, begin + " A-----\n \r\nQUJD")) << begin;
    const std::string block = begin + " A-----\nQUJD----- END";
    EXPECT_EQ("ABC", Decode(DecodePem, block + block)) << begin;
  }
  EXPECT_EQ("ABCAB", Decode(DecodePem, "QUJD \r\nQUI=\n"));
  EXPECT_EQ("ABC", Decode(DecodePem, "\xD1U\xCA\xC4-----END"));
  // With bits left over.
  EXPECT_EQ("A", Decode(DecodePem, "QR=\xBD"));
}

TEST(Pem, IsRefusedWhenMalformed) {
  std::istringstream bodies(
      "- ---END QUI QUJDQ QUJDQUJ QUJD!UJD QUJD-UJD QQ==QUJD QQ=== ==== Q=== QU=D =UJD QUJD- a:AA");
  for (std::string body; bodies >> body;) {
    EXPECT_EQ("error", Decode(DecodePem, body)) << body;
    EXPECT_EQ("error", Decode(DecodePem, "-----BEGIN\n" + body + "\n-----END")) << body;
  }
  for (const char* text : {"", "\n\n\n\n", "\nQUJD", "QU\nJD", "QUJD\tQUJD", "QQ==\n=", "-----BEGIN\n-----END"}) {
    EXPECT_EQ("error", Decode(DecodePem, text)) << text;
  }
}

// A search that began again at each of them would not come to an end.
TEST(Pem, ManyAlmostMarkersAreReadInLinearTime) {
  std::string text;
  while (text.size() < 5000000) text += "-----BEGI";
  EXPECT_EQ("error", Decode(DecodePem, text));
  EXPECT_EQ("ABC", Decode(DecodePem, text + "-----BEGIN\nQUJD-----END" + text));
}

}  // namespace
}  // namespace test
