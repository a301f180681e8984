#include "floor.h"

#include <cstdlib>
#include <cstring>

#include "tessel/decoder.h"

namespace bench {
namespace {

constexpr uint8_t kConstructed = 0x20;
constexpr uint8_t kHighTagNumber = 0x1F;
constexpr uint8_t kLongLength = 0x80;

struct Header {
  size_t size = 0;  // 0: there is none, or the content does not fit
  size_t contentLength = 0;
};

// Behind a tag number of 31 or more; behind the end of the octets when it does not end.
size_t BehindTagNumber(Octets octets) {
  size_t at = 1;
  while (at < octets.size() && (octets[at] & 0x80) != 0) ++at;
  return at + 1;
}

inline Header ReadHeader(Octets octets) {
  if (octets.size() < 2) return {};
  size_t at = 1;
  if ((octets[0] & kHighTagNumber) == kHighTagNumber) [[unlikely]]
    at = BehindTagNumber(octets);
  if (at >= octets.size()) return {};
  size_t length = octets[at++];
  if (length >= kLongLength) [[unlikely]] {
    const size_t lengthOctets = length - kLongLength;
    if (lengthOctets == 0 || lengthOctets > 4 || lengthOctets > octets.size() - at) return {};
    length = 0;
    for (const size_t end = at + lengthOctets; at < end; ++at) length = length << 8 | octets[at];
  }
  if (length > octets.size() - at) return {};
  return {at, length};
}

bool WalkInside(Octets octets, uint64_t& sum) {
  while (!octets.empty()) {
    const Header header = ReadHeader(octets);
    if (header.size == 0) return false;
    sum += octets[0] + header.contentLength;
    if ((octets[0] & kConstructed) != 0 && !WalkInside(octets.subspan(header.size, header.contentLength), sum)) {
      return false;
    }
    octets = octets.subspan(header.size + header.contentLength);
  }
  return true;
}

// The same by the library.
struct Walk {
  uint64_t elements = 0;
  uint64_t sum = 0;
};

bool AddElements(Octets octets, Walk& walk) {
  while (!octets.empty()) {
    uint8_t tagClass = 0;
    uint8_t constructed = 0;
    uint32_t tagNumber = 0;
    uint32_t contentLength = 0;
    uint32_t headerLength = 0;
    if (GetAsn1ObjectInfo(octets.data(), static_cast<uint32_t>(octets.size()), &tagClass, &constructed, &tagNumber,
                          &contentLength, nullptr, &headerLength) != 0) {
      return false;
    }
    ++walk.elements;
    walk.sum += octets[0] + contentLength;
    const Octets content = octets.subspan(headerLength, contentLength);
    if (constructed != 0 && !AddElements(content, walk)) return false;
    octets = octets.subspan(headerLength + contentLength);
  }
  return true;
}

}  // namespace

uint64_t WalkHeaders(Octets octets) {
  uint64_t sum = 0;
  return WalkInside(octets, sum) ? sum : 0;
}

bool IsRightWalk(Octets octets) {
  Walk walk;
  return AddElements(octets, walk) && WalkHeaders(octets) == walk.sum;
}

uint64_t CountElements(Octets octets) {
  Walk walk;
  Require(AddElements(octets, walk), "an input is not whole elements");
  return walk.elements;
}

void CopyOctets(Octets octets) { std::memcpy(Output(octets.size()), octets.data(), octets.size()); }

bool IsRightCopy(Octets octets) {
  ClearOutput();
  CopyOctets(octets);
  return std::memcmp(Output(octets.size()), octets.data(), octets.size()) == 0;
}

bool AllocateElements(uint64_t elements) {
  static std::vector<void*> blocks;
  blocks.resize(elements);
  bool areThere = true;
  for (void*& block : blocks) {
    block = std::malloc(32);
    areThere = areThere && block != nullptr;
  }
  for (void* block : blocks) std::free(block);
  return areThere;
}

Label WalkLabel() {
  return {Kind::kFloor, "floor: header walk",
          "reads the identifier and length of every element, and checks that it ends within the one that it is in; it "
          "allocates, stores and copies nothing."};
}

Label CopyLabel(Kind kind) { return {kind, "`memcpy`", "copies the octets, to one place."}; }

Label AllocationsLabel() {
  return {Kind::kAside, "`malloc` and `free`",
          "of 32 octets for each element: what the heap alone costs a decoder that allocates every one."};
}

}  // namespace bench
