#include <gtest/gtest.h>

#include <array>
#include <initializer_list>
#include <string>

#include "support/octets.h"
#include "support/tree.h"
#include "tessel/tessel.h"
#include "types.h"

namespace test {
namespace {

// Class, constructed, tag number, content length, indefinite, header length.
using Header = std::array<uint32_t, 6>;
constexpr Header kUntouched = {7, 7, 7, 7, 7, 7};

TEST(GetAsn1ObjectInfo, TellsEachFieldOfAHeaderAndNothingOfAWrongOne) {
  const struct {
    const char* input;
    bool asksIndefinite;
    uint32_t status;
    Header header = kUntouched;
  } cases[] = {
      {"30 80 00 00", true, TESSEL_OK, {0x00, 0x20, 16, 2, 1, 2}},
      {"30 80 00 00", false, TESSEL_OK, {0x00, 0x20, 16, 2, 7, 2}},
      {"BF 81 00 03 01", true, TESSEL_OK, {0x80, 0x20, 128, 3, 0, 4}},
      {"DF 90 80 80 80 01 00", true, TESSEL_OK, {0xC0, 0x00, 1, 0, 0, 7}},
      {"04 84 00 00 00 01 41", true, TESSEL_OK, {0x00, 0x00, 4, 1, 0, 6}},
      {"04 84 FF FF FF FF", true, TESSEL_OK, {0x00, 0x00, 4, 0xFFFFFFFF, 0, 6}},
      // Content beyond the input: only when the indefinite form is asked for.
      {"04 02 41", true, TESSEL_OK, {0x00, 0x00, 4, 2, 0, 2}},
      {"04 02 41", false, TESSEL_MALFORMED},
      {"04 01 41", false, TESSEL_OK, {0x00, 0x00, 4, 1, 7, 2}},
      {"", true, TESSEL_MALFORMED},
      {"1F 81", true, TESSEL_MALFORMED},
      {"04 84 00 00 00", true, TESSEL_MALFORMED},
      {"04 85 00 00 00 00 01 41", true, TESSEL_LENGTH_TOO_LARGE},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.input);
    const Guarded input(FromHex(c.input));
    Header read = kUntouched;
    uint8_t tagClass = 7;
    uint8_t constructed = 7;
    EXPECT_STATUS(c.status, GetAsn1ObjectInfo(input.Data(), input.Size(), &tagClass, &constructed, &read[2], &read[3],
                                              c.asksIndefinite ? &read[4] : nullptr, &read[5]));
    read[0] = tagClass;
    read[1] = constructed;
    EXPECT_EQ(c.header, read);
  }
}

struct DecodeCase {
  const Asn1Item& item;
  const char* input;
  uint32_t status;
  // Of a success: how much was used, and the tree as DER. Null for an absent item.
  uint32_t consumed = 0;
  const char* der = nullptr;
};

void Check(std::initializer_list<DecodeCase> cases) {
  for (const DecodeCase& c : cases) {
    SCOPED_TRACE(c.input);
    const DecodeResult result = Decode(c.item, FromHex(c.input));
    EXPECT_STATUS(c.status, result.status);
    if (c.status == TESSEL_INVALID_CONTENT) continue;
    if (c.status == TESSEL_OK) {
      EXPECT_EQ(c.consumed, result.consumed);
    }
    EXPECT_EQ(c.der != nullptr, result.tree.Root() != nullptr);
    if (c.der == nullptr || !result.tree) continue;
    EXPECT_EQ(c.der, ToHex(Encode(c.item, result.tree.Root()).octets));
  }
}

TEST(Decoder, ReadsPrimitivesAndRefusesWhatTheirTypesDoNotAllow) {
  Check({
      {kInteger, "02 01 05", TESSEL_OK, 3, "02 01 05"},
      {kInteger, "02 01 05 FF FF", TESSEL_OK, 3, "02 01 05"},
      {kInteger, "02 02 00 80", TESSEL_OK, 4, "02 02 00 80"},  // 128
      {kInteger, "02 84 00 00 00 01 05", TESSEL_OK, 7, "02 01 05"},
      {kInteger, "02 02 00 7F", TESSEL_INVALID_CONTENT},  // 127 in two octets
      {kInteger, "02 02 FF 80", TESSEL_INVALID_CONTENT},  // -128 in two octets
      {kInteger, "02 00", TESSEL_INVALID_CONTENT},
      {kInteger, "", TESSEL_MALFORMED},
      {kInteger, "02 84 FF FF FF FF 01", TESSEL_MALFORMED},
      {kInteger, "02 80 05 00 00", TESSEL_INDEFINITE_LENGTH},  // primitive
      {kInteger, "22 03 02 01 05", TESSEL_MALFORMED},          // constructed
      {kInteger, "82 01 05", TESSEL_MALFORMED},                // [2]
      {kOptionalInteger, "", TESSEL_OK, 0, nullptr},
      {kOptionalInteger, "04 01 05", TESSEL_OK, 0, nullptr},  // an OCTET STRING
      {kOptionalInteger, "04", TESSEL_MALFORMED},
      {kOptionalInteger, "02 02 05", TESSEL_MALFORMED},
      {kBoolean, "01 01 FF", TESSEL_OK, 3, "01 01 FF"},
      {kBoolean, "01 01 01", TESSEL_INVALID_CONTENT},  // neither TRUE nor FALSE
      {kBoolean, "01 02 00 00", TESSEL_INVALID_CONTENT},
      {kNull, "05 00", TESSEL_OK, 2, "05 00"},
      {kNull, "05 01 AA", TESSEL_OK, 3, "05 01 AA"},
      {kOid, "06 00", TESSEL_OK, 2, "06 00"},
      {kUtcTime, "17 01 58", TESSEL_OK, 3, "17 01 58"},          // "X"
      {kBitString, "03 01 00", TESSEL_OK, 3, "03 01 00"},        // ''B
      {kBitString, "03 02 07 FF", TESSEL_OK, 4, "03 02 07 FF"},  // '1'B, and stray bits
      {kBitString, "03 00", TESSEL_MALFORMED},
      {kBitString, "03 02 08 00", TESSEL_MALFORMED},        // 8 unused bits
      {kBitString, "23 04 03 02 00 41", TESSEL_MALFORMED},  // in segments
      {kBitString, "23 80 03 02 00 41 00 00", TESSEL_INVALID_ARGUMENT},
      {kUnknownPrimitive, "07 00", TESSEL_UNSUPPORTED_KIND},
      {kUnknownConstructed, "27 00", TESSEL_INVALID_ARGUMENT},
      {kImplicitInteger, "81 01 05", TESSEL_OK, 3, "81 01 05"},
      {kImplicitInteger, "A1 01 05", TESSEL_MALFORMED},  // constructed
  });
}

TEST(Decoder, JoinsTheSegmentsOfAnOctetString) {
  Check({
      {kOctetString, "24 80 04 01 41 04 01 42 00 00", TESSEL_OK, 10, "04 02 41 42"},  // "A", "B"
      {kOctetString, "24 80 04 00 A4 01 41 00 00", TESSEL_OK, 9, "04 01 41"},         // "", [4] "A"
      // Segments of segments are taken raw.
      {kOctetString, "24 80 24 03 04 01 41 00 00", TESSEL_OK, 9, "04 03 04 01 41"},
      {kOctetString, "24 06 04 01 41 04 01 42", TESSEL_MALFORMED},   // not of indefinite length
      {kOctetString, "24 80 02 01 41 00 00", TESSEL_WRONG_SEGMENT},  // INTEGER 65
      {kOctetString, "24 80 04 05 41 00 00", TESSEL_MALFORMED},
      {kOctetString, "24 80 04 01 41", TESSEL_MALFORMED},
      {kOctetString, "04 80 41 00 00", TESSEL_INDEFINITE_LENGTH},
  });
}

TEST(Decoder, KeepsOpenValuesWithTheirHeaders) {
  Check({
      {kAny, "9F 1F 01 AA", TESSEL_OK, 4, "9F 1F 01 AA"},  // [31] 'AA'H
      {kAny, "30 80 30 80 00 00 04 02 00 00 00 00 99", TESSEL_OK, 12,
       "30 80 30 80 00 00 04 02 00 00 00 00"},  // { { }, '0000'H }
      {kAny, "02 02 05", TESSEL_MALFORMED},
      {kAny, "00 00", TESSEL_MALFORMED},
      {kOptionalAny, "00 00", TESSEL_OK, 0, nullptr},
      {kTagZero, "00 00", TESSEL_MALFORMED},
      {kAny, "30 80 30 80 00 00", TESSEL_INDEFINITE_LENGTH},
      {kAny, "30 80 02 05 01 00 00", TESSEL_MALFORMED},
      {kAny, "30 80 02 85 00", TESSEL_LENGTH_TOO_LARGE},
  });
  EXPECT_EQ(31U, Decode(kAny, FromHex("9F 1F 01 AA")).tree.As<Asn1Value>().tag);
}

TEST(Decoder, UnwrapsExplicitTagsWhateverTheirLength) {
  Check({
      {kExplicitInteger, "A0 80 02 01 05 00 00", TESSEL_OK, 7, "A0 03 02 01 05"},
      {kExplicitInteger, "A0 80 02 01 05 01 01", TESSEL_INDEFINITE_LENGTH},  // no end
      {kExplicitInteger, "A0 80 02 01 05", TESSEL_INDEFINITE_LENGTH},
      // A definite outer length is not compared with the element.
      {kExplicitInteger, "A0 01 02 01 05", TESSEL_OK, 5, "A0 03 02 01 05"},
      {kExplicitInteger, "A0 7F 02 01 05", TESSEL_OK, 5, "A0 03 02 01 05"},
      {kOptionalExplicitInteger, "A1 03 02 01 05", TESSEL_OK, 0, nullptr},
      {kOptionalExplicitInteger, "80 03 02 01 05", TESSEL_OK, 0, nullptr},  // primitive
      {kOptionalExplicitInteger, "20 03 02 01 05", TESSEL_OK, 0, nullptr},  // universal
      {kOptionalExplicitInteger, "A0 00", TESSEL_MALFORMED},
      // Of an OPTIONAL item the wrapper may hold something else.
      {kOptionalExplicitInteger, "A0 03 04 01 05", TESSEL_OK, 2, nullptr},   // [0] { OCTET STRING }
      {kOptionalExplicitInteger, "A0 80 00 00", TESSEL_OK, 4, nullptr},      // [0] { }
      {kExplicitChoice, "A0 02 17 00", TESSEL_OK, 4, "A0 02 17 00"},         // [0] { UTCTime "" }
      {kUniversalExplicitList, "22 02 30 00", TESSEL_OK, 4, "22 02 30 00"},  // [UNIVERSAL 2] { { } }
      {kUniversalExplicitList, "A2 02 30 00", TESSEL_OK, 0, nullptr},
      {kExplicitWithoutTag, "A0 03 02 01 05", TESSEL_INCONSISTENT_DESCRIPTOR},
  });
}

TEST(Decoder, ChoosesAlternativesByTheirTags) {
  Check({
      {kTestChoice, "02 01 05", TESSEL_OK, 3, "02 01 05"},
      {kTestChoice, "A2 03 02 01 05", TESSEL_OK, 5, "A2 03 02 01 05"},  // [2] { 5 }
      {kTestChoice, "30 02 05 00", TESSEL_OK, 4, "30 02 05 00"},        // { NULL }
      {kTestChoice, "82 03 02 01 05", TESSEL_MALFORMED},                // primitive
      {kTestChoice, "10 00", TESSEL_MALFORMED},
      // By its kind, 129 and 0x7F, an open value has the tag of BOOLEAN.
      {kTestChoice, "01 01 FF", TESSEL_OK, 3, "01 01 FF"},
      {kOptionalChoice, "04 00", TESSEL_OK, 0, nullptr},
      {kOptionalChoice, "02 02 05", TESSEL_MALFORMED},
  });
  EXPECT_EQ(3U, Decode(kTestChoice, FromHex("30 00")).tree.As<Asn1Choice>().index);
}

TEST(Decoder, ReadsSequencesAndListsToTheirEnds) {
  Check({
      {kTestSequence, "30 03 02 01 05", TESSEL_OK, 5, "30 03 02 01 05"},
      {kTestSequence, "30 06 02 01 05 01 01 00", TESSEL_OK, 8, "30 03 02 01 05"},           // { 5, FALSE }, the DEFAULT
      {kTestSequence, "30 06 02 01 05 01 01 FF", TESSEL_OK, 8, "30 06 02 01 05 01 01 FF"},  // { 5, TRUE }
      {kTestSequence, "30 80 02 01 05 00 00", TESSEL_OK, 7, "30 03 02 01 05"},
      {kTestSequence, "30 80 02 01 05 04 00 00 00", TESSEL_OK, 9, "30 05 02 01 05 04 00"},  // { 5, ''H }
      // What follows the last member of a definite length is skipped; BOOLEAN comes before the open value.
      {kTestSequence, "30 0A 02 01 05 04 00 01 01 FF 05 00", TESSEL_OK, 12,
       "30 05 02 01 05 04 00"},  // { 5, ''H, TRUE, NULL }
      {kTestSequence, "30 80 02 01 05 04 00 04 00 00 00", TESSEL_INDEFINITE_LENGTH},
      {kTestSequence, "30 80 02 01 05", TESSEL_INDEFINITE_LENGTH},
      {kTestSequence, "30 05 02 01 05", TESSEL_MALFORMED},
      {kTestSequence, "10 03 02 01 05", TESSEL_MALFORMED},
      {kIntegers, "30 06 02 01 02 02 01 01", TESSEL_OK, 8, "30 06 02 01 02 02 01 01"},  // { 2, 1 }
      {kIntegers, "30 80 02 01 02 00 00", TESSEL_OK, 7, "30 03 02 01 02"},
      {kIntegers, "30 80 02 01 02", TESSEL_OK, 5, "30 03 02 01 02"},  // no end-of-contents octets
      {kIntegers, "30 80 02 01 02 00", TESSEL_MALFORMED},             // half of them
      {kIntegers, "30 04 02 01 02 02", TESSEL_MALFORMED},
      {kIntegers, "30 05 02 01 02 04 00", TESSEL_MALFORMED},                              // { 2, ''H }
      {kIntegerSet, "31 06 02 01 02 02 01 01", TESSEL_OK, 8, "31 06 02 01 01 02 01 02"},  // { 2, 1 }
      // An OPTIONAL element that is absent would be absent for ever.
      {kOptionalIntegers, "30 02 04 00", TESSEL_MALFORMED},  // { ''H }
      {kListWithoutElement, "30 00", TESSEL_INCONSISTENT_DESCRIPTOR},
  });
}

TEST(Decoder, HandsBackInvalidContentOnlyFromTheTop) {
  const DecodeResult top = Decode(kExplicitInteger, FromHex("A0 04 02 02 00 01"));  // [0] { 1 } in two octets
  ASSERT_STATUS(TESSEL_INVALID_CONTENT, top.status);
  ASSERT_NE(nullptr, top.tree.Root());
  EXPECT_EQ(1U, top.tree.As<Asn1Value>().data[1]);
  const DecodeCase inside[] = {
      {kTestChoice, "A2 02 02 00", TESSEL_INVALID_CONTENT},
      {kTestChoice, "02 00", TESSEL_INVALID_CONTENT},
      {kTestSequence, "30 02 02 00", TESSEL_INVALID_CONTENT},
      {kIntegers, "30 05 02 01 01 02 00", TESSEL_INVALID_CONTENT},
  };
  for (const DecodeCase& c : inside) {
    SCOPED_TRACE(c.input);
    const DecodeResult result = Decode(c.item, FromHex(c.input));
    EXPECT_STATUS(c.status, result.status);
    EXPECT_EQ(nullptr, result.tree.Root());
  }
}

TEST(Decoder, LeavesNoPlaceBehindWhenItSucceeds) {
  ASSERT_STATUS(TESSEL_INVALID_ARGUMENT, CheckAsn1Boolean(nullptr));
  // { [0] { INTEGER -123 }, [0] { INTEGER 1 } }, but the first wrapper says less than its element takes, so that what
  // seems to follow it is no header.
  const DecodeResult result = Decode(kExplicitIntegers, FromHex("30 0A A0 02 02 01 85 A0 03 02 01 01"));
  EXPECT_OK(result.status);
  EXPECT_EQ(2U, result.tree.As<Asn1List>().count);
  EXPECT_STREQ("primitives.cpp", GetLastFileErrorAsn(nullptr));
}

TEST(Decoder, FillsInACopyOfTheDefault) {
  const DecodeResult result = Decode(kDefaultInteger, FromHex("04 00"));
  ASSERT_OK(result.status);
  EXPECT_EQ(0U, result.consumed);
  const auto& value = result.tree.As<Asn1Value>();
  EXPECT_NE(&kZero, &value);
  EXPECT_NE(kZero.data, value.data);
  EXPECT_EQ(Bytes{0}, ContentOf(value));
}

TEST(Decoder, SurvivesAnyDepth) {
  const Bytes deep = Repeat(FromHex("30 80"), 10'000'000);
  EXPECT_STATUS(TESSEL_INDEFINITE_LENGTH, Decode(kAny, deep).status);
  EXPECT_STATUS(TESSEL_MALFORMED, Decode(CertificateItem, deep).status);
  EXPECT_STATUS(TESSEL_MALFORMED, Decode(kNest, deep).status);
  EXPECT_OK(Decode(kAny, deep + Repeat(FromHex("00 00"), 10'000'000)).status);
}

// Lists of one element that look much longer: a wrapper in each claims all that follows, up to many small elements.
TEST(Decoder, TakesNoRoomForElementsThatListsOnlyClaim) {
  constexpr uint32_t kLists = 2000;
  const Bytes list = FromHex("30 80 A0 82 00 00 02 01 05 00 00");  // { [0] { INTEGER 5 } }
  Bytes input = FromHex("30 80");
  for (uint32_t i = 0; i < kLists; ++i) {
    const size_t claimed = (kLists - i) * list.size() - 6 + 2;
    input += list;
    input[input.size() - 7] = static_cast<uint8_t>(claimed >> 8);
    input[input.size() - 6] = static_cast<uint8_t>(claimed);
  }
  input += FromHex("00 00") + Repeat(FromHex("05 00"), 2000);
  const DecodeResult decoded = Decode(kListsOfExplicitIntegers, input);
  ASSERT_OK(decoded.status);
  const auto& lists = decoded.tree.As<Asn1List>();
  ASSERT_EQ(kLists, lists.count);
  size_t room = 0;
  for (uint32_t i = 0; i < kLists; ++i) room += static_cast<const Asn1List*>(lists.items[i])->capacity;
  EXPECT_LE(room, 2 * input.size());
}

TEST(Decoder, KeepsContentsWhateverTheirPlace) {
  // Contents at every alignment, small and large, in a list that outgrows its first array: the segmented string hides
  // how many elements follow.
  const Bytes segmented = FromHex("24 80 04 01 41 00 00");
  for (uint8_t shift = 0; shift < 17; ++shift) {
    const Bytes padding = Bytes{4, shift} + Bytes(shift, 0x55);
    const DecodeResult counted = Decode(kStrings, FromHex("30 80") + Repeat(padding, 17) + FromHex("00 00"));
    EXPECT_EQ(17U, counted.tree.As<Asn1List>().capacity);
    for (const uint32_t size : {1U, 7U, 16U, 100U, 1023U, 1024U, 5000U, 70000U}) {
      const Bytes content(size, shift);
      const Bytes header{4, 0x83, uint8_t(size >> 16), uint8_t(size >> 8), uint8_t(size)};
      const DecodeResult result =
          Decode(kStrings, FromHex("30 80") + padding + segmented + Repeat(header + content, 12) + FromHex("00 00"));
      ASSERT_OK(result.status);
      const auto& list = result.tree.As<Asn1List>();
      ASSERT_EQ(14U, list.count);
      EXPECT_EQ(215U, list.capacity);
      for (uint32_t i = 2; i < list.count; ++i) {
        ASSERT_EQ(content, ContentOf(*static_cast<Asn1Value*>(list.items[i])));
      }
    }
  }
}

TEST(Decoder, ReadsTagNumbersThatBeginWithZeros) {
  Check({{kImplicitInteger, "9F 80 01 01 05", TESSEL_OK, 5, "81 01 05"}});
}

TEST(Decoder, ReadsMembersOfASetInTheirOrderOnly) {
  static constexpr const Asn1Item* kMembers[] = {&kInteger, &kBoolean};
  const Asn1Item set{TESSEL_FLAG_CONSTRUCTED, TESSEL_KIND_SET, -1, 2 * sizeof(void*), kMembers, 2, nullptr};
  EXPECT_STATUS(TESSEL_OK, Decode(set, FromHex("31 06 02 01 05 01 01 FF")).status);
  EXPECT_STATUS(TESSEL_MALFORMED, Decode(set, FromHex("31 06 01 01 FF 02 01 05")).status);
}

}  // namespace
}  // namespace test
