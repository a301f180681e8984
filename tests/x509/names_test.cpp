#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "support/objects.h"
#include "support/octets.h"
#include "support/tree.h"
#include "tessel/tessel.h"

namespace test {
namespace {

constexpr uint32_t kUtf8 = TESSEL_KIND_UTF8_STRING;
constexpr uint32_t kPrintable = TESSEL_KIND_PRINTABLE_STRING;

uint32_t Add(X509Name* name, const char* type, uint32_t stringType, std::string_view value, uint32_t newRdn = 1) {
  return Try(AddX509NameEntry, name, value, stringType, Counted(type).data(), newRdn);
}

Owned<X509Name> NameOf(const char* type, uint32_t stringType, std::string_view value) {
  Owned<X509Name> name = Make(CreateX509Name);
  EXPECT_OK(Add(name, type, stringType, value));
  return name;
}

// An attribute as "oid tag content".
std::string Entry(const X509Name* name, uint32_t rdn, uint32_t entry) {
  std::string value;
  ObjectIdentifier oid;
  uint32_t type = 0;
  Call(GetX509NameEntry, name, rdn, entry, Into(value), &type, Into(oid));
  return oid.Text() + " " + std::to_string(type) + " " + value;
}

TEST(Names, AreBuiltReadAndChanged) {
  const Owned<X509Name> name = Make(CreateX509Name);
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, Add(name, "2.5.4.3", kUtf8, "early", 0)) << "no RDN to join";
  EXPECT_OK(Add(name, "2.5.4.6", kPrintable, "RU"));
  EXPECT_OK(Add(name, "2.5.4.3", kUtf8, "Имя"));
  EXPECT_OK(Add(name, "2.5.4.10", kUtf8, "", 0));
  // An RDN is sorted when it is encoded, and only then.
  EXPECT_EQ("2.5.4.3 12 Имя", Entry(name, 1, 0));
  const Bytes octets = FetchChecked(EncodeX509Name, name);
  // { { { countryName, "RU" } }, { { organizationName, "" }, { commonName, "Имя" } } }
  EXPECT_EQ(
      "30 27 31 0B 30 09 06 03 55 04 06 13 02 52 55 "
      "31 18 30 07 06 03 55 04 0A 0C 00 30 0D 06 03 55 04 03 0C 06 D0 98 D0 BC D1 8F",
      ToHex(octets));
  const Owned<X509Name> decoded = Make(DecodeX509Name, octets);
  EXPECT_EQ("2.5.4.10 12 ", Entry(decoded, 1, 0));

  for (X509Name* each : {name.Get(), decoded.Get()}) {
    uint32_t count = 0;
    EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, GetX509NameEntryCount(each, 2, &count));
    EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, DeleteX509NameEntry(each, 1, 2));
    EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, DeleteX509NameEntry(each, 0, 1));
    EXPECT_OK(DeleteX509NameEntry(each, 0, 0)) << "the RDN goes with its only attribute";
    EXPECT_OK(DeleteX509NameEntry(each, 0, 0));
    EXPECT_EQ(1U, Get(GetX509NameEntryCount, each, 0));
    EXPECT_OK(ClearX509Name(each));
    EXPECT_EQ("30 00", ToHex(FetchChecked(EncodeX509Name, each)));
  }
}

