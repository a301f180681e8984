/* Certificate revocation lists (RFC 5280, 5). */
#ifndef TESSEL_CRL_H
#define TESSEL_CRL_H

#include <stdint.h>

#include "tessel/descriptor.h"

#ifdef __cplusplus
extern "C" {
#endif

/* X509Crl ::= SEQUENCE { tbsCertList, signatureAlgorithm AlgorithmIdentifier, signatureValue BIT STRING }
 * tbsCertList ::= SEQUENCE {
 *   version             INTEGER OPTIONAL,
 *   signature           AlgorithmIdentifier,
 *   issuer              CHOICE { X509Name },
 *   thisUpdate          Time,
 *   nextUpdate          Time OPTIONAL,
 *   revokedCertificates X509RevokedCertificates OPTIONAL,
 *   crlExtensions       [0] EXPLICIT X509Extensions OPTIONAL }
 * Time ::= CHOICE { UTCTime, GeneralizedTime } */
typedef struct X509Crl X509Crl;
TESSEL_API extern const Asn1Item X509CrlItem;

/* X509Crls ::= SEQUENCE OF X509Crl. The list owns its CRLs. */
typedef struct X509Crls X509Crls;
TESSEL_API extern const Asn1Item X509CrlsItem;

/* X509RevokedCertificates ::= SEQUENCE OF SEQUENCE {
 *   userCertificate    INTEGER,
 *   revocationDate     Time,
 *   crlEntryExtensions X509Extensions OPTIONAL } */
typedef struct X509RevokedCertificates X509RevokedCertificates;
TESSEL_API extern const Asn1Item X509RevokedCertificatesItem;

/* DecodeX509Crl, DecodeX509Crls: decode DER or BER into a new object, which the caller frees. Octets after the element
 * are not looked at. Statuses as for Asn1DecodeItem; after a failure the handle is null, or untouched when an argument
 * was null. A CRL holds its octets once and, for an entry, about 90 octets more, or 220 with one extension; two thirds
 * of that on 32 bits. */
TESSEL_API uint32_t TESSEL_CALL DecodeX509Crl(const uint8_t* data, uint32_t size, X509Crl** crl);
TESSEL_API uint32_t TESSEL_CALL DecodeX509Crls(const uint8_t* data, uint32_t size, X509Crls** crls);

/* EncodeX509Crl, EncodeX509Crls, EncodeX509RevokedCertificates: write DER into the caller's buffer (tessel.h,
 * "Buffers"). Statuses also as for Asn1Encode: TESSEL_ABSENT when the object is not complete. */
TESSEL_API uint32_t TESSEL_CALL EncodeX509Crl(const X509Crl* crl, uint8_t* buffer, uint32_t* length);
TESSEL_API uint32_t TESSEL_CALL EncodeX509Crls(const X509Crls* crls, uint8_t* buffer, uint32_t* length);
TESSEL_API uint32_t TESSEL_CALL EncodeX509RevokedCertificates(const X509RevokedCertificates* certificates,
                                                              uint8_t* buffer, uint32_t* length);

/* CreateX509Crl: a CRL whose mandatory members are there and empty. CreateX509Crls, CreateX509RevokedCertificates: an
 * empty list. The caller frees them. */
TESSEL_API uint32_t TESSEL_CALL CreateX509Crl(X509Crl** crl);
TESSEL_API uint32_t TESSEL_CALL CreateX509Crls(X509Crls** crls);
TESSEL_API uint32_t TESSEL_CALL CreateX509RevokedCertificates(X509RevokedCertificates** certificates);

/* CreateX509CrlCopy, CreateX509CrlsCopy: copy a whole object, which the caller frees. After a failure the handle is
 * null, or untouched when an argument was null. */
TESSEL_API uint32_t TESSEL_CALL CreateX509CrlCopy(const X509Crl* source, X509Crl** copy);
TESSEL_API uint32_t TESSEL_CALL CreateX509CrlsCopy(const X509Crls* source, X509Crls** copy);

/* FreeX509Crl, FreeX509Crls, FreeX509RevokedCertificates: release an object with all that it owns; null is allowed.
 * Always return 0. */
TESSEL_API uint32_t TESSEL_CALL FreeX509Crl(X509Crl* crl);
TESSEL_API uint32_t TESSEL_CALL FreeX509Crls(X509Crls* crls);
TESSEL_API uint32_t TESSEL_CALL FreeX509RevokedCertificates(X509RevokedCertificates* certificates);

#ifdef __cplusplus
}
#endif

#endif
