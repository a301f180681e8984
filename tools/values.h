// Content octets of primitive types as text for people.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "ber.h"

namespace tool {

// The number of an INTEGER or ENUMERATED of one to eight octets.
std::optional<int64_t> SmallInteger(Octets content);

// That number, or the octets in hexadecimal, after "0x", when there are more.
std::string IntegerText(Octets content);

// Hexadecimal digits of the magnitude, after a minus sign when it is negative, as certificates' serial numbers are
// told.
std::string SerialNumberText(Octets content);

// How many bits the magnitude of a positive INTEGER has.
uint32_t BitCount(Octets content);

// The dotted text of an object identifier. Nothing when it is empty, does not end, has an arc of more than 32 bits, or
// an arc with needless leading zero bits (by which one identifier could pass for another).
std::optional<std::string> DottedText(Octets content);

// The name of the object identifier where it is known, else its dotted text, else its octets with a remark.
std::string OidName(Octets content);

// A UTCTime or GeneralizedTime as `2026-11-21 12:00:00 UTC`. One that the library does not take, such as a time beyond
// the year 2100, gets a remark; one in another form than certificates may have is given as it is written.
std::string TimeText(uint32_t tag, Octets content);

// The same as `2026-11-21T12:00:00Z` (ISO 8601), also beyond the year 2100. Nothing when it is in another form than
// certificates may have, or no time.
std::optional<std::string> IsoTime(uint32_t tag, Octets content);

}  // namespace tool
