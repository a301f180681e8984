// Arguments that are a part of the object that a function changes, and objects that are not the caller's to give.
#include <gtest/gtest.h>

#include <vector>

#include "support/objects.h"
#include "support/octets.h"
#include "support/samples.h"
#include "support/tree.h"
#include "tessel/certificate.hpp"
#include "tessel/tessel.h"

namespace test {
namespace {

// A decoded certificate whose members have been set since, so that they are allocations of their own.
Owned<Certificate> ChangedCertificate() {
  auto certificate = Make(DecodeCertificate, ReadSample("gost.pem"));
  Call(SetCertificateSignatureAlgorithmOidAndParameters, certificate, ObjectIdentifier("1.2.840.113549.1.1.10"),
       FromHex("30 0D 06 09 60 86 48 01 65 03 04 02 01"));  // { 2.16.840.1.101.3.4.2.1 }
  return certificate;
}

// The halves of the signature algorithm, in the to-be-signed part and beside the signature.
std::vector<Bytes> AlgorithmsOf(const Certificate* certificate) {
  std::vector<Bytes> all;
  for (const AlgorithmIdentifier* algorithm :
       {certificate->tbsCertificate->signature, certificate->signatureAlgorithm}) {
    all.push_back(ContentOf(*algorithm->algorithm));
    all.push_back(algorithm->parameters == nullptr ? Bytes() : ContentOf(*algorithm->parameters));
  }
  return all;
}

TEST(Aliases, ASignatureAlgorithmIsSetFromPartsOfItself) {
  const auto certificate = ChangedCertificate();
  const AlgorithmIdentifier& inner = *certificate->tbsCertificate->signature;
  const Bytes rsa = FromHex("2A 86 48 86 F7 0D 01 01 01");
  const Bytes parameters = ContentOf(*inner.parameters);
  // The parameters of the inner one, beside a new identifier.
  Call(SetCertificateSignatureAlgorithmOidAndParameters, certificate, ObjectIdentifier("1.2.840.113549.1.1.1"),
       tessel::Octets(inner.parameters->data, inner.parameters->length));
  EXPECT_EQ((std::vector<Bytes>{rsa, parameters, rsa, parameters}), AlgorithmsOf(certificate));
  // The identifier inside the parameters, which is counted there, and the parameters as the content of the identifier.
  Call(SetCertificateSignatureAlgorithmOidAndParameters, certificate, inner.parameters->data + 3,
       tessel::Octets(inner.algorithm->data, inner.algorithm->length));
  const Bytes sha256 = FromHex("60 86 48 01 65 03 04 02 01");
  EXPECT_EQ((std::vector<Bytes>{sha256, rsa, sha256, rsa}), AlgorithmsOf(certificate));
}

TEST(Aliases, AnExtensionIsSetFromPartsOfItself) {
  const ObjectIdentifier keyUsage("2.5.29.15");
  const auto extension = Make(CreateX509Extension, keyUsage, 0, FromHex("00"));
  // Members that are allocations of their own. The value is 2.5.29.37, counted.
  Call(SetX509Extension, extension, keyUsage, 0, FromHex("03 55 1D 25"));
  // The value is the identifier's content, and the identifier stands counted in the value.
  const tessel::Octets id(extension->extnID->data, extension->extnID->length);
  Call(SetX509Extension, extension, extension->extnValue->data, 1, id);
  EXPECT_EQ(FromHex("55 1D 25"), ContentOf(*extension->extnID));
  EXPECT_EQ(FromHex("55 1D 0F"), ContentOf(*extension->extnValue));
}

TEST(Aliases, ExtensionsAreRemovedByAnIdentifierInOneOfThem) {
  X509ExtensionsSlot slot{nullptr};
  const ObjectIdentifier purpose("2.5.29.37");
  for (const char* value : {"03 55 1D 25", "01", "02"}) {
    Call(AddX509ExtensionsExtension, &slot, purpose, 0, FromHex(value));
    Call(AddX509ExtensionsExtension, &slot, ObjectIdentifier("1.2.3"), 0, FromHex(value));
  }
  const Owned<X509Extensions> list(slot.list);
  ASSERT_NE(nullptr, list.Get());
  // Members that are allocations of their own.
  Call(SetX509Extension, list->At(0), purpose, 0, FromHex("03 55 1D 25"));
  Call(RemoveX509ExtensionsExtension2, &slot, list->At(0)->extnValue->data);
  EXPECT_EQ(3U, Get(GetX509ExtensionsExtensionsCount, &slot));
  uint32_t index = 0;
  EXPECT_STATUS(TESSEL_NOT_FOUND, Try(FindX509Extension, &slot, purpose, &index));
}

// In a tree that one call has made, only the root is an object of its own.
TEST(Aliases, APartOfAnotherObjectIsNotTaken) {
  const auto certificate = Make(DecodeCertificate, ReadSample("gost.pem"));
  const auto names = Make(DecodeX509GeneralNames, FromHex("30 06 82 01 61 82 01 62"));  // { dNSName "a", dNSName "b" }
  X509Name* const subject = Get(GetCertificateSubject, certificate);
  X509GeneralName* const inner = names->At(0);
  const Bytes before = Fetch(EncodeCertificate, certificate);
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, Try(SetCertificateIssuer_i, certificate, subject, 0));
  const auto access = Make(CreateExtensionAuthorityInformationAccess);
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT,
                Try(AddExtensionAuthorityInformationAccess, access, ObjectIdentifier("1.3.6.1.5.5.7.48.1"), inner));
  const auto points = Make(CreateExtensionCrlDistributionPoints);
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, Try(AddExtensionCrlDistributionPoint, points, nullptr, subject, 0, nullptr));
  const auto certificates = Make(DecodeCertificates, Der(0x30, before));
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, Try(AddCertificateToCertificates, certificates, certificates->At(0)));
  EXPECT_EQ(before, Fetch(EncodeCertificate, certificate));
  // The name that a member holds is no other object's: it stays.
  EXPECT_OK(Try(SetCertificateSubject_i, certificate, subject, 0));
}

