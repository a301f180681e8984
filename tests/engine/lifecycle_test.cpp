#include <gtest/gtest.h>

#include "support/octets.h"
#include "support/tree.h"
#include "tessel/certificate.hpp"
#include "tessel/tessel.h"
#include "types.h"

namespace test {
namespace {

TEST(Create, MakesMandatoryMembersAndTheirLeavesOnRequest) {
  Tree bare(CertificateItem);
  ASSERT_OK(CreateAsn1Object(&CertificateItem, bare.Out(), 0));
  const TbsCertificate& tbs = *bare.As<Certificate>().tbsCertificate;
  ASSERT_NE(nullptr, tbs.version);
  EXPECT_EQ(Bytes{0}, ContentOf(*tbs.version));
  EXPECT_NE(kZero.data, tbs.version->data);
  ASSERT_NE(nullptr, tbs.issuer);
  EXPECT_EQ(nullptr, tbs.issuer->value);
  for (const void* absent : std::initializer_list<const void*>{tbs.serialNumber, tbs.signature->algorithm,
                                                               tbs.issuerUniqueID, tbs.extensions}) {
    EXPECT_EQ(nullptr, absent);
  }

  Tree leafy(CertificateItem);
  ASSERT_OK(CreateAsn1Object(&CertificateItem, leafy.Out(), 1));
  const TbsCertificate& full = *leafy.As<Certificate>().tbsCertificate;
  ASSERT_NE(nullptr, full.serialNumber);
  EXPECT_EQ(nullptr, full.serialNumber->data);
  EXPECT_NE(nullptr, full.signature->algorithm);
  EXPECT_NE(nullptr, full.subjectPublicKeyInfo->subjectPublicKey);
}

TEST(Create, RefusesKindsThatItDoesNotKnow) {
  int mark = 0;
  for (uint32_t kind = 0; kind < 300; ++kind) {
    SCOPED_TRACE(kind);
    const bool primitive = kind == 1 || kind == 2 || kind == 3 || kind == 4 || kind == 5 || kind == 6 || kind == 10 ||
                           kind == 12 || (kind >= 18 && kind <= 28) || kind == 30;
    const bool always = kind == 16 || kind == 17 || kind == 128 || kind == 129 || kind == 144 || kind == 145;
    const Asn1Item item = Plain(0, kind);
    for (const uint32_t withLeaves : {0U, 1U}) {
      void* object = &mark;
      EXPECT_STATUS(primitive || always ? TESSEL_OK : TESSEL_UNSUPPORTED_KIND,
                    CreateAsn1Object(&item, &object, withLeaves));
      EXPECT_EQ(primitive && withLeaves == 0, object == &mark);
      if (object != &mark) FreeAsn1Object(&item, object);
    }
  }
  void* object = &mark;
  EXPECT_OK(CreateAsn1Object(&kOptionalInteger, &object, 1));
  EXPECT_EQ(nullptr, object);

  // A failing member releases what was made.
  const Asn1Item* members[] = {&kTestSequence, &kUnknownPrimitive};
  const Asn1Item item{TESSEL_FLAG_CONSTRUCTED, TESSEL_KIND_SEQUENCE, -1, 2 * sizeof(void*), members, 2, nullptr};
  object = &mark;
  EXPECT_STATUS(TESSEL_UNSUPPORTED_KIND, CreateAsn1Object(&item, &object, 1));
  EXPECT_EQ(nullptr, object);
}

TEST(Create, MakesOptionalSequencesOnRequest) {
  static constexpr auto kOptionalSequence = Optional<kTestSequence>;
  Tree tree(kOptionalSequence);
  ASSERT_OK(CreateOptionalAsn1Sequence(&kOptionalSequence, tree.Out(), 1));
  EXPECT_NE(nullptr, tree.As<TestSequence>().number);
  EXPECT_EQ(nullptr, tree.As<TestSequence>().open);
  void* object = nullptr;
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, CreateOptionalAsn1Sequence(&kTestSequence, &object, 1));
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, CreateOptionalAsn1Sequence(&kOptionalInteger, &object, 1));
}

TEST(Copy, IsDeepAndResetsSorting) {
  const Tree set = TreeOf(kStringSet, "31 09 04 01 02 04 01 01 04 01 03");
  set.As<Asn1List>().sorted = 0;
  Tree copy(kStringSet);
  ASSERT_OK(Copy(kStringSet, set.Root(), copy.Out()));
  EXPECT_EQ(1U, copy.As<Asn1List>().sorted);
  EXPECT_EQ(3U, copy.As<Asn1List>().capacity);
  static_cast<Asn1Value*>(set.As<Asn1List>().items[0])->data[0] = 9;
  copy.As<Asn1List>().sorted = 0;
  EXPECT_EQ("31 09 04 01 02 04 01 01 04 01 03", ToHex(Encode(kStringSet, copy.Root()).octets));

  // Stray bits of a BIT STRING stay, since signatures cover them.
  const Tree bits = TreeOf(kBitString, "03 02 07 FF");
  Tree bitsCopy(kBitString);
  ASSERT_OK(Copy(kBitString, bits.Root(), bitsCopy.Out()));
  EXPECT_EQ("03 02 07 FF", ToHex(Encode(kBitString, bitsCopy.Root()).octets));
}

