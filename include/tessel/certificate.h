/* Certificates (RFC 5280, 4.1). */
#ifndef TESSEL_CERTIFICATE_H
#define TESSEL_CERTIFICATE_H

#include <stdint.h>

#include "tessel/descriptor.h"
#include "tessel/extensions.h"
#include "tessel/names.h"
#include "tessel/time.h"

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

/* Members. All these functions take the certificate first. TESSEL_ABSENT: it has no to-be-signed part, or not the
 * member that the function is about. A setter that fails leaves the member as it was. */

/* GetCertificateVersion, SetCertificateVersion: the number that is stored: 0 for v1, 1 for v2, 2 for v3. Reading a
 * number of more than 32 bits is TESSEL_BUFFER_TOO_SMALL; setting 3 or more TESSEL_INVALID_ARGUMENT. */
TESSEL_API uint32_t TESSEL_CALL GetCertificateVersion(const Certificate* certificate, int32_t* version);
TESSEL_API uint32_t TESSEL_CALL SetCertificateVersion(Certificate* certificate, uint32_t version);

/* GetCertificateSerialNumber, SetCertificateSerialNumber: the content octets of the INTEGER, big-endian. They are
 * stored as they are given, at least one. ptr_GetCertificateSerialNumber: lends the octets and tells their length; null
 * when there is nothing to lend. This is no status. */
TESSEL_API uint32_t TESSEL_CALL GetCertificateSerialNumber(const Certificate* certificate, uint8_t* buffer,
                                                           uint32_t* length);
TESSEL_API uint32_t TESSEL_CALL SetCertificateSerialNumber(Certificate* certificate, const uint8_t* serial,
                                                           uint32_t size);
TESSEL_API const uint8_t* TESSEL_CALL ptr_GetCertificateSerialNumber(const Certificate* certificate, uint32_t* length);

/* GetCertificateIssuer, GetCertificateSubject: lend the name, to be read or changed in place. When there is none yet,
 * as in a new certificate, an empty one is made. */
TESSEL_API uint32_t TESSEL_CALL GetCertificateIssuer(Certificate* certificate, X509Name** name);
TESSEL_API uint32_t TESSEL_CALL GetCertificateSubject(Certificate* certificate, X509Name** name);

/* SetCertificateIssuer, SetCertificateSubject: copy a name into the certificate.
 * SetCertificateIssuer_i, SetCertificateSubject_i: copy it when `copies` is not 0, and take it otherwise. */
TESSEL_API uint32_t TESSEL_CALL SetCertificateIssuer(Certificate* certificate, const X509Name* name);
TESSEL_API uint32_t TESSEL_CALL SetCertificateSubject(Certificate* certificate, const X509Name* name);
TESSEL_API uint32_t TESSEL_CALL SetCertificateIssuer_i(Certificate* certificate, X509Name* name, uint32_t copies);
TESSEL_API uint32_t TESSEL_CALL SetCertificateSubject_i(Certificate* certificate, X509Name* name, uint32_t copies);

/* GetCertificateValidNotBefore, GetCertificateValidNotAfter: read a time as DecodeTime does.
 * SetCertificateValidNotBefore, SetCertificateValidNotAfter: store a time as EncodeTime does: a UTCTime when the year
 * is below 2050, otherwise a GeneralizedTime. */
TESSEL_API uint32_t TESSEL_CALL GetCertificateValidNotBefore(const Certificate* certificate, LibraryTime* time);
TESSEL_API uint32_t TESSEL_CALL GetCertificateValidNotAfter(const Certificate* certificate, LibraryTime* time);
TESSEL_API uint32_t TESSEL_CALL SetCertificateValidNotBefore(Certificate* certificate, const LibraryTime* time);
TESSEL_API uint32_t TESSEL_CALL SetCertificateValidNotAfter(Certificate* certificate, const LibraryTime* time);

/* GetCertificateIssuerUniqueId, GetCertificateSubjectUniqueId: the octets of the BIT STRING, and how many bits of the
 * last one are not used, if `unused` is not null.
 * SetCertificateIssuerUniqueId, SetCertificateSubjectUniqueId: store a copy; null octets remove the member.
 * TESSEL_INVALID_ARGUMENT: `unused` is above 7. */
TESSEL_API uint32_t TESSEL_CALL GetCertificateIssuerUniqueId(const Certificate* certificate, uint8_t* buffer,
                                                             uint32_t* length, uint8_t* unused);