TEST(Aliases, WhatWasTakenIsNotTakenAgain) {
  const auto certificate = Make(CreateCertificate);
  // A name that was made for the certificate, and one that it was given.
  X509Name* const issuer = tessel::Get(GetCertificateIssuer, certificate);
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, Try(SetCertificateSubject_i, certificate, issuer, 0));
  X509Name* const subject = Make(CreateX509Name).Release();
  EXPECT_OK(Try(SetCertificateSubject_i, certificate, subject, 0));
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, Try(SetCertificateIssuer_i, certificate, subject, 0));
  const auto points = Make(CreateExtensionCrlDistributionPoints);
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, Try(AddExtensionCrlDistributionPoint, points, nullptr, subject, 0, nullptr));
  X509GeneralNames* const names = Make(CreateX509GeneralNames).Release();
  EXPECT_OK(Try(AddExtensionCrlDistributionPoint, points, names, nullptr, 0, nullptr));
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, Try(AddExtensionCrlDistributionPoint, points, nullptr, nullptr, 1, names));
  const auto certificates = Make(CreateCertificates);
  Certificate* const added = Make(CreateCertificate).Release();
  EXPECT_OK(Try(AddCertificateToCertificates, certificates, added));
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, Try(AddCertificateToCertificates, certificates, added));
}

TEST(Aliases, OneObjectIsNotTakenTwiceAtOnce) {
  const auto points = Make(CreateExtensionCrlDistributionPoints);
  const auto names = Make(CreateX509GeneralNames);
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT,
                Try(AddExtensionCrlDistributionPoint, points, names.Get(), nullptr, 0, names.Get()));
}

}  // namespace
}  // namespace test
