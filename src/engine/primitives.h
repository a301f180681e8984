// The contents of primitive values.
#pragma once

#include <cstdint>

#include "engine/memory.h"
#include "engine/status.h"
#include "tessel/primitives.h"

namespace tessel {

inline bool IsBooleanContent(Octets content) {
  return content.size() == 1 && (content[0] == 0x00 || content[0] == 0xFF);
}

// Whether the first of two octets of a two's-complement number says no more than the sign bit of the second.
inline bool IsRedundant(uint8_t first, uint8_t second) { return first == ((second & 0x80) != 0 ? 0xFF : 0x00); }

inline bool IsIntegerContent(Octets content) {
  return content.size() == 1 || (content.size() > 1 && !IsRedundant(content[0], content[1]));
}

// A new node with a copy of the content, or null when there is no memory.
Asn1Value* NewValue(uint32_t tag, Octets content);

// Replaces the content by a copy of `content`. When it fails the node is as it was.
Status SetContent(Asn1Value& value, uint32_t tag, Octets content);

// What is left of a string of bits without the zero bits at its end; nothing, when no bit is set.
struct BitCount {
  uint32_t length = 0;
  uint8_t unused = 0;
};
inline BitCount WithoutTrailingZeros(Octets octets, uint8_t unused) {
  for (size_t length = octets.size(); length > 0; --length, unused = 0) {
    for (; unused < 8; ++unused) {
      if ((octets[length - 1] >> unused & 1) != 0) return {static_cast<uint32_t>(length), unused};
    }
  }
  return {};
}

// Whether a string of bits ends with its last set bit, as named bits do (X.690, 11.2.2).
enum class TrailingZeros : bool { kKept, kTrimmed };

// Replaces the bits of a node by a copy. Unused bits become 0. When it fails the node is as it was.
Status SetBits(Asn1BitString* bits, const uint8_t* octets, uint32_t length, uint8_t unused, TrailingZeros zeros);

// The same for named bits held in a number: bit 7 is named bit 0, bit 0 named bit 7, bit 15 named bit 8.
Status SetNamedBits(Asn1BitString* bits, uint32_t flags);

}  // namespace tessel
