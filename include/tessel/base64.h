/* Base64 (RFC 4648, 4) and PEM (RFC 7468): octets as text and back. */
#ifndef TESSEL_BASE64_H
#define TESSEL_BASE64_H

#include <stdint.h>

#include "tessel/platform.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Texts here have lengths and no NUL: `size` counts the characters of `text`, and none is written behind a result.
 * Results go into the caller's buffer (tessel.h, "Buffers"), which must not overlap the input. Inputs must not be null,
 * even when they are empty. */

/* Writes octets as Base64: lines of 64 characters with CR LF between them and none after the last, so that 48 octets
 * are one line without a break. No octets are an empty text. TESSEL_LENGTH_TOO_LARGE: the text would have 2^32
 * characters or more, as from about 3 thousand million octets on. */
TESSEL_API uint32_t TESSEL_CALL EncodeToBase64(const uint8_t* data, uint32_t size, char* buffer, uint32_t* length);

/* Decodes what EncodeToBase64 writes, and only that: nothing is checked, and another text gives wrong octets without an
 * error. (DecodePem reads and checks Base64 in any lines.) For any text the result is defined:
 *
 * Its length follows from the length n of the text alone, in whole numbers: (n - 2 * (n / 66)) * 3 / 4, less 2 when the
 * last character but one is "=", or else less 1 when the last is; not less than 0. So texts of 0 to 3 characters
 * without "=" give 0, 0, 1 and 2 octets.
 *
 * The octets are the first ones of the groups of four characters in their order, where after each 64 characters two are
 * left out, whatever they are. A character stands for its six bits, with or without its top bit; "=" stands for 255 and
 * all that is not Base64 for 254, whose upper two bits run into the bits of the character before. A last group of 2 or
 * 3 characters gives its whole octets. */
TESSEL_API uint32_t TESSEL_CALL DecodeFromBase64(const char* text, uint32_t size, uint8_t* buffer, uint32_t* length);

/* Writes a PEM block: "-----BEGIN label-----", lines as EncodeToBase64 writes them, "-----END label-----", with CR LF
 * after each line. `label` is NUL-terminated and used as it is. No octets give just the two marker lines.
 * TESSEL_LENGTH_TOO_LARGE: as for EncodeToBase64. */
TESSEL_API uint32_t TESSEL_CALL EncodePem(const uint8_t* data, uint32_t size, const char* label, char* buffer,
                                          uint32_t* length);

/* Decodes the first PEM block of a text, whatever its label is.
 *
 * Its body begins behind the line of the first "-----BEGIN" or "----- BEGIN" and the CR, LF and spaces that follow it;
 * in a text without either, with the first character. It ends before the first "-----END" or "----- END" from there, or
 * with the text. The body is Base64 in groups of four characters, with any CR, LF and spaces after a group but none
 * before the first or inside one. Only the last group may end with "=" or "==", and the bits that it then leaves over
 * are not looked at. Characters count without their top bit there, as in DecodeFromBase64. Headers such as Proc-Type
 * are not read.
 *
 * TESSEL_INVALID_PEM: the body is empty or is not like that; also when no line break follows BEGIN. This is found
 * before anything is written, and with a null `buffer` too. */
TESSEL_API uint32_t TESSEL_CALL DecodePem(const char* text, uint32_t size, uint8_t* buffer, uint32_t* length);

#ifdef __cplusplus
}
#endif

#endif
