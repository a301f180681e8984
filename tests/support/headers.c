/* The headers are plain C99: this file only has to compile, and to use a handle of each sort. */
#include "tessel/tessel.h"

uint32_t UseHeaders(void);

uint32_t UseHeaders(void) {
  Certificate* certificate = 0;
  Asn1Oid oid = {TESSEL_KIND_OBJECT_IDENTIFIER, 0, 0};
  uint32_t length = oid.length;
  if (CreateCertificate(&certificate) != TESSEL_OK) return TESSEL_OUT_OF_MEMORY;
  (void)EncodeCertificate(certificate, 0, &length);
  return FreeAsn1Object(&CertificateItem, certificate);
}
