#include "x509/certificate.h"

#include <gtest/gtest.h>

#include "support/octets.h"
#include "support/samples.h"
#include "support/tree.h"
#include "tessel/tessel.h"

namespace test {
namespace {

template <class Object, class Function>
Bytes ToBuffer(Function function, const Object* object) {
  uint32_t size = 0;
  EXPECT_EQ(0U, function(object, nullptr, &size));
  Bytes buffer(size + 1, 0xEE);
  uint32_t length = size - 1;
  EXPECT_EQ(TESSEL_BUFFER_TOO_SMALL, function(object, buffer.data(), &length));
  EXPECT_EQ(size, length);
  EXPECT_EQ(Bytes(size + 1, 0xEE), buffer);
  EXPECT_EQ(0U, function(object, buffer.data(), &length));
  EXPECT_EQ(size, length);
  EXPECT_EQ(0xEE, buffer[size]);
  buffer.pop_back();
  return buffer;
}

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

uint32_t HeaderLength(const Bytes& octets) {
  uint8_t octet = 0;
  uint32_t number = 0;
  uint32_t length = 0;
  EXPECT_EQ(0U, GetAsn1ObjectInfo(octets.data(), static_cast<uint32_t>(octets.size()), &octet, &octet, &number, &number,
                                  nullptr, &length));
  return length;
}

TEST(Certificate, RealOnesSurviveTheRoundTrip) {
  ASSERT_GT(::test::Certificates().size(), 100U) << "the package ca-certificates is not installed";
  for (const Sample& sample : ::test::Certificates()) {
    SCOPED_TRACE(sample.file);
    const NotDer expectation = ExpectationOf(sample);
    Certificate* certificate = nullptr;
    {
      const Guarded input(sample.octets);
      ASSERT_EQ(expectation.status, DecodeCertificate(input.Data(), input.Size(), &certificate));
    }
    if (certificate == nullptr) continue;
    Certificate* copy = nullptr;
    ASSERT_EQ(0U, CreateCertificateCopy(certificate, &copy));
    // The whole cannot be compared, for its CHOICEs; parts can.
    uint32_t equal = 7;
    EXPECT_EQ(TESSEL_UNSUPPORTED_KIND, CompareAsn1Objects(&CertificateItem, certificate, copy, &equal));
    EXPECT_EQ(TESSEL_OK, CompareAsn1Objects(&X509ExtensionsItem, certificate->tbsCertificate->extensions,
                                            copy->tbsCertificate->extensions, &equal));
    EXPECT_EQ(1U, equal);
    const Bytes octets = ToBuffer(EncodeCertificate, certificate);
    if (expectation.octetsLeftOut == 0) {
      EXPECT_EQ(ToHex(sample.octets), ToHex(octets));
    } else {
      EXPECT_EQ(sample.octets.size(), octets.size() + expectation.octetsLeftOut);
    }
    FreeCertificate(certificate);

    EXPECT_EQ(octets, ToBuffer(EncodeCertificate, copy));
    // The to-be-signed part is the first element inside.
    const Bytes part = ToBuffer(GetCertificateToBeSignedPart, copy);
    const uint32_t at = HeaderLength(octets);
    ASSERT_LE(at + part.size(), octets.size());
    EXPECT_TRUE(std::equal(part.begin(), part.end(), octets.begin() + at));
    FreeCertificate(copy);
  }
}

TEST(Certificate, CutShortIsMalformedEverywhere) {
  const Bytes octets = ::test::Certificates().front().octets;
  for (size_t size = 0; size < octets.size(); ++size) {
    const Guarded input(Bytes(octets.begin(), octets.begin() + static_cast<ptrdiff_t>(size)));
    Certificate* certificate = nullptr;
    ASSERT_EQ(TESSEL_MALFORMED, DecodeCertificate(input.Data(), input.Size(), &certificate)) << size;
    ASSERT_EQ(nullptr, certificate);
  }
}

TEST(Certificate, DamageIsSurvived) {
  // Every octet of a certificate, replaced by values that turn headers into others.
  const Bytes original = ::test::Certificates().front().octets;
  for (size_t at = 0; at < original.size(); ++at) {
    for (const unsigned change : {0x01U, 0x20U, 0x80U, 0xFFU}) {
      Bytes octets = original;
      octets[at] ^= static_cast<uint8_t>(change);
      const DecodeResult result = Decode(CertificateItem, octets);
      if (result.status != TESSEL_OK) continue;
      const EncodeResult encoded = Encode(CertificateItem, result.tree.Root());
      ASSERT_EQ(0U, encoded.status);
      const DecodeResult again = Decode(CertificateItem, encoded.octets);
      ASSERT_EQ(0U, again.status);
      ASSERT_EQ(encoded.octets, Encode(CertificateItem, again.tree.Root()).octets);
    }
  }
}

TEST(Certificate, NewOnesAreIncomplete) {
  Certificate* certificate = nullptr;
  ASSERT_EQ(0U, CreateCertificate(&certificate));
  uint32_t length = 0;
  EXPECT_EQ(TESSEL_ABSENT, EncodeCertificate(certificate, nullptr, &length));
  EXPECT_EQ(TESSEL_ABSENT, GetCertificateToBeSignedPart(certificate, nullptr, &length));
  Certificate* copy = nullptr;
  EXPECT_EQ(0U, CreateCertificateCopy(certificate, &copy));
  FreeCertificate(copy);

  const Certificate empty{};
  EXPECT_EQ(TESSEL_ABSENT, GetCertificateToBeSignedPart(&empty, nullptr, &length));
  FreeCertificate(certificate);
}

TEST(Certificates, AreAListThatOwnsItsElements) {
  ::Certificates* list = nullptr;
  ASSERT_EQ(0U, CreateCertificates(&list));
  Bytes all;
  for (uint32_t i = 0; i < 30; ++i) {
    const Sample& sample = ::test::Certificates()[i];
    Certificate* certificate = nullptr;
    ASSERT_EQ(0U, DecodeCertificate(sample.octets.data(), static_cast<uint32_t>(sample.octets.size()), &certificate));
    ASSERT_EQ(0U, AddCertificateToCertificates(list, certificate));
    Certificate* lent = nullptr;
    ASSERT_EQ(0U, GetCertificatesCertificate(list, i, &lent));
    EXPECT_EQ(certificate, lent);
    all += sample.octets;
    uint32_t count = 0;
    EXPECT_EQ(0U, GetCertificatesCount(list, &count));
    EXPECT_EQ(i + 1, count);
  }
  Certificate* lent = nullptr;
  EXPECT_EQ(TESSEL_INVALID_ARGUMENT, GetCertificatesCertificate(list, 30, &lent));
  EXPECT_EQ(TESSEL_INVALID_ARGUMENT, AddCertificateToCertificates(list, nullptr));

  const Bytes octets = ToBuffer(EncodeCertificates, list);
  ASSERT_GE(octets.size(), all.size());
  EXPECT_TRUE(std::equal(all.rbegin(), all.rend(), octets.rbegin()));
  ::Certificates* decoded = nullptr;
  ASSERT_EQ(0U, DecodeCertificates(octets.data(), static_cast<uint32_t>(octets.size()), &decoded));
  ::Certificates* copy = nullptr;
  ASSERT_EQ(0U, CreateCertificatesCopy(decoded, &copy));
  FreeCertificates(decoded);
  EXPECT_EQ(octets, ToBuffer(EncodeCertificates, copy));

  // An empty slot is told, and does not stand in the way of freeing.
  FreeCertificate(static_cast<Certificate*>(copy->items[3]));
  copy->items[3] = nullptr;
  EXPECT_EQ(TESSEL_ABSENT, GetCertificatesCertificate(copy, 3, &lent));
  FreeCertificates(copy);
  FreeCertificates(list);
}

}  // namespace
}  // namespace test
