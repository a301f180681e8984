#include <gtest/gtest.h>

#include <string_view>
#include <utility>

#include "support/objects.h"
#include "support/octets.h"
#include "support/tree.h"
#include "tessel/tessel.h"

namespace test {
namespace {

Owned<X509GeneralNames> NamesOf(std::string_view uri) {
  Owned<X509GeneralNames> names = Make(CreateX509GeneralNames);
  Call(AddX509GeneralName, names, 6, uri);
  return names;
}

TEST(ExtendedKeyUsage, IsAListOfIdentifiers) {
  const Owned<ExtensionExtendedKeyUsage> list = Make(CreateExtensionExtendedKeyUsage);
  const Bytes any = Counted("2.5.29.37.0");
  Call(AddExtensionExtendedKeyUsage, list, ObjectIdentifier("1.3.6.1.5.5.7.3.1"));
  Call(AddExtensionExtendedKeyUsage, list, any.data());
  const Bytes octets = FetchChecked(EncodeExtensionExtendedKeyUsage, list);
  // { id-kp-serverAuth, anyExtendedKeyUsage }
  EXPECT_EQ("30 10 06 08 2B 06 01 05 05 07 03 01 06 04 55 1D 25 00", ToHex(octets));
  const Owned<ExtensionExtendedKeyUsage> decoded = Make(DecodeExtensionExtendedKeyUsage, octets);
  EXPECT_EQ(any, FetchChecked(GetExtensionExtendedKeyUsage, decoded, 1));
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, RemoveExtensionExtendedKeyUsage(decoded, 2));
  EXPECT_OK(RemoveExtensionExtendedKeyUsage(decoded, 0));
  EXPECT_EQ(1U, Get(GetExtensionExtendedKeyUsageCount, decoded));
}

TEST(AuthorityInformationAccess, TakesItsNames) {
  const Owned<ExtensionAuthorityInformationAccess> list = Make(CreateExtensionAuthorityInformationAccess);
  const Bytes method = Counted("1.3.6.1.5.5.7.48.1");
  Owned<X509GeneralName> location = Make(AllocX509GeneralNameValue, 6, "u");
  X509GeneralName* const given = location;
  ExpectNullsRefused(AddExtensionAuthorityInformationAccess, list.Get(), method.data(), given);
  Call(AddExtensionAuthorityInformationAccess, list, method.data(), std::move(location));
  X509GeneralName* lent = nullptr;
  EXPECT_EQ(method,
            FetchChecked([&](auto... out) { return GetExtensionAuthorityInformationAccess(list, 0, out..., &lent); }));
  EXPECT_EQ(given, lent);
  // { { id-ad-ocsp, uniformResourceIdentifier : "u" } }
  EXPECT_EQ("30 0F 30 0D 06 08 2B 06 01 05 05 07 30 01 86 01 75",
            ToHex(FetchChecked(EncodeExtensionAuthorityInformationAccess, list)));
  EXPECT_OK(RemoveExtensionAuthorityInformationAccess(list, 0));
  EXPECT_EQ(0U, Get(GetExtensionAuthorityInformationAccessCount, list));
}

TEST(CrlDistributionPoints, HoldWhatTheyAreGiven) {
  const Owned<ExtensionCrlDistributionPoints> list = Make(CreateExtensionCrlDistributionPoints);
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, AddExtensionCrlDistributionPoint(list, nullptr, nullptr, 0, nullptr));
  Owned<X509Name> name = Make(CreateX509Name);
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT,
                Try(AddExtensionCrlDistributionPoint, list, NamesOf("x"), name.Get(), 0, nullptr));
  Call(AddExtensionCrlDistributionPoint, list, NamesOf("a"), nullptr, 0x60, NamesOf("b"));
  Call(AddExtensionCrlDistributionPoint, list, nullptr, std::move(name), 0, nullptr);
  Call(AddExtensionCrlDistributionPoint, list, nullptr, nullptr, 0x8000, nullptr);
  const Bytes octets = FetchChecked(EncodeExtensionCrlDistributionPoints, list);
  // { { fullName "a", reasons '011'B, cRLIssuer "b" }, { nameRelativeToCRLIssuer { } }, { reasons '000000001'B } }
  EXPECT_EQ("30 1F 30 10 A0 05 A0 03 86 01 61 81 02 05 60 A2 03 86 01 62 30 04 A0 02 A1 00 30 05 81 03 07 00 80",
            ToHex(octets));
  X509GeneralNames* full = nullptr;
  X509Name* relative = nullptr;
  X509GeneralNames* issuer = nullptr;
  uint32_t reasons = 0;
  const auto get = [&](uint32_t index) {
    return GetExtensionCrlDistributionPoint(list, index, &full, &relative, &reasons, &issuer);
  };
  ASSERT_OK(get(0));
  EXPECT_TRUE(full != nullptr && relative == nullptr && issuer != nullptr && reasons == 0x60);
  ASSERT_OK(get(1));
  EXPECT_TRUE(full == nullptr && relative != nullptr && issuer == nullptr && reasons == 0);
}

