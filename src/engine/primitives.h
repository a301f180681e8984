// The contents of primitive values.
#pragma once

#include <cstdint>

#include "engine/memory.h"
#include "engine/plan.h"
#include "engine/status.h"
#include "tessel/nodes.hpp"
#include "tessel/primitives.h"

namespace tessel {

inline bool IsBooleanContent(Octets content) {
  return content.size() == 1 && (content[0] == 0x00 || content[0] == 0xFF);
}

inline bool IsIntegerContent(Octets content) {
  return content.size() == 1 || (content.size() > 1 && !IsRedundant(content[0], content[1]));
}

// Do what the exported functions GetAsn1Value, ...Int32, ...Boolean and ...BitString do, with a node that is not null.
Status ReadValue(const Asn1Value& value, uint8_t* buffer, uint32_t* length, Caller at = {});
Status ReadInt32(const Asn1Value& value, int32_t* number, Caller at = {});
Status ReadBoolean(const Asn1Value& value, uint32_t* flag, Caller at = {});
Status ReadBits(const Asn1BitString& bits, uint8_t* buffer, uint32_t* length, uint8_t* unused = nullptr,
                Caller at = {});

// Reads the element of a plain type at the start of `encoding`, and delivers its content.
Status DecodeContent(const Type<Asn1Value>& item, Octets encoding, uint8_t* buffer, uint32_t* length, Caller at = {});

// A new node with a copy of the content, or null when there is no memory.
Asn1Value* NewValue(uint32_t tag, Octets content);

// Replaces the content by a copy of `content`. After a failure the node is unchanged.
Status SetContent(Asn1Value& value, uint32_t tag, Octets content);

// Replaces the bits of a node by a copy. Unused bits become 0. After a failure the node is unchanged.
Status SetBits(Asn1BitString& bits, const uint8_t* octets, uint32_t length, uint8_t unused, Caller at = {});

}  // namespace tessel
