#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "support/octets.h"
#include "support/tree.h"
#include "tessel/tessel.h"
#include "types.h"

namespace test {
namespace {

const Asn1List kEmptyNode{};

// A value that only the encoder sees: no tree owns it.
Asn1Value ValueOf(Bytes& content) { return {0, static_cast<uint32_t>(content.size()), content.data()}; }

TEST(Encoder, WritesMinimalHeaders) {
  const struct {
    size_t length;
    const char* header;
  } lengths[] = {
      {0, "04 00"},         {127, "04 7F"},         {128, "04 81 80"},         {255, "04 81 FF"},
      {256, "04 82 01 00"}, {65535, "04 82 FF FF"}, {65536, "04 83 01 00 00"}, {1 << 24, "04 84 01 00 00 00"}};
  for (const auto& c : lengths) {
    Bytes content(c.length, 0x41);
    const Asn1Value value = ValueOf(content);
    EXPECT_TRUE(FromHex(c.header) + content == Encode(kOctetString, &value).octets) << c.header;
  }
  const struct {
    int32_t tagNumber;
    const char* encoding;
  } tags[] = {
      {0, "80 00"},         {30, "9E 00"},          {31, "9F 1F 00"},          {127, "9F 7F 00"},
      {128, "9F 81 00 00"}, {16383, "9F FF 7F 00"}, {16384, "9F 81 80 00 00"}, {0x7FFFFFFF, "9F 87 FF FF FF 7F 00"}};
  for (const auto& c : tags) {
    const Asn1Item item = Plain(TESSEL_CLASS_CONTEXT, TESSEL_KIND_OCTET_STRING, c.tagNumber);
    const Asn1Value empty{};
    EXPECT_EQ(c.encoding, ToHex(Encode(item, &empty).octets));
  }
}

TEST(Encoder, SortsSetsByEncoding) {
  const struct {
    const char* input;
    const char* sorted;
  } cases[] = {
      {"31 0A 04 01 02 04 01 01 04 02 01 00", "31 0A 04 01 01 04 01 02 04 02 01 00"},  // '02'H, '01'H, '0100'H
      {"31 08 04 01 80 04 01 7F 04 00", "31 08 04 00 04 01 7F 04 01 80"},              // '80'H, '7F'H, ''H
      {"31 04 04 00 04 00", "31 04 04 00 04 00"},
  };
  for (const auto& c : cases) {
    const Tree set = TreeOf(kStringSet, c.input);
    EXPECT_EQ(c.sorted, ToHex(Encode(kStringSet, set.Root()).octets));
    // The list itself keeps its order, which is what is written when it asks for that.
    set.As<Asn1List>().sorted = 0;
    EXPECT_EQ(c.input, ToHex(Encode(kStringSet, set.Root()).octets));
  }

  // An encoding that is the beginning of another comes first; open values can hold such.
  struct Opens : ListOf<Asn1Any> {};
  static constexpr auto kOpenSet = SetOf<Opens, kAny>();
  Bytes longer = FromHex("04 01 02");
  Bytes shorter = FromHex("04 01");
  Asn1Value first = ValueOf(longer);
  Asn1Value second = ValueOf(shorter);
  void* items[] = {&first, &second};
  const Asn1List list{2, items, 2, nullptr, 1};
  EXPECT_EQ("31 05 04 01 04 01 02", ToHex(Encode(kOpenSet, &list).octets));
}

TEST(Encoder, SortsASetOfThousands) {
  std::mt19937 random(1);
  std::vector<Bytes> elements(3000);
  for (Bytes& element : elements) {
    element = Bytes{4, static_cast<uint8_t>(random() % 6)};
    for (uint32_t left = element[1]; left > 0; --left) element.push_back(static_cast<uint8_t>(random() % 3));
  }
  const auto setOf = [&elements] {
    Bytes content;
    for (const Bytes& element : elements) content += element;
    return Der(0x31, content);
  };
  const DecodeResult set = Decode(kStringSet, setOf());
  std::ranges::sort(elements);
  EXPECT_EQ(setOf(), Encode(kStringSet, set.tree.Root()).octets);
}

TEST(Encoder, RetagsOpenValuesInPlace) {
  Bytes captured = FromHex("30 80 00 00");  // { }
  const Asn1Value value = ValueOf(captured);
  const Asn1Value empty{};
  const auto taggedAny = [](uint32_t flags, int32_t tagNumber) { return Plain(flags, TESSEL_KIND_ANY, tagNumber); };
  EXPECT_EQ("30 80 00 00", ToHex(Encode(kAny, &value).octets));
  EXPECT_EQ("A3 80 00 00", ToHex(Encode(taggedAny(TESSEL_CLASS_CONTEXT, 3), &value).octets));
  EXPECT_EQ("A5 04 30 80 00 00", ToHex(Encode(Explicit<5, kAny>, &value).octets));  // [5] { { } }
  EXPECT_EQ("30 80 00 00", ToHex(Encode(taggedAny(TESSEL_CLASS_APPLICATION, 3), &value).octets));
  EXPECT_EQ("", ToHex(Encode(taggedAny(TESSEL_CLASS_CONTEXT, 31), &empty).octets));
  EXPECT_STATUS(TESSEL_INCONSISTENT_DESCRIPTOR, Encode(taggedAny(TESSEL_CLASS_CONTEXT, 31), &value).status);
  // All octets of an identifier are replaced, and it stays primitive.
  Bytes longIdentifier = FromHex("9F 81 00 01 05");  // [128] '05'H
  const Asn1Value highTag = ValueOf(longIdentifier);
  EXPECT_EQ("85 01 05", ToHex(Encode(taggedAny(TESSEL_CLASS_CONTEXT | TESSEL_FLAG_CONSTRUCTED, 5), &highTag).octets));
}

TEST(Encoder, TellsTheFirstFailureInTheOrderOfTheTree) {
  const Asn1Choice wrong{5, nullptr};
  const Asn1Choice empty{0, nullptr};
  const Asn1Value zero = kZero;
  const void* set[] = {&zero};
  EXPECT_STATUS(TESSEL_WRONG_ALTERNATIVE, Encode(kTestChoice, &wrong).status);
  EXPECT_STATUS(TESSEL_ABSENT, Encode(kTestChoice, &empty).status);
  EXPECT_STATUS(TESSEL_UNSUPPORTED_KIND, Encode(kTestSet, set).status);
  EXPECT_STATUS(TESSEL_UNSUPPORTED_KIND, Encode(kUnknownPrimitive, &zero).status);
  EXPECT_STATUS(TESSEL_INCONSISTENT_DESCRIPTOR, Encode(kExplicitWithoutTag, &zero).status);
  EXPECT_STATUS(TESSEL_INCONSISTENT_DESCRIPTOR, Encode(kListWithoutElement, &kEmptyNode).status);
  const Asn1Item defaultEnumerated = Default<kEnumerated, kZero>;
  EXPECT_STATUS(TESSEL_UNSUPPORTED_KIND, Encode(defaultEnumerated, &zero).status);

  // SEQUENCE { CHOICE, SET }: both members are wrong.
  const Asn1Item* members[] = {&kTestChoice, &kTestSet};
  const Asn1Item item{TESSEL_FLAG_CONSTRUCTED, TESSEL_KIND_SEQUENCE, -1, 2 * sizeof(void*), members, 2, nullptr};
  const void* node[] = {&wrong, set};
  EXPECT_STATUS(TESSEL_WRONG_ALTERNATIVE, Encode(item, node).status);
  node[0] = nullptr;
  EXPECT_STATUS(TESSEL_ABSENT, Encode(item, node).status);
}

TEST(Encoder, RefusesNullsAndMakesNoBlockOfNoOctets) {
  uint32_t length = 9;
  uint8_t* block = nullptr;
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, Asn1Encode(nullptr, &kInteger, &block, &length));
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, Asn1Encode(&kZero, nullptr, &block, &length));
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, Asn1Encode(&kZero, &kInteger, &block, nullptr));
  // A root that equals its DEFAULT encodes to nothing.
  EXPECT_OK(Asn1Encode(&kZero, &kDefaultInteger, &block, &length));
  EXPECT_EQ(0U, length);
  EXPECT_EQ(nullptr, block);
  // A length without octets is written as zeros.
  const Asn1Value hollow{TESSEL_KIND_OCTET_STRING, 3, nullptr};
  EXPECT_EQ("04 03 00 00 00", ToHex(Encode(kOctetString, &hollow).octets));
}

}  // namespace
}  // namespace test
