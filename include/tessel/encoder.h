/* Writing DER (X.690). */
#ifndef TESSEL_ENCODER_H
#define TESSEL_ENCODER_H

#include <stdint.h>

#include "tessel/descriptor.h"
#include "tessel/nodes.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Encodes `object` by `descriptor`. `length` receives the length of the encoding; when `buffer` is null that is all.
 * Otherwise `buffer` receives a new block of that length (null when the length is 0). The block comes from malloc of
 * the C run-time that the library uses, and the caller releases it with free; a caller with another run-time uses the
 * typed encode functions instead, which fill the caller's own buffer.
 *
 * Lengths are definite and minimal, absent members and those equal to their DEFAULT are left out, a SET OF is sorted
 * unless its list says otherwise. Contents are written as they are stored: the encoder corrects nothing.
 *
 * An open value whose descriptor is context-specific and not EXPLICIT gets the descriptor's tag, whose number must be
 * below 31, in place of its own, and stays constructed or primitive as it is.
 *
 * TESSEL_INVALID_ARGUMENT: `object`, `descriptor` or `length` null. TESSEL_ABSENT: a mandatory member or the value of a
 * CHOICE is missing. TESSEL_WRONG_ALTERNATIVE: the index of a CHOICE. TESSEL_UNSUPPORTED_KIND: a SET, an unknown
 * kind, or a DEFAULT that cannot be compared. TESSEL_INCONSISTENT_DESCRIPTOR. TESSEL_LENGTH_TOO_LARGE: the encoding
 * would be of 2^32 octets or more. TESSEL_OUT_OF_MEMORY. After a failure `buffer` holds null, or, when the failure was
 * found before anything was written, what it held before. */
TESSEL_API uint32_t TESSEL_CALL Asn1Encode(const void* object, const Asn1Item* descriptor, uint8_t** buffer,
                                           uint32_t* length);

#ifdef __cplusplus
}
#endif

#endif