TEST(Copy, RefusesWhatItCannotCopyAndKeepsNothing) {
  const Tree null = TreeOf(kNull, "05 00");
  void* copy = nullptr;
  EXPECT_STATUS(TESSEL_UNSUPPORTED_KIND, Copy(kNull, null.Root(), &copy));
  EXPECT_EQ(nullptr, copy);
  const Asn1Choice wrong{5, nullptr};
  EXPECT_STATUS(TESSEL_WRONG_ALTERNATIVE, Copy(kTestChoice, &wrong, &copy));

  // A failure inside releases the rest: the second element of the list is a NULL.
  static constexpr auto kNullOrInteger =
      Choice<TestChoice, Alternative<TestChoice::number, kInteger>, Alternative<TestChoice::implicitNumber, kNull>>();
  static constexpr auto kMixed = SequenceOf<ListOf<TestChoice>, kNullOrInteger>();
  const Tree mixed = TreeOf(kMixed, "30 05 02 01 05 05 00");
  EXPECT_STATUS(TESSEL_UNSUPPORTED_KIND, Copy(kMixed, mixed.Root(), &copy));
  EXPECT_EQ(nullptr, copy);
}

TEST(Compare, TellsEqualValuesFromOthersOfTheKindsItSupports) {
  const struct {
    const Asn1Item& item;
    const char* first;
    const char* second;
    uint32_t status;
    uint32_t equal;
  } cases[] = {
      {kInteger, "02 01 05", "02 01 05", TESSEL_OK, 1},
      {kInteger, "02 01 05", "02 02 05 00", TESSEL_OK, 0},  // 5 and 1280
      {kOctetString, "04 00", "04 01 00", TESSEL_OK, 0},
      {kBitString, "03 02 04 F0", "03 02 04 F0", TESSEL_OK, 1},
      {kBitString, "03 02 04 F0", "03 02 03 F0", TESSEL_OK, 0},                           // '1111'B and '11110'B
      {kIntegers, "30 03 02 01 01", "30 06 02 01 01 02 01 01", TESSEL_OK, 0},             // { 1 } and { 1, 1 }
      {kIntegerSet, "31 06 02 01 01 02 01 02", "31 06 02 01 02 02 01 01", TESSEL_OK, 0},  // { 1, 2 } and { 2, 1 }
      {kTestSequence, "30 03 02 01 05", "30 06 02 01 05 01 01 00", TESSEL_OK, 1},         // { 5 } and { 5, FALSE }
      {kTestSequence, "30 03 02 01 05", "30 06 02 01 05 01 01 FF", TESSEL_OK, 0},         // { 5 } and { 5, TRUE }
      {kTestSequence, "30 03 02 01 05", "30 05 02 01 05 05 00", TESSEL_OK, 0},            // { 5 } and { 5, NULL }
      // An open value is met only when the members before it are equal.
      {kTestSequence, "30 05 02 01 05 05 00", "30 05 02 01 06 05 00", TESSEL_OK, 0},
      {kTestSequence, "30 05 02 01 05 05 00", "30 05 02 01 05 05 00", TESSEL_UNSUPPORTED_KIND, 7},
      {kNull, "05 00", "05 00", TESSEL_UNSUPPORTED_KIND, 7},
      {kEnumerated, "0A 01 00", "0A 01 00", TESSEL_UNSUPPORTED_KIND, 7},
      {kAny, "05 00", "05 00", TESSEL_UNSUPPORTED_KIND, 7},
      {kTime, "17 00", "17 00", TESSEL_UNSUPPORTED_KIND, 7},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.first) + " ~ " + c.second);
    const Tree first = TreeOf(c.item, c.first);
    const Tree second = TreeOf(c.item, c.second);
    uint32_t equal = 7;
    EXPECT_STATUS(c.status, CompareAsn1Objects(&c.item, first.Root(), second.Root(), &equal));
    EXPECT_EQ(c.equal, equal);
  }
  uint32_t equal = 7;
  EXPECT_OK(CompareAsn1Objects(&kAny, nullptr, nullptr, &equal));
  EXPECT_EQ(1U, equal);
  EXPECT_OK(CompareAsn1Objects(&kInteger, nullptr, &kZero, &equal));
  EXPECT_EQ(0U, equal);
}

TEST(Free, TakesNullAndReleasesNothingOfAWrongKind) {
  EXPECT_OK(FreeAsn1Object(&kInteger, nullptr));
  EXPECT_OK(FreeAsn1Object(nullptr, nullptr));
  EXPECT_OK(FreeCertificate(nullptr));

  // A kind that is none releases nothing, not even a tree that could be released at once.
  const Tree set = TreeOf(kStringSet, "31 03 04 01 02");
  EXPECT_OK(FreeAsn1Object(&kUnknownConstructed, set.Root()));
  EXPECT_EQ("31 03 04 01 02", ToHex(Encode(kStringSet, set.Root()).octets));
}

}  // namespace
}  // namespace test
