#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "support/objects.h"
#include "support/octets.h"
#include "tessel/tessel.h"

namespace test {
namespace {

const Bytes kKey = FromHex("00 01 02 03");
// Of these octets.
constexpr const char* kSha1 = "A0 2A 05 B0 25 B9 28 C0 39 CF 1A E7 E8 EE 04 E7 C1 90 C0 DB";

constexpr ObjectIdentifier kSubjectKeyIdentifier("2.5.29.14");
constexpr ObjectIdentifier kAuthorityKeyIdentifier("2.5.29.35");

Owned<Certificate> WithKey(std::string_view issuerName) {
  Owned<Certificate> certificate = Make(CreateCertificate);
  Call(SetCertificatePublicKey, certificate, kKey);
  Call(SetCertificateSerialNumber, certificate, kKey.data() + 1, 3);
  Call(AddX509NameEntry, Get(GetCertificateIssuer, certificate), issuerName, TESSEL_KIND_UTF8_STRING,
       ObjectIdentifier("2.5.4.3"), 1);
  return certificate;
}

std::string ExtensionOf(const Certificate* certificate, const ObjectIdentifier& oid) {
  return ToHex(Fetch(GetCertificateExtensionValue, certificate, oid));
}

uint32_t ExtensionCount(Certificate* certificate) {
  return Get(GetX509ExtensionsExtensionsCount, Get(GetCertificateExtensions, certificate));
}

void AddExtension(Certificate* certificate, const ObjectIdentifier& oid, const Bytes& value) {
  Call(AddX509ExtensionsExtension, Get(GetCertificateExtensions, certificate), oid, 1, value);
}

// A hostile certificate may have several, side by side, of which the getter reads the first.
TEST(KeyIdentifiers, SettersReplaceAllThatAreThere) {
  const Owned<Certificate> certificate = WithKey("A");
  const ObjectIdentifier oids[] = {kSubjectKeyIdentifier, kAuthorityKeyIdentifier,
                                   ObjectIdentifier("1.2.643.3.123.3.1"), ObjectIdentifier("2.5.29.31")};
  for (const ObjectIdentifier& oid : oids) {
    for (int i = 0; i < 3; ++i) AddExtension(certificate, oid, FromHex("04 01 66"));
  }
  EXPECT_OK(SetCertificateSubjectKeyIdentifier(certificate));
  EXPECT_OK(SetCertificateAuthorityKeyIdentifier2(certificate, kKey.data(), 2, nullptr, nullptr, 0));
  EXPECT_OK(SetCertificateArdekKeyIdentifier(certificate, "x"));
  EXPECT_OK(SetCertificateExtensionCrlDistributionPoints(certificate, "u"));
  EXPECT_EQ(4U, ExtensionCount(certificate));
  EXPECT_EQ("04 14 " + std::string(kSha1), ExtensionOf(certificate, oids[0]));
  EXPECT_EQ("30 04 80 02 00 01", ExtensionOf(certificate, oids[1]));                 // { [0] '0001'H }
  EXPECT_EQ("0C 01 78", ExtensionOf(certificate, oids[2]));                          // "x"
  EXPECT_EQ("30 09 30 07 A0 05 A0 03 86 01 75", ExtensionOf(certificate, oids[3]));  // { { fullName "u" } }
}

TEST(SubjectKeyIdentifier, IsTheHashOfTheKey) {
  const Owned<Certificate> certificate = WithKey("A");
  EXPECT_STATUS(TESSEL_NOT_FOUND, AskSize(GetCertificateSubjectKeyIdentifier, certificate));
  EXPECT_OK(SetCertificateSubjectKeyIdentifier(certificate));
  EXPECT_OK(SetCertificateSubjectKeyIdentifier(certificate));
  EXPECT_EQ(1U, ExtensionCount(certificate));
  EXPECT_EQ(kSha1, ToHex(FetchChecked(GetCertificateSubjectKeyIdentifier, certificate)));
  Call(SetCertificatePublicKey, certificate, Bytes(512, 7));
  EXPECT_OK(SetCertificateSubjectKeyIdentifier(certificate));
  Call(SetCertificatePublicKey, certificate, Bytes(513, 7));
  EXPECT_STATUS(TESSEL_INTERNAL_BUFFER_TOO_SMALL, SetCertificateSubjectKeyIdentifier(certificate));
  EXPECT_EQ(1U, ExtensionCount(certificate)) << "the old one stays";
}

TEST(SubjectKeyIdentifier, HasAnotherLimitWhenItIsReadThanWhenItIsCompared) {
  const Owned<Certificate> certificate = WithKey("A");
  const auto octetString = [](uint32_t size) { return Der(0x04, Bytes(size - 4)); };
  AddExtension(certificate, kSubjectKeyIdentifier, octetString(1024));
  uint32_t length = 0;
  EXPECT_OK(GetCertificateSubjectKeyIdentifier(certificate, nullptr, &length));
  EXPECT_STATUS(TESSEL_INTERNAL_BUFFER_TOO_SMALL,
                IsCertificateCorrespondToAuthKeyIdent(certificate, kKey.data(), 4, nullptr, nullptr, 0));
  const Owned<Certificate> large = WithKey("A");
  AddExtension(large, kSubjectKeyIdentifier, octetString(1025));
  AddExtension(large, kAuthorityKeyIdentifier, octetString(1025));
  EXPECT_STATUS(TESSEL_OUT_OF_MEMORY, AskSize(GetCertificateSubjectKeyIdentifier, large));
  Owned<X509GeneralNames> names;
  EXPECT_STATUS(TESSEL_INTERNAL_BUFFER_TOO_SMALL,
                GetCertificateAuthorityKeyIdentifier(large, nullptr, &length, names.Out(), nullptr, &length));
  const Owned<Certificate> hollow = WithKey("A");
  AddExtension(hollow, kSubjectKeyIdentifier, {});
  EXPECT_STATUS(TESSEL_MALFORMED, AskSize(GetCertificateSubjectKeyIdentifier, hollow));
}

TEST(AuthorityKeyIdentifier, PointsToTheIssuersCertificate) {
  const Owned<Certificate> issuer = WithKey("Root");
  const Owned<Certificate> certificate = WithKey("CA");
  AddExtension(certificate, kAuthorityKeyIdentifier, {0});
  // [1] { directoryName CN=Root }, [2] '010203'H
  const std::string names = "A1 13 A4 11 30 0F 31 0D 30 0B 06 03 55 04 03 0C 04 52 6F 6F 74 82 03 01 02 03";
  EXPECT_OK(SetCertificateAuthorityKeyIdentifier(certificate, issuer));
  EXPECT_EQ("30 1A " + names, ExtensionOf(certificate, kAuthorityKeyIdentifier));
  EXPECT_EQ(1U, ExtensionCount(certificate));
  Call(SetCertificateSubjectKeyIdentifier, issuer);
  EXPECT_OK(SetCertificateAuthorityKeyIdentifier(certificate, issuer));
  EXPECT_EQ("30 30 80 14 " + std::string(kSha1) + " " + names, ExtensionOf(certificate, kAuthorityKeyIdentifier));

  Bytes key;
  Bytes serial;
  Owned<X509Name> name;
  Call(GetCertificateAuthorityKeyIdentifier2, certificate, Into(key), name.Out(), Into(serial));
  const auto matches = [&](const Certificate* candidate, const Bytes& keyIdentifier, const X509Name* issuerName,
                           const Bytes& number) {
    return Try(IsCertificateCorrespondToAuthKeyIdent, candidate, keyIdentifier, issuerName, number);
  };
  EXPECT_OK(matches(issuer, key, nullptr, {}));
  EXPECT_OK(matches(issuer, {}, name, serial));
  EXPECT_STATUS(TESSEL_DIFFERENT, matches(issuer, Bytes(key.begin(), key.end() - 1), name, serial));
  EXPECT_STATUS(TESSEL_DIFFERENT, matches(issuer, {}, name, {1, 2}));
  EXPECT_STATUS(TESSEL_DIFFERENT, matches(WithKey("Else").Get(), {}, name, serial));
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, matches(issuer, {}, nullptr, {}));
  EXPECT_STATUS(TESSEL_NOT_FOUND, matches(certificate, key, nullptr, {}));
  const Owned<Certificate> empty = Make(CreateCertificate);
  EXPECT_STATUS(TESSEL_INVALID_CONTENT, matches(empty, {}, name, serial));

