#include "tessel/calls.hpp"

#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <utility>

#include "support/objects.h"

namespace test {
namespace {

TEST(Calls, ArgumentsAndResultsAreThoseOfCpp) {
  const Owned<X509Name> name = Make(CreateX509Name);
  Call(AddX509NameEntry, name, "RU", TESSEL_KIND_PRINTABLE_STRING, ObjectIdentifier("2.5.4.6"), true);
  Call(AddX509NameEntry, name, std::string("Пример"), TESSEL_KIND_UTF8_STRING, ObjectIdentifier("2.5.4.3"), 1);
  Call(AddX509NameEntry, name, Bytes(), TESSEL_KIND_UTF8_STRING, ObjectIdentifier("2.5.4.10"), 0);
  EXPECT_EQ(2U, Get(GetX509NameRdnCount, name));
  const Owned<X509Name> read = Make(DecodeX509Name, Fetch(EncodeX509Name, name));
  Bytes value;
  uint32_t tag = 0;
  ObjectIdentifier type;
  Call(GetX509NameEntry, read, 0, 0, Into(value), &tag, Into(type));
  EXPECT_EQ((Bytes{'R', 'U'}), value);
  EXPECT_EQ(uint32_t{TESSEL_KIND_PRINTABLE_STRING}, tag);
  EXPECT_EQ(ObjectIdentifier("2.5.4.6"), type);
  // The empty value comes first in the SET.
  Call(GetX509NameEntry, read, 1, 0, Into(value), &tag, Into(type));
  EXPECT_EQ(Bytes(), value);
  EXPECT_EQ(ObjectIdentifier("2.5.4.10"), type);
}

TEST(Calls, WhatIsMadeWhileLengthsAreAskedForIsReleased) {
  const Owned<Certificate> certificate = Make(CreateCertificate);
  const Owned<X509Name> issuer = Make(CreateX509Name);
  Call(AddX509NameEntry, issuer, "A", TESSEL_KIND_UTF8_STRING, ObjectIdentifier("2.5.4.3"), 1);
  Call(SetCertificateAuthorityKeyIdentifier2, certificate, Bytes{1, 2}, issuer, Bytes{3});
  Bytes key;
  Bytes serial;
  Owned<X509GeneralNames> names;
  // LeakSanitizer sees those of the first of the two calls.
  Call(GetCertificateAuthorityKeyIdentifier, certificate, Into(key), names.Out(), Into(serial));
  EXPECT_EQ(1U, Get(GetX509GeneralNameCount, names));
  EXPECT_EQ((Bytes{1, 2, 3}), Bytes({key.at(0), key.at(1), serial.at(0)}));
}

TEST(Calls, TextsComeWithoutTheirNul) {
  EXPECT_EQ("2.5.4.3", Fetch(ConvertOidToString, ObjectIdentifier("2.5.4.3")));
  EXPECT_EQ(ObjectIdentifier("1.2.3"), Fetch<ObjectIdentifier>(ConvertStringToOid, "1.2.3"));
  EXPECT_EQ("AAAA", Fetch(EncodeToBase64, Bytes(3)));
  EXPECT_TRUE(Fetch(GetVersionInfo).starts_with("TESSEL v1.0 (32bit)"));
  EXPECT_EQ(400U, Fetch(ConvertAnsiToUTF8, std::string(200, '\xC0')).size());
  const Owned<Certificate> certificate = Make(CreateCertificate);
  Call(SetCertificateSerialNumber, certificate, "AB");
  EXPECT_EQ("AB, ", Fetch(GetCertificateCN, certificate));
}

TEST(Calls, WhatIsMovedIsTakenWhenTheCallSucceeds) {
  const Owned<Certificates> list = Make(CreateCertificates);
  Owned<Certificate> certificate = Make(CreateCertificate);
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, Try(AddCertificateToCertificates, nullptr, std::move(certificate)));
  ASSERT_TRUE(certificate);  // NOLINT(bugprone-use-after-move): it was not taken
  EXPECT_OK(Try(AddCertificateToCertificates, list, std::move(certificate)));
  EXPECT_FALSE(certificate);  // NOLINT(bugprone-use-after-move)
  EXPECT_EQ(1U, Get(GetCertificatesCount, list));
}

TEST(Calls, WhatIsOnlyReadMayEndWithTheCall) {
  EXPECT_EQ((Bytes{0x30, 0}), Fetch(EncodeX509Name, Make(CreateX509Name)));
}

TEST(Calls, NoObjectGetsTwoOwnersOrNone) {
  const Owned<Certificate> certificate = Make(CreateCertificate);
  Owned<X509Name> name = Make(CreateX509Name);
  EXPECT_OK(Try(SetCertificateSubject_i, certificate, name, 1));
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, Try(SetCertificateSubject_i, certificate, name, 0));
  EXPECT_OK(Try(SetCertificateSubject_i, certificate, std::move(name), 1));
  ASSERT_TRUE(name);  // NOLINT(bugprone-use-after-move): it was copied
  EXPECT_OK(Try(SetCertificateSubject_i, certificate, std::move(name), 0));
  EXPECT_FALSE(name);  // NOLINT(bugprone-use-after-move)
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, Try(FreeCertificate, certificate));
}

