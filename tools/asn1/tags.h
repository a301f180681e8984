// What the tags of elements are called.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "asn1/ber.h"

namespace tool {

struct UniversalType {
  std::string_view name;
  bool constructed = false;  // what its elements usually are
};

// Null for a tag that is not universal, or has no type.
const UniversalType* FindUniversalType(uint8_t tagClass, uint64_t tagNumber);

// `[3]`, `[APPLICATION 3]`.
std::string TagText(uint8_t tagClass, uint64_t tagNumber);

// The same for a sentence: "an INTEGER", "a SEQUENCE", "[3]".
std::string TagPhrase(uint8_t tagClass, uint64_t tagNumber);

}  // namespace tool
