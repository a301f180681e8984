/* Extensions and lists of them (RFC 5280, 4.1 and 4.2). What the standard extensions hold is in extension_values.h. */
#ifndef TESSEL_EXTENSIONS_H
#define TESSEL_EXTENSIONS_H

#include <stdint.h>

#include "tessel/descriptor.h"

#ifdef __cplusplus
extern "C" {
#endif

/* X509Extension ::= SEQUENCE { extnID OBJECT IDENTIFIER, critical BOOLEAN DEFAULT FALSE, extnValue OCTET STRING } */
typedef struct X509Extension X509Extension;
TESSEL_API extern const Asn1Item X509ExtensionItem;

/* X509Extensions ::= SEQUENCE OF X509Extension */
typedef struct X509Extensions X509Extensions;
TESSEL_API extern const Asn1Item X509ExtensionsItem;

/* Where a list of extensions hangs: a member of a certificate, say, which GetCertificateExtensions lends. Its list is
 * null when there are no extensions; AddX509ExtensionsExtension makes it then. The list of a slot that is lent is
 * changed by functions only, never by an assignment. A list that stands for itself is put in a slot of the caller's:
 * X509ExtensionsSlot slot = {list}; */
typedef struct X509ExtensionsSlot {
  X509Extensions* list;
} X509ExtensionsSlot;

/* Extension identifiers are counted identifiers (oid.h). Values are what an extnValue holds: the DER of the extension's
 * type. */

/* A single extension. */

/* Makes an extension from copies of `oid` and `value`, which the caller frees. After a failure the handle is null. */
TESSEL_API uint32_t TESSEL_CALL CreateX509Extension(X509Extension** extension, const uint8_t* oid, uint32_t critical,
                                                    const uint8_t* value, uint32_t size);

/* Replaces identifier, criticality (any `critical` but 0 is TRUE) and value by copies, all or, after a failure, none.
 */
TESSEL_API uint32_t TESSEL_CALL SetX509Extension(X509Extension* extension, const uint8_t* oid, uint32_t critical,
                                                 const uint8_t* value, uint32_t size);

/* Reads identifier, criticality (0 or 1) and value; only the two buffers can be null. Every output is answered. The
 * status is that of the criticality, then of the identifier, then of the value. TESSEL_INVALID_CONTENT: the criticality
 * is no BOOLEAN. TESSEL_ABSENT: one of them is missing. */
TESSEL_API uint32_t TESSEL_CALL GetX509Extension(const X509Extension* extension, uint8_t* oid, uint32_t* oidLength,
                                                 uint32_t* critical, uint8_t* value, uint32_t* valueLength);

/* DecodeX509Extension, EncodeX509Extension, FreeX509Extension: from DER or BER to a new object, which the caller frees;
 * to DER in the caller's buffer; release, always 0. */
TESSEL_API uint32_t TESSEL_CALL DecodeX509Extension(const uint8_t* data, uint32_t size, X509Extension** extension);
TESSEL_API uint32_t TESSEL_CALL EncodeX509Extension(const X509Extension* extension, uint8_t* buffer, uint32_t* length);
TESSEL_API uint32_t TESSEL_CALL FreeX509Extension(X509Extension* extension);

/* A list of extensions. */

/* CreateX509Extensions, DecodeX509Extensions, EncodeX509Extensions, FreeX509Extensions: an empty list, which the caller
 * frees; from DER or BER to a new list, which the caller frees; to DER in the caller's buffer; release, always 0. */
TESSEL_API uint32_t TESSEL_CALL CreateX509Extensions(X509Extensions** extensions);
TESSEL_API uint32_t TESSEL_CALL DecodeX509Extensions(const uint8_t* data, uint32_t size, X509Extensions** extensions);
TESSEL_API uint32_t TESSEL_CALL EncodeX509Extensions(const X509Extensions* extensions, uint8_t* buffer,
                                                     uint32_t* length);
TESSEL_API uint32_t TESSEL_CALL FreeX509Extensions(X509Extensions* extensions);

/* Appends an extension made from copies, and makes the list when there is none. An extension with the same identifier
 * stays: remove it first. When it fails the slot is as it was. */
TESSEL_API uint32_t TESSEL_CALL AddX509ExtensionsExtension(X509ExtensionsSlot* slot, const uint8_t* oid,
                                                           uint32_t critical, const uint8_t* value, uint32_t size);

/* The index of the first extension with the identifier. TESSEL_NOT_FOUND: there is none, or no list. */
TESSEL_API uint32_t TESSEL_CALL FindX509Extension(const X509ExtensionsSlot* slot, const uint8_t* oid, uint32_t* index);

/* How many extensions there are; 0 without a list. */
TESSEL_API uint32_t TESSEL_CALL GetX509ExtensionsExtensionsCount(const X509ExtensionsSlot* slot, uint32_t* count);

/* Reads the extension at `index` as GetX509Extension does. TESSEL_INVALID_ARGUMENT: no such index. TESSEL_ABSENT: no
 * list, or an empty slot therein. */
TESSEL_API uint32_t TESSEL_CALL GetX509ExtensionsExtension(const X509ExtensionsSlot* slot, uint32_t index, uint8_t* oid,
                                                           uint32_t* oidLength, uint32_t* critical, uint8_t* value,
                                                           uint32_t* valueLength);

/* The value of the first extension with the identifier. TESSEL_NOT_FOUND: there is none, or no list. */
TESSEL_API uint32_t TESSEL_CALL GetX509ExtensionsExtensionValue(const X509ExtensionsSlot* slot, const uint8_t* oid,
                                                                uint8_t* buffer, uint32_t* length);

/* Removes the extension at `index`. TESSEL_INVALID_ARGUMENT: no such index. TESSEL_ABSENT: no list. */
TESSEL_API uint32_t TESSEL_CALL RemoveX509ExtensionsExtension(X509ExtensionsSlot* slot, uint32_t index);

/* Removes extensions with the identifier; when there is none, or no list, nothing happens. The extension that follows a
 * removed one is passed over: of two neighbours with the same identifier the second stays. */
TESSEL_API uint32_t TESSEL_CALL RemoveX509ExtensionsExtension2(X509ExtensionsSlot* slot, const uint8_t* oid);

/* Releases the whole list; the slot's list is null then. */
TESSEL_API uint32_t TESSEL_CALL RemoveX509Extensions(X509ExtensionsSlot* slot);

/* Releases all extensions and keeps the empty list, if there is one. */
TESSEL_API uint32_t TESSEL_CALL ClearX509Extensions(X509ExtensionsSlot* slot);

/* Sets the list's mark `sorted`, if there is a list. It makes no difference to how the list is written: extensions are
 * a SEQUENCE OF, which keeps its order. */
TESSEL_API uint32_t TESSEL_CALL SetX509ExtensionsSorted(X509ExtensionsSlot* slot, uint32_t sorted);

#ifdef __cplusplus
}
#endif

#endif
