#include <gtest/gtest.h>

#include "support/objects.h"
#include "support/octets.h"
#include "support/tree.h"
#include "tessel/tessel.h"
#include "types.h"

namespace test {
namespace {

TEST(Primitives, ValuesAreReadAsStored) {
  const Tree string = TreeOf(kOctetString, "04 03 41 42 43");
  const auto& value = string.As<Asn1Value>();
  uint32_t type = 99;
  EXPECT_EQ("41 42 43", ToHex(FetchChecked([&](auto... out) {
              EXPECT_EQ(99U, type) << "only with the octets";
              return GetAsn1ValueAndType(&value, &type, out...);
            })));
  EXPECT_EQ(4U, type);
  EXPECT_EQ(3U, GetAsn1ValueLength(&value));
  EXPECT_EQ(0U, GetAsn1ValueLength(nullptr));

  // No octets: an empty value has a content, but not a type; a length without octets has neither.
  const Asn1Value empty{4, 0, nullptr};
  const Asn1Value hollow{4, 3, nullptr};
  EXPECT_EQ(Bytes(), FetchChecked(GetAsn1Value, &empty));
  EXPECT_STATUS(TESSEL_ABSENT, AskSize(GetAsn1Value, &hollow));
  EXPECT_STATUS(TESSEL_ABSENT, AskSize(GetAsn1ValueAndType, &empty, &type));
  EXPECT_STATUS(TESSEL_ABSENT, AskSize(GetAsn1Integer, &empty));
  const Asn1BitString noBits{0, 0, nullptr};
  EXPECT_STATUS(TESSEL_ABSENT, AskSize(GetAsn1BitString, &noBits, nullptr));
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, AskSize(GetAsn1Value, nullptr));
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, GetAsn1BitString(&noBits, nullptr, nullptr, nullptr));
}

TEST(Primitives, IntegersAreLittleEndianAtTheInterface) {
  const struct {
    int32_t number;
    const char* encoding;
  } cases[] = {{0, "02 01 00"},           {127, "02 01 7F"},
               {128, "02 02 00 80"},      {255, "02 02 00 FF"},
               {256, "02 02 01 00"},      {-1, "02 01 FF"},
               {-128, "02 01 80"},        {-129, "02 02 FF 7F"},
               {65536, "02 03 01 00 00"}, {INT32_MIN, "02 04 80 00 00 00"}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.number);
    EXPECT_EQ(c.encoding, ToHex(FetchChecked(EncodeAsn1Int32, c.number)));
    EXPECT_EQ(c.number, Get(DecodeAsn1Int32, FromHex(c.encoding)));
    // Onto a node that holds something already.
    const Tree node = TreeOf(kInteger, "02 09 11 22 33 44 55 66 77 88 99");
    EXPECT_OK(SetAsn1Int32(&node.As<Asn1Value>(), c.number));
    EXPECT_EQ(c.encoding, ToHex(Encode(kInteger, node.Root()).octets));
  }
  int32_t number = 77;
  EXPECT_STATUS(TESSEL_BUFFER_TOO_SMALL,
                GetAsn1Int32(&TreeOf(kInteger, "02 05 01 00 00 00 00").As<Asn1Value>(), &number));
  EXPECT_STATUS(TESSEL_INVALID_CONTENT, DecodeAsn1Int32(FromHex("02 02 00 01").data(), 4, &number));
  EXPECT_EQ(77, number);
}

