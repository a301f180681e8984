// From octets to a tree.
#pragma once

#include "engine/memory.h"
#include "engine/status.h"
#include "tessel/decoder.h"

namespace tessel {

struct Decoded {
  // The root of a new tree, or null for an absent item.
  void* node = nullptr;
  // How many octets the element took.
  uint32_t consumed = 0;
};

// As Asn1DecodeItem. After TESSEL_INVALID_CONTENT of the item itself the node is there all the same.
Status DecodeTree(const Asn1Item& item, Octets input, Decoded& decoded);

}  // namespace tessel
