/* Statuses that are answers, statuses that are failures, and where a failure was found. */
#include "example.h"

static void Tell(const char* what, uint32_t status) {
  printf("%s: ", what);
  PrintStatus(stdout, status);
}

int main(void) {
  static const uint8_t kSerialNumber[] = {1, 2, 3, 4, 5, 6, 7, 8};
  static const uint8_t kKeyUsage[] = {3, 0x55, 0x1D, 0x0F};
  static const uint8_t kTruncated[] = {0x30, 0x82, 0x01, 0x00, 0x30};
  Certificate *certificate = NULL, *none = NULL;
  uint8_t number[8];
  uint32_t status = TESSEL_OK, length = 4;
  TRY(CreateCertificate(&certificate));
  TRY(SetCertificateSerialNumber(certificate, kSerialNumber, sizeof kSerialNumber));

  Tell("too small", GetCertificateSerialNumber(certificate, number, &length));
  printf("needed: %u\n", length);
  Tell("large enough", GetCertificateSerialNumber(certificate, number, &length));
  Tell("no such extension", GetCertificateExtensionValue(certificate, kKeyUsage, NULL, &length));
  Tell("not complete", EncodeCertificate(certificate, NULL, &length));
  Tell("not a certificate", DecodeCertificate(kTruncated, sizeof kTruncated, &none));
done:
  FreeCertificate(none);
  FreeCertificate(certificate);
  return ExitCode(status);
}
