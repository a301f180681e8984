/* What the examples need beside the library's types: PEM on standard input and output, and values in print. */
#ifndef CONSOLE_H
#define CONSOLE_H

#include "example.h"

/* Decodes the first PEM block of standard input, of which 64 KiB are read. */
static inline uint32_t ReadPem(Octets* octets) {
  static char text[65536];
  const uint32_t size = (uint32_t)fread(text, 1, sizeof text, stdin);
  uint32_t status = TESSEL_OK;
  FETCH(*octets, DecodePem(text, size, octets->data, &octets->length));
done:
  return status;
}

static inline uint32_t WritePem(const Octets* octets, const char* label) {
  Octets pem = {NULL, 0};
  uint32_t status = TESSEL_OK;
  FETCH(pem, EncodePem(octets->data, octets->length, label, (char*)pem.data, &pem.length));
  fwrite(pem.data, 1, pem.length, stdout);
done:
  free(pem.data);
  return status;
}

static inline void PrintHex(const uint8_t* octets, uint32_t length) {
  for (uint32_t i = 0; i < length; ++i) printf("%02X", octets[i]);
}

/* Dotted, which for the identifiers of certificates takes far less than 256 characters. */
static inline uint32_t PrintOid(const uint8_t* oid) {
  char text[256];
  uint32_t length = sizeof text;
  const uint32_t status = ConvertOidToString(oid, text, &length);
  if (status == TESSEL_OK) printf("%s", text);
  return status;
}

static inline uint32_t PrintTime(const LibraryTime* time) {
  uint32_t day = 0, month = 0, year = 0, hour = 0, minute = 0, second = 0;
  const uint32_t status = GetLibraryTime(time, &day, &month, &year, &hour, &minute, &second);
  if (status == TESSEL_OK) printf("%04u-%02u-%02u %02u:%02u:%02u", year, month, day, hour, minute, second);
  return status;
}

/* An attribute's value in UTF-8. A BMPString has two octets a character, the other types are UTF-8 or ASCII (but for
 * TeletexString, whose octets nobody agrees on). Control characters are left out: they would be the terminal's. */
static inline void PrintText(const Octets* text, uint32_t stringType) {
  const uint32_t step = stringType == TESSEL_KIND_BMP_STRING ? 2 : 1;
  for (uint32_t i = 0; i + step <= text->length; i += step) {
    const int c = step == 1 ? text->data[i] : text->data[i] << 8 | text->data[i + 1];
    if (c < 0x20 || c == 0x7F) continue;
    if (step == 1 || c < 0x80) {
      printf("%c", c);
    } else if (c < 0x800) {
      printf("%c%c", 0xC0 | c >> 6, 0x80 | (c & 0x3F));
    } else {
      printf("%c%c%c", 0xE0 | c >> 12, 0x80 | (c >> 6 & 0x3F), 0x80 | (c & 0x3F));
    }
  }
}

static inline void PrintKeyUsage(uint32_t usage) {
  static const char* const names[] = {"digitalSignature", "nonRepudiation", "keyEncipherment",
                                      "dataEncipherment", "keyAgreement",   "keyCertSign",
                                      "cRLSign",          "encipherOnly",   "decipherOnly"};
  for (int bit = 0; bit < 9; ++bit) {
    if ((usage & (bit < 8 ? 0x80U >> bit : 0x8000U)) != 0) printf(" %s", names[bit]);
  }
}

#endif
