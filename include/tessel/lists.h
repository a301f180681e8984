/* Lists: the nodes of SEQUENCE OF and SET OF, and a list of octet strings that stands for itself. */
#ifndef TESSEL_LISTS_H
#define TESSEL_LISTS_H

#include <stdint.h>

#include "tessel/nodes.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Lends the item at `index` of a list of any type. TESSEL_INVALID_ARGUMENT: no such index. */
TESSEL_API uint32_t TESSEL_CALL GetAsn1ListItem(const Asn1List* list, uint32_t index, void** item);

/* Returns how many items the list holds, not a status; 0 for a null list. */
TESSEL_API uint32_t TESSEL_CALL GetAsn1ListLength(const Asn1List* list);

/* Says how a SET OF is written: 1 in the order of its elements' encodings (DER, and the default), 0 in the list's
 * order. A null list is ignored; there is no status. */
TESSEL_API void TESSEL_CALL SetAsn1ListSorted(Asn1List* list, uint32_t sorted);

/* A list of octet strings. */
typedef struct OctetStrings OctetStrings;

/* Creates an empty list, which the caller frees. */
TESSEL_API uint32_t TESSEL_CALL CreateOctetStrings(OctetStrings** strings);

/* Appends an octet string, copied. */
TESSEL_API uint32_t TESSEL_CALL AddOctetStringsValue(OctetStrings* strings, const uint8_t* octets, uint32_t length);

/* How many octet strings the list holds. */
TESSEL_API uint32_t TESSEL_CALL GetOctetStringsCount(const OctetStrings* strings, uint32_t* count);

/* Copies the octet string at `index` into `buffer`, when that is not null; `length` receives its length. Unlike other
 * functions this one does NOT look at the capacity that `length` held: ask for the length first, with a null buffer,
 * and bring a buffer of that size. TESSEL_INVALID_ARGUMENT: no such index. */
TESSEL_API uint32_t TESSEL_CALL GetOctetStringsValue(const OctetStrings* strings, uint32_t index, uint8_t* buffer,
                                                     uint32_t* length);

/* Releases the list. Unlike for other free functions null is TESSEL_INVALID_ARGUMENT. */
TESSEL_API uint32_t TESSEL_CALL FreeOctetStrings(OctetStrings* strings);

#ifdef __cplusplus
}
#endif

#endif
