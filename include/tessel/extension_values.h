/* The values of the standard extensions (RFC 5280, 4.2 and 5.2, 5.3). Those that are lists are in extension_lists.h.
 *
 * A value is what an extension's extnValue holds: encode it with a function of this header and add it to a list with
 * AddX509ExtensionsExtension; read it with GetX509ExtensionsExtensionValue and decode it here. Encoders write DER into
 * the caller's buffer. Decoders read DER or BER, with statuses as for Asn1DecodeItem.
 *
 * Named bits cross the interface as a number whose lowest octet is the first octet of the BIT STRING: the named bit 0
 * is 0x80, bit 7 is 0x01, bit 8 is 0x8000. Trailing zero bits are not encoded. Of a decoded BIT STRING the first 32
 * bits are read; an empty one is 0.
 *
 * Where a function takes null for a field that is absent, a length of 0 says the same. */
#ifndef TESSEL_EXTENSION_VALUES_H
#define TESSEL_EXTENSION_VALUES_H

#include <stdint.h>

#include "tessel/descriptor.h"
#include "tessel/names.h"
#include "tessel/time.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Values of one field. */

/* EncodeExtensionKeyUsage, DecodeExtensionKeyUsage: KeyUsage ::= BIT STRING (4.2.1.3). digitalSignature is 0x80,
 * nonRepudiation 0x40, keyEncipherment 0x20, dataEncipherment 0x10, keyAgreement 0x08, keyCertSign 0x04, cRLSign 0x02,
 * encipherOnly 0x01, decipherOnly 0x8000.
 * EncodeExtensionNetscapeCertificateType, DecodeExtensionNetscapeCertificateType: BIT STRING. SSL client is 0x80, SSL
 * server 0x40, S/MIME 0x20, object signing 0x10, SSL CA 0x04, S/MIME CA 0x02, object signing CA 0x01. Decoding no
 * octets is TESSEL_INVALID_ARGUMENT here. */
TESSEL_API uint32_t TESSEL_CALL EncodeExtensionKeyUsage(uint32_t usage, uint8_t* buffer, uint32_t* length);
TESSEL_API uint32_t TESSEL_CALL DecodeExtensionKeyUsage(const uint8_t* data, uint32_t size, uint32_t* usage);
TESSEL_API uint32_t TESSEL_CALL EncodeExtensionNetscapeCertificateType(uint32_t type, uint8_t* buffer,
                                                                       uint32_t* length);
TESSEL_API uint32_t TESSEL_CALL DecodeExtensionNetscapeCertificateType(const uint8_t* data, uint32_t size,
                                                                       uint32_t* type);

/* EncodeExtensionSubjectKeyIdentifier, DecodeExtensionSubjectKeyIdentifier: SubjectKeyIdentifier ::= OCTET STRING
 * (4.2.1.2). */
TESSEL_API uint32_t TESSEL_CALL EncodeExtensionSubjectKeyIdentifier(const uint8_t* keyIdentifier, uint32_t size,
                                                                    uint8_t* buffer, uint32_t* length);
TESSEL_API uint32_t TESSEL_CALL DecodeExtensionSubjectKeyIdentifier(const uint8_t* data, uint32_t size, uint8_t* buffer,
                                                                    uint32_t* length);

/* EncodeExtensionCrlNumber, DecodeExtensionCrlNumber, EncodeExtensionDeltaCrlIndicator,
 * DecodeExtensionDeltaCrlIndicator: CRLNumber ::= INTEGER (5.2.3), BaseCRLNumber (5.2.4), as content octets,
 * big-endian. Encoding takes them as they are; decoding refuses a number that is empty or not minimal with
 * TESSEL_INVALID_CONTENT. */
TESSEL_API uint32_t TESSEL_CALL EncodeExtensionCrlNumber(const uint8_t* number, uint32_t size, uint8_t* buffer,
                                                         uint32_t* length);
TESSEL_API uint32_t TESSEL_CALL DecodeExtensionCrlNumber(const uint8_t* data, uint32_t size, uint8_t* buffer,
                                                         uint32_t* length);
TESSEL_API uint32_t TESSEL_CALL EncodeExtensionDeltaCrlIndicator(const uint8_t* number, uint32_t size, uint8_t* buffer,
                                                                 uint32_t* length);
TESSEL_API uint32_t TESSEL_CALL DecodeExtensionDeltaCrlIndicator(const uint8_t* data, uint32_t size, uint8_t* buffer,
                                                                 uint32_t* length);

