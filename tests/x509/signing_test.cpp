// Certificates made from nothing; openssl signs and verifies them.
#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "support/host.h"
#include "support/objects.h"
#include "support/openssl.h"
#include "tessel/tessel.h"

namespace test {
namespace {

void AddAttribute(X509Name* name, uint32_t type, const char* text, uint32_t newRdn) {
  const Bytes oid = Fetch([=](auto... out) { return GetNameAttributeTypeOid(type, out...); });
  const Bytes value = ToBytes(text);
  uint32_t stringType = 0;
  EXPECT_EQ(0U, DetermineSuitableStringType(value.data(), SizeOf(value), &stringType));
  EXPECT_EQ(0U, AddX509NameEntry(name, value.data(), SizeOf(value), stringType, oid.data(), newRdn));
}

template <class Encode>
void AddExtension(Certificate* certificate, const char* oid, uint32_t critical, Encode encode) {
  X509ExtensionsSlot* slot = nullptr;
  ASSERT_EQ(0U, GetCertificateExtensions(certificate, &slot));
  const Bytes value = Fetch(encode);
  EXPECT_EQ(0U, AddX509ExtensionsExtension(slot, Counted(oid).data(), critical, value.data(), SizeOf(value)));
}

void AddBasicConstraintsAndKeyUsage(Certificate* certificate, uint32_t cA, uint32_t pathLength, uint32_t usage) {
  AddExtension(certificate, "2.5.29.19", 1,
               [=](auto... out) { return EncodeExtensionBasicConstraints(cA, pathLength, out...); });
  AddExtension(certificate, "2.5.29.15", 1, [=](auto... out) { return EncodeExtensionKeyUsage(usage, out...); });
}

void AddAlternativeNames(Certificate* certificate, const X509Name* name) {
  OwnedGeneralNames names;
  ASSERT_EQ(0U, CreateX509GeneralNames(names.Out()));
  const std::pair<uint32_t, Bytes> values[] = {{1, ToBytes("a@example.org")},
                                               {2, ToBytes("www.example.org")},
                                               {4, FetchFrom(name, EncodeX509Name)},
                                               {6, ToBytes("https://example.org/")},
                                               {7, {192, 0, 2, 1}},
                                               {8, Counted("1.2.643.100.1")}};
  for (const auto& [alternative, value] : values) {
    EXPECT_EQ(0U, AddX509GeneralName(names, alternative, value.data(), SizeOf(value)));
  }
  AddExtension(certificate, "2.5.29.17", 0, [&](auto... out) { return EncodeX509GeneralNames(names, out...); });
}

class Signing : public testing::TestWithParam<Scheme> {
 protected:
  // A certificate with a new key, before its issuer and extensions.
  OwnedCertificate NewCertificate(const Bytes& serial, const char* commonName, const std::string& keyFile) {
    OwnedCertificate certificate;
    EXPECT_EQ(0U, CreateCertificate(certificate.Out()));
    EXPECT_EQ(0U, SetCertificateVersion(certificate, 2));
    EXPECT_EQ(0U, SetCertificateSerialNumber(certificate, serial.data(), SizeOf(serial)));
    EXPECT_EQ(0U, SetCertificateValidNotBefore(certificate, TimeOf(2020, 12, 31)));
    EXPECT_EQ(0U, SetCertificateValidNotAfter(certificate, TimeOf(2050, 2, 1)));
    X509Name* subject = nullptr;
    EXPECT_EQ(0U, GetCertificateSubject(certificate, &subject));
    AddAttribute(subject, 4, "RU", 1);
    AddAttribute(subject, 2, "Завод «Ёлка»", 1);
    // Two in one RDN, which DER turns round.
    AddAttribute(subject, 1, commonName, 1);
    AddAttribute(subject, 3, "Отдел", 0);
    MakeKey(keyFile, certificate);
    return certificate;
  }

  // Lets openssl make a key, and puts its public part into the certificate.
  void MakeKey(const std::string& file, Certificate* certificate) {
    const Bytes info = openssl_.NewKey(scheme_, file);
    const auto decode = [&](auto... out) { return DecodeSubjectPublicKeyInfo(info.data(), SizeOf(info), out...); };
    uint32_t size = 0;
    const Bytes key = Fetch([&](auto... out) { return decode(nullptr, nullptr, out..., nullptr, nullptr); });
    if (scheme_.keyAlgorithm != 0) {
      SetGostKey(certificate, openssl_.Parse(key).at(0).content);
    } else {
      const Bytes oid = Fetch([&](auto... out) { return decode(out..., nullptr, &size, nullptr, nullptr); });
      const Bytes parameters = Fetch([&](auto... out) { return decode(nullptr, nullptr, nullptr, &size, out...); });
      EXPECT_EQ(0U, SetCertificatePublicKeyAlgorithmOidAndParameters(certificate, oid.data(), parameters.data(),
                                                                     SizeOf(parameters)));
      EXPECT_EQ(0U, SetCertificatePublicKey(certificate, key.data(), SizeOf(key)));
    }
    EXPECT_EQ(key, FetchFrom(certificate, GetCertificatePublicKey));
  }

  void SetGostKey(Certificate* certificate, const Bytes& key) {
    EXPECT_EQ(0U, SetCertificateGostR34102001PublicKeyAlgorithmIdAndParameters(certificate, scheme_.keyAlgorithm, 1,
                                                                               scheme_.keySet, scheme_.digestSet, 1));
    EXPECT_EQ(0U, SetCertificateGostR34102001PublicKey(certificate, key.data(), SizeOf(key)));
    uint32_t keySet = 0;
    uint32_t digestSet = 0;
    uint32_t other = 0;
    EXPECT_EQ(key, Fetch([&](auto... out) {
                return GetCertificateDecodedPublicKeyGostR34102012(certificate, out..., &keySet, &digestSet, &other);
              }));
    EXPECT_EQ(std::pair(scheme_.keySet, scheme_.digestSet), std::pair(keySet, digestSet));
  }

