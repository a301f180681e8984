// Sizes near 2^32, as far as they need no memory. What needs some, or has to be refused it, is in
// memory/large_test.cpp.
#include <gtest/gtest.h>

#include "support/objects.h"
#include "support/octets.h"
#include "support/tree.h"
#include "tessel/tessel.h"
#include "types.h"

namespace test {
namespace {

constexpr auto kExplicitString = Explicit<0, kOctetString>;
constexpr auto kImplicitAny = Implicit<0, kAny>;
struct Lists : ListOf<Values> {};
constexpr auto kListOfStrings = SequenceOf<Lists, kStrings>();

TEST(Sizes, OfContentsAreHeldToTheInput) {
  // As Decode has it when nothing is written.
  constexpr uint32_t kNothing = 0xABABABAB;
  const struct {
    const Asn1Item& item;
    const char* input;
    uint32_t status;
    uint32_t consumed;
  } cases[] = {
      {kOctetString, "04 84 FF FF FF FF 00", TESSEL_MALFORMED, kNothing},
      {kBitString, "03 84 FF FF FF FA 00", TESSEL_MALFORMED, kNothing},
      {kStrings, "30 84 FF FF FF FE 04 00", TESSEL_MALFORMED, kNothing},
      {kStrings, "30 06 04 84 FF FF FF FA", TESSEL_MALFORMED, kNothing},
      {kStrings, "30 80 04 84 FF FF FF F8 00 00", TESSEL_MALFORMED, kNothing},
      {kTestSequence, "30 84 FF FF FF FA 02 01 05", TESSEL_MALFORMED, kNothing},
      // Of a wrapper the length is not looked at.
      {kExplicitInteger, "A0 84 FF FF FF FA 02 01 05", TESSEL_OK, 9},
      {kExplicitInteger, "A0 80 02 84 FF FF FF FC 05 00 00", TESSEL_MALFORMED, kNothing},
      {kAny, "30 84 FF FF FF FA 05 00", TESSEL_MALFORMED, kNothing},
      {kAny, "30 80 04 84 FF FF FF F8 00 00", TESSEL_MALFORMED, kNothing},
      {kAny, "30 80 30 84 FF FF FF FE 00 00 00 00", TESSEL_MALFORMED, kNothing},
      {kOctetString, "24 80 04 84 FF FF FF F8 00 00", TESSEL_MALFORMED, kNothing},
      {kOctetString, "24 80 04 01 AA 04 84 FF FF FF FF 00 00", TESSEL_MALFORMED, kNothing},
      {kTestChoice, "A2 84 FF FF FF FF 02 84 FF FF FF FF 05", TESSEL_MALFORMED, kNothing},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.input);
    const DecodeResult result = Decode(c.item, FromHex(c.input));
    EXPECT_STATUS(c.status, result.status);
    EXPECT_EQ(c.consumed, result.consumed);
  }
}

// A node without octets counts with its length, so that a few nodes can claim any size.
struct Claim {
  const char* name;
  const Asn1Item& item;
  const void* node;
  uint32_t& length;
  // What the encoding has beside the octets that are claimed.
  uint32_t overhead;
};

void ExpectRefused(const Claim& claim) {
  constexpr uint32_t kCapacity = 20000;
  Bytes buffer(kCapacity, 0xEE);
  uint32_t size = kCapacity;
  uint8_t* block = buffer.data();
  EXPECT_STATUS(TESSEL_LENGTH_TOO_LARGE, Asn1Encode(claim.node, &claim.item, nullptr, &size));
  EXPECT_STATUS(TESSEL_LENGTH_TOO_LARGE, Asn1Encode(claim.node, &claim.item, &block, &size));
  EXPECT_STATUS(TESSEL_LENGTH_TOO_LARGE, GetAsn1EncodedValue(claim.node, &claim.item, buffer.data(), &size));
  EXPECT_EQ(kCapacity, size);
  EXPECT_EQ(buffer.data(), block);
  EXPECT_EQ(Bytes(kCapacity, 0xEE), buffer);
}

void ExpectExact(const Claim& claim) {
  const uint32_t expected = claim.length + claim.overhead;
  uint32_t size = 0;
  EXPECT_OK(Asn1Encode(claim.node, &claim.item, nullptr, &size));
  EXPECT_EQ(expected, size);
  Bytes buffer(20000, 0xEE);
  for (const uint32_t capacity : {10U, 20000U}) {
    size = capacity;
    EXPECT_STATUS(TESSEL_BUFFER_TOO_SMALL, GetAsn1EncodedValue(claim.node, &claim.item, buffer.data(), &size));
    EXPECT_EQ(expected, size);
  }
  EXPECT_EQ(Bytes(20000, 0xEE), buffer);
}

TEST(Sizes, OfEncodingsAreExactUpTo32Bits) {
  Bytes five = {5};
  Asn1Value small{TESSEL_KIND_INTEGER, 1, five.data()};
  Asn1Any huge{};
  Asn1BitString bits{};
  Asn1Choice choice{0, &huge};
  Asn1Choice wrapped{2, &huge};
  void* strings[10] = {&small, &small, &small, &small, &small, &small, &small, &small, &small, &huge};
  const Asn1List one{1, strings + 9, 1, nullptr, 1};
  const Asn1List ten{10, strings, 10, nullptr, 1};
  void* inner[] = {const_cast<Asn1List*>(&one)};
  const Asn1List nested{1, inner, 1, nullptr, 1};
  const TestSequence sequence{&small, nullptr, &huge};

  const Claim claims[] = {
      {"value", kOctetString, &huge, huge.length, 6},
      {"bits", kBitString, &bits, bits.length, 7},
      {"EXPLICIT", kExplicitString, &huge, huge.length, 12},
      {"CHOICE", kTime, &choice, huge.length, 6},
      {"EXPLICIT in a CHOICE", kTestChoice, &wrapped, huge.length, 12},
      {"EXPLICIT open value", kExplicitAny, &huge, huge.length, 6},
      {"SEQUENCE", kTestSequence, &sequence, huge.length, 9},
      {"SEQUENCE OF", kStrings, &one, huge.length, 12},
      {"SEQUENCE OF SEQUENCE OF", kListOfStrings, &nested, huge.length, 18},
      {"SET OF, sorted", kStringSet, &ten, huge.length, 12 + 9 * 3},
      {"open value", kAny, &huge, huge.length, 0},
      {"IMPLICIT open value", kImplicitAny, &huge, huge.length, 0},
  };
  for (const Claim& claim : claims) {
    SCOPED_TRACE(claim.name);
    claim.length = UINT32_MAX - claim.overhead;
    ExpectExact(claim);
    while (claim.length < UINT32_MAX) {
      ++claim.length;
      ExpectRefused(claim);
    }
  }
}

TEST(Sizes, OfManyPartsDoNotWrap) {
  Asn1Value huge{TESSEL_KIND_OCTET_STRING, 0, nullptr};
  std::vector<void*> strings(1000, &huge);
  Asn1List list{0, strings.data(), 1000, nullptr, 1};
  std::vector<void*> items(1000, &list);
  const Asn1List lists{1000, items.data(), 1000, nullptr, 1};
  // Sums that are small when they are cut to 32 bits: 2 and 4 times, 1000 and a million times.
  const std::pair<uint32_t, uint32_t> sums[] = {{2, 0x80000000}, {4, 0x40000000}, {1000, UINT32_MAX}};
  for (const auto& [count, length] : sums) {
    SCOPED_TRACE(count);
    list.count = count;
    huge.length = length;
    ExpectRefused({"", kStrings, &list, huge.length, 0});
    ExpectRefused({"", kStringSet, &list, huge.length, 0});
    ExpectRefused({"", kListOfStrings, &lists, huge.length, 0});
  }
}

TEST(Sizes, OfResultsOfFunctionsDoNotWrap) {
  constexpr uint32_t kLargest = UINT32_MAX - 6;
  const uint8_t octet = 5;
  uint8_t place = 0;
  uint32_t length = 0;
  for (const auto encode : {EncodeAsn1IA5String, EncodeAsn1NumericString, EncodeExtensionSubjectKeyIdentifier,
                            EncodeExtensionCrlNumber, EncodeExtensionDeltaCrlIndicator}) {
    EXPECT_OK(encode(&octet, kLargest, nullptr, &length));
    EXPECT_EQ(UINT32_MAX, length);
    length = 1;
    EXPECT_STATUS(TESSEL_BUFFER_TOO_SMALL, encode(&octet, kLargest, &place, &length));
    EXPECT_EQ(UINT32_MAX, length);
    EXPECT_STATUS(TESSEL_LENGTH_TOO_LARGE, encode(&octet, kLargest + 1, nullptr, &length));
    EXPECT_STATUS(TESSEL_LENGTH_TOO_LARGE, encode(&octet, UINT32_MAX, &place, &length));
  }
  EXPECT_STATUS(TESSEL_LENGTH_TOO_LARGE, EncodeExtensionAuthorityKeyIdentifier(&octet, 0x80000000, nullptr, &octet,
                                                                               0x80000000, nullptr, &length));
  // 48 octets are a line of 66 characters; the label stands there twice.
  const std::string label(60000, 'L');
  constexpr uint32_t kLines = 65073443;
  EXPECT_OK(EncodePem(&octet, kLines * 48 + 15, label.c_str(), nullptr, &length));
  EXPECT_EQ(kLines * 66 + 22 + 120000 + 34, length);
  EXPECT_STATUS(TESSEL_LENGTH_TOO_LARGE, EncodePem(&octet, kLines * 48 + 16, label.c_str(), nullptr, &length));

  const Owned<Certificate> certificate = Make(CreateCertificate);
  EXPECT_STATUS(TESSEL_INTERNAL_BUFFER_TOO_SMALL,
                SetCertificateGostR34102001PublicKey(certificate, &octet, UINT32_MAX));
  const Bytes type = Counted("2.5.4.3");
  const Owned<X509Name> name = Make(CreateX509Name);
  Call(AddX509NameEntry, name, &octet, 1, TESSEL_KIND_UTF8_STRING, type.data(), 1);
  EXPECT_STATUS(TESSEL_LENGTH_TOO_LARGE,
                AddX509NameEntry(name, &octet, kLargest + 1, TESSEL_KIND_UTF8_STRING, type.data(), 0));
  // No tag number that an item can have.
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, AddX509NameEntry(name, &octet, 1, 0x80000000, type.data(), 1));
  // { { { 2.5.4.3, "\x05" } } }
  EXPECT_EQ("30 0C 31 0A 30 08 06 03 55 04 03 0C 01 05", ToHex(Fetch(EncodeX509Name, name)));
}

}  // namespace
}  // namespace test
