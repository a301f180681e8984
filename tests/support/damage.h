// Damaged objects of a named type.
#pragma once

#include <gtest/gtest.h>

#include "support/objects.h"
#include "support/octets.h"
#include "support/tree.h"

namespace test {

// Replaces each octet by values that turn headers into others. What is still decoded has to be so alike by the type's
// own function and by its exported descriptor, and to survive the round trip.
template <class Object>
void ExpectDamageIsSurvived(const Asn1Item& item, const Bytes& original,
                            uint32_t(TESSEL_CALL* decode)(const uint8_t*, uint32_t, Object**),
                            uint32_t(TESSEL_CALL* encode)(const Object*, uint8_t*, uint32_t*)) {
  for (size_t at = 0; at < original.size(); ++at) {
    for (const unsigned change : {0x01U, 0x20U, 0x80U, 0xFFU}) {
      Bytes octets = original;
      octets[at] ^= static_cast<uint8_t>(change);
      const DecodeResult result = Decode(item, octets);
      Owned<Object> object;
      ASSERT_STATUS(result.status, Try(decode, octets, object.Out()));
      if (result.status != TESSEL_OK) continue;
      const EncodeResult encoded = Encode(item, result.tree.Root());
      ASSERT_OK(encoded.status);
      ASSERT_EQ(encoded.octets, Fetch(encode, object));
      const DecodeResult again = Decode(item, encoded.octets);
      ASSERT_OK(again.status);
      ASSERT_EQ(encoded.octets, Encode(item, again.tree.Root()).octets);
    }
  }
}

}  // namespace test
