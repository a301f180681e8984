/* Reads a certificate from a DER file and prints its serial number. */
#include <stdio.h>
#include <tessel/tessel.h>

int main(int argc, char** argv) {
  static uint8_t data[65536];
  FILE* file = argc == 2 ? fopen(argv[1], "rb") : NULL;
  if (file == NULL) {
    fprintf(stderr, "usage: read_certificate FILE\n");
    return 2;
  }
  const size_t size = fread(data, 1, sizeof data, file);
  fclose(file);

  Certificate* certificate = NULL;
  const uint32_t status = DecodeCertificate(data, (uint32_t)size, &certificate);
  if (status != TESSEL_OK) {
    uint32_t line = 0;
    const char* module = GetLastFileErrorAsn(&line);
    fprintf(stderr, "not a certificate: status %u, found at %s:%u\n", (unsigned)status, module, (unsigned)line);
    return 1;
  }

  uint32_t length = 0;
  const uint8_t* serialNumber = ptr_GetCertificateSerialNumber(certificate, &length);
  printf("serial number: ");
  for (uint32_t i = 0; i < length; ++i) printf("%02X", serialNumber[i]);
  printf("\n");
  FreeCertificate(certificate);
  return 0;
}