TESSEL_API uint32_t TESSEL_CALL GetCertificateSubjectUniqueId(const Certificate* certificate, uint8_t* buffer,
                                                              uint32_t* length, uint8_t* unused);
TESSEL_API uint32_t TESSEL_CALL SetCertificateIssuerUniqueId(Certificate* certificate, const uint8_t* octets,
                                                             uint32_t size, uint8_t unused);
TESSEL_API uint32_t TESSEL_CALL SetCertificateSubjectUniqueId(Certificate* certificate, const uint8_t* octets,
                                                              uint32_t size, uint8_t unused);

/* GetCertificatePublicKey, SetCertificatePublicKey: the octets of subjectPublicKey, which holds whole octets. */
TESSEL_API uint32_t TESSEL_CALL GetCertificatePublicKey(const Certificate* certificate, uint8_t* buffer,
                                                        uint32_t* length);
TESSEL_API uint32_t TESSEL_CALL SetCertificatePublicKey(Certificate* certificate, const uint8_t* key, uint32_t size);

/* GetCertificatePublicKeyAlgorithmOidAndParameters, SetCertificatePublicKeyAlgorithmOidAndParameters,
 * SetCertificatePublicKeyAlgorithmIdAndParameters: the algorithm of the subject's public key (algorithms.h). */
TESSEL_API uint32_t TESSEL_CALL GetCertificatePublicKeyAlgorithmOidAndParameters(const Certificate* certificate,
                                                                                 uint8_t* oid, uint32_t* oidLength,
                                                                                 uint8_t* parameters,
                                                                                 uint32_t* parametersLength);
TESSEL_API uint32_t TESSEL_CALL SetCertificatePublicKeyAlgorithmOidAndParameters(Certificate* certificate,
                                                                                 const uint8_t* oid,
                                                                                 const uint8_t* parameters,
                                                                                 uint32_t parametersSize);
TESSEL_API uint32_t TESSEL_CALL SetCertificatePublicKeyAlgorithmIdAndParameters(Certificate* certificate,
                                                                                uint32_t algorithm,
                                                                                const uint8_t* parameters,
                                                                                uint32_t parametersSize);

/* GetCertificateSignatureAlgorithmOidAndParameters: the algorithm in the to-be-signed part (algorithms.h).
 * SetCertificateSignatureAlgorithmOidAndParameters: sets it there and beside the signature. */
TESSEL_API uint32_t TESSEL_CALL GetCertificateSignatureAlgorithmOidAndParameters(const Certificate* certificate,
                                                                                 uint8_t* oid, uint32_t* oidLength,
                                                                                 uint8_t* parameters,
                                                                                 uint32_t* parametersLength);
TESSEL_API uint32_t TESSEL_CALL SetCertificateSignatureAlgorithmOidAndParameters(Certificate* certificate,
                                                                                 const uint8_t* oid,
                                                                                 const uint8_t* parameters,
                                                                                 uint32_t parametersSize);

/* GetCertificateSignature, SetCertificateSignature: the octets of the signature, which holds whole octets. */
TESSEL_API uint32_t TESSEL_CALL GetCertificateSignature(const Certificate* certificate, uint8_t* buffer,
                                                        uint32_t* length);
TESSEL_API uint32_t TESSEL_CALL SetCertificateSignature(Certificate* certificate, const uint8_t* signature,
                                                        uint32_t size);

/* GOST R 34.10 keys and signatures (RFC 4491, RFC 9215). */

/* SetCertificateGostR34102001SignatureAlgorithmID: sets the signature algorithm by its number (oid.h), in the
 * to-be-signed part and beside the signature, with parameters NULL when `mode` is 0 and without when it is 0xFF;
 * another is TESSEL_INVALID_ARGUMENT. SetCertificateGostR34102001SignatureAlgorithmIDAndParameters: the same with all
 * modes and parameter sets of SetAlgorithmGostR34102001AndParameters.
 * SetCertificateGostR34102001PublicKeyAlgorithmIdAndParameters: the algorithm of the subject's public key. */
TESSEL_API uint32_t TESSEL_CALL SetCertificateGostR34102001SignatureAlgorithmID(Certificate* certificate,
                                                                                uint32_t algorithm, uint8_t mode);
TESSEL_API uint32_t TESSEL_CALL SetCertificateGostR34102001SignatureAlgorithmIDAndParameters(
    Certificate* certificate, uint32_t algorithm, uint8_t mode, uint32_t publicKeySet, uint32_t digestSet,
    uint32_t encryptionSet);
