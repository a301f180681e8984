// Trees in tests, through the public interface.
#pragma once

#include <cstdint>
#include <string_view>

#include "support/copy.h"
#include "support/octets.h"
#include "support/status.h"
#include "tessel/calls.hpp"

namespace test {

using tessel::Tree;

inline Bytes ContentOf(const Asn1Value& value) { return {value.data, value.data + value.length}; }

struct DecodeResult {
  uint32_t status;
  uint32_t consumed;
  Tree tree;
};

// Decodes from guarded memory that is gone when the function returns: nothing is read beyond the input, and the tree
// does not depend on it.
DecodeResult Decode(const Asn1Item& item, const Bytes& input);

// A tree from its encoding in hex, which has to be decoded.
Tree TreeOf(const Asn1Item& item, std::string_view hex);

struct EncodeResult {
  uint32_t status;
  Bytes octets;
};

EncodeResult Encode(const Asn1Item& item, const void* node);

}  // namespace test
