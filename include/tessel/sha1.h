/* The SHA-1 digest (FIPS 180-4), which key identifiers are made with. */
#ifndef TESSEL_SHA1_H
#define TESSEL_SHA1_H

#include <stdint.h>

#include "tessel/platform.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Writes the SHA-1 digest of `size` octets, 20 octets in big-endian order, into `digest`. `data` must not be null, even
 * for no octets. */
TESSEL_API uint32_t TESSEL_CALL sha1(const uint8_t* data, uint32_t size, uint8_t* digest);

#ifdef __cplusplus
}
#endif

#endif
