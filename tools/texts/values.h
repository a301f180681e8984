// Content octets of primitive types as text for people.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "tessel/octets.hpp"
#include "tessel/strings.hpp"

namespace tool {

using tessel::Octets;

// Octets in hexadecimal: the first ones only when there are many; then the number of all octets follows.
std::string ShortHex(Octets octets);

// A character string of the universal type `tag` in the same way, safe to print; with Escape::kQuotes it stands between
// quotation marks.
std::string ShortText(uint32_t tag, Octets content, tessel::Escape escape);

// The number of an INTEGER or ENUMERATED of one to eight octets.
std::optional<int64_t> SmallInteger(Octets content);

// That number, or the octets in hexadecimal, after "0x", when there are more.
std::string IntegerText(Octets content);

// The octets of a number of the same magnitude and the other sign.
tessel::Bytes Negated(Octets content);

Octets WithoutLeadingZeros(Octets content);

// How many bits the magnitude of a positive INTEGER has.
int64_t BitCount(Octets content);

// The dotted text of an object identifier by its content octets. Empty when it has none (object_identifier.hpp).
std::string OidText(Octets content);

// The name of the object identifier where it is known, else its dotted text, else its octets with a remark.
std::string OidName(Octets content);

// A UTCTime or GeneralizedTime as `2026-11-21 12:00:00 UTC`. One that the library does not take, such as a time beyond
// the year 2100, gets a remark; one in another form than certificates may have is given as it is written.
std::string TimeText(uint32_t tag, Octets content);

// The same as `2026-11-21T12:00:00Z` (ISO 8601), also beyond the year 2100. Nothing when it is in another form than
// certificates may have, or no time.
std::optional<std::string> IsoTime(uint32_t tag, Octets content);

// 4 octets as `192.0.2.1`, 16 as `2001:db8::1` (RFC 5952). Nothing for another length.
std::optional<std::string> AddressText(Octets octets);

// An address and its mask: `192.0.2.0/24`, or `192.0.2.0/255.0.255.0` when the mask is no prefix.
std::optional<std::string> AddressRangeText(Octets octets);

}  // namespace tool
