// The contents of primitive values.
#pragma once

#include "engine/memory.h"
#include "tessel/primitives.h"

namespace tessel {

inline bool IsBooleanContent(Octets content) {
  return content.size() == 1 && (content[0] == 0x00 || content[0] == 0xFF);
}

// Two's complement without a redundant leading octet.
inline bool IsIntegerContent(Octets content) {
  if (content.empty()) return false;
  if (content.size() == 1) return true;
  const bool nextIsNegative = (content[1] & 0x80) != 0;
  return nextIsNegative ? content[0] != 0xFF : content[0] != 0x00;
}

}  // namespace tessel