TEST(Names, ValuesAreWrittenAndReadUnderAnyTag) {
  const Owned<X509Name> name = Make(CreateX509Name);
  const Bytes value = FromHex("02 01 05");
  const Bytes oid = Counted("2.5.4.45");
  EXPECT_OK(AddX509NameEntryExt(name, value.data(), 3, 0x80, 0x20, 1000, oid.data(), 1));
  for (const auto& [tagClass, constructed] : {std::pair<uint8_t, uint8_t>{0x81, 0}, {0x80, 1}}) {
    EXPECT_STATUS(TESSEL_INVALID_ARGUMENT,
                  AddX509NameEntryExt(name, value.data(), 3, tagClass, constructed, 1, oid.data(), 1));
  }
  // { { { x500UniqueIdentifier, [1000] { 5 } } } }
  EXPECT_EQ("30 10 31 0E 30 0C 06 03 55 04 2D BF 87 68 03 02 01 05", ToHex(FetchChecked(EncodeX509Name, name)));
  uint8_t tagClass = 0;
  uint8_t constructed = 0;
  uint32_t tag = 0;
  uint8_t buffer[8];
  uint8_t oidBuffer[8];
  const auto read = [&](uint8_t* to, uint32_t capacity, uint8_t* oidTo, uint32_t oidCapacity) {
    return GetX509NameEntryExt(name, 0, 0, to, &capacity, &tagClass, &constructed, &tag, oidTo, &oidCapacity);
  };
  EXPECT_STATUS(TESSEL_BUFFER_TOO_SMALL, read(buffer, 8, nullptr, 0)) << "the buffers go together";
  EXPECT_STATUS(TESSEL_BUFFER_TOO_SMALL, read(nullptr, 0, oidBuffer, 8));
  EXPECT_OK(read(buffer, 3, oidBuffer, 4));
  EXPECT_EQ(0x80, tagClass);
  EXPECT_EQ(0x20, constructed);
  EXPECT_EQ(1000U, tag);
}

TEST(Names, AreComparedByTheirValuesAlone) {
  const Owned<X509Name> name = NameOf("2.5.4.3", kPrintable, "Same");
  EXPECT_OK(Try(CompareX509Names, name, NameOf("2.5.4.10", kPrintable, "Same")));
  EXPECT_OK(Try(CompareX509Names, name, NameOf("2.5.4.3", kUtf8, "Same")));
  EXPECT_STATUS(TESSEL_DIFFERENT, Try(CompareX509Names, name, NameOf("2.5.4.3", kPrintable, "same")));
  const Owned<X509Name> longer = Make(CopyX509Name, name);
  EXPECT_OK(Add(longer, "2.5.4.3", kUtf8, "More", 0));
  EXPECT_STATUS(TESSEL_DIFFERENT, CompareX509Names(name, longer));
  EXPECT_OK(DeleteX509NameEntry(longer, 0, 1));
  EXPECT_OK(Add(longer, "2.5.4.3", kUtf8, "More"));
  EXPECT_STATUS(TESSEL_DIFFERENT, CompareX509Names(name, longer));

  // A name that never had an RDN is absent; one that lost them is empty.
  const Owned<X509Name> never = Make(CreateX509Name);
  EXPECT_STATUS(TESSEL_ABSENT, CompareX509Names(never, never));
  EXPECT_OK(ClearX509Name(longer));
  EXPECT_STATUS(TESSEL_ABSENT, Try(CompareX509Names, longer, Make(DecodeX509Name, FromHex("30 80 00 00"))));
  EXPECT_STATUS(TESSEL_DIFFERENT, CompareX509Names(name, longer));
  EXPECT_OK(CompareX509Names(longer, longer));
}

TEST(Names, TextsGetTheNarrowestStringType) {
  const struct {
    std::string_view text;
    uint32_t type;
  } cases[] = {{"", 18},      {"12 34", 18}, {"Ivanov", 19}, {"a(b)+,-./:=?'", 19}, {"a@b", 22},
               {"1\x7F", 22}, {"a\n", 12},   {"12\n", 12},   {"12*\xFF", 12},       {"ключ", 12}};
  for (const auto& c : cases) EXPECT_EQ(c.type, Get(DetermineSuitableStringType, c.text)) << c.text;
}

