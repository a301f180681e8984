#include <gtest/gtest.h>

#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "support/host.h"
#include "support/objects.h"
#include "support/octets.h"
#include "support/openssl.h"
#include "tessel/tessel.h"

namespace test {
namespace {

struct TextResult {
  uint32_t status;
  std::string text;
};

TextResult ToText(const Bytes& oid) {
  const Guarded counted(oid);
  const uint32_t status = AskSize(ConvertOidToString, counted.Data());
  if (status != TESSEL_OK) return {status, {}};
  const Bytes text = FetchChecked(ConvertOidToString, counted.Data());
  EXPECT_EQ(0, text.back());
  return {status, {text.begin(), text.end() - 1}};
}

struct OidResult {
  uint32_t status = 0;
  Bytes oid;
};

OidResult FromText(const std::string& text) {
  OidResult result;
  result.status = Try(ConvertStringToOid, text, Into(result.oid));
  return result;
}

TEST(Oid, TextsAreReadLeniently) {
  const struct {
    const char* text;
    const char* counted;  // null: refused
  } cases[] = {
      {"", "00"},
      {"0.0", "01 00"},
      {"1", "01 28"},
      {"2.999", "02 88 37"},
      {"1.50", "01 5A"},
      {"2.10", "01 5A"},
      {"1.2.3x", "02 2A 03"},
      {"1.2. +3", "02 2A 03"},
      {"1.2.007", "02 2A 07"},
      {"1.2.4294967295", "06 2A 8F FF FF FF 7F"},
      {"1.2.4294967299", "02 2A 03"},
      {"1.2.-1", "06 2A 8F FF FF FF 7F"},
      {"1.2.x", nullptr},
      {"1.2.00", nullptr},
      {"1.2.", nullptr},
      {"1..2", nullptr},
      {"1.2.0x", nullptr},
      {"1.2.4294967296", nullptr},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    const OidResult result = FromText(c.text);
    EXPECT_STATUS(c.counted != nullptr ? TESSEL_OK : TESSEL_INVALID_ARGUMENT, result.status);
    if (c.counted != nullptr) {
      EXPECT_EQ(c.counted, ToHex(result.oid));
    }
  }
  // As many octets as can be counted, and one more.
  std::string longest = "1.2";
  for (int i = 0; i < 254; ++i) longest += ".7";
  EXPECT_EQ(256U, FromText(longest).oid.size());
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, FromText(longest + ".7").status);
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, FromText(std::string(1000000, '.')).status);
}

TEST(Oid, ContentsAreWrittenWithTheirFirstOctetDividedBy40) {
  const struct {
    const char* counted;
    const char* text;  // null: refused
  } cases[] = {
      {"00", "0.0"},         {"01 27", "0.39"},     {"01 28", "1.0"},
      {"01 78", "3.0"},      {"02 88 37", "26.39"}, {"02 2A 80", "1.2"},
      {"02 2A 81", nullptr}, {"01 80", "0.0"},      {"06 2A 9F FF FF FF 7F", "1.2.4294967295"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.counted);
    const TextResult result = ToText(FromHex(c.counted));
    EXPECT_STATUS(c.text != nullptr ? TESSEL_OK : TESSEL_INVALID_ARGUMENT, result.status);
    if (c.text != nullptr) {
      EXPECT_EQ(c.text, result.text);
    }
  }
  const Bytes longest = Bytes{255} + Repeat(FromHex("8F FF FF FF 7F"), 51);
  EXPECT_OK(ToText(longest).status);
}

TEST(Oid, DerIsReadWhenItIsOneWholeIdentifier) {
  const struct {
    const char* der;
    uint32_t status;
    const char* counted;
  } cases[] = {
      {"06 03 55 04 03", TESSEL_OK, "03 55 04 03"},
      {"06 81 03 55 04 03 99", TESSEL_OK, "03 55 04 03"},
      {"06 00", TESSEL_OK, "00"},
      {"06 03 55 04", TESSEL_MALFORMED, ""},
      {"86 03 55 04 03", TESSEL_MALFORMED, ""},  // [6]
      {"04 03 55 04 03", TESSEL_MALFORMED, ""},
      {"26 80 00 00", TESSEL_INDEFINITE_LENGTH, ""},  // constructed
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.der);
    const Guarded der(FromHex(c.der));
    ASSERT_STATUS(c.status, AskSize(DecodeAsn1Oid, der));
    if (c.status == TESSEL_OK) {
      EXPECT_EQ(c.counted, ToHex(FetchChecked(DecodeAsn1Oid, der)));
    }
  }
  EXPECT_STATUS(TESSEL_MALFORMED, AskSize(DecodeAsn1Oid, Der(0x06, Bytes(256, 1))));
}

