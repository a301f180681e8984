#include "tessel/certificate.hpp"

#include <gtest/gtest.h>

#include <utility>

#include "support/damage.h"
#include "support/objects.h"
#include "support/octets.h"
#include "support/samples.h"
#include "support/tree.h"
#include "tessel/tessel.h"

namespace test {
namespace {

// Those of the corpus that are not DER: a flag that is neither true nor false, and values that equal their DEFAULT,
// which are left out when the certificate is written.
struct NotDer {
  const char* file;
  uint32_t status;
  size_t octetsLeftOut;
};
constexpr NotDer kNotDer[] = {
    {"extension_critical_3", TESSEL_INVALID_CONTENT, 0},
    {"v1_explicit_version", TESSEL_OK, 5},
    {"allUIDv1", TESSEL_OK, 5},
    {"cert_ext_invalid_der", TESSEL_OK, 3},
};

NotDer ExpectationOf(const Sample& sample) {
  for (const NotDer& exception : kNotDer) {
    if (sample.file.find(exception.file) != std::string::npos) return exception;
  }
  return {"", TESSEL_OK, 0};
}

TEST(Certificate, RealOnesSurviveTheRoundTrip) {
  ASSERT_GT(::test::Certificates().size(), 100U) << "the package ca-certificates is not installed";
  for (const Sample& sample : ::test::Certificates()) {
    SCOPED_TRACE(sample.file);
    const NotDer expectation = ExpectationOf(sample);
    Owned<Certificate> certificate;
    ASSERT_STATUS(expectation.status, Try(DecodeCertificate, Guarded(sample.octets), certificate.Out()));
    if (expectation.status != TESSEL_OK) continue;
    const Bytes octets = FetchChecked(EncodeCertificate, certificate);
    const Owned<Certificate> copy = Make(CreateCertificateCopy, certificate);
    certificate.Reset();
    EXPECT_EQ(octets, FetchChecked(EncodeCertificate, copy));
    EXPECT_EQ(sample.octets.size(), octets.size() + expectation.octetsLeftOut);
    if (expectation.octetsLeftOut == 0) {
      EXPECT_EQ(ToHex(sample.octets), ToHex(octets));
    }
  }
}

// The size that is asked for first must be that of the shorter header which is written.
TEST(Certificate, LengthsInsideNeedNotBeMinimal) {
  const Bytes& original = ::test::Certificates().front().octets;
  ASSERT_EQ("30 82", ToHex({original[4], original[5]}));
  const Bytes octets = Der(0x30, FromHex("30 83 00") + Bytes(original.begin() + 6, original.end()));
  EXPECT_EQ(original, FetchChecked(EncodeCertificate, Make(DecodeCertificate, octets)));
}

// The same of a version, which may be a DEFAULT that is not written.
TEST(Certificate, VersionsNeedNotBeWrittenAsTheyWereRead) {
  const Bytes& original = ::test::Certificates().front().octets;
  const Bytes version = FromHex("A0 03 02 01 02");  // [0] { 2 }
  const Bytes toBeSigned = Fetch(GetCertificateToBeSignedPart, Make(DecodeCertificate, original));
  const auto behindVersion = toBeSigned.begin() + 4 + 5;
  ASSERT_EQ(version, Bytes(behindVersion - 5, behindVersion));
  const auto with = [&](const Bytes& other) {
    const Bytes signature(original.begin() + 4 + static_cast<ptrdiff_t>(toBeSigned.size()), original.end());
    return Der(0x30, Der(0x30, other + Bytes(behindVersion, toBeSigned.end())) + signature);
  };
  const struct {
    const char* read;
    Bytes written;
  } cases[] = {
      {"A0 81 03 02 01 02", version},
      {"A0 80 02 01 02 00 00", version},
      {"A0 81 80 02 01 02", version},
      {"A0 03 02 01 00", Bytes()},  // [0] { 0 }, the DEFAULT
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.read);
    EXPECT_EQ(with(c.written), FetchChecked(EncodeCertificate, Make(DecodeCertificate, with(FromHex(c.read)))));
  }
}

TEST(Certificate, DamageIsSurvived) {
  ExpectDamageIsSurvived(CertificateItem, ::test::Certificates().front().octets, DecodeCertificate, EncodeCertificate);
}

TEST(Certificate, NewOnesAreCopiedButCannotBeEncoded) {
  const Owned<Certificate> certificate = Make(CreateCertificate);
  EXPECT_STATUS(TESSEL_ABSENT, AskSize(EncodeCertificate, certificate));
  Owned<Certificate> copy;
  EXPECT_OK(CreateCertificateCopy(certificate, copy.Out()));
}

TEST(Certificate, VersionsAreFrom0To2) {
  const Owned<Certificate> certificate = Make(CreateCertificate);
  EXPECT_EQ(0, Get(GetCertificateVersion, certificate));
  certificate->tbsCertificate->version = nullptr;  // as a tree that was built by hand may have it
  int32_t version = 77;
  EXPECT_STATUS(TESSEL_ABSENT, GetCertificateVersion(certificate, &version));
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, SetCertificateVersion(certificate, 3));
  EXPECT_OK(SetCertificateVersion(certificate, 2));
  EXPECT_EQ(2, Get(GetCertificateVersion, certificate));
}

