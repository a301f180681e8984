/* Creating, releasing and comparing trees. A tree is copied by the copy function of its type, with all contents as they
 * are: BIT STRINGs with their unused bits, a CHOICE without a value as such. Of lists the copy has the items; it has no
 * order to sort by, and its mark `sorted` is 1, whatever that of the list is. */
#ifndef TESSEL_LIFECYCLE_H
#define TESSEL_LIFECYCLE_H

#include <stdint.h>

#include "tessel/descriptor.h"
#include "tessel/nodes.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Creates an empty tree, which the caller frees. Mandatory SEQUENCEs, SETs, lists, CHOICEs (without a value) and open
 * values (empty) are there, OPTIONAL members are absent, DEFAULT members hold a copy of the default. Other primitives
 * are there, empty, when `withLeaves` is non-zero and absent otherwise; a root that is such a primitive then leaves
 * `object` as it was. An OPTIONAL root without DEFAULT gives null.
 * TESSEL_INVALID_ARGUMENT: `descriptor` or `object` null. TESSEL_UNSUPPORTED_KIND. TESSEL_INCONSISTENT_DESCRIPTOR: the
 * members of a SEQUENCE or SET do not agree with it, or it contains itself. TESSEL_OUT_OF_MEMORY. After a failure
 * `object` holds null, and what it held before when an argument was null. */
TESSEL_API uint32_t TESSEL_CALL CreateAsn1Object(const Asn1Item* descriptor, void** object, uint32_t withLeaves);

/* Creates what CreateAsn1Object leaves out: a SEQUENCE or SET that is OPTIONAL (anything else is
 * TESSEL_INVALID_ARGUMENT), with its members as there. */
TESSEL_API uint32_t TESSEL_CALL CreateOptionalAsn1Sequence(const Asn1Item* descriptor, void** object,
                                                           uint32_t withLeaves);

/* Releases a tree. Null arguments are allowed. Always returns 0. */
TESSEL_API uint32_t TESSEL_CALL FreeAsn1Object(const Asn1Item* descriptor, void* object);

/* Compares two trees of one type: `equal` receives 1 when they have equal contents and 0 otherwise. Two null trees are
 * equal, a null one differs from any other. Lists are compared in their order, those of a SET OF too.
 * TESSEL_UNSUPPORTED_KIND: a NULL, ENUMERATED, CHOICE, ANY or unknown kind that both trees have is reached before a
 * difference. TESSEL_INCONSISTENT_DESCRIPTOR: a node is reached whose descriptor does not agree with its members.
 * TESSEL_INVALID_ARGUMENT: `descriptor` or `equal` null. `equal` is written on success only. */
TESSEL_API uint32_t TESSEL_CALL CompareAsn1Objects(const Asn1Item* descriptor, const void* first, const void* second,
                                                   uint32_t* equal);

#ifdef __cplusplus
}
#endif

#endif
