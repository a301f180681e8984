/* Primitive values. */
#ifndef TESSEL_PRIMITIVES_H
#define TESSEL_PRIMITIVES_H

#include <stdint.h>

#include "tessel/nodes.h"

#ifdef __cplusplus
extern "C" {
#endif

/* CheckAsn1Boolean: whether the node is a BOOLEAN (tag 1) of one octet, 0x00 or 0xFF (X.690, 8.2 and 11.1).
 * CheckAsn1Integer: whether it is an INTEGER (tag 2) whose content is a two's-complement number without a redundant
 * leading octet (X.690, 8.3). TESSEL_INVALID_CONTENT when it is not. */
TESSEL_API uint32_t TESSEL_CALL CheckAsn1Boolean(const Asn1Value* value);
TESSEL_API uint32_t TESSEL_CALL CheckAsn1Integer(const Asn1Value* value);

#ifdef __cplusplus
}
#endif

#endif
