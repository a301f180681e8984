#include <gtest/gtest.h>

#include <array>

#include "support/objects.h"
#include "support/octets.h"
#include "support/tree.h"
#include "tessel/tessel.h"
#include "types.h"

namespace test {
namespace {

TEST(Lists, AreReachedByIndexWithinTheirLength) {
  const Tree decoded = TreeOf(kIntegers, "30 06 02 01 02 02 01 01");  // { 2, 1 }
  auto& list = decoded.As<Asn1List>();
  void* item = nullptr;
  ASSERT_OK(GetAsn1ListItem(&list, 1, &item));
  EXPECT_EQ(1U, static_cast<Asn1Value*>(item)->data[0]);
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, GetAsn1ListItem(&list, 2, &item));
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, GetAsn1ListItem(nullptr, 0, &item));
  SetAsn1ListSorted(&list, 0);
  EXPECT_EQ(0U, list.sorted);
  SetAsn1ListSorted(nullptr, 0);
  EXPECT_EQ(2U, GetAsn1ListLength(&list));
  EXPECT_EQ(0U, GetAsn1ListLength(nullptr));
}

TEST(Lists, OctetStringsGrowByTheDocumentedSteps) {
  Owned<OctetStrings> strings = Make(CreateOctetStrings);
  const auto& list = *reinterpret_cast<const Asn1List*>(strings.Get());
  EXPECT_EQ(0U, list.capacity);
  for (uint32_t i = 0; i < 600; ++i) {
    const Bytes octets{static_cast<uint8_t>(i), static_cast<uint8_t>(i >> 8)};
    ASSERT_OK(AddOctetStringsValue(strings, octets.data(), i % 3));
    EXPECT_EQ(i < 10 ? 10U : i < 215 ? 215U : i < 522 ? 522U : 983U, list.capacity);
  }
  EXPECT_EQ(600U, Get(GetOctetStringsCount, strings));
  for (uint32_t i = 0; i < 600; ++i) {
    Bytes octets(3, 0xEE);
    // The capacity is not looked at.
    uint32_t length = 0;
    ASSERT_OK(GetOctetStringsValue(strings, i, octets.data(), &length));
    Bytes expected{static_cast<uint8_t>(i), static_cast<uint8_t>(i >> 8)};
    expected.resize(i % 3);
    expected.resize(3, 0xEE);
    EXPECT_EQ(i % 3, length);
    EXPECT_EQ(expected, octets);
  }
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, AskSize(GetOctetStringsValue, strings, 600));
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, AddOctetStringsValue(strings, nullptr, 0));
  EXPECT_OK(FreeOctetStrings(strings.Release()));
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, FreeOctetStrings(nullptr));
}

TEST(Choices, LeadToTheAlternativeTheyHold) {
  const Tree decoded = TreeOf(kTestChoice, "A2 03 02 01 05");  // [2] { 5 }
  void* node = decoded.Root();
  const Asn1Item* descriptor = &kTestChoice;
  ASSERT_OK(GetAsn1ChoiceUnderlyingType(&node, &descriptor));
  EXPECT_EQ(kTestChoice.members[2], descriptor);
  EXPECT_EQ(5U, static_cast<Asn1Value*>(node)->data[0]);

  Asn1Choice wrong{kTestChoice.memberCount, nullptr};
  node = &wrong;
  descriptor = &kTestChoice;
  EXPECT_STATUS(TESSEL_WRONG_ALTERNATIVE, GetAsn1ChoiceUnderlyingType(&node, &descriptor));
  EXPECT_EQ(&wrong, node);
  EXPECT_EQ(&kTestChoice, descriptor);
  descriptor = &kInteger;
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, GetAsn1ChoiceUnderlyingType(&node, &descriptor));
}

TEST(OpenValues, TellTheirHeaderWhenTheyAreWhole) {
  // Class, constructed, tag number, content length, header length.
  using Header = std::array<uint32_t, 5>;
  const struct {
    const char* encoding;
    uint32_t status;
    Header header = {7, 7, 7, 7, 7};
  } cases[] = {
      {"30 80 02 01 01 00 00", TESSEL_OK, {0x00, 0x20, 16, 5, 2}},  // { 1 }
      {"9F 1F 01 AA", TESSEL_OK, {0x80, 0x00, 31, 1, 3}},           // [31] 'AA'H
      {"", TESSEL_MALFORMED},
      {"30 80 02 01 01", TESSEL_INDEFINITE_LENGTH},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.encoding);
    Bytes encoding = FromHex(c.encoding);
    const Asn1Any any{TESSEL_KIND_ANY, SizeOf(encoding), encoding.data()};
    uint8_t tagClass = 7;
    uint8_t constructed = 7;
    Header read = {7, 7, 7, 7, 7};
    EXPECT_STATUS(c.status, GetAsn1AnyInfo(&any, &tagClass, &constructed, &read[2], &read[3], &read[4]));
    read[0] = tagClass;
    read[1] = constructed;
    EXPECT_EQ(c.header, read);
    EXPECT_EQ(encoding, FetchChecked(GetAsn1AnyValue, &any));
  }
}

}  // namespace
}  // namespace test
