// CHOICE and open values.
#pragma once

#include <cstdint>

#include "engine/memory.h"
#include "engine/status.h"
#include "tessel/choices.h"

namespace tessel {

// Releases the alternative's node; the index stays. TESSEL_INVALID_ARGUMENT: the descriptor has no such alternative.
Status ClearChoice(const Asn1Item& item, Asn1Choice& choice);

// Releases the alternative's node and takes `value`, a node of the alternative at `index`.
Status SetChoice(const Asn1Item& item, Asn1Choice& choice, uint32_t index, void* value);

// The identifier of an open value's element. The tag number is below 2^31.
struct ElementTag {
  uint8_t tagClass;
  uint8_t constructed;
  uint32_t number;
};

// Replaces what an open value holds by a header and a copy of the content; the node's tag becomes `storedTag`. After a
// failure the node is unchanged.
Status SetOpenValue(Asn1Any& any, ElementTag tag, uint32_t storedTag, Octets content);

}  // namespace tessel
