// The list of octet strings as a type.
#pragma once

#include "tessel/asn1.hpp"
#include "tessel/free.hpp"
#include "tessel/lists.h"

struct OctetStrings : tessel::ListOf<Asn1Value> {};

namespace tessel {

inline constexpr auto kOctetStrings = SequenceOf<OctetStrings, kOctetString>();

template <>
inline constexpr auto kFreeFunction<OctetStrings> = FreeOctetStrings;

}  // namespace tessel
