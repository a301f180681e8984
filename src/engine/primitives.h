// The contents of primitive values.
#pragma once

#include <bit>
#include <cstdint>

#include "engine/descriptor.h"
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

// As the exported functions of these names, GetAsn1..., on nodes that are there.
Status ReadValue(const Asn1Value& value, uint8_t* buffer, uint32_t* length, Site at = {});
Status ReadInt32(const Asn1Value& value, int32_t* number, Site at = {});
Status ReadBoolean(const Asn1Value& value, uint32_t* flag, Site at = {});
Status ReadBits(const Asn1BitString& bits, uint8_t* buffer, uint32_t* length, uint8_t* unused = nullptr, Site at = {});

// Reads the element of a plain type at the start of `encoding`, and delivers its content.
Status DecodeContent(const Item<Asn1Value>& item, Octets encoding, uint8_t* buffer, uint32_t* length, Site at = {});

// A new node with a copy of the content, or null when there is no memory.
Asn1Value* NewValue(uint32_t tag, Octets content);

// Replaces the content by a copy of `content`. When it fails the node is as it was.
Status SetContent(Asn1Value& value, uint32_t tag, Octets content);

// What is left of a string of bits without the zero bits at its end; nothing, when no bit is set.
struct BitCount {
  uint32_t length = 0;
  uint8_t unused = 0;
};
constexpr BitCount WithoutTrailingZeros(Octets octets) {
  for (size_t length = octets.size(); length > 0; --length) {
    if (octets[length - 1] == 0) continue;
    return {static_cast<uint32_t>(length), static_cast<uint8_t>(std::countr_zero(octets[length - 1]))};
  }
  return {};
}

// Replaces the bits of a node by a copy. Unused bits become 0. When it fails the node is as it was.
Status SetBits(Asn1BitString& bits, const uint8_t* octets, uint32_t length, uint8_t unused, Site at = {});

}  // namespace tessel
