// Copies of trees of any type, for tests, fuzz programs and benchmarks.
#pragma once

#include <cstdint>

#include "tessel/descriptor.h"
#include "tessel/lifecycle.h"

namespace test {

// A deep copy, by the one way that the interface has for any type: the DEFAULT of an OPTIONAL item is copied when it is
// created.
inline uint32_t Copy(const Asn1Item& item, const void* source, void** copy) {
  Asn1Item withDefault = item;
  withDefault.flags |= TESSEL_FLAG_OPTIONAL;
  withDefault.defaultValue = source;
  return CreateAsn1Object(&withDefault, copy, 0);
}

}  // namespace test
