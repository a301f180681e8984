// Why octets do not decode.
#pragma once

#include <cstdint>
#include <string>

#include "asn1/ber.h"
#include "tessel/asn1.hpp"

namespace tool {

// The innermost value that does not decode, its place in the octets, and the reason, a sentence without its full stop.
struct Fault {
  std::string path;  // `tbsCertificate.extensions[3].critical`; empty for the whole value
  uint32_t offset = 0;
  std::string reason;

  // `tbsCertificate.version, offset 8: an INTEGER of no octets`
  [[nodiscard]] std::string Text() const;
};

// The fault of octets that Asn1DecodeItem refuses. Recurses as deep as outlines nest in each other.
Fault Explain(const tessel::Outline& outline, Octets octets);

}  // namespace tool
