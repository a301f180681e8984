/* Object identifiers.
 *
 * An object identifier crosses the interface as a counted identifier: one octet n, then the n content octets of its DER
 * (X.690, 8.19), without tag and length. n = 0 is the empty identifier. Where one goes into a buffer its length is n +
 * 1; where one comes in, only a pointer does. One that was decoded and takes more than the 255 octets that can be
 * counted is TESSEL_MALFORMED to every function that would give it out. */
#ifndef TESSEL_OID_H
#define TESSEL_OID_H

#include <stdint.h>

#include "tessel/nodes.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Writes an identifier as dotted decimal text into the caller's buffer, the NUL included in `length`. The first value
 * is split by 40 whatever it is: 2.999 is written as 26.39. Arcs of more than 32 bits wrap. The empty identifier is
 * "0.0". TESSEL_INVALID_ARGUMENT: the last arc does not end. */
TESSEL_API uint32_t TESSEL_CALL ConvertOidToString(const uint8_t* oid, char* text, uint32_t* length);

/* Reads dotted decimal text into a counted identifier. Each component is read as C reads an int: its leading digits
 * count, and values of more than 32 bits wrap. The first two are joined as first * 40 + second without a check; a
 * single component gets a second, 0; the empty text gives the empty identifier. TESSEL_INVALID_ARGUMENT: a component is
 * empty or has no digits, or is 0 without being just "0"; or the identifier takes more than the 255 octets that can be
 * counted. */
TESSEL_API uint32_t TESSEL_CALL ConvertStringToOid(const char* text, uint8_t* buffer, uint32_t* length);

/* Reads the OBJECT IDENTIFIER at the start of `data` into a counted identifier. TESSEL_MALFORMED: it is none, or its
 * content runs past the input or takes more than 255 octets. TESSEL_INDEFINITE_LENGTH. TESSEL_LENGTH_TOO_LARGE. */
TESSEL_API uint32_t TESSEL_CALL DecodeAsn1Oid(const uint8_t* data, uint32_t size, uint8_t* buffer, uint32_t* length);

/* Writes the DER of a counted identifier, with tag and length, into the caller's buffer. */
TESSEL_API uint32_t TESSEL_CALL EncodeAsn1Oid(const uint8_t* oid, uint8_t* buffer, uint32_t* length);

/* IsOidEquals: whether two counted identifiers are the same. IsOidAndAsn1ObjectIdentifierEquals: whether a counted
 * identifier and a node are. Return 1 or 0, not a status; 0 when either is null. */
TESSEL_API uint32_t TESSEL_CALL IsOidEquals(const uint8_t* first, const uint8_t* second);
TESSEL_API uint32_t TESSEL_CALL IsOidAndAsn1ObjectIdentifierEquals(const uint8_t* oid, const Asn1Oid* node);

/* Two tables give common identifiers a number.
 *
 * Types of name attributes (X.520, RFC 4519, RFC 3739, and Russian practice): 1 commonName, 2 organizationName,
 * 3 organizationalUnitName, 4 countryName, 5 stateOrProvinceName, 6 localityName, 7 emailAddress, 8 surname, 9
 * givenName, 10 title, 11 domainComponent, 12 aliasedEntryName, 13 dateOfBirth, 14 userCertificate, 15 description, 16
 * gender, 17 generationQualifier, 18 initials, 19 IP address (1.3.6.1.4.1.42.2.11.2.1), 20 placeOfBirth, 21
 * postalAddress, 22 postalCode, 23 pseudonym, 24 serialNumber, 25 streetAddress, 26 userid, 27 roleOccupant, 28 owner,
 * 29 uniqueIdentifier, 30 SNILS, 31 INN, 32 OGRN.
 *
 * Algorithms (RFC 8017, RFC 4491, RFC 9215): 1 rsaEncryption, 2 md2WithRSAEncryption, 3 md5WithRSAEncryption,
 * 4 sha1WithRSAEncryption, 100 and 101 signature GOST R 34.10-2001 and 34.10-94 with GOST R 34.11-94, 102 and 103 their
 * keys, 1000 GOST 28147-89, 2000 GOST R 34.11-94, 3000 and 3001 keys GOST R 34.10-2012 of 256 and 512 bits, 3002 and
 * 3003 signature with them. */

/* FindNameAttributeTypeIdByOid, FindAlgIdByOid: the number of a counted identifier. TESSEL_UNKNOWN_OID: the table does
 * not have it. GetNameAttributeTypeOid, GetPublicKeyAlgorithmOid: the counted identifier of a number, in the caller's
 * buffer. TESSEL_UNKNOWN_ID: the table does not have it. */
TESSEL_API uint32_t TESSEL_CALL FindNameAttributeTypeIdByOid(const uint8_t* oid, uint32_t* id);
TESSEL_API uint32_t TESSEL_CALL GetNameAttributeTypeOid(uint32_t id, uint8_t* buffer, uint32_t* length);
TESSEL_API uint32_t TESSEL_CALL FindAlgIdByOid(const uint8_t* oid, uint32_t* id);
TESSEL_API uint32_t TESSEL_CALL GetPublicKeyAlgorithmOid(uint32_t id, uint8_t* buffer, uint32_t* length);

#ifdef __cplusplus
}
#endif

#endif
