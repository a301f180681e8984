// From a tree to DER.
#pragma once

#include "engine/memory.h"
#include "engine/plan.h"
#include "engine/status.h"
#include "tessel/encoder.h"

namespace tessel {

// Sets `length` to that of the tree's encoding. Every failure except a lack of memory is found here.
Status MeasureTree(const Plan& plan, const void* node, uint32_t& length);

// Writes a tree that MeasureTree has measured to exactly `length` octets.
Status WriteTree(const Plan& plan, const void* node, uint8_t* buffer, uint32_t length);

// Delivers the encoding into the caller's buffer, by the convention of buffer.h.
Status EncodeTree(const Plan& plan, const void* node, uint8_t* buffer, uint32_t& length);

// The encoding of a tree in a block of its own.
class Encoding {
 public:
  Status Make(const Plan& plan, const void* node);
  [[nodiscard]] Octets Get() const { return {block_.get(), length_}; }

 private:
  Scratch<uint8_t> block_;
  uint32_t length_ = 0;
};

}  // namespace tessel
