// How results get into a caller's buffer: `length` holds the capacity of `buffer` and receives the length that is
// needed. With a null buffer the caller asks for that length only. A buffer that is too small is not written to.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string_view>

#include "engine/memory.h"
#include "engine/status.h"

namespace tessel {

// Prepares the delivery of `needed` octets. After success they are written straight into `buffer`, unless that is null.
inline Status Offer(uint64_t needed, const void* buffer, uint32_t* length, Caller at = {}) {
  if (length == nullptr) return Fail(TESSEL_INVALID_ARGUMENT, at);
  if (needed > UINT32_MAX) return Fail(TESSEL_LENGTH_TOO_LARGE, at);
  const uint32_t capacity = *length;
  *length = static_cast<uint32_t>(needed);
  return buffer != nullptr && capacity < needed ? Fail(TESSEL_BUFFER_TOO_SMALL, at) : Status();
}

// Delivers a result that exists already.
inline Status Deliver(Octets result, uint8_t* buffer, uint32_t* length, Caller at = {}) {
  Status status = Offer(result.size(), buffer, length, at);
  if (status.Ok() && buffer != nullptr) std::copy(result.begin(), result.end(), buffer);
  return status;
}

// Delivers a text and a NUL behind it, which counts in the length.
inline Status DeliverText(std::string_view text, char* buffer, uint32_t* length, Caller at = {}) {
  Status status = Offer(text.size() + 1, buffer, length, at);
  if (status.Ok() && buffer != nullptr) *std::copy(text.begin(), text.end(), buffer) = '\0';
  return status;
}

}  // namespace tessel
