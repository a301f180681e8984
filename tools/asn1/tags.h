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
const UniversalType* FindUniversalType(uint8_t tagClass, uint32_t tagNumber);

// `[3]`, `[APPLICATION 3]`.
std::string TagText(uint8_t tagClass, uint32_t tagNumber);

// The same for an element of the octets. Its number in `Element` is cut to 32 bits, so a long one is read from there.
std::string TagText(const Element& element, Octets octets);

// The same for a sentence: "an INTEGER", "a SEQUENCE", "[3]".
std::string TagPhrase(uint8_t tagClass, uint32_t tagNumber);
std::string TagPhrase(const Element& element, Octets octets);

}  // namespace tool
