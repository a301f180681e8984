// Tessel's functions in the form that sides.h wants.
#pragma once

#include <cstdint>
#include <ctime>

#include "inputs.h"
#include "tessel/calls.hpp"

namespace bench {

// Asks a function that follows the library's convention for buffers for the size, and then for the octets, which go to
// the one output without an allocation. encode(buffer, length) returns its status. No octets: it failed.
template <class Encode>
Octets EncodeBySize(Encode encode) {
  uint32_t size = 0;
  if (encode(nullptr, &size) != 0) return {};
  uint8_t* const output = Output(size);
  uint32_t length = size;
  if (encode(output, &length) != 0) return {};
  return {output, length};
}

// The same in one call, with a buffer that is known to be large enough.
template <class Encode>
Octets EncodeInto(size_t size, Encode encode) {
  uint8_t* const output = Output(size);
  auto length = static_cast<uint32_t>(size);
  if (encode(output, &length) != 0) return {};
  return {output, length};
}

inline constexpr tessel::ObjectIdentifier kBasicConstraints("2.5.29.19");

inline std::time_t SecondsOf(const LibraryTime& time) {
  std::tm fields{};
  fields.tm_year = static_cast<int>(time.year) - 1900;
  fields.tm_mon = static_cast<int>(time.month) - 1;
  fields.tm_mday = static_cast<int>(time.day);
  fields.tm_hour = static_cast<int>(time.hour);
  fields.tm_min = static_cast<int>(time.minute);
  fields.tm_sec = static_cast<int>(time.second);
  return timegm(&fields);
}

inline uint32_t SizeOf(Octets octets) { return static_cast<uint32_t>(octets.size()); }

// By a descriptor.
inline auto DecoderOf(const Asn1Item& item) {
  return [&item](Octets octets) {
    tessel::Tree tree(item);
    Asn1DecodeItem(octets.data(), SizeOf(octets), &item, tree.Out(), nullptr);
    return tree;
  };
}

}  // namespace bench
