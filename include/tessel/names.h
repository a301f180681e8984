/* Names: distinguished names, general names and free text (RFC 5280, 4.1.2.4 and 4.2.1.6; RFC 4210, 5.1.1). */
#ifndef TESSEL_NAMES_H
#define TESSEL_NAMES_H

#include <stdint.h>

#include "tessel/descriptor.h"

#ifdef __cplusplus
extern "C" {
#endif

/* X509Name ::= SEQUENCE OF RelativeDistinguishedName
 * RelativeDistinguishedName ::= SET OF SEQUENCE { type OBJECT IDENTIFIER, value ANY } */
typedef struct X509Name X509Name;
TESSEL_API extern const Asn1Item X509NameItem;

/* X509GeneralName ::= CHOICE {
 *   otherName                 [0] IMPLICIT ANY,           -- constructed
 *   rfc822Name                [1] IMPLICIT IA5String,
 *   dNSName                   [2] IMPLICIT IA5String,
 *   x400Address               [3] IMPLICIT ANY,           -- read when it is primitive
 *   directoryName             [4] EXPLICIT ANY,           -- an encoded X509Name
 *   ediPartyName              [5] IMPLICIT ANY,           -- constructed
 *   uniformResourceIdentifier [6] IMPLICIT IA5String,
 *   iPAddress                 [7] IMPLICIT OCTET STRING,
 *   registeredID              [8] IMPLICIT OBJECT IDENTIFIER }
 * The index of an alternative is its tag number. */
typedef struct X509GeneralName X509GeneralName;
TESSEL_API extern const Asn1Item X509GeneralNameItem;

/* X509GeneralNames ::= SEQUENCE OF X509GeneralName */
typedef struct X509GeneralNames X509GeneralNames;
TESSEL_API extern const Asn1Item X509GeneralNamesItem;

/* PKIFreeText ::= SEQUENCE OF UTF8String */
typedef struct PKIFreeText PKIFreeText;
TESSEL_API extern const Asn1Item PKIFreeTextItem;

/* CreateX509Name, CreateX509GeneralName, CreateX509GeneralNames, CreatePKIFreeText: make an empty object, which the
 * caller frees. A general name has no alternative yet. */
TESSEL_API uint32_t TESSEL_CALL CreateX509Name(X509Name** name);
TESSEL_API uint32_t TESSEL_CALL CreateX509GeneralName(X509GeneralName** name);
TESSEL_API uint32_t TESSEL_CALL CreateX509GeneralNames(X509GeneralNames** names);
TESSEL_API uint32_t TESSEL_CALL CreatePKIFreeText(PKIFreeText** text);

/* CopyX509Name, CreateX509GeneralNameCopy, CopyX509GeneralNames, CreatePKIFreeTextCopy: copy a whole object, which the
 * caller frees. */
TESSEL_API uint32_t TESSEL_CALL CopyX509Name(const X509Name* source, X509Name** copy);
TESSEL_API uint32_t TESSEL_CALL CreateX509GeneralNameCopy(const X509GeneralName* source, X509GeneralName** copy);
TESSEL_API uint32_t TESSEL_CALL CopyX509GeneralNames(const X509GeneralNames* source, X509GeneralNames** copy);
TESSEL_API uint32_t TESSEL_CALL CreatePKIFreeTextCopy(const PKIFreeText* source, PKIFreeText** copy);

/* DecodeX509Name, DecodeX509GeneralNames, DecodePKIFreeText: decode DER or BER into a new object, which the caller
 * frees. Statuses as for Asn1DecodeItem. */
TESSEL_API uint32_t TESSEL_CALL DecodeX509Name(const uint8_t* data, uint32_t size, X509Name** name);
TESSEL_API uint32_t TESSEL_CALL DecodeX509GeneralNames(const uint8_t* data, uint32_t size, X509GeneralNames** names);
TESSEL_API uint32_t TESSEL_CALL DecodePKIFreeText(const uint8_t* data, uint32_t size, PKIFreeText** text);

/* EncodeX509Name, EncodeX509GeneralNames, EncodePKIFreeText: write DER into the caller's buffer. */
TESSEL_API uint32_t TESSEL_CALL EncodeX509Name(const X509Name* name, uint8_t* buffer, uint32_t* length);
TESSEL_API uint32_t TESSEL_CALL EncodeX509GeneralNames(const X509GeneralNames* names, uint8_t* buffer,
                                                       uint32_t* length);
TESSEL_API uint32_t TESSEL_CALL EncodePKIFreeText(const PKIFreeText* text, uint8_t* buffer, uint32_t* length);

/* FreeX509Name, FreeX509GeneralName, FreeX509GeneralNames, FreePKIFreeText: release an object with all that it owns.
 * Always return 0. */
TESSEL_API uint32_t TESSEL_CALL FreeX509Name(X509Name* name);
TESSEL_API uint32_t TESSEL_CALL FreeX509GeneralName(X509GeneralName* name);
TESSEL_API uint32_t TESSEL_CALL FreeX509GeneralNames(X509GeneralNames* names);
TESSEL_API uint32_t TESSEL_CALL FreePKIFreeText(PKIFreeText* text);

/* Distinguished names. An attribute (an entry) is found by the index of its relative distinguished name (RDN) and its
 * index therein. The DER of an RDN is sorted, so that indices therein can change when a name is encoded and read. */

/* Releases all RDNs; the name is empty then. */
TESSEL_API uint32_t TESSEL_CALL ClearX509Name(X509Name* name);

/* How many RDNs the name has. */
TESSEL_API uint32_t TESSEL_CALL GetX509NameRdnCount(const X509Name* name, uint32_t* count);

/* How many attributes an RDN has. TESSEL_INVALID_ARGUMENT: no such RDN. */
TESSEL_API uint32_t TESSEL_CALL GetX509NameEntryCount(const X509Name* name, uint32_t rdn, uint32_t* count);

/* AddX509NameEntry: appends an attribute: `oid` is its type, a counted identifier; `value` holds the content octets of
 * its value, which are copied as they are, and `stringType` is their universal tag number (12 UTF8String,
 * 19 PrintableString, 22 IA5String, 30 BMPString; DetermineSuitableStringType helps to choose). With a `newRdn` other
 * than 0 it begins an RDN of its own; with 0 it joins the last one.
 * AddX509NameEntryExt: the same for a value under another tag: `tagClass` is 0, 0x40, 0x80 or 0xC0, `constructed` 0 or
 * 0x20.
 * TESSEL_INVALID_ARGUMENT: `newRdn` is 0 and the name has no RDN yet, one of the two octets is another, or `stringType`
 * is 2^31 or more. TESSEL_LENGTH_TOO_LARGE: the element would have 2^32 octets or more. */
TESSEL_API uint32_t TESSEL_CALL AddX509NameEntry(X509Name* name, const uint8_t* value, uint32_t size,
                                                 uint32_t stringType, const uint8_t* oid, uint32_t newRdn);
TESSEL_API uint32_t TESSEL_CALL AddX509NameEntryExt(X509Name* name, const uint8_t* value, uint32_t size,
                                                    uint8_t tagClass, uint8_t constructed, uint32_t stringType,
                                                    const uint8_t* oid, uint32_t newRdn);

/* GetX509NameEntry, GetX509NameEntryExt: read an attribute: the content octets of its value into `buffer`, their tag
 * number (and class, 0 to 0xC0, and constructed bit, 0 or 0x20) and its type as a counted identifier. Of a value of
 * indefinite length the content includes the end-of-contents octets.
 *
 * The two buffers go together. With both null the call tells both lengths. With only one of them the lengths are told
 * and the status is TESSEL_BUFFER_TOO_SMALL. With both the type is written first: when that fails, the value is not
 * copied, but `length` tells the length that it needs.
 *
 * TESSEL_INVALID_ARGUMENT: no such RDN or attribute, or a required pointer is null: all but the two buffers are.
 * TESSEL_ABSENT: the attribute has no value. Statuses also as for GetAsn1AnyInfo; TESSEL_MALFORMED: the value's element
 * claims more octets than there are. */
TESSEL_API uint32_t TESSEL_CALL GetX509NameEntry(const X509Name* name, uint32_t rdn, uint32_t entry, uint8_t* buffer,
                                                 uint32_t* length, uint32_t* stringType, uint8_t* oid,
                                                 uint32_t* oidLength);
TESSEL_API uint32_t TESSEL_CALL GetX509NameEntryExt(const X509Name* name, uint32_t rdn, uint32_t entry, uint8_t* buffer,
                                                    uint32_t* length, uint8_t* tagClass, uint8_t* constructed,
                                                    uint32_t* stringType, uint8_t* oid, uint32_t* oidLength);

/* Removes an attribute, and its RDN when it was the only one therein; the attribute 0 of an empty RDN is the RDN alone.
 * TESSEL_INVALID_ARGUMENT: no such RDN or attribute. */
TESSEL_API uint32_t TESSEL_CALL DeleteX509NameEntry(X509Name* name, uint32_t rdn, uint32_t entry);

/* Compares the values of two names in the order in which they are stored: 0 when they are the same, TESSEL_DIFFERENT
 * when not. What is compared of each value is its length and its content. Attribute types are not looked at, and
 * neither is the string type: PrintableString and UTF8String with the same content are the same, and so are a
 * commonName and an organizationName. Nothing is done about case or blanks. TESSEL_ABSENT: one of the names never had
 * an RDN. */
TESSEL_API uint32_t TESSEL_CALL CompareX509Names(const X509Name* first, const X509Name* second);

/* Chooses the narrowest string type for a text, as a universal tag number: 18 NumericString for digits and spaces only
 * (or nothing), 19 PrintableString, 22 IA5String, 12 UTF8String when there is a control character or an octet above
 * 127. */
TESSEL_API uint32_t TESSEL_CALL DetermineSuitableStringType(const uint8_t* text, uint32_t length, uint32_t* stringType);

/* General names. What stands for the value of one depends on its alternative:
 *
 *   0, 3, 5   the whole element: when building, the encoding of the inner value, which gets the alternative's tag when
 *             it is encoded and stays constructed or primitive as it is; when reading, what is stored, which for a
 *             decoded name has that tag already
 *   4         the encoded X509Name
 *   1, 2, 6   the characters, which are not checked
 *   7         the octets of the address
 *   8         a counted identifier */

/* AddX509GeneralName: builds a general name from a copy of `value` and appends it. AllocX509GeneralNameValue: makes one
 * without a list, which the caller frees. For alternative 8 `size` is not looked at. TESSEL_INVALID_ARGUMENT: an
 * alternative that is a whole element has no octets. TESSEL_WRONG_ALTERNATIVE: `alternative` is 9 or more. */
TESSEL_API uint32_t TESSEL_CALL AddX509GeneralName(X509GeneralNames* names, uint32_t alternative, const uint8_t* value,
                                                   uint32_t size);
TESSEL_API uint32_t TESSEL_CALL AllocX509GeneralNameValue(X509GeneralName** name, uint32_t alternative,
                                                          const uint8_t* value, uint32_t size);

/* How many general names the list holds. */
TESSEL_API uint32_t TESSEL_CALL GetX509GeneralNameCount(const X509GeneralNames* names, uint32_t* count);

/* GetX509GeneralName, GetX509GeneralNameValue: read a general name of a list, or one for itself: its alternative first,
 * which is written whatever becomes of the value, then its value into the caller's buffer. TESSEL_INVALID_ARGUMENT: no
 * such index. TESSEL_ABSENT: there is no value. TESSEL_WRONG_ALTERNATIVE: the alternative is 9 or more. */
TESSEL_API uint32_t TESSEL_CALL GetX509GeneralName(const X509GeneralNames* names, uint32_t index, uint32_t* alternative,
                                                   uint8_t* buffer, uint32_t* length);
TESSEL_API uint32_t TESSEL_CALL GetX509GeneralNameValue(const X509GeneralName* name, uint32_t* alternative,
                                                        uint8_t* buffer, uint32_t* length);

/* Decodes the first directoryName of the list that is an X509Name into a new name, which the caller frees.
 * TESSEL_NOT_FOUND: there is none. After a failure the handle is null. */
TESSEL_API uint32_t TESSEL_CALL GetX509NameFromGeneralNames(const X509GeneralNames* names, X509Name** name);

/* Free text. */

/* Appends a text: UTF-8, copied as it is. */
TESSEL_API uint32_t TESSEL_CALL AddPKIFreeTextString(PKIFreeText* text, const uint8_t* utf8, uint32_t size);

/* How many texts there are. */
TESSEL_API uint32_t TESSEL_CALL GetPKIFreeTextStringCount(const PKIFreeText* text, uint32_t* count);

/* Reads the text at `index`, its octets without a NUL. TESSEL_INVALID_ARGUMENT: no such index. */
TESSEL_API uint32_t TESSEL_CALL GetPKIFreeTextString(const PKIFreeText* text, uint32_t index, uint8_t* buffer,
                                                     uint32_t* length);

#ifdef __cplusplus
}
#endif

#endif
