/* tessel: the ASN.1 structures of a public-key infrastructure, read, built, edited and written.
 *
 * This header includes the whole interface. What holds for every function stands here; what a function adds stands with
 * it.
 *
 * Status. Functions return 0 (TESSEL_OK) or one of the codes of TesselStatus. A required pointer that is null is always
 * TESSEL_INVALID_ARGUMENT, and TESSEL_OUT_OF_MEMORY is possible wherever something is made: neither is repeated at each
 * function. A failure leaves its place to be read with GetLastFileErrorAsn.
 *
 * Buffers. Octets go out through `buffer` and `length`: `length` holds the capacity and receives the length that is
 * needed. With a null `buffer` that is all, and the status is 0. When the capacity is too small the status is
 * TESSEL_BUFFER_TOO_SMALL and `buffer` is left alone. Texts go the same way, their NUL included in the lengths. After
 * any other failure neither is specified. Outputs overlap neither each other nor arguments, nor parts of objects,
 * except where a function says that they may.
 *
 * Arguments may be parts of the very object that a function changes: everything is copied before anything is released.
 *
 * Ownership is told in four words. A function that lends a pointer keeps what it points to, which lives no longer than
 * the object that it is part of. One that copies leaves its argument to the caller. One that takes an object owns it
 * from then on, when it succeeds; a part of another object, or one that was taken already, is TESSEL_INVALID_ARGUMENT.
 * What the caller frees is released once, with the free function of its type. A free function accepts null.
 *
 * Threads. The library keeps no state but the place of the last failure, the length of February for adding days to a
 * time, a count by which it sees that a tree is as it was decoded, and which of its ways to SHA-1 the processor does
 * fastest. One object must not be used by two threads at a time; different objects can be. An object may be made,
 * changed and released by one thread after another, when each sees what the one before has done. A stack of 128 KB is
 * enough for every function.
 *
 * Copies. Where a process has two copies of the library (a program linked with one loads a plug-in that brings
 * another), an object belongs to the copy that made it: the other does not see what is changed, and must not change it.
 */
#ifndef TESSEL_TESSEL_H
#define TESSEL_TESSEL_H

#include "tessel/algorithms.h"
#include "tessel/base64.h"
#include "tessel/certificate.h"
#include "tessel/choices.h"
#include "tessel/crl.h"
#include "tessel/decoder.h"
#include "tessel/descriptor.h"
#include "tessel/encoder.h"
#include "tessel/extension_lists.h"
#include "tessel/extension_values.h"
#include "tessel/extensions.h"
#include "tessel/key_identifiers.h"
#include "tessel/lifecycle.h"
#include "tessel/lists.h"
#include "tessel/names.h"
#include "tessel/nodes.h"
#include "tessel/oid.h"
#include "tessel/platform.h"
#include "tessel/primitives.h"
#include "tessel/sha1.h"
#include "tessel/status.h"
#include "tessel/text.h"
#include "tessel/time.h"

#endif