TEST(Certificate, SerialNumbersAreKeptAsTheyWereGiven) {
  const Owned<Certificate> certificate = Make(CreateCertificate);
  const Bytes serial = FromHex("00 00 05");
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, SetCertificateSerialNumber(certificate, serial.data(), 0));
  EXPECT_OK(SetCertificateSerialNumber(certificate, serial.data(), 3));
  EXPECT_EQ(serial, FetchChecked(GetCertificateSerialNumber, certificate));
  uint32_t length = 0;
  const uint8_t* lent = ptr_GetCertificateSerialNumber(certificate, &length);
  EXPECT_EQ(serial, Bytes(lent, lent + length));
  EXPECT_OK(SetCertificateSerialNumber(certificate, lent + 1, 2)) << "out of what it replaces";
  EXPECT_EQ("00 05", ToHex(FetchChecked(GetCertificateSerialNumber, certificate)));
  EXPECT_EQ(nullptr, ptr_GetCertificateSerialNumber(nullptr, &length));
}

TEST(Certificate, NamesAreLentCopiedAndTaken) {
  const Owned<Certificate> certificate = Make(CreateCertificate);
  X509Name* issuer = nullptr;
  ASSERT_OK(GetCertificateIssuer(certificate, &issuer)) << "an empty name is made";
  EXPECT_EQ(0U, Get(GetX509NameRdnCount, issuer));
  Call(AddX509NameEntry, issuer, "name", TESSEL_KIND_UTF8_STRING, ObjectIdentifier("2.5.4.3"), 1);
  EXPECT_OK(SetCertificateSubject(certificate, issuer));
  X509Name* subject = Get(GetCertificateSubject, certificate);
  EXPECT_NE(issuer, subject);
  EXPECT_OK(CompareX509Names(issuer, subject));
  EXPECT_OK(SetCertificateSubject(certificate, subject)) << "its own copy";
  X509Name* const given = Make(CreateX509Name).Release();
  EXPECT_OK(SetCertificateSubject_i(certificate, given, 0));
  EXPECT_OK(SetCertificateSubject_i(certificate, given, 0)) << "which it has already";
  EXPECT_EQ(given, Get(GetCertificateSubject, certificate));
  EXPECT_OK(SetCertificateIssuer_i(certificate, given, 1));
  EXPECT_STATUS(TESSEL_ABSENT, CompareX509Names(Get(GetCertificateIssuer, certificate), given)) << "both have no RDN";
}

TEST(Certificate, TimesAreWrittenByTheirYear) {
  const Owned<Certificate> certificate = Make(CreateCertificate);
  for (const auto& [year, index] : {std::pair{2049U, 0U}, {2050U, 1U}}) {
    Call(SetCertificateValidNotAfter, certificate, TimeOf(year, 2, 3));
    EXPECT_EQ(index, certificate->tbsCertificate->validity->notAfter->index);
  }
}

TEST(Certificate, UniqueIdsAreRemovedByNull) {
  const Owned<Certificate> certificate = Make(CreateCertificate);
  const Bytes octets = FromHex("FF FF");
  uint32_t length = 0;
  uint8_t unused = 77;
  const auto read = [&](uint8_t* buffer, uint32_t* size) {
    return GetCertificateIssuerUniqueId(certificate, buffer, size, &unused);
  };
  EXPECT_OK(SetCertificateIssuerUniqueId(certificate, octets.data(), 2, 3));
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, SetCertificateIssuerUniqueId(certificate, octets.data(), 2, 8));
  EXPECT_EQ("FF F8", ToHex(FetchChecked(read)));
  EXPECT_EQ(3, unused);
  EXPECT_OK(SetCertificateIssuerUniqueId(certificate, nullptr, 2, 0));
  EXPECT_STATUS(TESSEL_ABSENT, read(nullptr, &length));
  EXPECT_OK(SetCertificateSubjectUniqueId(certificate, octets.data(), 1, 0));
  EXPECT_OK(GetCertificateSubjectUniqueId(certificate, nullptr, &length, nullptr));
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, SetCertificateSignature(certificate, nullptr, 2));
}

