// Base64 (RFC 4648, 4), as the plain text and PEM share it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "engine/memory.h"

namespace tessel {

// A line that is written has 64 characters, for 48 octets, unless it is the last.
inline constexpr size_t kLineCharacters = 64;
inline constexpr size_t kLineOctets = 48;
inline constexpr std::string_view kLineBreak = "\r\n";

// What `size` octets become: characters, line breaks not counted, and lines.
constexpr uint64_t Base64Characters(uint64_t size) { return (size + 2) / 3 * 4; }
constexpr uint64_t Base64Lines(uint64_t size) { return (size + kLineOctets - 1) / kLineOctets; }

// Writes the lines, with a break between them, and returns where they end.
char* WriteBase64Lines(Octets data, char* out);

// Whether a character is "=". As everywhere in decoding, its top bit is not looked at.
bool IsBase64Padding(char character);

// Decodes at most `groups` groups of four characters, to three octets each, and returns how many it decoded: it stops
// at a group that has a character outside the alphabet. With a null `out` the groups are only counted.
size_t DecodeBase64Groups(const char* text, size_t groups, uint8_t* out);

}  // namespace tessel