TEST(Oid, RandomOnesRoundTripAndAgreeWithOpenssl) {
  TESSEL_TEST_NEEDS_HOST();
  std::mt19937 random(7);
  Bytes all;
  std::vector<std::string> expected;
  for (int i = 0; i < 300; ++i) {
    std::string text = std::to_string(random() % 3) + "." + std::to_string(random() % 40);
    // Long enough that openssl has no name for it.
    for (auto arcs = 3 + random() % 12; arcs > 0; --arcs) text += "." + std::to_string(random() >> random() % 32);
    const OidResult oid = FromText(text);
    ASSERT_OK(oid.status);
    EXPECT_EQ(text, ToText(oid.oid).text);
    all += FetchChecked(EncodeAsn1Oid, oid.oid.data());
    expected.push_back(text);
  }
  const Openssl openssl;
  openssl.Write("oids", all);
  std::istringstream printed(openssl.Run("asn1parse -inform DER -in oids"));
  for (const std::string& text : expected) {
    std::string line;
    std::getline(printed, line);
    EXPECT_EQ(text, line.substr(line.rfind(':') + 1));
  }
}

TEST(Oid, TablesGoBothWays) {
  const struct {
    uint32_t id;
    const char* text;
    decltype(&GetNameAttributeTypeOid) get;
    decltype(&FindNameAttributeTypeIdByOid) find;
  } cases[] = {{1, "2.5.4.3", GetNameAttributeTypeOid, FindNameAttributeTypeIdByOid},
               {11, "0.9.2342.19200300.100.1.25", GetNameAttributeTypeOid, FindNameAttributeTypeIdByOid},
               {19, "1.3.6.1.4.1.42.2.11.2.1", GetNameAttributeTypeOid, FindNameAttributeTypeIdByOid},
               {32, "1.2.643.100.1", GetNameAttributeTypeOid, FindNameAttributeTypeIdByOid},
               {1, "1.2.840.113549.1.1.1", GetPublicKeyAlgorithmOid, FindAlgIdByOid},
               {100, "1.2.643.2.2.3", GetPublicKeyAlgorithmOid, FindAlgIdByOid},
               {3001, "1.2.643.7.1.1.1.2", GetPublicKeyAlgorithmOid, FindAlgIdByOid},
               {3003, "1.2.643.7.1.1.3.3", GetPublicKeyAlgorithmOid, FindAlgIdByOid}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    const Bytes oid = FromText(c.text).oid;
    EXPECT_EQ(c.id, Get(c.find, oid.data()));
    EXPECT_EQ(oid, FetchChecked(c.get, c.id));
  }
  uint32_t id = 0;
  EXPECT_STATUS(TESSEL_UNKNOWN_OID, FindAlgIdByOid(FromText("2.5.4.3").oid.data(), &id));
  EXPECT_STATUS(TESSEL_UNKNOWN_ID, AskSize(GetNameAttributeTypeOid, 33));
  EXPECT_STATUS(TESSEL_UNKNOWN_ID, AskSize(GetPublicKeyAlgorithmOid, 0));
}

TEST(Oid, ComparisonsAnswerOneOrZero) {
  const Bytes name = FromHex("03 55 04 03");
  const Bytes longer = FromHex("04 55 04 03 01");
  Bytes content = FromHex("55 04 03");
  const Asn1Oid node{TESSEL_KIND_OBJECT_IDENTIFIER, 3, content.data()};
  EXPECT_EQ(1U, IsOidEquals(name.data(), Bytes(name).data()));
  EXPECT_EQ(0U, IsOidEquals(name.data(), longer.data()));
  EXPECT_EQ(0U, IsOidEquals(name.data(), nullptr));
  EXPECT_EQ(1U, IsOidAndAsn1ObjectIdentifierEquals(name.data(), &node));
  EXPECT_EQ(0U, IsOidAndAsn1ObjectIdentifierEquals(longer.data(), &node));
  EXPECT_EQ(0U, IsOidAndAsn1ObjectIdentifierEquals(name.data(), nullptr));
}

TEST(Oid, DerIsReadWithoutALookAtTheContent) {
  EXPECT_EQ("03 55 04 83", ToHex(FetchChecked(DecodeAsn1Oid, FromHex("26 03 55 04 83"))));
  EXPECT_EQ("1.2.3", ToText(FetchChecked(DecodeAsn1Oid, FromHex("06 03 2A 80 03"))).text);
}

}  // namespace
}  // namespace test