TEST(Calls, AnArgumentMayBeTheResult) {
  Owned<X509Name> name = Make(CreateX509Name);
  Call(AddX509NameEntry, name, "A", TESSEL_KIND_UTF8_STRING, ObjectIdentifier("2.5.4.3"), 1);
  Call(CopyX509Name, name, name.Out());
  EXPECT_EQ(1U, Get(GetX509NameRdnCount, name));
  std::string text(100, 'x');
  Call(EncodeAsn1IA5String, text, Into(text));
  EXPECT_EQ("\x16\x64" + std::string(100, 'x'), text);
  EXPECT_STATUS(TESSEL_MALFORMED, Try(DecodeX509Name, Bytes{0x30}, name.Out()));
  EXPECT_FALSE(name);
}

// GetOctetStringsValue looks at no capacity.
TEST(Calls, AnIdentifierIsNotFetchedBeyondItsRoom) {
  const Owned<OctetStrings> strings = Make(CreateOctetStrings);
  Call(AddOctetStringsValue, strings, Bytes(257));
  Call(AddOctetStringsValue, strings, Bytes(256, 255));
  ObjectIdentifier identifier;
  EXPECT_STATUS(TESSEL_BUFFER_TOO_SMALL, Try(GetOctetStringsValue, strings, 0, Into(identifier)));
  EXPECT_OK(Try(GetOctetStringsValue, strings, 1, Into(identifier)));
  EXPECT_EQ(Bytes(255, 255), Bytes(identifier.Content().begin(), identifier.Content().end()));
}

TEST(Calls, AnArrayOfCharactersIsATextOrNothing) {
  const Owned<X509Name> name = Make(CreateX509Name);
  const auto add = [&name](const auto& value) {
    return Try(AddX509NameEntry, name, value, TESSEL_KIND_BMP_STRING, ObjectIdentifier("2.5.4.3"), 1);
  };
  const char unended[] = {'A', 'B'};
  const char padded[] = {'A', 'B', 0, 0};
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, add(unended));
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, add("\0A\0B"));  // NOLINT(bugprone-string-literal-with-embedded-nul)
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, Try(ConvertStringToOid, unended, nullptr, nullptr));
  ASSERT_OK(add(padded));
  Bytes value;
  ObjectIdentifier type;
  uint32_t tag = 0;
  Call(GetX509NameEntry, name, 0, 0, Into(value), &tag, Into(type));
  EXPECT_EQ((Bytes{'A', 'B'}), value);
}

TEST(Calls, FailuresTellStatusAndPlace) {
  const Owned<Certificate> certificate = Make(CreateCertificate);
  try {
    Call(SetCertificateVersion, certificate, 3);
    FAIL();
  } catch (const tessel::Error& error) {
    EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, error.Status());
    EXPECT_EQ("certificate.cpp", std::string(error.Module()));
    EXPECT_EQ("an argument is invalid (TESSEL_INVALID_ARGUMENT, certificate.cpp:" + std::to_string(error.Line()) + ")",
              error.what());
  }
  // A number that the parameter cannot hold is not passed on.
  try {
    Call(SetCertificateVersion, certificate, uint64_t{1} << 32);
    FAIL();
  } catch (const tessel::Error& error) {
    EXPECT_EQ("an argument is invalid (TESSEL_INVALID_ARGUMENT)", std::string(error.what()));
    EXPECT_EQ(nullptr, error.Module());
  }
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, Try(SetCertificateArdekKeyIdentifier, certificate, std::string("a\0b", 3)));
  // After a failure there is no result, not even an old one.
  Bytes value{1, 2, 3};
  EXPECT_STATUS(TESSEL_NOT_FOUND,
                Try(GetCertificateExtensionValue, certificate, ObjectIdentifier("2.5.29.15"), Into(value)));
  EXPECT_EQ(Bytes(), value);
}

TEST(StatusNames, AreThoseOfTheHeader) {
  std::ifstream header(TESSEL_SOURCE_DIR "/include/tessel/status.h");
  size_t count = 0;
  std::string name;
  for (std::string word; header >> word; name = word) {
    uint32_t status = 0;
    if (word != "=" || !(header >> status)) continue;
    EXPECT_EQ(name, tessel::StatusName(status));
    ++count;
  }
  EXPECT_EQ(std::size(tessel::detail::kStatuses), count);
  EXPECT_EQ("an unknown status", tessel::StatusText(2));
}

#if SIZE_MAX > UINT32_MAX
TEST(Calls, SizesThatTheInterfaceCannotTellAreRefused) {
  const uint8_t octet = 0;
  const Owned<PKIFreeText> text = Make(CreatePKIFreeText);
  // Nothing is read of so many octets.
  EXPECT_STATUS(TESSEL_LENGTH_TOO_LARGE, Try(AddPKIFreeTextString, text, tessel::Octets(&octet, size_t{1} << 32)));
}
#endif

}  // namespace
}  // namespace test
