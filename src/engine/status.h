// How a failure is told inside the library: a Status is passed up, and the place where it was found is recorded once.
#pragma once

#include <cstdint>

#include "tessel/status.h"

namespace tessel {

class [[nodiscard]] Status {
 public:
  constexpr Status() = default;
  [[nodiscard]] constexpr bool Ok() const { return code_ == TESSEL_OK; }
  [[nodiscard]] constexpr bool Failed() const { return code_ != TESSEL_OK; }
  // The number that the interface returns.
  constexpr operator uint32_t() const { return code_; }

 private:
  friend Status Fail(TesselStatus code, struct Site at);
  constexpr explicit Status(TesselStatus code) : code_(code) {}

  TesselStatus code_ = TESSEL_OK;
};

// A place in the sources. As a default argument, `Site at = {}` is the place of the call.
struct Site {
  const char* module;
  uint32_t line;

  consteval Site(const char* file = __builtin_FILE(), uint32_t at = __builtin_LINE()) : module(file), line(at) {
    for (const char* c = file; *c != '\0'; ++c) {
      if (*c == '/' || *c == '\\') module = c + 1;
    }
  }
};

[[gnu::cold, gnu::noinline]] void RecordFailure(Site at);

// Records the place and makes the status. A code that is merely passed up is not recorded again.
inline Status Fail(TesselStatus code, Site at = {}) {
  RecordFailure(at);
  return Status(code);
}

template <class... Types>
constexpr bool AnyNull(const Types*... pointers) {
  return ((pointers == nullptr) || ...);
}

}  // namespace tessel