TEST(Certificate, WithoutAToBeSignedPartHasNothingToTell) {
  const Owned<Certificate> whole = Make(CreateCertificate);
  const Bytes octets = FromHex("01 02");
  Call(SetCertificateSignature, whole, octets);
  Certificate part{nullptr, whole->signatureAlgorithm, whole->signatureValue};
  X509ExtensionsSlot* slot = nullptr;
  const Bytes oid = Counted("2.5.29.14");
  // The signature stands beside it, but is not told either.
  EXPECT_STATUS(TESSEL_ABSENT, AskSize(GetCertificateSignature, &part));
  EXPECT_STATUS(TESSEL_ABSENT, SetCertificateSignature(&part, octets.data(), 2));
  EXPECT_STATUS(TESSEL_ABSENT, SetCertificateSignatureAlgorithmOidAndParameters(&part, oid.data(), nullptr, 0));
  EXPECT_STATUS(TESSEL_ABSENT, GetCertificateExtensions(&part, &slot));
  EXPECT_STATUS(TESSEL_ABSENT, AskSize(GetCertificateCN, &part));
  EXPECT_STATUS(TESSEL_NOT_FOUND, AskSize(GetCertificateExtensionValue, &part, oid.data()));
  EXPECT_STATUS(TESSEL_NOT_FOUND, AskSize(GetCertificateSubjectKeyIdentifier, &part));
}

TEST(Certificate, SignatureAlgorithmsAreSetTogether) {
  const Owned<Certificate> certificate = Make(CreateCertificate);
  const auto expectBoth = [&](const char* oid, uint32_t parametersLength) {
    for (const AlgorithmIdentifier* each : {certificate->tbsCertificate->signature, certificate->signatureAlgorithm}) {
      EXPECT_EQ(1U, IsOidAndAsn1ObjectIdentifierEquals(Counted(oid).data(), each->algorithm));
      EXPECT_EQ(parametersLength, GetAsn1ValueLength(each->parameters));
    }
  };
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, SetCertificateGostR34102001SignatureAlgorithmID(certificate, 100, 1));
  EXPECT_STATUS(TESSEL_UNKNOWN_ID, SetCertificateGostR34102001SignatureAlgorithmID(certificate, 99, 0));
  EXPECT_OK(SetCertificateGostR34102001SignatureAlgorithmID(certificate, 100, 0));
  expectBoth("1.2.643.2.2.3", 2);
  EXPECT_OK(SetCertificateGostR34102001SignatureAlgorithmID(certificate, 3002, 0xFF));
  expectBoth("1.2.643.7.1.1.3.2", 0);
  EXPECT_OK(SetCertificateGostR34102001SignatureAlgorithmIDAndParameters(certificate, 100, 1, 1, 1, 1));
  expectBoth("1.2.643.2.2.3", 20);
}

TEST(Certificate, ExtensionsAreCopiedAndReplacedInPlace) {
  const Owned<Certificate> certificate = Make(CreateCertificate);
  X509ExtensionsSlot* slot = Get(GetCertificateExtensions, certificate);
  const ObjectIdentifier usage("2.5.29.15");
  Call(AddX509ExtensionsExtension, slot, usage, 1, "value");
  EXPECT_OK(SetCertificateExtensions(certificate, slot)) << "a copy of its own";
  const Owned<Certificate> other = Make(CreateCertificate);
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, SetCertificateExtensions(other, nullptr));
  EXPECT_OK(SetCertificateExtensions(other, slot));
  EXPECT_EQ(ToBytes("value"), FetchChecked(GetCertificateExtensionValue, other, usage));

  EXPECT_OK(SetCertificateExtensionCrlDistributionPoints(certificate, "http://a/, b"));
  EXPECT_OK(SetCertificateExtensionCrlDistributionPoints(certificate, "c"));
  // { { distributionPoint fullName : { uniformResourceIdentifier : "c" } } }
  EXPECT_EQ("30 09 30 07 A0 05 A0 03 86 01 63",
            ToHex(Fetch(GetCertificateExtensionValue, certificate, ObjectIdentifier("2.5.29.31"))));
  EXPECT_EQ(2U, Get(GetX509ExtensionsExtensionsCount, slot));
  const std::string longest(2048 - 20, 'u');
  EXPECT_OK(SetCertificateExtensionCrlDistributionPoints(certificate, longest.c_str()));
  EXPECT_STATUS(TESSEL_BUFFER_TOO_SMALL,
                SetCertificateExtensionCrlDistributionPoints(certificate, (longest + "u").c_str()));
}

