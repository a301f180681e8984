/* Replaces and removes extensions of a certificate. Its signature does not cover the result: that wants a new one. */
#include "console.h"

static const uint8_t kKeyUsage[] = {3, 0x55, 0x1D, 0x0F};              /* 2.5.29.15 */
static const uint8_t kSubjectAltName[] = {3, 0x55, 0x1D, 0x11};        /* 2.5.29.17 */
static const uint8_t kPolicies[] = {3, 0x55, 0x1D, 0x20};              /* 2.5.29.32 */
static const uint8_t kExtendedKeyUsage[] = {3, 0x55, 0x1D, 0x25};      /* 2.5.29.37 */
static const uint8_t kServerAuth[] = {8, 0x2B, 6, 1, 5, 5, 7, 3, 1};   /* 1.3.6.1.5.5.7.3.1 */
static const uint8_t kTimeStamping[] = {8, 0x2B, 6, 1, 5, 5, 7, 3, 8}; /* 1.3.6.1.5.5.7.3.8 */

/* Removes all extensions with the identifier, then adds this one. */
static uint32_t ReplaceExtension(X509ExtensionsSlot* slot, const uint8_t* oid, uint32_t critical, const Octets* value) {
  uint32_t status = TESSEL_OK, index = 0;
  while ((status = FindX509Extension(slot, oid, &index)) == TESSEL_OK) TRY(RemoveX509ExtensionsExtension(slot, index));
  if (status == TESSEL_NOT_FOUND) status = AddX509ExtensionsExtension(slot, oid, critical, value->data, value->length);
done:
  return status;
}

static uint32_t EncodePurposes(Octets* value) {
  ExtensionExtendedKeyUsage* purposes = NULL;
  uint32_t status = TESSEL_OK;
  TRY(CreateExtensionExtendedKeyUsage(&purposes));
  TRY(AddExtensionExtendedKeyUsage(purposes, kServerAuth));
  TRY(AddExtensionExtendedKeyUsage(purposes, kTimeStamping));
  FETCH(*value, EncodeExtensionExtendedKeyUsage(purposes, value->data, &value->length));
done:
  FreeExtensionExtendedKeyUsage(purposes);
  return status;
}

static uint32_t EncodeAlternativeNames(Octets* value) {
  static const uint8_t address[] = {192, 0, 2, 1};
  static const char host[] = "www.example.org";
  X509GeneralNames* names = NULL;
  uint32_t status = TESSEL_OK;
  TRY(CreateX509GeneralNames(&names));
  TRY(AddX509GeneralName(names, 2, (const uint8_t*)host, sizeof host - 1)); /* dNSName */
  TRY(AddX509GeneralName(names, 7, address, sizeof address));               /* iPAddress */
  FETCH(*value, EncodeX509GeneralNames(names, value->data, &value->length));
done:
  FreeX509GeneralNames(names);
  return status;
}

int main(void) {
  Octets octets = {NULL, 0};
  Certificate* certificate = NULL;
  X509ExtensionsSlot* extensions = NULL; /* lent */
  uint32_t status = TESSEL_OK;
  TRY(ReadPem(&octets));
  TRY(DecodeCertificate(octets.data, octets.length, &certificate));
  TRY(GetCertificateExtensions(certificate, &extensions));
  TRY(RemoveX509ExtensionsExtension2(extensions, kPolicies));
  FETCH(octets, EncodeExtensionKeyUsage(0x80 | 0x08, octets.data, &octets.length));
  TRY(ReplaceExtension(extensions, kKeyUsage, 1, &octets));
  TRY(EncodePurposes(&octets));
  TRY(ReplaceExtension(extensions, kExtendedKeyUsage, 0, &octets));
  TRY(EncodeAlternativeNames(&octets));
  TRY(ReplaceExtension(extensions, kSubjectAltName, 0, &octets));
  FETCH(octets, EncodeCertificate(certificate, octets.data, &octets.length));
  TRY(WritePem(&octets, "CERTIFICATE"));
done:
  FreeCertificate(certificate);
  free(octets.data);
  return ExitCode(status);
}
