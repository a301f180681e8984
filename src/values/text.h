// Conversion of the strings in names to Windows-1251.
#pragma once

#include <cstdint>

#include "engine/memory.h"

namespace tessel {

// Which characters are known: ASCII and the letters of Russian, or those of Ukrainian and Belarusian and some signs
// too.
enum class AnsiRepertoire : bool { kLetters, kAll };

// Takes characters off the front of UTF-8 until one makes an octet of Windows-1251. False when there is none left.
//
// A sequence of two octets is read with one bit of its lead octet less than UTF-8 has, so that characters of other
// scripts come out as Cyrillic letters or other octets. Sequences of three and four octets, and octets out of place,
// make nothing. With kAll the letters of Ukrainian and Belarusian, and the signs that ConvertAnsiToUTF8 makes, are
// looked for first.
bool TakeAnsi(Octets& utf8, AnsiRepertoire repertoire, uint8_t& ansi);

// The octet for a unit of a BMPString; a question mark when there is none.
uint8_t AnsiOfUnit(uint16_t unit);

}  // namespace tessel
