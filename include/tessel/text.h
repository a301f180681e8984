/* Small conversions between what callers hold and what certificates carry. */
#ifndef TESSEL_TEXT_H
#define TESSEL_TEXT_H

#include <stdint.h>

#include "tessel/platform.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Converts a text from Windows-1251 to UTF-8. `buffer` is required; `length` holds its capacity and receives the length
 * of the text without its NUL. The capacity must exceed that length by a good margin: as soon as the octets written
 * exceed the capacity less 10, and with a capacity of at most 10 at once, the call stops with TESSEL_BUFFER_TOO_SMALL,
 * and `length` receives a suggestion, twice the length of the input plus 20, or 0xFFFFFFFF when that is more. What was
 * written by then stays in the buffer. Of the octets 0x80 to 0xBF the letters of Russian, Ukrainian and Belarusian (but
 * for dotted I) and the signs 0x95, 0xA4, 0xB0, 0xB7 and 0xB9 are converted; any other, c, is U+03D0 + c - 0x80. */
TESSEL_API uint32_t TESSEL_CALL ConvertAnsiToUTF8(const char* text, char* buffer, uint32_t* length);

/* ConvertX509PublicKeyToArdek: puts a GOST R 34.10 public key of 64 or 128 octets (X, then Y) into a block of 256
 * octets: X at 0, Y at 64, the octets 0x76 0x35 at 252, zeros elsewhere. ConvertArdekPublicKeyToX509: takes the key out
 * of such a block; the character at 254 tells its size: 1, 2, 3 for 512 bits, A, B, C, D, X, Y, a, b, c, x, y for 256
 * bits. TESSEL_INVALID_ARGUMENT: another length of the input. TESSEL_INVALID_KEY: another character. */
TESSEL_API uint32_t TESSEL_CALL ConvertX509PublicKeyToArdek(const uint8_t* key, uint32_t size, uint8_t* buffer,
                                                            uint32_t* length);
TESSEL_API uint32_t TESSEL_CALL ConvertArdekPublicKeyToX509(const uint8_t* block, uint32_t size, uint8_t* buffer,
                                                            uint32_t* length);

/* ConvertX509SignatureToArdek, ConvertArdekSignatureToX509: reverse the 64 or 128 octets of a GOST R 34.10 signature,
 * in place if the buffer is the signature. TESSEL_INVALID_ARGUMENT: another length. */
TESSEL_API uint32_t TESSEL_CALL ConvertX509SignatureToArdek(const uint8_t* signature, uint32_t size, uint8_t* buffer,
                                                            uint32_t* length);
TESSEL_API uint32_t TESSEL_CALL ConvertArdekSignatureToX509(const uint8_t* signature, uint32_t size, uint8_t* buffer,
                                                            uint32_t* length);

/* Returns 0 when the octets are the same, TESSEL_DIFFERENT when not. Two null pointers are the same, one is not. */
TESSEL_API uint32_t TESSEL_CALL IsArrayEquals(const uint8_t* first, uint32_t firstLength, const uint8_t* second,
                                              uint32_t secondLength);

#ifdef __cplusplus
}
#endif

#endif
