// CHOICE and open values.
#pragma once

#include <cstdint>

#include "engine/memory.h"
#include "engine/status.h"
#include "tessel/choices.h"

namespace tessel {

// Releases what was chosen; the index stays. TESSEL_INVALID_ARGUMENT: the descriptor has no such alternative.
Status ClearChoice(const Asn1Item& item, Asn1Choice& choice);

// Releases what was chosen and takes `value`, a node of the alternative at `index`.
Status SetChoice(const Asn1Item& item, Asn1Choice& choice, uint32_t index, void* value);

// How an open value's element begins. The number is below 2^31.
struct ElementTag {
  uint8_t tagClass;
  uint8_t constructed;
  uint32_t number;
};

// Replaces what an open value holds by a header and a copy of the content; the node's tag becomes `storedTag`. When it
// fails the node is as it was.
Status SetOpenValue(Asn1Any& any, ElementTag tag, uint32_t storedTag, Octets content);

}  // namespace tessel