  Call(SetCertificateSerialNumber, issuer, Bytes(65, 1));
  EXPECT_STATUS(TESSEL_INTERNAL_BUFFER_TOO_SMALL, SetCertificateAuthorityKeyIdentifier(certificate, issuer));
}

TEST(AuthorityKeyIdentifier, NeedsAKeyOrBothIssuerAndSerialNumber) {
  const Owned<Certificate> certificate = WithKey("CA");
  const Owned<X509Name> name = Make(CreateX509Name);
  const auto set = [&](uint32_t keySize, const X509Name* issuer, uint32_t serialSize) {
    return SetCertificateAuthorityKeyIdentifier2(certificate, kKey.data(), keySize, issuer, kKey.data(), serialSize);
  };
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, set(0, name, 0));
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, set(0, nullptr, 2));
  EXPECT_OK(set(0, name, 1));
  EXPECT_EQ("30 09 A1 04 A4 02 30 00 82 01 00",
            ExtensionOf(certificate, kAuthorityKeyIdentifier));  // { [1] { directoryName { } }, [2] 0 }
  EXPECT_OK(set(2, nullptr, 0));
  EXPECT_EQ("30 04 80 02 00 01", ExtensionOf(certificate, kAuthorityKeyIdentifier));  // { [0] '0001'H }
}

