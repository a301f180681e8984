// Headers of elements, and the ends of contents of indefinite length.
#pragma once

#include <cstdint>

#include "engine/memory.h"
#include "engine/status.h"

namespace tessel {

inline constexpr uint8_t kClassBits = 0xC0;
inline constexpr uint8_t kConstructedBit = 0x20;
inline constexpr uint8_t kHighTagNumber = 0x1F;
inline constexpr uint8_t kLongLength = 0x80;
inline constexpr uint32_t kEndOfContentsSize = 2;

struct Header {
  uint8_t tagClass;
  uint8_t constructed;
  bool indefinite;
  uint32_t tagNumber;
  // With indefinite length, all that is left of the input. A definite length may be more than that.
  uint32_t contentLength;
  uint32_t headerLength;
};

Status ReadLongHeader(Octets input, Header& header);

// Reads the header at the start of the input, which is shorter than 2^32.
inline Status ReadHeader(Octets input, Header& header) {
  if (input.size() < 2 || (input[0] & kHighTagNumber) == kHighTagNumber || input[1] >= kLongLength) {
    // A variable of its own, so that the caller's can stay in registers.
    Header read;
    Status status = ReadLongHeader(input, read);
    header = read;
    return status;
  }
  header = {static_cast<uint8_t>(input[0] & kClassBits),
            static_cast<uint8_t>(input[0] & kConstructedBit),
            false,
            static_cast<uint32_t>(input[0] & kHighTagNumber),
            input[1],
            2};
  return Status();
}

// Returns the length of the header at the start of the input, and sets `content`, when the length is written as DER has
// it and the content lies within the input. Otherwise returns 0, which is no failure: ReadHeader may read more. The
// caller makes sure that the input has two octets, and that the identifier is a single one.
inline uint32_t ReadBehindIdentifier(Octets input, Octets& content) {
  uint32_t headerLength = 2;
  uint32_t length = input[1];
  if (length >= kLongLength) {
    const uint32_t lengthOctets = length & 0x7F;
    if (lengthOctets - 1 >= sizeof length || lengthOctets > input.size() - 2) return 0;
    length = 0;
    for (; headerLength < 2 + lengthOctets; ++headerLength) length = length << 8 | input[headerLength];
    if (input[2] == 0 || length < kLongLength) return 0;
  }
  if (length > input.size() - headerLength) return 0;
  content = input.subspan(headerLength, length);
  return headerLength;
}

// Sets `content` to the octets that the header tells, when they lie within the input.
inline Status ReadContent(Octets input, const Header& header, Octets& content) {
  if (header.contentLength > input.size() - header.headerLength) return Fail(TESSEL_MALFORMED);
  content = input.subspan(header.headerLength, header.contentLength);
  return Status();
}

inline bool StartsWithEndOfContents(Octets input) { return input.size() >= 2 && input[0] == 0 && input[1] == 0; }

// The size of the content of an element with indefinite length, its end-of-contents octets included. Elements inside
// may be of indefinite length too, to any depth.
Status ScanIndefiniteContent(Octets content, uint32_t& size);

// Counts elements from header to header, without looking into them. The count ends with the content, at `most`, at
// end-of-contents octets, and at a header that ReadBehindIdentifier does not read.
uint32_t CountSeveralElements(Octets content, uint32_t most);
inline uint32_t CountElements(Octets content, uint32_t most) {
  const bool isOne = content.size() >= 2 && content[1] < kLongLength && content.size() - 2 == content[1];
  return isOne ? 1 : CountSeveralElements(content, most);
}

}  // namespace tessel
