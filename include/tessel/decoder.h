/* Reading BER and DER (X.690). */
#ifndef TESSEL_DECODER_H
#define TESSEL_DECODER_H

#include <stdint.h>

#include "tessel/descriptor.h"
#include "tessel/nodes.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Parses one identifier and length (X.690, 8.1.2 and 8.1.3).
 *
 * `tagClass` receives the class bits of the identifier (0x00, 0x40, 0x80, 0xC0), `constructed` its constructed bit
 * (0x20 or 0), `tagNumber` the tag number (one of more than 32 bits wraps), `contentLength` the length of the content,
 * `headerLength` that of identifier and length together. Tag numbers and lengths need not be minimal. With indefinite
 * length `contentLength` is all that remains of the input.
 *
 * `indefinite` receives 1 for indefinite length and 0 otherwise. With it, a content that is longer than the input is
 * NOT an error here; only when it is null does the function require that the content lies within `size`.
 *
 * TESSEL_MALFORMED: fewer than two octets, or the header (with a null `indefinite` the content) runs past the input.
 * TESSEL_LENGTH_TOO_LARGE: a length of more than four octets. TESSEL_INVALID_ARGUMENT: a null pointer other than
 * `indefinite`. Outputs are written on success only. */
TESSEL_API uint32_t TESSEL_CALL GetAsn1ObjectInfo(const uint8_t* data, uint32_t size, uint8_t* tagClass,
                                                  uint8_t* constructed, uint32_t* tagNumber, uint32_t* contentLength,
                                                  uint32_t* indefinite, uint32_t* headerLength);

/* Decodes the element at the start of `data` by `descriptor`. `object` receives the root of a new tree, which the
 * caller frees with FreeAsn1Object, or null when the item is OPTIONAL and absent. `consumed`, which may be null,
 * receives how many octets the element took, 0 when it is absent; octets after it are not looked at.
 *
 * Accepted are definite and indefinite lengths, lengths longer than need be, OCTET STRINGs in segments with indefinite
 * length, a SET OF in any order, and octets left over at the end of a definite-length SEQUENCE. Members must come in
 * the order of the descriptor. Of contents only BOOLEAN, INTEGER and the first octet of BIT STRING are checked.
 *
 * An element is absent when the input is empty or starts with another tag, or with the right one on an element that is
 * constructed and should be primitive, or the reverse. An absent item without OPTIONAL is TESSEL_MALFORMED, one with
 * DEFAULT receives a copy of the default. End-of-contents octets are never an element.
 *
 * Where a wrapper of an EXPLICIT item holds another element than the item's, the item is absent too; what it holds is
 * taken for what follows the item. A list of indefinite length may end with the input, without end-of-contents octets.
 *
 * TESSEL_INVALID_ARGUMENT: `data`, `descriptor` or `object` null, or a kind that cannot be constructed is.
 * TESSEL_MALFORMED, TESSEL_LENGTH_TOO_LARGE, TESSEL_INDEFINITE_LENGTH, TESSEL_WRONG_SEGMENT: what is wrong in the
 * octets; an element of a list that is OPTIONAL and absent, and elements nested more than 64 descriptors deep, are
 * malformed too. TESSEL_UNSUPPORTED_KIND,
 * TESSEL_INCONSISTENT_DESCRIPTOR: what is wrong in the descriptor. TESSEL_INVALID_CONTENT: a BOOLEAN or INTEGER; when
 * it is the item itself, `object` receives it all the same and the caller frees it. After every other failure `object`
 * is null, except that it is untouched when an argument was null. `consumed` is written on success only. */
TESSEL_API uint32_t TESSEL_CALL Asn1DecodeItem(const uint8_t* data, uint32_t size, const Asn1Item* descriptor,
                                               void** object, uint32_t* consumed);

#ifdef __cplusplus
}
#endif

#endif
