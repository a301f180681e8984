#include "tessel/crl.hpp"

#include "engine/codec.h"

using namespace tessel;

constinit const Asn1Item X509CrlItem = kX509Crl;
constinit const Asn1Item X509CrlsItem = kX509Crls;
constinit const Asn1Item X509RevokedCertificatesItem = kX509RevokedCertificates;

uint32_t TESSEL_CALL DecodeX509Crl(const uint8_t* data, uint32_t size, X509Crl** crl) {
  return Decode(kX509Crl, data, size, crl);
}

uint32_t TESSEL_CALL EncodeX509Crl(const X509Crl* crl, uint8_t* buffer, uint32_t* length) {
  return EncodeObject(kX509Crl, crl, buffer, length);
}

uint32_t TESSEL_CALL CreateX509Crl(X509Crl** crl) { return Create(kX509Crl, Leaves::kEmpty, crl); }

uint32_t TESSEL_CALL CreateX509CrlCopy(const X509Crl* source, X509Crl** copy) { return Copy(kX509Crl, source, copy); }

uint32_t TESSEL_CALL FreeX509Crl(X509Crl* crl) { return Free(kX509Crl, crl); }

uint32_t TESSEL_CALL DecodeX509Crls(const uint8_t* data, uint32_t size, X509Crls** crls) {
  return Decode(kX509Crls, data, size, crls);
}

uint32_t TESSEL_CALL EncodeX509Crls(const X509Crls* crls, uint8_t* buffer, uint32_t* length) {
  return EncodeObject(kX509Crls, crls, buffer, length);
}

uint32_t TESSEL_CALL CreateX509Crls(X509Crls** crls) { return Create(kX509Crls, Leaves::kAbsent, crls); }

uint32_t TESSEL_CALL CreateX509CrlsCopy(const X509Crls* source, X509Crls** copy) {
  return Copy(kX509Crls, source, copy);
}

uint32_t TESSEL_CALL FreeX509Crls(X509Crls* crls) { return Free(kX509Crls, crls); }

uint32_t TESSEL_CALL CreateX509RevokedCertificates(X509RevokedCertificates** certificates) {
  return Create(kX509RevokedCertificates, Leaves::kAbsent, certificates);
}

uint32_t TESSEL_CALL EncodeX509RevokedCertificates(const X509RevokedCertificates* certificates, uint8_t* buffer,
                                                   uint32_t* length) {
  return EncodeObject(kX509RevokedCertificates, certificates, buffer, length);
}

uint32_t TESSEL_CALL FreeX509RevokedCertificates(X509RevokedCertificates* certificates) {
  return Free(kX509RevokedCertificates, certificates);
}
