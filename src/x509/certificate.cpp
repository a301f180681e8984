#include "x509/certificate.h"

#include "engine/codec.h"
#include "engine/lists.h"
#include "engine/path.h"

using namespace tessel;

namespace {

constexpr Path<&Certificate::tbsCertificate> kToBeSignedPart;

}  // namespace

constinit const Asn1Item CertificateItem = kCertificate;
constinit const Asn1Item CertificatesItem = kCertificates;

uint32_t TESSEL_CALL DecodeCertificate(const uint8_t* data, uint32_t size, Certificate** certificate) {
  return Decode(kCertificate, data, size, certificate);
}

uint32_t TESSEL_CALL EncodeCertificate(const Certificate* certificate, uint8_t* buffer, uint32_t* length) {
  return Encode(kCertificate, certificate, buffer, length);
}

uint32_t TESSEL_CALL CreateCertificate(Certificate** certificate) {
  return Create(kCertificate, Leaves::kEmpty, certificate);
}

uint32_t TESSEL_CALL CreateCertificateCopy(const Certificate* source, Certificate** copy) {
  return Copy(kCertificate, source, copy);
}

uint32_t TESSEL_CALL FreeCertificate(Certificate* certificate) { return Free(kCertificate, certificate); }

uint32_t TESSEL_CALL DecodeCertificates(const uint8_t* data, uint32_t size, Certificates** certificates) {
  return Decode(kCertificates, data, size, certificates);
}

uint32_t TESSEL_CALL EncodeCertificates(const Certificates* certificates, uint8_t* buffer, uint32_t* length) {
  return Encode(kCertificates, certificates, buffer, length);
}

uint32_t TESSEL_CALL CreateCertificates(Certificates** certificates) {
  return Create(kCertificates, Leaves::kAbsent, certificates);
}

uint32_t TESSEL_CALL CreateCertificatesCopy(const Certificates* source, Certificates** copy) {
  return Copy(kCertificates, source, copy);
}

uint32_t TESSEL_CALL FreeCertificates(Certificates* certificates) { return Free(kCertificates, certificates); }

uint32_t TESSEL_CALL AddCertificateToCertificates(Certificates* certificates, Certificate* certificate) {
  return Add(certificates, certificate);
}

uint32_t TESSEL_CALL GetCertificatesCount(const Certificates* certificates, uint32_t* count) {
  return GetCount(certificates, count);
}

uint32_t TESSEL_CALL GetCertificatesCertificate(const Certificates* certificates, uint32_t index,
                                                Certificate** certificate) {
  return GetElement(certificates, index, certificate);
}

uint32_t TESSEL_CALL GetCertificateToBeSignedPart(const Certificate* certificate, uint8_t* buffer, uint32_t* length) {
  return kToBeSignedPart.Encode(kTbsCertificate, certificate, buffer, length);
}
