// The Time of certificates and CRLs as a type (RFC 5280, 4.1).
#pragma once

#include "tessel/asn1.hpp"
#include "tessel/free.hpp"
#include "tessel/time.h"

namespace tessel {

struct Time : Asn1Choice {
  enum : uint32_t { utcTime, generalTime };
};

inline constexpr auto kTime =
    Choice<Time, Alternative<Time::utcTime, kUtcTime>, Alternative<Time::generalTime, kGeneralizedTime>>();

template <>
inline constexpr auto kFreeFunction<LibraryTime> = FreeLibraryTime;
template <>
inline constexpr auto kFreeFunction<LibraryPreciseTime> = FreeLibraryPreciseTime;
template <>
inline constexpr auto kFreeFunction<Accuracy> = FreeAccuracy;

}  // namespace tessel
