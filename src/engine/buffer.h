// The caller-buffer convention: `length` holds the capacity of `buffer` and receives the length that is needed; a null
// buffer is a question for that length; a buffer that is too small is left alone.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string_view>

#include "engine/memory.h"
#include "engine/status.h"

namespace tessel {

// For a result of a known length that is then written straight into the buffer, when there is one.
inline Status Offer(uint64_t needed, const void* buffer, uint32_t* length, Caller at = {}) {
  if (length == nullptr) return Fail(TESSEL_INVALID_ARGUMENT, at);
  if (needed > UINT32_MAX) return Fail(TESSEL_LENGTH_TOO_LARGE, at);
  const uint32_t capacity = *length;
  *length = static_cast<uint32_t>(needed);
  return buffer != nullptr && capacity < needed ? Fail(TESSEL_BUFFER_TOO_SMALL, at) : Status();
}

// For a result that exists already.
inline Status Deliver(Octets result, uint8_t* buffer, uint32_t* length, Caller at = {}) {
  Status status = Offer(result.size(), buffer, length, at);
  if (status.Ok() && buffer != nullptr) std::copy(result.begin(), result.end(), buffer);
  return status;
}

// The same for a text, whose NUL counts.
inline Status DeliverText(std::string_view text, char* buffer, uint32_t* length, Caller at = {}) {
  Status status = Offer(text.size() + 1, buffer, length, at);
  if (status.Ok() && buffer != nullptr) *std::copy(text.begin(), text.end(), buffer) = '\0';
  return status;
}

}  // namespace tessel
