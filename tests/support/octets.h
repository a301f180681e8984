// Octets in tests: written as hex, shown as hex.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "tessel/octets.hpp"

namespace test {

using tessel::Bytes;

// "30 03 02 01 05"; blanks are ignored.
Bytes FromHex(std::string_view text);
std::string ToHex(const Bytes& bytes);

Bytes& operator+=(Bytes& bytes, const Bytes& more);
Bytes operator+(Bytes first, const Bytes& second);
Bytes Repeat(const Bytes& bytes, size_t times);

// An element in DER, of an identifier of one octet.
Bytes Der(uint8_t identifier, const Bytes& content);

// Octets that end where readable memory ends: reading one more crashes.
class Guarded {
 public:
  explicit Guarded(const Bytes& bytes);
  ~Guarded();
  Guarded(const Guarded&) = delete;
  Guarded& operator=(const Guarded&) = delete;

  [[nodiscard]] const uint8_t* Data() const { return data_; }
  [[nodiscard]] uint32_t Size() const { return size_; }
  operator tessel::Octets() const { return {data_, size_}; }

 private:
  uint8_t* pages_;
  size_t length_;
  uint8_t* data_;
  uint32_t size_;
};

}  // namespace test
