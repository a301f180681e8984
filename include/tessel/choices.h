/* Values whose type is settled by the value: CHOICE and open types (ANY). */
#ifndef TESSEL_CHOICES_H
#define TESSEL_CHOICES_H

#include <stdint.h>

#include "tessel/descriptor.h"
#include "tessel/nodes.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Goes from a CHOICE to what was chosen: replaces `*node`, an Asn1Choice, by its alternative (lent; null when none has
 * been set) and `*descriptor` by that alternative's descriptor. TESSEL_INVALID_ARGUMENT: an argument or what it points
 * to is null, or the descriptor is not that of a CHOICE. TESSEL_WRONG_ALTERNATIVE: the descriptor has no such
 * alternative. TESSEL_INCONSISTENT_DESCRIPTOR: it has a null one. Nothing is replaced then. */
TESSEL_API uint32_t TESSEL_CALL GetAsn1ChoiceUnderlyingType(void** node, const Asn1Item** descriptor);

/* Tells the header of the element that an open value holds; the outputs are those of GetAsn1ObjectInfo. With indefinite
 * length `contentLength` counts all that follows the header, the end-of-contents octets included; a definite one is as
 * the header says, even where the node holds less. TESSEL_MALFORMED, TESSEL_LENGTH_TOO_LARGE, TESSEL_INDEFINITE_LENGTH:
 * the node holds no header, or nothing. Outputs are written on success only. */
TESSEL_API uint32_t TESSEL_CALL GetAsn1AnyInfo(const Asn1Any* any, uint8_t* tagClass, uint8_t* constructed,
                                               uint32_t* tagNumber, uint32_t* contentLength, uint32_t* headerLength);

/* Writes the whole encoding that an open value holds into the caller's buffer, as GetAsn1Value does. */
TESSEL_API uint32_t TESSEL_CALL GetAsn1AnyValue(const Asn1Any* any, uint8_t* buffer, uint32_t* length);

#ifdef __cplusplus
}
#endif

#endif
