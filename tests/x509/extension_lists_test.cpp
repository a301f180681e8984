#include <gtest/gtest.h>

#include "support/objects.h"
#include "support/octets.h"
#include "support/tree.h"
#include "tessel/tessel.h"

namespace test {
namespace {

template <class List>
uint32_t CountOf(uint32_t(TESSEL_CALL* count)(const List*, uint32_t*), const List* list) {
  uint32_t number = 77;
  EXPECT_EQ(0U, count(list, &number));
  return number;
}

OwnedGeneralNames NamesOf(const char* uri) {
  OwnedGeneralNames names;
  EXPECT_EQ(0U, CreateX509GeneralNames(names.Out()));
  EXPECT_EQ(0U, AddX509GeneralName(names, 6, reinterpret_cast<const uint8_t*>(uri), 1));
  return names;
}

TEST(ExtendedKeyUsage, IsAListOfIdentifiers) {
  OwnedPurposes list;
  ASSERT_EQ(0U, CreateExtensionExtendedKeyUsage(list.Out()));
  const Bytes any = Counted("2.5.29.37.0");
  EXPECT_EQ(0U, AddExtensionExtendedKeyUsage(list, Counted("1.3.6.1.5.5.7.3.1").data()));
  EXPECT_EQ(0U, AddExtensionExtendedKeyUsage(list, any.data()));
  const Bytes octets = FetchFrom<ExtensionExtendedKeyUsage>(list, EncodeExtensionExtendedKeyUsage);
  EXPECT_EQ("30 10 06 08 2B 06 01 05 05 07 03 01 06 04 55 1D 25 00", ToHex(octets));
  OwnedPurposes decoded;
  ASSERT_EQ(0U, DecodeExtensionExtendedKeyUsage(octets.data(), SizeOf(octets), decoded.Out()));
  EXPECT_EQ(any, Fetch([&](auto... out) { return GetExtensionExtendedKeyUsage(decoded, 1, out...); }));
  EXPECT_EQ(TESSEL_INVALID_ARGUMENT, RemoveExtensionExtendedKeyUsage(decoded, 2));
  EXPECT_EQ(0U, RemoveExtensionExtendedKeyUsage(decoded, 0));
  EXPECT_EQ(1U, CountOf<ExtensionExtendedKeyUsage>(GetExtensionExtendedKeyUsageCount, decoded));
}

TEST(AuthorityInformationAccess, TakesItsNames) {
  OwnedAccess list;
  ASSERT_EQ(0U, CreateExtensionAuthorityInformationAccess(list.Out()));
  const Bytes method = Counted("1.3.6.1.5.5.7.48.1");
  OwnedGeneralName location;
  ASSERT_EQ(0U, AllocX509GeneralNameValue(location.Out(), 6, reinterpret_cast<const uint8_t*>("u"), 1));
  X509GeneralName* const given = location;
  ExpectNullsRefused(AddExtensionAuthorityInformationAccess, static_cast<ExtensionAuthorityInformationAccess*>(list),
                     method.data(), given);
  EXPECT_EQ(0U, AddExtensionAuthorityInformationAccess(list, method.data(), location.Release()));
  X509GeneralName* lent = nullptr;
  EXPECT_EQ(method, Fetch([&](auto... out) { return GetExtensionAuthorityInformationAccess(list, 0, out..., &lent); }));
  EXPECT_EQ(given, lent);
  EXPECT_EQ("30 0F 30 0D 06 08 2B 06 01 05 05 07 30 01 86 01 75",
            ToHex(FetchFrom<ExtensionAuthorityInformationAccess>(list, EncodeExtensionAuthorityInformationAccess)));
  EXPECT_EQ(0U, RemoveExtensionAuthorityInformationAccess(list, 0));
  EXPECT_EQ(0U, CountOf<ExtensionAuthorityInformationAccess>(GetExtensionAuthorityInformationAccessCount, list));
}

TEST(CrlDistributionPoints, HoldWhatTheyAreGiven) {
  OwnedPoints list;
  ASSERT_EQ(0U, CreateExtensionCrlDistributionPoints(list.Out()));
  EXPECT_EQ(TESSEL_INVALID_ARGUMENT, AddExtensionCrlDistributionPoint(list, nullptr, nullptr, 0, nullptr));
  OwnedName name;
  ASSERT_EQ(0U, CreateX509Name(name.Out()));
  EXPECT_EQ(TESSEL_INVALID_ARGUMENT, AddExtensionCrlDistributionPoint(list, NamesOf("x"), name, 0, nullptr));
  EXPECT_EQ(0U, AddExtensionCrlDistributionPoint(list, NamesOf("a").Release(), nullptr, 0x60, NamesOf("b").Release()));
  EXPECT_EQ(0U, AddExtensionCrlDistributionPoint(list, nullptr, name.Release(), 0, nullptr));
  EXPECT_EQ(0U, AddExtensionCrlDistributionPoint(list, nullptr, nullptr, 0x8000, nullptr));
  const Bytes octets = FetchFrom<ExtensionCrlDistributionPoints>(list, EncodeExtensionCrlDistributionPoints);
  EXPECT_EQ("30 1F 30 10 A0 05 A0 03 86 01 61 81 02 05 60 A2 03 86 01 62 30 04 A0 02 A1 00 30 05 81 03 07 00 80",
            ToHex(octets));
  X509GeneralNames* full = nullptr;
  X509Name* relative = nullptr;
  X509GeneralNames* issuer = nullptr;
  uint32_t reasons = 0;
  const auto get = [&](uint32_t index) {
    return GetExtensionCrlDistributionPoint(list, index, &full, &relative, &reasons, &issuer);
  };
  ASSERT_EQ(0U, get(0));
  EXPECT_TRUE(full != nullptr && relative == nullptr && issuer != nullptr && reasons == 0x60);
  ASSERT_EQ(0U, get(1));
  EXPECT_TRUE(full == nullptr && relative != nullptr && issuer == nullptr && reasons == 0);
}

TEST(CertificatePolicies, WithQualifiers) {
  const Bytes octets = FromHex(
      "30 22 30 04 06 02 2A 03 30 1A 06 02 2A 04 30 14 30 08 06 03 2A 05 01 16 01 61 30 08 06 03 2A 05 02 16 01 62");
  OwnedPolicies list;
  ASSERT_EQ(0U, DecodeExtensionCertificatePolicies(octets.data(), SizeOf(octets), list.Out()));
  EXPECT_EQ("02 2A 04", ToHex(Fetch([&](auto... out) { return GetExtensionPolicyInformation(list, 1, out...); })));
  uint8_t id[4];
  uint8_t qualifier[3];
  const auto get = [&](uint32_t policy, uint32_t index, uint32_t idCapacity, uint32_t capacity) {
    return GetExtensionPolicyQualifier(list, policy, index, id, &idCapacity, qualifier, &capacity);
  };
  EXPECT_EQ(0U, get(1, 1, 4, 3));
  EXPECT_EQ("03 2A 05 02", ToHex(Bytes(id, id + 4)));
  EXPECT_EQ("16 01 62", ToHex(Bytes(qualifier, qualifier + 3)));
  EXPECT_EQ(TESSEL_BUFFER_TOO_SMALL, get(1, 0, 4, 2));
  EXPECT_EQ("03 2A 05 01", ToHex(Bytes(id, id + 4))) << "the identifier is there all the same";
  EXPECT_EQ(TESSEL_BUFFER_TOO_SMALL, get(1, 0, 3, 3));
  for (const auto& [policy, index] : {std::pair{0U, 0U}, {1U, 2U}, {2U, 0U}}) {
    EXPECT_EQ(TESSEL_INVALID_ARGUMENT, get(policy, index, 4, 3));
    EXPECT_EQ(TESSEL_INVALID_ARGUMENT, RemoveExtensionPolicyQualifier(list, policy, index));
  }
  EXPECT_EQ(0U, RemoveExtensionPolicyQualifier(list, 1, 0));
  uint32_t count = 77;
  EXPECT_EQ(0U, GetExtensionPolicyQualifiersCount(list, 1, &count));
  EXPECT_EQ(1U, count);
  EXPECT_EQ(0U, GetExtensionPolicyQualifiersCount(list, 0, &count));
  EXPECT_EQ(0U, count);
  EXPECT_EQ(0U, RemoveExtensionPolicyInformation(list, 1));
  EXPECT_EQ(1U, CountOf<ExtensionCertificatePolicies>(GetExtensionPolicyInformationCount, list));
}

TEST(CertificatePolicies, AnAddedQualifierReadsAsThePolicy) {
  OwnedPolicies list;
  ASSERT_EQ(0U, CreateExtensionCertificatePolicies(list.Out()));
  uint32_t index = 77;
  EXPECT_EQ(0U, AddExtensionPolicyInformation(list, Counted("1.2.3").data(), nullptr));
  EXPECT_EQ(0U, AddExtensionPolicyInformation(list, Counted("1.2.4").data(), &index));
  EXPECT_EQ(1U, index);
  const Bytes qualifier = FromHex("16 01 61");
  const Bytes id = Counted("1.3.6.1.5.5.7.2.1");
  EXPECT_EQ(TESSEL_INVALID_ARGUMENT, AddExtensionPolicyQualifier(list, 2, id.data(), qualifier.data(), 3));
  EXPECT_EQ(TESSEL_INVALID_ARGUMENT, AddExtensionPolicyQualifier(list, 1, nullptr, qualifier.data(), 3));
  for (int i = 0; i < 12; ++i) EXPECT_EQ(0U, AddExtensionPolicyQualifier(list, 1, id.data(), qualifier.data(), 3));
  uint8_t buffer[16];
  uint32_t idLength = 16;
  uint32_t length = 16;
  EXPECT_EQ(0U, GetExtensionPolicyQualifier(list, 1, 11, buffer, &idLength, buffer + 8, &length));
  EXPECT_EQ("02 2A 04", ToHex(Bytes(buffer, buffer + idLength)));
  EXPECT_EQ(0U, length);
  EXPECT_EQ(TESSEL_ABSENT, EncodeExtensionCertificatePolicies(list, nullptr, &length));
  void* copy = nullptr;
  EXPECT_EQ(0U, Copy(ExtensionCertificatePoliciesItem, list, &copy));
  EXPECT_EQ(0U, RemoveExtensionPolicyQualifier(list, 1, 0));
  EXPECT_EQ(0U, RemoveExtensionPolicyInformation(list, 1));
  EXPECT_EQ("30 06 30 04 06 02 2A 03",
            ToHex(FetchFrom<ExtensionCertificatePolicies>(list, EncodeExtensionCertificatePolicies)));
  FreeExtensionCertificatePolicies(static_cast<ExtensionCertificatePolicies*>(copy));
}

}  // namespace
}  // namespace test
