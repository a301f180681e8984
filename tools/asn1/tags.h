// What the tags of elements are called.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "asn1/ber.h"

namespace tool {

// Empty for a tag that is not universal, or has no type.
std::string_view UniversalTypeName(uint8_t tagClass, uint64_t tagNumber);

// Whether elements of this type usually are constructed.
bool IsConstructedType(uint64_t universalTag);

// `[3]`, `[APPLICATION 3]`.
std::string TagText(uint8_t tagClass, uint64_t tagNumber);

// The same for a sentence: "an INTEGER", "a SEQUENCE", "[3]".
std::string TagPhrase(uint8_t tagClass, uint64_t tagNumber);

}  // namespace tool