TEST(Primitives, SetIntegerStripsWhatIsRedundant) {
  const struct {
    const char* littleEndian;
    const char* content;
  } cases[] = {{"05 00 00", "05"}, {"80 00 00", "00 80"}, {"00 00", "00"},    {"FF FF", "FF"},
               {"80 FF", "80"},    {"FF 00", "00 FF"},    {"00 FF", "FF 00"}, {"7F FF 00", "00 FF 7F"}};
  for (const auto& c : cases) {
    const Tree tree(kInteger, AllocAsn1Integer(0));
    auto* node = &tree.As<Asn1Value>();
    Call(SetAsn1Integer, node, FromHex(c.littleEndian));
    EXPECT_EQ(c.content, ToHex(ContentOf(*node))) << c.littleEndian;
    EXPECT_OK(CheckAsn1Integer(node));
    const Bytes read = FetchChecked(GetAsn1Integer, node);
    EXPECT_EQ(c.content, ToHex(Bytes(read.rbegin(), read.rend())));
    node->tag = TESSEL_KIND_ENUMERATED;
    EXPECT_STATUS(TESSEL_INVALID_CONTENT, CheckAsn1Integer(node));
  }
  const Tree tree(kInteger, AllocAsn1Integer_s(FromHex("00 00 05").data(), 3));
  auto* raw = &tree.As<Asn1Value>();
  EXPECT_EQ("02 03 00 00 05", ToHex(Encode(kInteger, raw).octets));
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, SetAsn1Integer(raw, nullptr, 1));
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, SetAsn1Integer(raw, raw->data, 0));
  EXPECT_EQ(nullptr, AllocAsn1Integer_s(nullptr, 3));
}

TEST(Primitives, BooleansAreOneOctet) {
  for (const uint32_t flag : {0U, 1U, 77U}) {
    const Tree tree(kBoolean, AllocAsn1Boolean(flag));
    auto* node = &tree.As<Asn1Value>();
    EXPECT_OK(CheckAsn1Boolean(node));
    EXPECT_EQ(flag != 0 ? 1U : 0U, Get(GetAsn1Boolean, node));
    node->tag = 4;
    uint32_t read = 9;
    EXPECT_OK(GetAsn1Boolean(node, &read));
    EXPECT_STATUS(TESSEL_INVALID_CONTENT, CheckAsn1Boolean(node));
    node->data[0] = 1;
    EXPECT_STATUS(TESSEL_INVALID_CONTENT, GetAsn1Boolean(node, &read));
  }
}

TEST(Primitives, BitStringsTellTheirUnusedBits) {
  const Tree tree = TreeOf(kBitString, "03 03 05 41 E0");  // '01000001 111'B
  uint8_t unused = 9;
  EXPECT_EQ("41 E0", ToHex(FetchChecked(GetAsn1BitString, &tree.As<Asn1BitString>(), &unused)));
  EXPECT_EQ(5U, unused);
}

TEST(Primitives, OfEveryPlainTypeAreEncodedAlone) {
  const Bytes content = FromHex("31");
  for (uint32_t tag = 0; tag < 256; ++tag) {
    SCOPED_TRACE(tag);
    const bool plain = tag == 1 || tag == 2 || tag == 4 || tag == 5 || tag == 6 || tag == 10 || tag == 12 ||
                       (tag >= 18 && tag <= 28) || tag == 30;
    ASSERT_STATUS(plain ? TESSEL_OK : TESSEL_UNSUPPORTED_KIND, AskSize(EncodeAsn1PrimitiveValue, 0x500 | tag, content));
    if (!plain) continue;
    const Bytes encoding = FetchChecked(EncodeAsn1PrimitiveValue, 0x500 | tag, content);
    EXPECT_EQ((Bytes{static_cast<uint8_t>(tag), 1, 0x31}), encoding);
    EXPECT_STATUS(tag == TESSEL_KIND_BOOLEAN ? TESSEL_INVALID_CONTENT : TESSEL_OK,
                  AskSize(DecodeAsn1PrimitiveValue, tag, encoding));
    EXPECT_STATUS(TESSEL_MALFORMED, AskSize(DecodeAsn1PrimitiveValue, tag == 4 ? 12 : 4, encoding));
  }
  EXPECT_EQ("16 01 31", ToHex(FetchChecked(EncodeAsn1IA5String, content)));
  EXPECT_EQ("12 01 31", ToHex(FetchChecked(EncodeAsn1NumericString, content)));
  EXPECT_OK(AskSize(DecodeAsn1IA5String, FromHex("16 01 31")));
  EXPECT_STATUS(TESSEL_MALFORMED, AskSize(DecodeAsn1NumericString, FromHex("16 01 31")));
}

}  // namespace
}  // namespace test
