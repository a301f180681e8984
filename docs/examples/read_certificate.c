/* Shows a certificate: serial number, validity, subject, key algorithm and extensions. */
#include "console.h"

static const uint8_t kKeyUsage[] = {3, 0x55, 0x1D, 0x0F};         /* 2.5.29.15 */
static const uint8_t kBasicConstraints[] = {3, 0x55, 0x1D, 0x13}; /* 2.5.29.19 */

static uint32_t PrintName(const X509Name* name) {
  Octets value = {NULL, 0};
  uint8_t type[256];
  uint32_t status = TESSEL_OK, rdns = 0, entries = 0, stringType = 0, typeLength = 0;
  TRY(GetX509NameRdnCount(name, &rdns));
  for (uint32_t rdn = 0; rdn < rdns; ++rdn) {
    TRY(GetX509NameEntryCount(name, rdn, &entries));
    for (uint32_t entry = 0; entry < entries; ++entry) {
      FETCH(value, GetX509NameEntry(name, rdn, entry, value.data, &value.length, &stringType,
                                    value.data != NULL ? type : NULL, &typeLength));
      printf("\n  ");
      TRY(PrintOid(type));
      printf(" ");
      PrintText(&value, stringType);
    }
  }
done:
  free(value.data);
  return status;
}

/* Prints each extension: a key usage and basic constraints decoded, other values in hexadecimal. */
static uint32_t PrintExtensions(const X509ExtensionsSlot* slot) {
  Octets value = {NULL, 0};
  uint8_t oid[256], cA = 0;
  uint32_t status = TESSEL_OK, count = 0, critical = 0, oidLength = 0, usage = 0, pathLength = 0;
  TRY(GetX509ExtensionsExtensionsCount(slot, &count));
  for (uint32_t i = 0; i < count; ++i) {
    FETCH(value, GetX509ExtensionsExtension(slot, i, value.data != NULL ? oid : NULL, &oidLength, &critical, value.data,
                                            &value.length));
    printf(critical != 0 ? "\n  critical " : "\n  ");
    TRY(PrintOid(oid));
    if (IsOidEquals(oid, kKeyUsage)) {
      TRY(DecodeExtensionKeyUsage(value.data, value.length, &usage));
      PrintKeyUsage(usage);
    } else if (IsOidEquals(oid, kBasicConstraints)) {
      TRY(DecodeExtensionBasicConstraints(value.data, value.length, &cA, &pathLength));
      printf(cA != 0 ? " CA" : " not a CA");
      if (pathLength != 0xFFFFFFFF) printf(", path length %u", pathLength);
    } else {
      printf(" ");
      PrintHex(value.data, value.length);
    }
  }
done:
  free(value.data);
  return status;
}

int main(void) {
  Octets file = {NULL, 0}, serial = {NULL, 0};
  Certificate* certificate = NULL;
  LibraryTime* time = NULL;
  X509Name* subject = NULL;              /* lent */
  X509ExtensionsSlot* extensions = NULL; /* lent */
  uint8_t algorithm[256];
  uint32_t status = TESSEL_OK, algorithmLength = sizeof algorithm;
  TRY(ReadPem(&file));
  TRY(DecodeCertificate(file.data, file.length, &certificate));

  FETCH(serial, GetCertificateSerialNumber(certificate, serial.data, &serial.length));
  printf("serial number ");
  PrintHex(serial.data, serial.length);
  TRY(CreateLibraryTime(&time));
  TRY(GetCertificateValidNotBefore(certificate, time));
  printf("\nvalid from ");
  TRY(PrintTime(time));
  TRY(GetCertificateValidNotAfter(certificate, time));
  printf(" to ");
  TRY(PrintTime(time));
  printf("\nsubject");
  TRY(GetCertificateSubject(certificate, &subject));
  TRY(PrintName(subject));
  printf("\nkey algorithm ");
  TRY(GetCertificatePublicKeyAlgorithmOidAndParameters(certificate, algorithm, &algorithmLength, NULL, NULL));
  TRY(PrintOid(algorithm));
  printf("\nextensions");
  TRY(GetCertificateExtensions(certificate, &extensions));
  TRY(PrintExtensions(extensions));
  printf("\n");
done:
  FreeLibraryTime(time);
  FreeCertificate(certificate);
  free(serial.data);
  free(file.data);
  return ExitCode(status);
}
