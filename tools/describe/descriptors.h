// Descriptors of types that the library has no functions for.
#pragma once

#include <cstddef>
#include <cstdint>

#include "tessel/tessel.h"

namespace tool {

// The members of a SEQUENCE, or the one element of a list.
template <size_t count>
using Members = const Asn1Item* const[count];

constexpr Asn1Item Primitive(Asn1Kind kind) { return {0, static_cast<uint32_t>(kind), -1, 0, nullptr, 0, nullptr}; }

template <size_t count>
constexpr Asn1Item Sequence(const Members<count>& members) {
  return {TESSEL_FLAG_CONSTRUCTED, TESSEL_KIND_SEQUENCE, -1, count * sizeof(void*), members, count, nullptr};
}

// kind: TESSEL_KIND_SEQUENCE_OF or TESSEL_KIND_SET_OF
constexpr Asn1Item ListOf(Asn1Kind kind, const Members<1>& element) {
  return {TESSEL_FLAG_CONSTRUCTED, static_cast<uint32_t>(kind), -1, 0, element, 1, nullptr};
}

template <size_t count>
constexpr Asn1Item Choice(const Members<count>& alternatives) {
  return {TESSEL_FLAG_CONSTRUCTED, TESSEL_KIND_CHOICE, -1, 0, alternatives, count, nullptr};
}

constexpr Asn1Item Optional(Asn1Item item) {
  item.flags |= TESSEL_FLAG_OPTIONAL;
  return item;
}

constexpr Asn1Item Implicit(int32_t tagNumber, Asn1Item item) {
  item.flags |= TESSEL_CLASS_CONTEXT;
  item.tagNumber = tagNumber;
  return item;
}

constexpr Asn1Item Explicit(int32_t tagNumber, Asn1Item item) {
  item.flags |= TESSEL_FLAG_EXPLICIT;
  return Implicit(tagNumber, item);
}

}  // namespace tool
