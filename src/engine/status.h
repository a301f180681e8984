// How a failure is told inside the library: a Status is passed up, and the place where it was found is recorded once.
#pragma once

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <string_view>

#include "exported_names.h"
#include "tessel/status.h"

namespace tessel {

// A place in the sources. As a default argument it is the place of the call.
struct SourceLocation {
  const char* module;
  uint32_t line;

  consteval SourceLocation(const char* file = __builtin_FILE(), uint32_t at = __builtin_LINE())
      : module(file), line(at) {
    for (const char* c = file; *c != '\0'; ++c) {
      if (*c == '/' || *c == '\\') module = c + 1;
    }
  }
};

class [[nodiscard]] Status {
 public:
  constexpr Status() = default;
  [[nodiscard]] constexpr bool Ok() const { return code_ == TESSEL_OK; }
  [[nodiscard]] constexpr bool Failed() const { return code_ != TESSEL_OK; }
  // The number that the interface returns.
  constexpr operator uint32_t() const { return code_; }

 private:
  friend Status Fail(TesselStatus code, SourceLocation at);
  constexpr explicit Status(TesselStatus code) : code_(code) {}

  TesselStatus code_ = TESSEL_OK;
};

[[gnu::cold, gnu::noinline]] void RecordFailure(SourceLocation at);

// Records the place and makes the status. A code that is merely passed up is not recorded again.
inline Status Fail(TesselStatus code, SourceLocation at = {}) {
  RecordFailure(at);
  return Status(code);
}

// Where an exported function calls a helper. Failures that the helper finds in the caller's arguments are recorded
// there. The default argument compiles in an exported function only: a helper hands on the place that it was given.
struct Caller : SourceLocation {
  consteval Caller(const char* file = __builtin_FILE(), uint32_t lineNumber = __builtin_LINE(),
                   const char* function = __builtin_FUNCTION())
      : SourceLocation(file, lineNumber) {
    if (!std::binary_search(std::begin(kExportedNames), std::end(kExportedNames), std::string_view(function))) {
      HelpersHandOnTheCallersPlace();
    }
  }
  constexpr Caller(const SourceLocation& at) : SourceLocation(at) {}

 private:
  // Not constexpr, so that calling it is an error where the default argument is used.
  static void HelpersHandOnTheCallersPlace() {}
};

// Passes on a failure: returns the status of the expression unless it is a success.
#define TRY(...)                                                                    \
  do {                                                                              \
    if (const ::tessel::Status tried = (__VA_ARGS__); tried.Failed()) return tried; \
  } while (false)

// The first of several statuses that is a failure. All of them have been found before.
template <class... Statuses>
Status FirstFailure(Status first, Statuses... others) {
  ((first = first.Failed() ? first : others), ...);
  return first;
}

template <class... Types>
constexpr bool AnyNull(const Types*... pointers) {
  return ((pointers == nullptr) || ...);
}

}  // namespace tessel