TEST(CertificatePolicies, QualifiersAreReadAndRemovedByTheirIndex) {
  // { { 1.2.3 }, { 1.2.4, { { 1.2.5.1, "a" }, { 1.2.5.2, "b" } } } }
  const Bytes octets = FromHex(
      "30 22 30 04 06 02 2A 03 30 1A 06 02 2A 04 30 14 30 08 06 03 2A 05 01 16 01 61 30 08 06 03 2A 05 02 16 01 62");
  const Owned<ExtensionCertificatePolicies> list = Make(DecodeExtensionCertificatePolicies, octets);
  EXPECT_EQ("02 2A 04", ToHex(FetchChecked(GetExtensionPolicyInformation, list, 1)));
  uint8_t id[4];
  uint8_t qualifier[3];
  const auto get = [&](uint32_t policy, uint32_t index, uint32_t idCapacity, uint32_t capacity) {
    return GetExtensionPolicyQualifier(list, policy, index, id, &idCapacity, qualifier, &capacity);
  };
  EXPECT_OK(get(1, 1, 4, 3));
  EXPECT_EQ("03 2A 05 02", ToHex(Bytes(id, id + 4)));
  EXPECT_EQ("16 01 62", ToHex(Bytes(qualifier, qualifier + 3)));
  EXPECT_STATUS(TESSEL_BUFFER_TOO_SMALL, get(1, 0, 4, 2));
  EXPECT_EQ("03 2A 05 01", ToHex(Bytes(id, id + 4))) << "the identifier is there all the same";
  EXPECT_STATUS(TESSEL_BUFFER_TOO_SMALL, get(1, 0, 3, 3));
  for (const auto& [policy, index] : {std::pair{0U, 0U}, {1U, 2U}, {2U, 0U}}) {
    EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, get(policy, index, 4, 3));
    EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, RemoveExtensionPolicyQualifier(list, policy, index));
  }
  EXPECT_OK(RemoveExtensionPolicyQualifier(list, 1, 0));
  EXPECT_EQ(1U, Get(GetExtensionPolicyQualifiersCount, list, 1));
  EXPECT_EQ(0U, Get(GetExtensionPolicyQualifiersCount, list, 0));
  EXPECT_OK(RemoveExtensionPolicyInformation(list, 1));
  EXPECT_EQ(1U, Get(GetExtensionPolicyInformationCount, list));
}

TEST(CertificatePolicies, AnAddedQualifierReadsAsThePolicy) {
  const Owned<ExtensionCertificatePolicies> list = Make(CreateExtensionCertificatePolicies);
  Call(AddExtensionPolicyInformation, list, ObjectIdentifier("1.2.3"), nullptr);
  EXPECT_EQ(1U, Get(AddExtensionPolicyInformation, list, ObjectIdentifier("1.2.4")));
  const Bytes qualifier = FromHex("16 01 61");
  const Bytes id = Counted("1.3.6.1.5.5.7.2.1");
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, AddExtensionPolicyQualifier(list, 2, id.data(), qualifier.data(), 3));
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, AddExtensionPolicyQualifier(list, 1, nullptr, qualifier.data(), 3));
  for (int i = 0; i < 12; ++i) Call(AddExtensionPolicyQualifier, list, 1, id.data(), qualifier);
  uint8_t buffer[16];
  uint32_t idLength = 16;
  uint32_t length = 16;
  EXPECT_OK(GetExtensionPolicyQualifier(list, 1, 11, buffer, &idLength, buffer + 8, &length));
  EXPECT_EQ("02 2A 04", ToHex(Bytes(buffer, buffer + idLength)));
  EXPECT_EQ(0U, length);
  EXPECT_STATUS(TESSEL_ABSENT, AskSize(EncodeExtensionCertificatePolicies, list));
  Tree copy(ExtensionCertificatePoliciesItem);
  EXPECT_OK(Copy(copy.Item(), list, copy.Out()));
  EXPECT_OK(RemoveExtensionPolicyQualifier(list, 1, 0));
  EXPECT_OK(RemoveExtensionPolicyInformation(list, 1));
  EXPECT_EQ("30 06 30 04 06 02 2A 03", ToHex(FetchChecked(EncodeExtensionCertificatePolicies, list)));  // { { 1.2.3 } }
}

}  // namespace
}  // namespace test
