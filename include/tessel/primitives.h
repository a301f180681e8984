/* Primitive values: the nodes that hold one, and single values encoded and decoded.
 *
 * Whole numbers cross the interface as int32_t, or as octets in little-endian two's complement, the least significant
 * first. A node holds them as they are encoded, the most significant first. */
#ifndef TESSEL_PRIMITIVES_H
#define TESSEL_PRIMITIVES_H

#include <stdint.h>

#include "tessel/descriptor.h"
#include "tessel/nodes.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Writes the content octets of a value into the caller's buffer. TESSEL_ABSENT: the node has a length but no octets. */
TESSEL_API uint32_t TESSEL_CALL GetAsn1Value(const Asn1Value* value, uint8_t* buffer, uint32_t* length);

/* The same, and `type` receives the tag of the node when octets were copied. TESSEL_ABSENT: the node has no octets,
 * also when its length is 0. */
TESSEL_API uint32_t TESSEL_CALL GetAsn1ValueAndType(const Asn1Value* value, uint32_t* type, uint8_t* buffer,
                                                    uint32_t* length);

/* Returns the length of the content, not a status; 0 for a null node. */
TESSEL_API uint32_t TESSEL_CALL GetAsn1ValueLength(const Asn1Value* value);

/* Writes the whole encoding of a node of any kind into the caller's buffer, as Asn1Encode makes it. */
TESSEL_API uint32_t TESSEL_CALL GetAsn1EncodedValue(const void* node, const Asn1Item* descriptor, uint8_t* buffer,
                                                    uint32_t* length);

/* Writes the content of an INTEGER into the caller's buffer, little-endian. TESSEL_ABSENT: the node has no octets. */
TESSEL_API uint32_t TESSEL_CALL GetAsn1Integer(const Asn1Value* value, uint8_t* buffer, uint32_t* length);

/* Reads an INTEGER or ENUMERATED. TESSEL_ABSENT: the node has no octets. TESSEL_BUFFER_TOO_SMALL: it has more than
 * four. */
TESSEL_API uint32_t TESSEL_CALL GetAsn1Int32(const Asn1Value* value, int32_t* number);

/* Reads a BOOLEAN as 0 or 1. The tag of the node is not looked at. TESSEL_INVALID_CONTENT: the content is not one octet
 * of 0x00 or 0xFF. */
TESSEL_API uint32_t TESSEL_CALL GetAsn1Boolean(const Asn1Value* value, uint32_t* flag);

/* Writes the octets of a BIT STRING into the caller's buffer; `unused`, which may be null, receives how many bits of
 * the last octet are not used, whatever comes of the buffer. TESSEL_ABSENT: the BIT STRING is empty. */
TESSEL_API uint32_t TESSEL_CALL GetAsn1BitString(const Asn1BitString* bits, uint8_t* unused, uint8_t* buffer,
                                                 uint32_t* length);

/* Stores an INTEGER, copied from `length` (at least 1) little-endian octets. Redundant octets at the most significant
 * end are left out. When the call fails the node is as it was. */
TESSEL_API uint32_t TESSEL_CALL SetAsn1Integer(Asn1Value* value, const uint8_t* octets, uint32_t length);

/* Stores an INTEGER. When the call fails the node is as it was. */
TESSEL_API uint32_t TESSEL_CALL SetAsn1Int32(Asn1Value* value, int32_t number);

/* AllocAsn1Integer, AllocAsn1Integer_s, AllocAsn1Boolean: return a new INTEGER or BOOLEAN, which the caller frees with
 * FreeAsn1Object, or null when there is no memory. AllocAsn1Integer_s copies the content as it is: most significant
 * octet first, nothing left out; null for null octets. A flag other than 0 is TRUE. */
TESSEL_API Asn1Value* TESSEL_CALL AllocAsn1Integer(int32_t number);
TESSEL_API Asn1Value* TESSEL_CALL AllocAsn1Integer_s(const uint8_t* octets, uint32_t length);
TESSEL_API Asn1Value* TESSEL_CALL AllocAsn1Boolean(uint32_t flag);

/* CheckAsn1Boolean: whether the node is a BOOLEAN (tag 1) of one octet, 0x00 or 0xFF (X.690, 8.2 and 11.1).
 * CheckAsn1Integer: whether it is an INTEGER (tag 2) whose content is a two's-complement number without a redundant
 * leading octet (X.690, 8.3). TESSEL_INVALID_CONTENT when it is not. */
TESSEL_API uint32_t TESSEL_CALL CheckAsn1Boolean(const Asn1Value* value);
TESSEL_API uint32_t TESSEL_CALL CheckAsn1Integer(const Asn1Value* value);

/* EncodeAsn1Int32: writes the encoding of an INTEGER into the caller's buffer. DecodeAsn1Int32: reads it back. Statuses
 * as for Asn1DecodeItem and GetAsn1Int32. */
TESSEL_API uint32_t TESSEL_CALL EncodeAsn1Int32(int32_t number, uint8_t* buffer, uint32_t* length);
TESSEL_API uint32_t TESSEL_CALL DecodeAsn1Int32(const uint8_t* data, uint32_t size, int32_t* number);

/* EncodeAsn1PrimitiveValue: writes a header of the universal tag `tag` (its low octet) and the content octets into the
 * caller's buffer; the content is not checked. DecodeAsn1PrimitiveValue: decodes such an element, as Asn1DecodeItem
 * does, and writes its content into the caller's buffer. TESSEL_UNSUPPORTED_KIND: no primitive type whose content is
 * plain octets has this tag (BIT STRING is none). */
TESSEL_API uint32_t TESSEL_CALL EncodeAsn1PrimitiveValue(uint32_t tag, const uint8_t* content, uint32_t size,
                                                         uint8_t* buffer, uint32_t* length);
TESSEL_API uint32_t TESSEL_CALL DecodeAsn1PrimitiveValue(uint32_t tag, const uint8_t* data, uint32_t size,
                                                         uint8_t* buffer, uint32_t* length);

/* EncodeAsn1IA5String, DecodeAsn1IA5String, EncodeAsn1NumericString, DecodeAsn1NumericString: the same for one type.
 * The characters are not checked. */
TESSEL_API uint32_t TESSEL_CALL EncodeAsn1IA5String(const uint8_t* content, uint32_t size, uint8_t* buffer,
                                                    uint32_t* length);
TESSEL_API uint32_t TESSEL_CALL DecodeAsn1IA5String(const uint8_t* data, uint32_t size, uint8_t* buffer,
                                                    uint32_t* length);
TESSEL_API uint32_t TESSEL_CALL EncodeAsn1NumericString(const uint8_t* content, uint32_t size, uint8_t* buffer,
                                                        uint32_t* length);
TESSEL_API uint32_t TESSEL_CALL DecodeAsn1NumericString(const uint8_t* data, uint32_t size, uint8_t* buffer,
                                                        uint32_t* length);

#ifdef __cplusplus
}
#endif

#endif