TEST(GeneralNames, OfEveryAlternativeAreWrittenAndRead) {
  const struct {
    uint32_t alternative;
    const char* value;
    const char* encoding;
    // What is read from the decoded name, where it differs from the value.
    const char* decoded = nullptr;
  } cases[] = {
      {0, "30 07 06 01 2A A0 02 0C 00", "A0 07 06 01 2A A0 02 0C 00",
       "A0 07 06 01 2A A0 02 0C 00"},  // { 1.2, [0] { "" } }
      {1, "61 40 62", "81 03 61 40 62"},
      {2, "62 2E 63", "82 03 62 2E 63"},
      {3, "04 01 31", "83 01 31", "83 01 31"},  // x400Address
      {4, "30 00", "A4 02 30 00"},
      {5, "30 03 81 01 61", "A5 03 81 01 61", "A5 03 81 01 61"},  // ediPartyName { [1] "a" }
      {6, "", "86 00"},
      {7, "7F 00 00 01", "87 04 7F 00 00 01"},
      {8, "03 55 04 03", "88 03 55 04 03"},  // 2.5.4.3
  };
  const Owned<X509GeneralNames> names = Make(CreateX509GeneralNames);
  Bytes content;
  for (const auto& c : cases) {
    const Bytes value = FromHex(c.value);
    // The length of an identifier is its own.
    const uint32_t status = c.alternative == 8 ? AddX509GeneralName(names, c.alternative, value.data(), 77)
                                               : Try(AddX509GeneralName, names, c.alternative, value);
    EXPECT_OK(status);
    content += FromHex(c.encoding);
  }
  const Bytes octets = FetchChecked(EncodeX509GeneralNames, names);
  EXPECT_EQ(ToHex(FromHex("30 2C") + content), ToHex(octets));
  const Owned<X509GeneralNames> decoded = Make(DecodeX509GeneralNames, octets);
  uint32_t alternative = 0;
  for (uint32_t i = 0; i < std::size(cases); ++i) {
    const auto read = [&](const Owned<X509GeneralNames>& from) {
      const Bytes value = FetchChecked(GetX509GeneralName, from, i, &alternative);
      EXPECT_EQ(cases[i].alternative, alternative);
      return ToHex(value);
    };
    EXPECT_EQ(cases[i].value, read(names));
    EXPECT_EQ(cases[i].decoded != nullptr ? cases[i].decoded : cases[i].value, read(decoded));
  }
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, AskSize(GetX509GeneralName, names, 9, &alternative));
  const uint8_t octet = 0x30;
  EXPECT_STATUS(TESSEL_WRONG_ALTERNATIVE, AddX509GeneralName(names, 9, &octet, 1));
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, AddX509GeneralName(names, 4, &octet, 0));

  const Owned<X509GeneralName> alone = Make(CreateX509GeneralName);
  EXPECT_STATUS(TESSEL_ABSENT, AskSize(GetX509GeneralNameValue, alone, &alternative));
}

TEST(GeneralNames, GiveTheFirstDistinguishedNameAmongThem) {
  const Owned<X509GeneralNames> names = Make(CreateX509GeneralNames);
  Owned<X509Name> found;
  EXPECT_STATUS(TESSEL_NOT_FOUND, GetX509NameFromGeneralNames(names, found.Out()));
  const Bytes encoding = Fetch(EncodeX509Name, NameOf("2.5.4.3", kUtf8, "One"));
  Call(AddX509GeneralName, names, 6, encoding);
  Call(AddX509GeneralName, names, 4, FromHex("04 01 00"));
  EXPECT_STATUS(TESSEL_NOT_FOUND, GetX509NameFromGeneralNames(names, found.Out()));
  Call(AddX509GeneralName, names, 4, encoding);
  ASSERT_OK(GetX509NameFromGeneralNames(names, found.Out()));
  EXPECT_EQ("2.5.4.3 12 One", Entry(found, 0, 0));
}

TEST(Names, AnEmptyRdnCanBeTakenOut) {
  const Owned<X509Name> name = Make(DecodeX509Name, FromHex("30 02 31 00"));
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, DeleteX509NameEntry(name, 0, 1));
  EXPECT_OK(DeleteX509NameEntry(name, 0, 0));
  EXPECT_EQ(0U, Get(GetX509NameRdnCount, name));
}

