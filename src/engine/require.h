// Preconditions of the library's own code.
#pragma once

namespace tessel {

// Only the builds for sanitizers and for fuzzing check preconditions.
#ifdef TESSEL_CHECKED
inline constexpr bool kChecked = true;
#else
inline constexpr bool kChecked = false;
#endif

constexpr void Require(bool holds) {
  if (kChecked && !holds) __builtin_trap();
}

}  // namespace tessel