  // Names the issuer, and tells its name.
  static X509Name* SetIssuer(Certificate* certificate, Certificate* issuer) {
    X509Name* name = nullptr;
    EXPECT_EQ(0U, GetCertificateSubject(issuer, &name));
    EXPECT_EQ(0U, SetCertificateIssuer(certificate, name));
    EXPECT_EQ(0U, SetCertificateSubjectKeyIdentifier(certificate));
    EXPECT_EQ(0U, SetCertificateAuthorityKeyIdentifier(certificate, issuer));
    return name;
  }

  void Sign(Certificate* certificate) {
    const Bytes parameters = FromHex(scheme_.parameters);
    EXPECT_EQ(0U, scheme_.signatureAlgorithm != 0
                      ? SetCertificateGostR34102001SignatureAlgorithmID(certificate, scheme_.signatureAlgorithm, 0xFF)
                      : SetCertificateSignatureAlgorithmOidAndParameters(certificate, Counted(scheme_.signature).data(),
                                                                         parameters.data(), SizeOf(parameters)));
    const Bytes signature = openssl_.Sign(scheme_, "ca.key", FetchFrom(certificate, GetCertificateToBeSignedPart));
    EXPECT_EQ(0U, SetCertificateSignature(certificate, signature.data(), SizeOf(signature)));
  }

  // What openssl prints about the certificate. It goes into the file too, before its PEM.
  std::string Print(const Certificate* certificate, const std::string& file) {
    openssl_.Write("der", FetchFrom(certificate, EncodeCertificate));
    (void)openssl_.Run("x509" + scheme_.Engine() + "-inform DER -in der -text -nameopt oneline,-esc_msb -ocspid -out " +
                       file);
    const Bytes text = openssl_.Read(file);
    return {text.begin(), text.end()};
  }

  const Scheme& scheme_ = GetParam();
  Openssl openssl_;
};

TEST_P(Signing, OpensslVerifiesTheChain) {
  TESSEL_TEST_NEEDS_HOST();
  const Bytes serial = {0x00, 0x9A, 0x01};
  const OwnedCertificate ca = NewCertificate(serial, "Корневой УЦ", "ca.key");
  SetIssuer(ca, ca);
  AddBasicConstraintsAndKeyUsage(ca, 1, 0, 0x06);
  Sign(ca);
  const std::string caText = Print(ca, "ca.pem");

  const OwnedCertificate leaf = NewCertificate({0x02}, "Сервер", "leaf.key");
  const X509Name* issuer = SetIssuer(leaf, ca);
  AddBasicConstraintsAndKeyUsage(leaf, 0, 0xFFFFFFFF, 0x80);
  AddAlternativeNames(leaf, issuer);
  EXPECT_EQ(0U, SetCertificateExtensionCrlDistributionPoints(leaf, "http://example.org/ca.crl"));
  Sign(leaf);
  const std::string text = Print(leaf, "leaf.pem");

  for (const char* part :
       {"Version: 3 (0x2)\n", "Serial Number: 2 (0x2)\n",
        "Issuer: C = RU, O = Завод «Ёлка», OU = Отдел + CN = Корневой УЦ\n", "Not Before: Dec 31 12:30:59 2020 GMT\n",
        "Not After : Feb  1 12:30:59 2050 GMT\n", "Subject: C = RU, O = Завод «Ёлка», OU = Отдел + CN = Сервер\n",
        "DirName:/C=RU/O=", "serial:9A:01\n", "X509v3 Basic Constraints: critical\n                CA:FALSE\n",
        "X509v3 Key Usage: critical\n                Digital Signature\n",
        "                email:a@example.org, DNS:www.example.org, DirName:/C=RU/O=",
        ", URI:https://example.org/, IP Address:192.0.2.1, Registered ID:",
        "Full Name:\n                  URI:http://example.org/ca.crl\n"}) {
    EXPECT_NE(std::string::npos, text.find(part)) << part << "is not in\n" << text;
  }
  // The CA's key identifier is the hash of its key.
  const std::string label = "Public key OCSP hash: ";
  const Bytes hash = FromHex(caText.substr(caText.find(label) + label.size(), 40));
  EXPECT_EQ(hash, FetchFrom<Certificate>(ca, GetCertificateSubjectKeyIdentifier));

  // Of the leaf's authority key identifier openssl compares key identifier, issuer and serial number with the CA.
  const std::string verify = "verify" + scheme_.Engine() +
                             "-x509_strict -purpose sslserver -verify_hostname www.example.org -verify_ip 192.0.2.1"
                             " -verify_email a@example.org -CAfile ca.pem leaf.pem";
  EXPECT_NE(std::string::npos, openssl_.Run(verify).find("leaf.pem: OK"));
  EXPECT_EQ(0U, SetCertificateSerialNumber(leaf, serial.data(), SizeOf(serial)));
  (void)Print(leaf, "leaf.pem");
  EXPECT_NE(std::string::npos, openssl_.Refusal(verify).find("certificate signature failure"));
}

INSTANTIATE_TEST_SUITE_P(Chains, Signing, testing::ValuesIn(kSchemes),
                         [](const auto& scheme) { return scheme.param.name; });

}  // namespace
}  // namespace test