TEST(Names, AnEntryThatCannotBeMadeLeavesNoRdnBehind) {
  const Owned<X509Name> name = NameOf("2.5.4.3", kUtf8, "One");
  const Bytes oid = Counted("2.5.4.3");
  EXPECT_STATUS(TESSEL_LENGTH_TOO_LARGE, AddX509NameEntry(name, oid.data(), UINT32_MAX, kUtf8, oid.data(), 1));
  EXPECT_EQ(1U, Get(GetX509NameRdnCount, name));
}

TEST(Names, AValueIsNotReadBeyondItsNode) {
  const Owned<X509Name> name = NameOf("2.5.4.3", kUtf8, "One");
  // The value's node, which holds a whole element, gets a content that claims more than it has: 13 7F 61.
  const void* rdn = Get(GetAsn1ListItem, reinterpret_cast<const Asn1List*>(name.Get()), 0);
  void* attribute = Get(GetAsn1ListItem, static_cast<const Asn1List*>(rdn), 0);
  Call(SetAsn1Integer, static_cast<Asn1Value**>(attribute)[1], FromHex("61 7F 13"));
  uint8_t buffer[256];
  uint8_t type[256];
  uint32_t length = sizeof buffer;
  uint32_t typeLength = sizeof type;
  uint32_t tag = 0;
  EXPECT_STATUS(TESSEL_MALFORMED, GetX509NameEntry(name, 0, 0, buffer, &length, &tag, type, &typeLength));
  EXPECT_STATUS(TESSEL_MALFORMED, GetX509NameEntry(name, 0, 0, nullptr, &length, &tag, nullptr, &typeLength));
}

TEST(FreeText, HoldsTextsAsTheyAre) {
  const Owned<PKIFreeText> text = Make(CreatePKIFreeText);
  const Bytes notUtf8 = FromHex("D0 FF");
  Call(AddPKIFreeTextString, text, notUtf8);
  Call(AddPKIFreeTextString, text, Bytes());
  EXPECT_EQ("30 06 0C 02 D0 FF 0C 00", ToHex(FetchChecked(EncodePKIFreeText, text)));  // { 'D0FF'H, "" }
  EXPECT_EQ(notUtf8, FetchChecked(GetPKIFreeTextString, text, 0));
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, AskSize(GetPKIFreeTextString, text, 2));
}

TEST(Names, NullsAreRefused) {
  const Owned<X509Name> name = NameOf("2.5.4.3", kUtf8, "One");
  const Owned<X509GeneralNames> names = Make(CreateX509GeneralNames);
  const Bytes oid = Counted("2.5.4.3");
  uint8_t buffer[16];
  uint8_t octet = 0;
  uint32_t number = 16;
  ExpectNullsRefused(AddX509NameEntry, name.Get(), oid.data(), 1U, 12U, oid.data(), 1U);
  ExpectNullsRefused(GetX509NameEntryExt, name.Get(), 0U, 0U, Maybe<uint8_t*>{buffer}, &number, &octet, &octet, &number,
                     Maybe<uint8_t*>{buffer}, &number);
  ExpectNullsRefused(AddX509GeneralName, names.Get(), 2U, oid.data(), 1U);
  ExpectNullsRefused(GetX509GeneralName, names.Get(), 0U, &number, Maybe<uint8_t*>{buffer}, &number);
}

TEST(GeneralNames, AnX400AddressIsReadWhenItIsPrimitive) {
  Owned<X509GeneralNames> names;
  EXPECT_EQ(0U, Try(DecodeX509GeneralNames, FromHex("30 03 83 01 31"), names.Out()));
  names.Reset();
  EXPECT_EQ(TESSEL_MALFORMED, Try(DecodeX509GeneralNames, FromHex("30 04 A3 02 30 00"), names.Out()));
}

}  // namespace
}  // namespace test
