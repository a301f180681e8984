// Failures inside the library: a Status is passed up, and the failure place is recorded once, where the Status is made.
#pragma once

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <string_view>

#include "exported_names.h"
#include "tessel/status.h"

namespace tessel {

// A module and a line. As a default argument it is the place of the call.
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

// Makes a failure and records its place. A status that is merely passed up is not recorded again.
inline Status Fail(TesselStatus code, SourceLocation at = {}) {
  RecordFailure(at);
  return Status(code);
}

// The source location at which an exported function calls a helper. The helper records failures in the caller's
// arguments there. The default argument compiles in an exported function only: a helper passes on the location that it
// was given.
struct Caller : SourceLocation {
  consteval Caller(const char* file = __builtin_FILE(), uint32_t lineNumber = __builtin_LINE(),
                   const char* function = __builtin_FUNCTION())
      : SourceLocation(file, lineNumber) {
    // clang evaluates a default argument where it is declared, outside of all functions: only g++ finds a mistake here.
    const std::string_view caller = function;
    const bool isExported = std::binary_search(std::begin(kExportedNames), std::end(kExportedNames), caller);
    if (!caller.empty() && !isExported) HelpersHandOnTheCallersPlace();
  }
  constexpr Caller(const SourceLocation& at) : SourceLocation(at) {}

 private:
  // Calling this function is a compile error, since it is not constexpr, and the error shows its name.
  static void HelpersHandOnTheCallersPlace() {}
};

// Passes on a failure: returns the status of the expression unless it is a success.
#define TRY(...)                                                                    \
  do {                                                                              \
    if (const ::tessel::Status tried = (__VA_ARGS__); tried.Failed()) return tried; \
  } while (false)

// The first failure among several statuses, if there is one. The calls that returned them have all been made.
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
