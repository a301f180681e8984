/* Status codes, where the last failure was found, and the library's banner. */
#ifndef TESSEL_STATUS_H
#define TESSEL_STATUS_H

#include <stdint.h>

#include "tessel/platform.h"

#ifdef __cplusplus
extern "C" {
#endif

/* What a function returns. The numbers are part of the interface and never change. */
enum TesselStatus {
  TESSEL_OK = 0,
  /* Memory could not be allocated. */
  TESSEL_OUT_OF_MEMORY = 1,
  /* A required pointer is null, an index is outside its list, or a descriptor is not of the kind that the operation
   * needs; in the decoder also a constructed encoding of a kind that cannot be constructed. */
  TESSEL_INVALID_ARGUMENT = 32,
  /* The caller's buffer is too small; the length that it needs has been written back. */
  TESSEL_BUFFER_TOO_SMALL = 49,
  /* The operation does not support this kind of item. */
  TESSEL_UNSUPPORTED_KIND = 300,
  /* The encoding is malformed or truncated, or a mandatory element is missing in it. */
  TESSEL_MALFORMED = 302,
  /* A length field of more than four octets, or an encoding whose length would need one. */
  TESSEL_LENGTH_TOO_LARGE = 304,
  /* The descriptor contradicts itself: a SEQUENCE OF or SET OF without exactly one member, a SEQUENCE or SET whose node
   * has not one slot for each member, a null member, EXPLICIT or an IMPLICIT open value without a usable tag number. */
  TESSEL_INCONSISTENT_DESCRIPTOR = 305,
  /* A CHOICE holds an alternative that its descriptor does not have, or not the one that was asked for. */
  TESSEL_WRONG_ALTERNATIVE = 306,
  /* Content that is invalid for its type: BOOLEAN other than one octet 0x00 or 0xFF, INTEGER empty or not minimal. */
  TESSEL_INVALID_CONTENT = 307,
  /* No row of the table has this object identifier. */
  TESSEL_UNKNOWN_OID = 308,
  /* No row of the table has this numeric identifier. */
  TESSEL_UNKNOWN_ID = 309,
  /* The element, list or value that was asked for is absent. */
  TESSEL_ABSENT = 311,
  /* A time with a field out of its range. */
  TESSEL_INVALID_TIME = 313,
  /* A key or value of the wrong length or form for its algorithm. */
  TESSEL_INVALID_KEY = 317,
  /* PEM text whose marker lines are missing or out of order. */
  TESSEL_INVALID_PEM = 319,
  /* Two values differ. */
  TESSEL_DIFFERENT = 320,
  /* A collection does not hold the item that was looked for. */
  TESSEL_NOT_FOUND = 322,
  /* A signer identifier has no content from which a text could be made. */
  TESSEL_NO_IDENTIFIER_TEXT = 323,
  /* Indefinite length: end-of-contents octets missing or other octets in their place, or a primitive encoding with
   * indefinite length. */
  TESSEL_INDEFINITE_LENGTH = 335,
  /* A segment of a constructed OCTET STRING has another tag number than OCTET STRING. */
  TESSEL_WRONG_SEGMENT = 336,
  /* An embedded value is larger than the operation's fixed internal buffer. */
  TESSEL_INTERNAL_BUFFER_TOO_SMALL = 338,
  /* The list already holds an item with the same encoding. */
  TESSEL_ALREADY_PRESENT = 344
};

/* Where the last failure was found: returns the name of the source module (a constant text, lent) and, when `line` is
 * not null, writes the line in it. Before the first failure since the library was loaded the name is null and the line
 * 0xFFFFFFFF. Success never clears the location. There is one for the whole process: failures in several threads
 * overwrite each other, and a reader may see the module of one with the line of another. Never fails. */
TESSEL_API const char* TESSEL_CALL GetLastFileErrorAsn(uint32_t* line);

/* Copies the library's banner, an ASCII text, with its NUL. `length` holds the capacity of `buffer` in octets and
 * receives the length of the text without its NUL. When the capacity is too small, TESSEL_BUFFER_TOO_SMALL is returned
 * and `length` receives the capacity that is needed, the NUL included. TESSEL_INVALID_ARGUMENT when either is null:
 * this function has no size query. */
TESSEL_API uint32_t TESSEL_CALL GetVersionInfo(char* buffer, uint32_t* length);

#ifdef __cplusplus
}
#endif

#endif
