// The input of a fuzz program, as a source of decisions and octets. Where it ends, zeros and empty octets follow.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "tessel/octets.hpp"

namespace fuzz {

using tessel::Bytes;
using tessel::Octets;

// In memory of their own, so that a sanitizer sees a read beyond them; also of none there is an address.
inline Bytes Copied(Octets octets) {
  Bytes copy;
  copy.reserve(std::max<size_t>(octets.size(), 1));
  copy.assign(octets.begin(), octets.end());
  return copy;
}

class Input {
 public:
  explicit Input(Octets octets) : rest_(octets) {}

  [[nodiscard]] bool IsEmpty() const { return rest_.empty(); }
  uint8_t Octet() { return rest_.empty() ? 0 : Take(1)[0]; }
  uint32_t Below(uint32_t bound) { return Octet() % bound; }
  bool Flag() { return Octet() % 2 != 0; }
  uint32_t Number() {
    uint32_t number = 0;
    for (int i = 0; i < 4; ++i) number = number << 8 | Octet();
    return number;
  }

  // Octets of a length that the input tells.
  Bytes Some() {
    const uint32_t first = Octet();
    const uint32_t size = first < 0x80 ? first : (first & 0x7FU) << 8 | Octet();
    return Copied(Take(std::min<size_t>(size, rest_.size())));
  }
  Bytes Rest() { return Copied(Take(rest_.size())); }
  // The same as a text, which ends at the first NUL.
  std::string Text() {
    const Bytes octets = Some();
    return {octets.begin(), std::find(octets.begin(), octets.end(), 0)};
  }
  // A counted object identifier.
  Bytes Oid() {
    Bytes oid = Some();
    if (oid.size() > 255) oid.resize(255);
    oid.insert(oid.begin(), static_cast<uint8_t>(oid.size()));
    return oid;
  }

 private:
  Octets Take(size_t size) {
    const Octets taken = rest_.first(size);
    rest_ = rest_.subspan(size);
    return taken;
  }

  Octets rest_;
};

inline uint32_t SizeOf(const Bytes& octets) { return static_cast<uint32_t>(octets.size()); }
inline std::string_view TextOf(const Bytes& octets) {
  return {reinterpret_cast<const char*>(octets.data()), octets.size()};
}

// What has to hold whatever the input is. Otherwise the program ends, and the input is kept.
void Require(bool holds, const char* file = __builtin_FILE(), int line = __builtin_LINE());

}  // namespace fuzz
