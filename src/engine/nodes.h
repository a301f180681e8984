// Reaching into nodes.
#pragma once

#include <cstdint>
#include <cstring>

#include "engine/memory.h"
#include "tessel/nodes.h"

namespace tessel {

// The slots of a SEQUENCE are a struct of typed pointers to the code above the engine, and an array to the engine.
// Copying the octets of a pointer is right under both views, and compiles to a plain move.
inline void* LoadSlot(const void* node, uint32_t index) {
  void* member = nullptr;
  std::memcpy(&member, static_cast<const uint8_t*>(node) + index * sizeof member, sizeof member);
  return member;
}
inline void StoreSlot(void* node, uint32_t index, void* member) {
  std::memcpy(static_cast<uint8_t*>(node) + index * sizeof member, &member, sizeof member);
}

// Asn1Value or Asn1BitString: the content octets that are there.
template <class Node>
Octets ContentOf(const Node& node) {
  return {node.data, node.data == nullptr ? 0 : node.length};
}

}  // namespace tessel
