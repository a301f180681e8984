// Access to what nodes hold.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "engine/memory.h"
#include "engine/plan.h"
#include "tessel/descriptor.h"
#include "tessel/nodes.h"
#include "tessel/nodes.hpp"

namespace tessel {

// The slots of a SEQUENCE are a struct of typed pointers for the code above the engine, and an array of pointers for
// the engine. Copying the octets of a pointer is allowed for both types, and compiles to a plain move.
inline void* LoadSlot(const void* node, uint32_t index) {
  void* member = nullptr;
  std::memcpy(&member, static_cast<const uint8_t*>(node) + index * sizeof member, sizeof member);
  return member;
}
inline void StoreSlot(void* node, uint32_t index, void* member) {
  std::memcpy(static_cast<uint8_t*>(node) + index * sizeof member, &member, sizeof member);
}

// A node for a SEQUENCE or SET, whose slots are not filled yet; null when there is no memory.
inline void* NewSlots(Pool& pool, const Asn1Item& item) {
  const size_t size = std::max<size_t>(item.nodeSize, 1);
  return size > kLargestNode ? nullptr : pool.Node(size);
}

// Whether a BOOLEAN or INTEGER, an item of Form::kValueWithDefault, equals its DEFAULT.
inline bool EqualsDefault(const Plan& plan, const Asn1Value& value) {
  const auto& defaultValue = *static_cast<const Asn1Value*>(plan.item->defaultValue);
  if (value.length != defaultValue.length || (value.data == nullptr && value.length != 0)) return false;
  uint32_t equal = 0;
  while (equal < value.length && value.data[equal] == defaultValue.data[equal]) ++equal;
  return equal == value.length;
}

}  // namespace tessel
