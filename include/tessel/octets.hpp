// Octets, lent and owned.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tessel {

using Octets = std::span<const uint8_t>;
using Bytes = std::vector<uint8_t>;

// Upper-case hexadecimal digits.
inline std::string Hex(Octets octets) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string text;
  text.reserve(octets.size() * 2);
  for (const uint8_t octet : octets) {
    text += kDigits[octet >> 4];
    text += kDigits[octet & 0x0F];
  }
  return text;
}

}  // namespace tessel