TEST(ArdekKeyIdentifier, IsATextInWindows1251) {
  const Owned<Certificate> certificate = WithKey("CA");
  const std::string text = "\xCA\xEB\xFE\xF7 \xB9 1 \xAA";
  EXPECT_OK(SetCertificateArdekKeyIdentifier(certificate, text.c_str()));
  EXPECT_EQ(1U, ExtensionCount(certificate));
  EXPECT_EQ(FromHex("0C 11") + ToBytes("Ключ № 1 Є"),
            Fetch(GetCertificateExtensionValue, certificate, ObjectIdentifier("1.2.643.3.123.3.1")));
  char buffer[32];
  uint32_t length = 16;
  EXPECT_STATUS(TESSEL_BUFFER_TOO_SMALL, GetArdekIdentifierFromCertificate(certificate, buffer, &length));
  EXPECT_EQ(17U, length) << "the length in UTF-8";
  EXPECT_OK(GetArdekIdentifierFromCertificate(certificate, buffer, &length));
  EXPECT_EQ(text, std::string(buffer, length));
  EXPECT_OK(SetCertificateArdekKeyIdentifier(certificate, std::string(129, 'a').c_str()));
  EXPECT_STATUS(TESSEL_INTERNAL_BUFFER_TOO_SMALL,
                SetCertificateArdekKeyIdentifier(certificate, std::string(130, 'a').c_str()));
  EXPECT_OK(GetArdekIdentifierFromCertificate(certificate, nullptr, &length));
  EXPECT_EQ(129U, length);
}

TEST(AuthorityKeyIdentifier, AKeyIdentifierIsAllThatIsCompared) {
  const Owned<Certificate> certificate = WithKey("CA");
  Call(SetCertificateSubjectKeyIdentifier, certificate);
  EXPECT_EQ(0U, Try(IsCertificateCorrespondToAuthKeyIdent, certificate, FromHex(kSha1), Make(CreateX509Name), kKey));
}

}  // namespace
}  // namespace test
