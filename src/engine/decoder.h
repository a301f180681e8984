// From octets to a tree.
#pragma once

#include "engine/memory.h"
#include "engine/plan.h"
#include "engine/status.h"
#include "tessel/decoder.h"

namespace tessel {

// What decoding comes to; returned in registers where the platform can.
struct Decoded {
  // The root of a new tree, or null for an absent item. After TESSEL_INVALID_CONTENT of the item itself it is there all
  // the same.
  void* node = nullptr;
  // How many octets the element took.
  uint32_t consumed = 0;
  Status status;
};

// As Asn1DecodeItem.
Decoded DecodeTree(const Plan& plan, Octets input);

}  // namespace tessel
