// Certificates made from nothing; openssl signs and verifies them.
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>

#include "support/host.h"
#include "support/objects.h"
#include "support/openssl.h"
#include "tessel/tessel.h"

namespace test {
namespace {

void AddAttribute(X509Name* name, uint32_t type, std::string_view text, uint32_t newRdn) {
  Call(AddX509NameEntry, name, text, Get(DetermineSuitableStringType, text),
       Fetch<ObjectIdentifier>(GetNameAttributeTypeOid, type), newRdn);
}

void AddExtension(Certificate* certificate, const ObjectIdentifier& oid, uint32_t critical, const Bytes& value) {
  Call(AddX509ExtensionsExtension, Get(GetCertificateExtensions, certificate), oid, critical, value);
}

void AddBasicConstraintsAndKeyUsage(Certificate* certificate, uint32_t cA, uint32_t pathLength, uint32_t usage) {
  AddExtension(certificate, ObjectIdentifier("2.5.29.19"), 1, Fetch(EncodeExtensionBasicConstraints, cA, pathLength));
  AddExtension(certificate, ObjectIdentifier("2.5.29.15"), 1, Fetch(EncodeExtensionKeyUsage, usage));
}

void AddAlternativeNames(Certificate* certificate, const X509Name* name) {
  const Owned<X509GeneralNames> names = Make(CreateX509GeneralNames);
  const std::pair<uint32_t, Bytes> values[] = {{1, ToBytes("a@example.org")},
                                               {2, ToBytes("www.example.org")},
                                               {4, Fetch(EncodeX509Name, name)},
                                               {6, ToBytes("https://example.org/")},
                                               {7, {192, 0, 2, 1}},
                                               {8, Counted("1.2.643.100.1")}};
  for (const auto& [alternative, value] : values) Call(AddX509GeneralName, names, alternative, value);
  AddExtension(certificate, ObjectIdentifier("2.5.29.17"), 0, Fetch(EncodeX509GeneralNames, names));
}

class Signing : public testing::TestWithParam<Scheme> {
 protected:
  // A certificate with a new key, before its issuer and extensions.
  Owned<Certificate> NewCertificate(const Bytes& serial, const char* commonName, const std::string& keyFile) {
    Owned<Certificate> certificate = Make(CreateCertificate);
    Call(SetCertificateVersion, certificate, 2);
    Call(SetCertificateSerialNumber, certificate, serial);
    Call(SetCertificateValidNotBefore, certificate, TimeOf(2020, 12, 31));
    Call(SetCertificateValidNotAfter, certificate, TimeOf(2050, 2, 1));
    X509Name* subject = Get(GetCertificateSubject, certificate);
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
    ObjectIdentifier algorithm;
    Bytes key;
    Bytes parameters;
    Call(DecodeSubjectPublicKeyInfo, openssl_.NewKey(scheme_, file), Into(algorithm), Into(key), Into(parameters));
    if (scheme_.keyAlgorithm != 0) {
      SetGostKey(certificate, openssl_.Parse(key).at(0).content);
    } else {
      Call(SetCertificatePublicKeyAlgorithmOidAndParameters, certificate, algorithm, parameters);
      Call(SetCertificatePublicKey, certificate, key);
    }
    EXPECT_EQ(key, Fetch(GetCertificatePublicKey, certificate));
  }

  void SetGostKey(Certificate* certificate, const Bytes& key) {
    Call(SetCertificateGostR34102001PublicKeyAlgorithmIdAndParameters, certificate, scheme_.keyAlgorithm, 1,
         scheme_.keySet, scheme_.digestSet, 1);
    Call(SetCertificateGostR34102001PublicKey, certificate, key);
    uint32_t keySet = 0;
    uint32_t digestSet = 0;
    uint32_t other = 0;
    EXPECT_EQ(key, FetchChecked([&](auto... out) {
                return GetCertificateDecodedPublicKeyGostR34102012(certificate, out..., &keySet, &digestSet, &other);
              }));
    EXPECT_EQ(std::pair(scheme_.keySet, scheme_.digestSet), std::pair(keySet, digestSet));
  }

  // Names the issuer, and tells its name.
  static X509Name* SetIssuer(Certificate* certificate, Certificate* issuer) {
    X509Name* name = Get(GetCertificateSubject, issuer);
    Call(SetCertificateIssuer, certificate, name);
    Call(SetCertificateSubjectKeyIdentifier, certificate);
    Call(SetCertificateAuthorityKeyIdentifier, certificate, issuer);
    return name;
  }

  void Sign(Certificate* certificate) {
    if (scheme_.signatureAlgorithm != 0) {
      Call(SetCertificateGostR34102001SignatureAlgorithmID, certificate, scheme_.signatureAlgorithm, 0xFF);
    } else {
      Call(SetCertificateSignatureAlgorithmOidAndParameters, certificate, Counted(scheme_.signature).data(),
           FromHex(scheme_.parameters));
    }
    const Bytes toBeSigned = FetchChecked(GetCertificateToBeSignedPart, certificate);
    Call(SetCertificateSignature, certificate, openssl_.Sign(scheme_, "ca.key", toBeSigned));
  }

  // What openssl prints about the certificate. It goes into the file too, before its PEM.
  std::string Print(const Certificate* certificate, const std::string& file) {
    openssl_.Write("der", Fetch(EncodeCertificate, certificate));
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
  const Owned<Certificate> ca = NewCertificate(serial, "Корневой УЦ", "ca.key");
  SetIssuer(ca, ca);
  AddBasicConstraintsAndKeyUsage(ca, 1, 0, 0x06);
  Sign(ca);
  const std::string caText = Print(ca, "ca.pem");

  const Owned<Certificate> leaf = NewCertificate({0x02}, "Сервер", "leaf.key");
  const X509Name* issuer = SetIssuer(leaf, ca);
  AddBasicConstraintsAndKeyUsage(leaf, 0, 0xFFFFFFFF, 0x80);
  AddAlternativeNames(leaf, issuer);
  Call(SetCertificateExtensionCrlDistributionPoints, leaf, "http://example.org/ca.crl");
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
  EXPECT_EQ(hash, Fetch(GetCertificateSubjectKeyIdentifier, ca));

  // Of the leaf's authority key identifier openssl compares key identifier, issuer and serial number with the CA.
  const std::string verify = "verify" + scheme_.Engine() +
                             "-x509_strict -purpose sslserver -verify_hostname www.example.org -verify_ip 192.0.2.1"
                             " -verify_email a@example.org -CAfile ca.pem leaf.pem";
  EXPECT_NE(std::string::npos, openssl_.Run(verify).find("leaf.pem: OK"));
  Call(SetCertificateSerialNumber, leaf, serial);
  (void)Print(leaf, "leaf.pem");
  EXPECT_NE(std::string::npos, openssl_.Refusal(verify).find("certificate signature failure"));
}

INSTANTIATE_TEST_SUITE_P(Chains, Signing, testing::ValuesIn(kSchemes),
                         [](const auto& scheme) { return scheme.param.name; });

}  // namespace
}  // namespace test
