#include "engine/header.h"

#include "tessel/decoder.h"

namespace tessel {

Status ReadLongHeader(Octets input, Header& header) {
  if (input.size() < 2) return Fail(TESSEL_MALFORMED);
  const uint8_t identifier = input[0];
  header.tagClass = identifier & kClassBits;
  header.constructed = identifier & kConstructedBit;
  header.tagNumber = identifier & kHighTagNumber;
  size_t at = 1;
  if (header.tagNumber == kHighTagNumber) {
    // DEVIATES: tag numbers may begin with zeros (X.690, 8.1.2.4.2) and wrap at 32 bits, so that what could be read so
    // far stays readable.
    header.tagNumber = 0;
    uint8_t digit = 0;
    do {
      if (at == input.size()) return Fail(TESSEL_MALFORMED);
      digit = input[at++];
      header.tagNumber = header.tagNumber << 7 | (digit & 0x7F);
    } while ((digit & 0x80) != 0);
  }

  if (at == input.size()) return Fail(TESSEL_MALFORMED);
  const uint8_t length = input[at++];
  header.indefinite = length == kLongLength;
  if (header.indefinite) {
    header.contentLength = static_cast<uint32_t>(input.size() - at);
  } else if (length < kLongLength) {
    header.contentLength = length;
  } else {
    const size_t lengthOctets = length & 0x7F;
    // DEVIATES: a length of more than four octets is refused even when the number is small: sizes have 32 bits in the
    // interface.
    if (lengthOctets > sizeof header.contentLength) return Fail(TESSEL_LENGTH_TOO_LARGE);
    if (lengthOctets > input.size() - at) return Fail(TESSEL_MALFORMED);
    header.contentLength = 0;
    for (const uint8_t octet : input.subspan(at, lengthOctets)) {
      header.contentLength = header.contentLength << 8 | octet;
    }
    at += lengthOctets;
  }
  header.headerLength = static_cast<uint32_t>(at);
  return Status();
}

Status ScanIndefiniteContent(Octets content, uint32_t& size) {
  size_t at = 0;
  // How many elements of indefinite length have not ended yet. They are counted, because recursion would need stack.
  size_t open = 1;
  while (at < content.size()) {
    const Octets rest = content.subspan(at);
    if (StartsWithEndOfContents(rest)) {
      at += kEndOfContentsSize;
      if (--open == 0) {
        size = static_cast<uint32_t>(at);
        return Status();
      }
      continue;
    }
    Header header;
    TRY(ReadHeader(rest, header));
    at += header.headerLength;
    if (header.indefinite) {
      ++open;
      continue;
    }
    if (header.contentLength > content.size() - at) return Fail(TESSEL_MALFORMED);
    at += header.contentLength;
  }
  return Fail(TESSEL_INDEFINITE_LENGTH);
}

uint32_t CountSeveralElements(Octets content, uint32_t most) {
  uint32_t count = 0;
  while (count < most && content.size() >= 2 && (content[0] & kHighTagNumber) != kHighTagNumber &&
         !StartsWithEndOfContents(content)) {
    Octets inside;
    const uint32_t headerLength = ReadBehindIdentifier(content, inside);
    if (headerLength == 0) break;
    content = content.subspan(headerLength + inside.size());
    ++count;
  }
  return count;
}

}  // namespace tessel

using namespace tessel;

uint32_t TESSEL_CALL GetAsn1ObjectInfo(const uint8_t* data, uint32_t size, uint8_t* tagClass, uint8_t* constructed,
                                       uint32_t* tagNumber, uint32_t* contentLength, uint32_t* indefinite,
                                       uint32_t* headerLength) {
  if (data == nullptr || tagClass == nullptr || constructed == nullptr || tagNumber == nullptr ||
      contentLength == nullptr || headerLength == nullptr) {
    return Fail(TESSEL_INVALID_ARGUMENT);
  }
  const Octets input(data, size);
  Header header{};
  TRY(ReadHeader(input, header));
  // DEVIATES: with `indefinite` the content may be longer than the input, for callers who have only the beginning of an
  // element.
  if (indefinite == nullptr) {
    Octets content;
    TRY(ReadContent(input, header, content));
  } else {
    *indefinite = header.indefinite ? 1 : 0;
  }
  *tagClass = header.tagClass;
  *constructed = header.constructed;
  *tagNumber = header.tagNumber;
  *contentLength = header.contentLength;
  *headerLength = header.headerLength;
  return Status();
}