/* EncodeExtensionReasonCode, DecodeExtensionReasonCode: CRLReason ::= ENUMERATED (5.3.1). 0 unspecified,
 * 1 keyCompromise, 2 cACompromise, 3 affiliationChanged, 4 superseded, 5 cessationOfOperation, 6 certificateHold,
 * 8 removeFromCRL, 9 privilegeWithdrawn, 10 aACompromise; other numbers are not refused. TESSEL_BUFFER_TOO_SMALL: the
 * number that was read has more than 32 bits. TESSEL_MALFORMED: it has none. */
TESSEL_API uint32_t TESSEL_CALL EncodeExtensionReasonCode(int32_t reason, uint8_t* buffer, uint32_t* length);
TESSEL_API uint32_t TESSEL_CALL DecodeExtensionReasonCode(const uint8_t* data, uint32_t size, int32_t* reason);

/* EncodeExtensionInvalidityDate, DecodeExtensionInvalidityDate: InvalidityDate ::= GeneralizedTime (5.3.2), as
 * EncodeAsn1GeneralizedTime and DecodeAsn1GeneralizedTime. */
TESSEL_API uint32_t TESSEL_CALL EncodeExtensionInvalidityDate(const LibraryTime* time, uint8_t* buffer,
                                                              uint32_t* length);
TESSEL_API uint32_t TESSEL_CALL DecodeExtensionInvalidityDate(const uint8_t* data, uint32_t size, LibraryTime* time);

/* SEQUENCEs of a few fields. */

/* ExtensionBasicConstraints ::= SEQUENCE { cA BOOLEAN DEFAULT FALSE, pathLenConstraint INTEGER OPTIONAL } (4.2.1.9) */
TESSEL_API extern const Asn1Item ExtensionBasicConstraintsItem;

/* EncodeExtensionBasicConstraints, DecodeExtensionBasicConstraints: any `cA` but 0 is TRUE, which is read as 0xFF. A
 * path length of 0xFFFFFFFF says that there is none. TESSEL_BUFFER_TOO_SMALL: the path length that is read has more
 * than four octets; the outputs are untouched then. */
TESSEL_API uint32_t TESSEL_CALL EncodeExtensionBasicConstraints(uint32_t cA, uint32_t pathLength, uint8_t* buffer,
                                                                uint32_t* length);
TESSEL_API uint32_t TESSEL_CALL DecodeExtensionBasicConstraints(const uint8_t* data, uint32_t size, uint8_t* cA,
                                                                uint32_t* pathLength);

/* ExtensionAuthorityKeyIdentifier ::= SEQUENCE {
 *   keyIdentifier             [0] IMPLICIT OCTET STRING OPTIONAL,
 *   authorityCertIssuer       [1] IMPLICIT X509GeneralNames OPTIONAL,
 *   authorityCertSerialNumber [2] IMPLICIT INTEGER OPTIONAL } (4.2.1.1) */
TESSEL_API extern const Asn1Item ExtensionAuthorityKeyIdentifierItem;

/* Writes the fields that are given: a key identifier, general names, the content octets of a serial number; null stands
 * for a field that is absent. The names stay the caller's. */
TESSEL_API uint32_t TESSEL_CALL EncodeExtensionAuthorityKeyIdentifier(const uint8_t* keyIdentifier,
                                                                      uint32_t keyIdentifierSize,
                                                                      const X509GeneralNames* names,
                                                                      const uint8_t* serial, uint32_t serialSize,
                                                                      uint8_t* buffer, uint32_t* length);

/* Reads the three fields. An absent key identifier or serial number has the length 0, absent names are null. The names
 * are a copy, which the caller frees, also that of a call with null buffers; after any failure they are null. Every
 * length is answered, and TESSEL_BUFFER_TOO_SMALL is the status when either buffer is too small. */
TESSEL_API uint32_t TESSEL_CALL DecodeExtensionAuthorityKeyIdentifier(const uint8_t* data, uint32_t size,
                                                                      uint8_t* keyIdentifier,
                                                                      uint32_t* keyIdentifierLength,
                                                                      X509GeneralNames** names, uint8_t* serial,
                                                                      uint32_t* serialLength);

/* ExtensionPrivateKeyUsagePeriod ::= SEQUENCE {
 *   notBefore [0] IMPLICIT GeneralizedTime OPTIONAL,
 *   notAfter  [1] IMPLICIT GeneralizedTime OPTIONAL } (RFC 3280, 4.2.1.4) */
