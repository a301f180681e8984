// Decoding by descriptors, and why octets do not decode.
#pragma once

#include <cstdint>
#include <new>
#include <utility>

#include "asn1/ber.h"
#include "tessel/asn1.hpp"
#include "tessel/calls.hpp"

namespace tool {

// Calls the library and returns the status, except that std::bad_alloc is thrown when memory fails: that is no answer
// about what was asked.
template <typename... Arguments>
uint32_t StatusOf(Arguments&&... arguments) {
  const uint32_t status = tessel::Try(std::forward<Arguments>(arguments)...);
  if (status == TESSEL_OUT_OF_MEMORY) throw std::bad_alloc();
  return status;
}

// The fault of octets that Asn1DecodeItem refuses. Recurses as deep as outlines nest in each other.
Fault Explain(const tessel::Outline& outline, Octets octets);

// Octets that do not decode, which have to be there as long as the exception.
class DecodingError : public tessel::Error {
 public:
  DecodingError(uint32_t status, const tessel::Outline& type, Octets octets)
      : tessel::Error(status), type_(&type), octets_(octets) {}

  [[nodiscard]] Fault Explained() const { return Explain(*type_, octets_); }

 private:
  const tessel::Outline* type_;
  Octets octets_;
};

// The tree of the value at the start of the octets; `consumed` receives the length of its encoding. Throws a
// DecodingError.
tessel::Tree Decode(const tessel::Outline& type, Octets octets, uint32_t* consumed = nullptr);

}  // namespace tool
