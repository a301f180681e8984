// IP addresses as text.
#pragma once

#include <optional>
#include <string>

#include "tessel/octets.hpp"

namespace tool {

using tessel::Octets;

// 4 octets as `192.0.2.1`, 16 as `2001:db8::1` (RFC 5952). Nothing for another length.
std::optional<std::string> AddressText(Octets octets);

// An address and its mask: `192.0.2.0/24`, or `192.0.2.0/255.0.255.0` when the mask is no prefix.
std::optional<std::string> AddressRangeText(Octets octets);

}  // namespace tool