TESSEL_API extern const Asn1Item ExtensionPrivateKeyUsagePeriodItem;

/* EncodeExtensionPrivateKeyUsagePeriod: a null time leaves its field out. Statuses also as for
 * EncodeAsn1GeneralizedTime.
 * DecodeExtensionPrivateKeyUsagePeriod: reads the fields into two records. That of an absent field stays as it is, so
 * bring new ones, which are null. TESSEL_INVALID_ARGUMENT also for no octets. Statuses also as for
 * DecodeAsn1GeneralizedTime. */
TESSEL_API uint32_t TESSEL_CALL EncodeExtensionPrivateKeyUsagePeriod(const LibraryTime* notBefore,
                                                                     const LibraryTime* notAfter, uint8_t* buffer,
                                                                     uint32_t* length);
TESSEL_API uint32_t TESSEL_CALL DecodeExtensionPrivateKeyUsagePeriod(const uint8_t* data, uint32_t size,
                                                                     LibraryTime* notBefore, LibraryTime* notAfter);

/* ExtensionIssuingDistributionPoint ::= SEQUENCE {
 *   distributionPoint          [0] EXPLICIT DistributionPointName OPTIONAL,
 *   onlyContainsUserCerts      [1] IMPLICIT BOOLEAN DEFAULT FALSE,
 *   onlyContainsCACerts        [2] IMPLICIT BOOLEAN DEFAULT FALSE,
 *   onlySomeReasons            [1] IMPLICIT BIT STRING OPTIONAL,
 *   indirectCRL                [4] IMPLICIT BOOLEAN DEFAULT FALSE,
 *   onlyContainsAttributeCerts [5] IMPLICIT BOOLEAN DEFAULT FALSE } (5.2.5)
 * onlySomeReasons has the tag [1], where RFC 5280 has [3]: values with reasons are understood by this library only. By
 * the descriptor alone they are read when one of the first two flags is TRUE; DecodeExtensionIssuingDistributionPoint
 * reads them all, except that reasons without a bit are read as a FALSE where none of the two is. */
TESSEL_API extern const Asn1Item ExtensionIssuingDistributionPointItem;

/* Writes the fields that are given. A name that is null is absent; a full name goes before a relative one. A flag or
 * the reasons are written when what follows them, whether they are present, is not 0; any flag but 0 is TRUE, and FALSE
 * is the DEFAULT. The names stay the caller's. */
TESSEL_API uint32_t TESSEL_CALL EncodeExtensionIssuingDistributionPoint(
    const X509GeneralNames* fullName, const X509Name* relativeName, uint8_t onlyContainsUserCerts,
    uint32_t hasOnlyContainsUserCerts, uint8_t onlyContainsCACerts, uint32_t hasOnlyContainsCACerts,
    uint32_t onlySomeReasons, uint32_t hasOnlySomeReasons, uint8_t indirectCRL, uint32_t hasIndirectCRL,
    uint8_t onlyContainsAttributeCerts, uint32_t hasOnlyContainsAttributeCerts, uint8_t* buffer, uint32_t* length);

/* Reads the flags (0x00 or 0xFF) and the reasons, each with 1 when it is there; a flag is there, as its DEFAULT, even
 * if it was not written. The outputs of absent reasons stay as they are.
 *
 * The two names only tell presence: the one that is there comes back as some pointer that is not null. It leads to no
 * name and must be neither used nor freed. For the names themselves decode the value with Asn1DecodeItem and
 * ExtensionIssuingDistributionPointItem.
 *
 * All outputs are required. TESSEL_INVALID_ARGUMENT also for no octets. */
TESSEL_API uint32_t TESSEL_CALL DecodeExtensionIssuingDistributionPoint(
    const uint8_t* data, uint32_t size, const X509GeneralNames** fullName, const X509Name** relativeName,
    uint8_t* onlyContainsUserCerts, uint32_t* hasOnlyContainsUserCerts, uint8_t* onlyContainsCACerts,
    uint32_t* hasOnlyContainsCACerts, uint32_t* onlySomeReasons, uint32_t* hasOnlySomeReasons, uint8_t* indirectCRL,
    uint32_t* hasIndirectCRL, uint8_t* onlyContainsAttributeCerts, uint32_t* hasOnlyContainsAttributeCerts);

#ifdef __cplusplus
}
#endif

#endif
