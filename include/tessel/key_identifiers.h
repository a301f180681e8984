/* Key identifiers of certificates: computed, stored, read and matched (RFC 5280, 4.2.1.1 and 4.2.1.2).
 *
 * Setters replace all extensions of their identifier by one that is not critical; one that fails leaves the certificate
 * as it was.
 * TESSEL_ABSENT: the certificate has no to-be-signed part.
 * Getters: TESSEL_NOT_FOUND: the certificate has no such extension, or no to-be-signed part; statuses also as for the
 * decoder of the value (extension_values.h). */
#ifndef TESSEL_KEY_IDENTIFIERS_H
#define TESSEL_KEY_IDENTIFIERS_H

#include <stdint.h>

#include "tessel/certificate.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Reads the subject key identifier (2.5.29.14). TESSEL_OUT_OF_MEMORY: the extension's value has more than 1024
 * octets. */
TESSEL_API uint32_t TESSEL_CALL GetCertificateSubjectKeyIdentifier(const Certificate* certificate, uint8_t* buffer,
                                                                   uint32_t* length);

/* Stores the subject key identifier: the SHA-1 of the octets of subjectPublicKey (RFC 5280, 4.2.1.2, method 1).
 * TESSEL_INTERNAL_BUFFER_TOO_SMALL: the key has more than 512 octets. TESSEL_ABSENT also: there is no key. */
TESSEL_API uint32_t TESSEL_CALL SetCertificateSubjectKeyIdentifier(Certificate* certificate);

/* GetCertificateAuthorityKeyIdentifier: reads the authority key identifier (2.5.29.35) as
 * DecodeExtensionAuthorityKeyIdentifier does; the names are the caller's to free, also those of a call that only asks
 * for the lengths. GetCertificateAuthorityKeyIdentifier2: the same with the first distinguished name among the names
 * instead of them, as by GetX509NameFromGeneralNames; null when the extension names no issuer. Names and name are null
 * after any failure, TESSEL_BUFFER_TOO_SMALL for one of the buffers too. TESSEL_INTERNAL_BUFFER_TOO_SMALL: the
 * extension's value has more than 1024 octets. */
TESSEL_API uint32_t TESSEL_CALL GetCertificateAuthorityKeyIdentifier(const Certificate* certificate,
                                                                     uint8_t* keyIdentifier,
                                                                     uint32_t* keyIdentifierLength,
                                                                     X509GeneralNames** names, uint8_t* serial,
                                                                     uint32_t* serialLength);
TESSEL_API uint32_t TESSEL_CALL GetCertificateAuthorityKeyIdentifier2(const Certificate* certificate,
                                                                      uint8_t* keyIdentifier,
                                                                      uint32_t* keyIdentifierLength, X509Name** name,
                                                                      uint8_t* serial, uint32_t* serialLength);

/* SetCertificateAuthorityKeyIdentifier: stores the authority key identifier that points to the issuer's certificate:
 * its subject key identifier, when it has one (of at most 32 octets), its own issuer, unless it was never set, and its
 * serial number. TESSEL_INTERNAL_BUFFER_TOO_SMALL: the serial number has more than 64 octets. TESSEL_ABSENT: there is
 * none. TESSEL_INVALID_ARGUMENT: there is neither a key identifier nor both an issuer and a serial number.
 * SetCertificateAuthorityKeyIdentifier2: stores one of these values; null leaves a field out. The issuer's name is
 * copied. TESSEL_INVALID_ARGUMENT: neither a key identifier nor both an issuer and a serial number are given. */
TESSEL_API uint32_t TESSEL_CALL SetCertificateAuthorityKeyIdentifier(Certificate* certificate,
                                                                     const Certificate* issuer);
TESSEL_API uint32_t TESSEL_CALL SetCertificateAuthorityKeyIdentifier2(Certificate* certificate,
                                                                      const uint8_t* keyIdentifier,
                                                                      uint32_t keyIdentifierSize,
                                                                      const X509Name* issuer, const uint8_t* serial,
                                                                      uint32_t serialSize);

/* Whether an authority key identifier points to the certificate: 0 when it does, TESSEL_DIFFERENT when not. With a key
 * identifier only that is compared, with the certificate's subject key identifier; otherwise the serial number and then
 * the issuer, by CompareX509Names. TESSEL_INVALID_ARGUMENT: none of the three is given, or only a serial number that is
 * the certificate's. TESSEL_INTERNAL_BUFFER_TOO_SMALL: the certificate's key identifier has more than 32 octets.
 * TESSEL_INVALID_CONTENT: the certificate has no serial number. Statuses also as for the getters, when the certificate
 * has no key identifier that can be read, and as for CompareX509Names. */
TESSEL_API uint32_t TESSEL_CALL IsCertificateCorrespondToAuthKeyIdent(const Certificate* certificate,
                                                                      const uint8_t* keyIdentifier,
                                                                      uint32_t keyIdentifierSize,
                                                                      const X509Name* issuer, const uint8_t* serial,
                                                                      uint32_t serialSize);

/* SetCertificateArdekKeyIdentifier: stores a key identifier that is a text (1.2.643.3.123.3.1, a UTF8String), given in
 * Windows-1251. TESSEL_INTERNAL_BUFFER_TOO_SMALL: it does not fit 138 octets as ConvertAnsiToUTF8 counts them, or as a
 * UTF8String.
 * GetArdekIdentifierFromCertificate: reads it, in Windows-1251, without a NUL. A null or too small buffer is told the
 * length of the text in UTF-8, and it must be as long; when the text is written `length` receives its own length. */
TESSEL_API uint32_t TESSEL_CALL SetCertificateArdekKeyIdentifier(Certificate* certificate, const char* text);
TESSEL_API uint32_t TESSEL_CALL GetArdekIdentifierFromCertificate(const Certificate* certificate, char* buffer,
                                                                  uint32_t* length);

#ifdef __cplusplus
}
#endif

#endif