// The display string of a subject whose common names have these values, or the name of the status when there is none.
std::string DisplayText(const Bytes& serial, std::initializer_list<std::pair<uint32_t, Bytes>> commonNames) {
  const Owned<Certificate> certificate = Make(CreateCertificate);
  Call(SetCertificateSerialNumber, certificate, serial);
  X509Name* subject = Get(GetCertificateSubject, certificate);
  for (const auto& [type, value] : commonNames) {
    Call(AddX509NameEntry, subject, value, type, ObjectIdentifier("2.5.4.10"), 1);
    Call(AddX509NameEntry, subject, value, type, ObjectIdentifier("2.5.4.3"), 0);
    Call(AddX509NameEntry, subject, value, type, ObjectIdentifier("2.5.4.3"), 0);
  }
  uint32_t length = 0;
  const uint32_t status = GetCertificateCN(certificate, nullptr, &length);
  if (status != TESSEL_OK) return std::string(tessel::StatusName(status));
  std::string text(length, 'x');
  EXPECT_OK(GetCertificateCN(certificate, text.data(), &length));
  EXPECT_EQ(text.size() - 1, length) << "the NUL does not count any more";
  EXPECT_EQ('\0', text.back());
  text.pop_back();
  EXPECT_EQ(ToBytes(text), FetchChecked(GetCertificateCN, certificate));
  return text;
}

TEST(Certificate, DisplayTextIsTheCommonNameOrSerialNumberInWindows1251) {
  const Bytes text = ToBytes("Az");
  const Bytes number = FromHex("41 7B");
  EXPECT_EQ("Az, ????", DisplayText(text, {{19, ToBytes("John")}}));
  EXPECT_EQ("John\xC8\xFF", DisplayText(number, {{12, ToBytes("John")}, {12, ToBytes("Ия")}}));
  EXPECT_EQ("\xA8\xB8\xB4", DisplayText(number, {{12, ToBytes("ЁёЄ")}})) << "letters beyond Russian are shifted";
  EXPECT_EQ("ab", DisplayText(number, {{12, FromHex("61 E2 84 96 80 62 D0")}})) << "what is no pair is dropped";
  EXPECT_EQ("\xA8\xAA\xB9\xC8?z", DisplayText(number, {{30, FromHex("04 01 04 04 21 16 04 18 20 00 00 7A 00")}}));
  EXPECT_EQ(", ", DisplayText(Bytes(99, 'A'), {}).substr(99));
  EXPECT_EQ("", DisplayText(Bytes(100, 'A'), {}));
  EXPECT_EQ(1023U, DisplayText(number, {{19, Bytes(1023, 'a')}}).size());
  EXPECT_EQ("TESSEL_BUFFER_TOO_SMALL", DisplayText(number, {{19, Bytes(1024, 'a')}}));
  EXPECT_EQ("TESSEL_BUFFER_TOO_SMALL", DisplayText(number, {{12, Bytes(1025, 0x80)}}));
}

TEST(Certificates, AreAListThatOwnsItsElements) {
  Owned<::Certificates> list = Make(CreateCertificates);
  Bytes all;
  for (uint32_t i = 0; i < 30; ++i) {
    const Sample& sample = ::test::Certificates()[i];
    Owned<Certificate> certificate = Make(DecodeCertificate, sample.octets);
    const Certificate* const given = certificate;
    Call(AddCertificateToCertificates, list, std::move(certificate));
    EXPECT_EQ(given, Get(GetCertificatesCertificate, list, i));
    all += sample.octets;
  }
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, AddCertificateToCertificates(list, nullptr));
  const Owned<::Certificates> copy = Make(CreateCertificatesCopy, list);
  list.Reset();
  const Bytes octets = FetchChecked(EncodeCertificates, copy);
  ASSERT_GE(octets.size(), all.size());
  EXPECT_TRUE(std::equal(all.rbegin(), all.rend(), octets.rbegin()));

  // An empty slot is told, and does not stand in the way of freeing.
  FreeCertificate(static_cast<Certificate*>(copy->items[3]));
  copy->items[3] = nullptr;
  Certificate* lent = nullptr;
  EXPECT_STATUS(TESSEL_ABSENT, GetCertificatesCertificate(copy, 3, &lent));
}

TEST(Certificate, DisplayTextTakesLatinLettersForOctets) {
  EXPECT_EQ("\xC0\xE9", DisplayText(FromHex("7B"), {{30, FromHex("00 C0 00 E9")}}));
}

}  // namespace
}  // namespace test
