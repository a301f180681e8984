// From octets to a tree.
#pragma once

#include "engine/memory.h"
#include "engine/plan.h"
#include "engine/status.h"
#include "tessel/decoder.h"

namespace tessel {

// The result of decoding; returned in registers where the platform can.
struct Decoded {
  // The root of a new tree; null for an absent item without a DEFAULT, and after a failure. Only when the root itself
  // is a value with invalid content (TESSEL_INVALID_CONTENT), it is there after a failure too.
  void* node = nullptr;
  // How many octets the element took.
  uint32_t consumed = 0;
  Status status;
};

// Decodes the element at the start of the input, as Asn1DecodeItem does.
Decoded DecodeTree(const Plan& plan, Octets input);

}  // namespace tessel
