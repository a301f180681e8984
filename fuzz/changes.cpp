#include "changes.h"

namespace fuzz {
namespace {

// commonName, counted; and some octets, of which the first 20 are an element as well.
constexpr uint8_t kOid[] = {3, 0x55, 0x04, 0x03};
constexpr uint8_t kValue[40] = {0x30, 18};
constexpr uint32_t kValueSize = sizeof kValue;
constexpr uint32_t kElementSize = 20;

}  // namespace

void ChangeName(X509Name* name) {
  DeleteX509NameEntry(name, 0, 0);
  AddX509NameEntry(name, kValue, kValueSize, TESSEL_KIND_UTF8_STRING, kOid, 0);
  AddX509NameEntry(name, kValue, kValueSize, TESSEL_KIND_UTF8_STRING, kOid, 1);
}

void ChangeGeneralNames(X509GeneralNames* names) {
  AddX509GeneralName(names, 0, kValue, kElementSize);
  AddX509GeneralName(names, 7, kValue, kValueSize);
  AddX509GeneralName(names, 8, kOid, 0);
}

void ChangeFreeText(PKIFreeText* text) { AddPKIFreeTextString(text, kValue, kValueSize); }

void ChangeExtension(X509Extension* extension) { SetX509Extension(extension, kOid, 1, kValue, kValueSize); }

void ChangeExtensions(X509ExtensionsSlot* slot) {
  AddX509ExtensionsExtension(slot, kOid, 1, kValue, kValueSize);
  RemoveX509ExtensionsExtension(slot, 0);
  AddX509ExtensionsExtension(slot, kOid, 0, kValue, kValueSize);
  RemoveX509ExtensionsExtension2(slot, kOid);
}

void ChangeExtendedKeyUsage(ExtensionExtendedKeyUsage* list) {
  RemoveExtensionExtendedKeyUsage(list, 0);
  AddExtensionExtendedKeyUsage(list, kOid);
}

void ChangeAccessDescriptions(ExtensionAuthorityInformationAccess* list) {
  RemoveExtensionAuthorityInformationAccess(list, 0);
  X509GeneralName* location = nullptr;
  AllocX509GeneralNameValue(&location, 6, kValue, kValueSize);
  if (AddExtensionAuthorityInformationAccess(list, kOid, location) != TESSEL_OK) FreeX509GeneralName(location);
}

void ChangeDistributionPoints(ExtensionCrlDistributionPoints* list) {
  RemoveExtensionCrlDistributionPoint(list, 0);
  AddExtensionCrlDistributionPoint(list, nullptr, nullptr, 6, nullptr);
}

void ChangePolicies(ExtensionCertificatePolicies* list) {
  RemoveExtensionPolicyQualifier(list, 0, 0);
  RemoveExtensionPolicyInformation(list, 1);
  AddExtensionPolicyInformation(list, kOid, nullptr);
}

void ChangeCertificate(Certificate* certificate) {
  SetCertificateVersion(certificate, 2);
  SetCertificateSerialNumber(certificate, kOid, sizeof kOid);
  SetCertificateSignature(certificate, kValue, kValueSize);
  SetCertificateSubjectUniqueId(certificate, kValue, kValueSize, 3);
  SetCertificateIssuerUniqueId(certificate, nullptr, 0, 0);
  SetCertificateSignatureAlgorithmOidAndParameters(certificate, kOid, kValue, kElementSize);
  SetCertificateGostR34102001PublicKeyAlgorithmIdAndParameters(certificate, 102, 1, 1, 1, 1);
  SetCertificateGostR34102001PublicKey(certificate, kValue, kValueSize);
  // From the certificate itself.
  X509Name* name = nullptr;
  if (GetCertificateSubject(certificate, &name) == TESSEL_OK) {
    ChangeName(name);
    SetCertificateIssuer(certificate, name);
    SetCertificateSubject(certificate, name);
  }
  SetCertificateSubjectKeyIdentifier(certificate);
  SetCertificateAuthorityKeyIdentifier(certificate, certificate);
  SetCertificateArdekKeyIdentifier(certificate, "key");
  SetCertificateExtensionCrlDistributionPoints(certificate, "http://example.com/crl");
  X509ExtensionsSlot* slot = nullptr;
  if (GetCertificateExtensions(certificate, &slot) == TESSEL_OK) {
    ChangeExtensions(slot);
    SetCertificateExtensions(certificate, slot);
  }
}

void ChangeCertificates(Certificates* certificates) {
  Certificate* certificate = nullptr;
  if (GetCertificatesCertificate(certificates, 0, &certificate) != TESSEL_OK) return;
  ChangeCertificate(certificate);
  Certificate* copy = nullptr;
  CreateCertificateCopy(certificate, &copy);
  if (AddCertificateToCertificates(certificates, copy) != TESSEL_OK) FreeCertificate(copy);
}

}  // namespace fuzz