TESSEL_API uint32_t TESSEL_CALL SetCertificateGostR34102001PublicKeyAlgorithmIdAndParameters(
    Certificate* certificate, uint32_t algorithm, uint8_t mode, uint32_t publicKeySet, uint32_t digestSet,
    uint32_t encryptionSet);

/* SetCertificateGostR34102001PublicKey: stores the key wrapped in an OCTET STRING.
 * GetCertificatePublicKeyGostR3410: reads what is wrapped. TESSEL_INTERNAL_BUFFER_TOO_SMALL: the OCTET STRING has more
 * than 256 octets when stored, 270 when read. Statuses also as for DecodeAsn1PrimitiveValue. */
TESSEL_API uint32_t TESSEL_CALL SetCertificateGostR34102001PublicKey(Certificate* certificate, const uint8_t* key,
                                                                     uint32_t size);
TESSEL_API uint32_t TESSEL_CALL GetCertificatePublicKeyGostR3410(const Certificate* certificate, uint8_t* buffer,
                                                                 uint32_t* length);

/* Reads a key of GOST R 34.10-2001 or 34.10-2012 as GetCertificatePublicKeyGostR3410 does, with the numbers of its
 * parameter sets (algorithms.h), and checks that algorithm and sets belong together:
 *
 *   algorithm 102: public key sets 1 to 6, digest set 1 or 2
 *   algorithm 3000: public key sets 1 to 7 and 9, digest set 3
 *   algorithm 3001: public key sets 8, 10, 11 and 12, digest set 4
 *
 * TESSEL_INVALID_KEY: they do not, or the algorithm is another, or it has no sets. TESSEL_UNKNOWN_OID: the algorithm or
 * a set is in no table. TESSEL_INTERNAL_BUFFER_TOO_SMALL: algorithm or parameters take more than 100 octets, or the
 * wrapped key more than 168. The numbers are there as soon as they are known to belong together.
 * An encryption set that is left out is 1, whatever the algorithm, as DecodeAlgorithmGostR34102001Parameters has it. */
TESSEL_API uint32_t TESSEL_CALL GetCertificateDecodedPublicKeyGostR34102012(const Certificate* certificate,
                                                                            uint8_t* buffer, uint32_t* length,
                                                                            uint32_t* publicKeySet, uint32_t* digestSet,
                                                                            uint32_t* encryptionSet);

/* Extensions (extensions.h, extension_values.h). */

/* Lends the slot of the certificate's extensions, to be read and changed in place. Its list is null when there are
 * none. */
TESSEL_API uint32_t TESSEL_CALL GetCertificateExtensions(Certificate* certificate, X509ExtensionsSlot** slot);

/* Copies a list of extensions into the certificate, in place of its own. TESSEL_INVALID_ARGUMENT: the slot has no
 * list. */
TESSEL_API uint32_t TESSEL_CALL SetCertificateExtensions(Certificate* certificate, const X509ExtensionsSlot* slot);

/* Reads the value of the first extension with a counted identifier. TESSEL_NOT_FOUND: there is none, or no to-be-signed
 * part. */
TESSEL_API uint32_t TESSEL_CALL GetCertificateExtensionValue(const Certificate* certificate, const uint8_t* oid,
                                                             uint8_t* buffer, uint32_t* length);

/* Replaces the certificate's CRL distribution points (2.5.29.31) by a single one, whose full name is the URI; not
 * critical. TESSEL_BUFFER_TOO_SMALL: the value would have more than 2048 octets. */
TESSEL_API uint32_t TESSEL_CALL SetCertificateExtensionCrlDistributionPoints(Certificate* certificate, const char* uri);

/* Writes a text for people into the caller's buffer, in Windows-1251: the serial number, when all its octets are
 * characters between 32 and 122, with ", " after it; then the common names of the subject, the first of each RDN, one
 * after the other. A UTF8String or BMPString is converted; of any other type, PrintableString included, each octet
 * becomes a question mark. At the end stands a NUL: when `length` tells what is needed the NUL is included, when the
 * text was written it is not.
 *
 * A serial number of more than 99 octets is left out. TESSEL_BUFFER_TOO_SMALL is also the status, and `length`
 * untouched, when the text and its NUL would have more than 1024 octets, or a common name has more than 1024. */
TESSEL_API uint32_t TESSEL_CALL GetCertificateCN(const Certificate* certificate, char* buffer, uint32_t* length);

#ifdef __cplusplus
}
#endif

#endif
