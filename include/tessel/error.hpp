// Statuses in words, and the exception that carries one.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

#include "tessel/status.h"

namespace tessel {

namespace detail {

struct StatusRow {
  uint32_t status;
  std::string_view name;
  std::string_view text;
};

inline constexpr StatusRow kStatuses[] = {
    {TESSEL_OK, "TESSEL_OK", "success"},
    {TESSEL_OUT_OF_MEMORY, "TESSEL_OUT_OF_MEMORY", "there is not enough memory"},
    {TESSEL_INVALID_ARGUMENT, "TESSEL_INVALID_ARGUMENT", "an argument is invalid"},
    {TESSEL_BUFFER_TOO_SMALL, "TESSEL_BUFFER_TOO_SMALL", "a buffer is too small"},
    {TESSEL_UNSUPPORTED_KIND, "TESSEL_UNSUPPORTED_KIND", "the type of an element is not supported"},
    {TESSEL_MALFORMED, "TESSEL_MALFORMED", "an element is malformed or missing"},
    {TESSEL_LENGTH_TOO_LARGE, "TESSEL_LENGTH_TOO_LARGE", "a length is too large"},
    {TESSEL_INCONSISTENT_DESCRIPTOR, "TESSEL_INCONSISTENT_DESCRIPTOR", "a descriptor contradicts itself"},
    {TESSEL_WRONG_ALTERNATIVE, "TESSEL_WRONG_ALTERNATIVE", "a choice holds another alternative"},
    {TESSEL_INVALID_CONTENT, "TESSEL_INVALID_CONTENT", "a content is not one that its type allows"},
    {TESSEL_UNKNOWN_OID, "TESSEL_UNKNOWN_OID", "an object identifier is not known"},
    {TESSEL_UNKNOWN_ID, "TESSEL_UNKNOWN_ID", "a numeric identifier is not known"},
    {TESSEL_ABSENT, "TESSEL_ABSENT", "an element is absent"},
    {TESSEL_INVALID_TIME, "TESSEL_INVALID_TIME", "a time has a field out of its range"},
    {TESSEL_INVALID_KEY, "TESSEL_INVALID_KEY", "a key has a length or form that its algorithm does not allow"},
    {TESSEL_INVALID_PEM, "TESSEL_INVALID_PEM", "the PEM text is malformed"},
    {TESSEL_DIFFERENT, "TESSEL_DIFFERENT", "two values differ"},
    {TESSEL_NOT_FOUND, "TESSEL_NOT_FOUND", "an item was not found"},
    {TESSEL_NO_IDENTIFIER_TEXT, "TESSEL_NO_IDENTIFIER_TEXT", "a signer identifier has no content"},
    {TESSEL_INDEFINITE_LENGTH, "TESSEL_INDEFINITE_LENGTH",
     "an element of indefinite length is primitive or does not end as it must"},
    {TESSEL_WRONG_SEGMENT, "TESSEL_WRONG_SEGMENT", "a segment of an OCTET STRING is no OCTET STRING"},
    {TESSEL_INTERNAL_BUFFER_TOO_SMALL, "TESSEL_INTERNAL_BUFFER_TOO_SMALL", "an embedded value is too large"},
    {TESSEL_ALREADY_PRESENT, "TESSEL_ALREADY_PRESENT", "an item is there already"},
};

constexpr const StatusRow* FindStatus(uint32_t status) {
  for (const StatusRow& row : kStatuses) {
    if (row.status == status) return &row;
  }
  return nullptr;
}

}  // namespace detail

// "TESSEL_ABSENT" for 311. Empty for a number that is no status.
constexpr std::string_view StatusName(uint32_t status) {
  const detail::StatusRow* row = detail::FindStatus(status);
  return row == nullptr ? std::string_view() : row->name;
}

// "an element is absent" for 311.
constexpr std::string_view StatusText(uint32_t status) {
  const detail::StatusRow* row = detail::FindStatus(status);
  return row == nullptr ? std::string_view("an unknown status") : row->text;
}

// A place in the library's sources: to be quoted in a report, not to be depended on.
struct FailurePlace {
  const char* module = nullptr;  // null: not known
  uint32_t line = 0;

  // Where the last failure of the process was found. Another thread may have failed since.
  static FailurePlace Last() {
    FailurePlace place;
    place.module = GetLastFileErrorAsn(&place.line);
    return place;
  }
};

// A call that failed. what() is like "an element is absent (TESSEL_ABSENT, certificate.cpp:120)".
class Error : public std::runtime_error {
 public:
  explicit Error(uint32_t status, FailurePlace place = FailurePlace::Last())
      : std::runtime_error(Describe(status, place)), status_(status), place_(place) {}

  [[nodiscard]] uint32_t Status() const { return status_; }
  // Where the library found it; null and 0 when the call was not made.
  [[nodiscard]] const char* Module() const { return place_.module; }
  [[nodiscard]] uint32_t Line() const { return place_.line; }

 private:
  static std::string Describe(uint32_t status, FailurePlace place) {
    std::string text(StatusText(status));
    text += " (";
    const std::string_view name = StatusName(status);
    text += name.empty() ? std::to_string(status) : std::string(name);
    if (place.module != nullptr) text.append(", ").append(place.module).append(":") += std::to_string(place.line);
    return text += ")";
  }

  uint32_t status_;
  FailurePlace place_;
};

}  // namespace tessel
