/* Certificates (RFC 5280, 4.1). */
#ifndef TESSEL_CERTIFICATE_H
#define TESSEL_CERTIFICATE_H

#include <stdint.h>

#include "tessel/descriptor.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Certificate ::= SEQUENCE { tbsCertificate, signatureAlgorithm AlgorithmIdentifier, signatureValue BIT STRING }
 * tbsCertificate ::= SEQUENCE {
 *   version              [0] EXPLICIT INTEGER DEFAULT 0,
 *   serialNumber         INTEGER,
 *   signature            AlgorithmIdentifier,
 *   issuer               CHOICE { X509Name },
 *   validity             SEQUENCE { notBefore Time, notAfter Time },
 *   subject              CHOICE { X509Name },
 *   subjectPublicKeyInfo SubjectPublicKeyInfo,
 *   issuerUniqueID       [1] IMPLICIT BIT STRING OPTIONAL,
 *   subjectUniqueID      [2] IMPLICIT BIT STRING OPTIONAL,
 *   extensions           [3] EXPLICIT X509Extensions OPTIONAL }
 * Time ::= CHOICE { UTCTime, GeneralizedTime } */
typedef struct Certificate Certificate;
TESSEL_API extern const Asn1Item CertificateItem;

/* Certificates ::= SEQUENCE OF Certificate. The list owns its certificates. */
typedef struct Certificates Certificates;
TESSEL_API extern const Asn1Item CertificatesItem;

/* DecodeCertificate, DecodeCertificates: decode DER or BER into a new object, which the caller frees. Octets after the
 * element are not looked at. Statuses as for Asn1DecodeItem; after a failure the handle is null, or untouched when an
 * argument was null. */
TESSEL_API uint32_t TESSEL_CALL DecodeCertificate(const uint8_t* data, uint32_t size, Certificate** certificate);
TESSEL_API uint32_t TESSEL_CALL DecodeCertificates(const uint8_t* data, uint32_t size, Certificates** certificates);

/* EncodeCertificate, EncodeCertificates: write DER into the caller's buffer (tessel.h, "Buffers"). Statuses also as for
 * Asn1Encode: TESSEL_ABSENT when the object is not complete. */
TESSEL_API uint32_t TESSEL_CALL EncodeCertificate(const Certificate* certificate, uint8_t* buffer, uint32_t* length);
TESSEL_API uint32_t TESSEL_CALL EncodeCertificates(const Certificates* certificates, uint8_t* buffer, uint32_t* length);

/* CreateCertificate: a certificate whose mandatory members are there and empty and whose version is 0, the DEFAULT.
 * CreateCertificates: an empty list. The caller frees them. */
TESSEL_API uint32_t TESSEL_CALL CreateCertificate(Certificate** certificate);
TESSEL_API uint32_t TESSEL_CALL CreateCertificates(Certificates** certificates);

/* CreateCertificateCopy, CreateCertificatesCopy: copy a whole object, which the caller frees. After a failure the
 * handle is null, or untouched when an argument was null. */
TESSEL_API uint32_t TESSEL_CALL CreateCertificateCopy(const Certificate* source, Certificate** copy);
TESSEL_API uint32_t TESSEL_CALL CreateCertificatesCopy(const Certificates* source, Certificates** copy);

/* FreeCertificate, FreeCertificates: release an object with all that it owns; null is allowed. Always return 0. */
TESSEL_API uint32_t TESSEL_CALL FreeCertificate(Certificate* certificate);
TESSEL_API uint32_t TESSEL_CALL FreeCertificates(Certificates* certificates);

/* Appends a certificate to the list, which takes it. It stays the caller's when the call fails. */
TESSEL_API uint32_t TESSEL_CALL AddCertificateToCertificates(Certificates* certificates, Certificate* certificate);

/* How many certificates the list holds. */
TESSEL_API uint32_t TESSEL_CALL GetCertificatesCount(const Certificates* certificates, uint32_t* count);

/* Lends one certificate of the list. TESSEL_INVALID_ARGUMENT: no such index. TESSEL_ABSENT: an empty slot. */
TESSEL_API uint32_t TESSEL_CALL GetCertificatesCertificate(const Certificates* certificates, uint32_t index,
                                                           Certificate** certificate);

/* Writes the DER of the to-be-signed part, the octets that the signature covers, into the caller's buffer. It is
 * encoded anew from the tree: of a certificate that was decoded from BER these need not be the octets that were read.
 * TESSEL_ABSENT: the certificate has no such part, or the part is not complete. */
TESSEL_API uint32_t TESSEL_CALL GetCertificateToBeSignedPart(const Certificate* certificate, uint8_t* buffer,
                                                             uint32_t* length);

#ifdef __cplusplus
}
#endif

#endif
