// Windows-1251 out of what names hold.
#pragma once

#include <cstdint>

#include "engine/memory.h"

namespace tessel {

// Which characters beyond ASCII and Cyrillic letters are known.
enum class AnsiRepertoire : bool { kLetters, kAll };

// Takes characters off the front of UTF-8 until one makes an octet of Windows-1251. False when there is none left.
//
// A sequence of two octets is read with five bits less of its lead octet than UTF-8 has, so that those of other scripts
// make letters of their own; sequences of three and four octets, and octets out of place, make nothing. With the whole
// repertoire the letters of Ukrainian and Belarusian and the signs that ConvertAnsiToUTF8 makes are read first.
bool TakeAnsi(Octets& utf8, AnsiRepertoire repertoire, uint8_t& ansi);

// The octet for a unit of a BMPString; a question mark when there is none.
uint8_t AnsiOfUnit(uint16_t unit);

}  // namespace tessel
