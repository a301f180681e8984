#include "engine/decoder.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "engine/descriptor.h"
#include "engine/header.h"
#include "engine/lifecycle.h"
#include "engine/lists.h"
#include "engine/nodes.h"
#include "engine/primitives.h"

namespace tessel {
namespace {

// Far deeper than any type; it bounds the stack when a descriptor contains itself.
constexpr uint32_t kMaximumDepth = 1000;

// Which tag an element must carry: its descriptor's, or, inside an EXPLICIT wrapper, the universal one of its kind.
enum class Tagging : uint8_t { kOwn, kUniversal };

// Decodes one tree. Each function reads at the start of the octets that it is given and stays within them. A level that
// fails releases what it made; only a value whose content is invalid is handed up, and released by the level above.
class Decoder {
 public:
  explicit Decoder(Octets input) : pool_(input) {}

  Status Element(const Asn1Item& item, Octets input, Decoded& found);

 private:
  Status Wrapped(const Asn1Item& item, Octets input, Decoded& found);
  Status Tagged(const Asn1Item& item, Octets input, Tagging tagging, Decoded& found);
  Status Absent(const Asn1Item& item, Tagging tagging, Decoded& found);
  Status Alternative(const Asn1Item& item, Octets input, uint32_t index, Decoded& found);
  Status OpenValue(Octets input, const Header& header, Decoded& found);

  Status Constructed(const Asn1Item& item, Octets content, bool indefinite, Decoded& found);
  Status SegmentedString(Octets content, bool indefinite, Decoded& found);
  Status List(const Asn1Item& item, Octets content, bool indefinite, Decoded& found);
  Status ListElements(const Asn1Item& element, Octets content, bool indefinite, Asn1List& list, uint32_t& position);
  Status Slots(const Asn1Item& item, Octets content, bool indefinite, Decoded& found);
  Status Members(const Asn1Item& item, Octets content, bool indefinite, void* node, uint32_t& position);

  Status Primitive(const Asn1Item& item, Octets content, Decoded& found);
  Status BitString(Octets content, Decoded& found);
  Status Value(uint32_t tag, Octets content, Decoded& found);
  template <class Node>
  Status Place(Node node, Octets content, Decoded& found);

  Pool pool_;
  uint32_t depth_ = 0;
};

Status Decoder::Element(const Asn1Item& item, Octets input, Decoded& found) {
  if (input.empty()) return Absent(item, Tagging::kOwn, found);
  if (depth_ == kMaximumDepth) return Fail(TESSEL_MALFORMED);
  ++depth_;
  const Status status = IsExplicit(item) ? Wrapped(item, input, found) : Tagged(item, input, Tagging::kOwn, found);
  --depth_;
  return status;
}

Status Decoder::Wrapped(const Asn1Item& item, Octets input, Decoded& found) {
  if (item.tagNumber < 0) return Fail(TESSEL_INCONSISTENT_DESCRIPTOR);
  Header outer;
  if (Status status = ReadHeader(input, outer); status.Failed()) return status;
  if (outer.tagNumber != OwnTag(item) || outer.tagClass != TagClass(item) || outer.constructed == 0) {
    return Absent(item, Tagging::kOwn, found);
  }

  // The element may use more or less than a definite outer length says.
  const Octets inside = input.subspan(outer.headerLength);
  Decoded inner;
  Status status = Tagged(item, inside, Tagging::kUniversal, inner);
  if (status.Ok() && outer.indefinite) {
    if (StartsWithEndOfContents(inside.subspan(inner.consumed))) {
      inner.consumed += kEndOfContentsSize;
    } else {
      status = Fail(TESSEL_INDEFINITE_LENGTH);
    }
  }
  if (status.Failed()) {
    FreeTree(&item, inner.node);
    return status;
  }
  found = {inner.node, outer.headerLength + inner.consumed};
  return status;
}

Status Decoder::Absent(const Asn1Item& item, Tagging tagging, Decoded& found) {
  // A wrapper that is there must hold its element, OPTIONAL or not.
  if (!IsOptional(item) || tagging == Tagging::kUniversal) return Fail(TESSEL_MALFORMED);
  found = {};
  if (item.defaultValue == nullptr) return Status();
  return CopyInto(pool_, item, item.defaultValue, found.node);
}

bool Matches(const Header& header, uint8_t tagClass, uint32_t tagNumber) {
  return header.tagClass == tagClass && header.tagNumber == tagNumber;
}

bool MatchesAlternative(const Header& header, const Asn1Item& alternative) {
  // An open value has no tag of its own: without a tag number nothing identifies it.
  if (alternative.kind == TESSEL_KIND_ANY && alternative.tagNumber < 0) return false;
  const uint8_t constructed = IsExplicit(alternative) ? kConstructedBit : ConstructedBit(alternative);
  return Matches(header, TagClass(alternative), OwnTag(alternative)) && header.constructed == constructed;
}

uint32_t FindAlternative(const Asn1Item& item, const Header& header) {
  uint32_t index = 0;
  while (index < item.memberCount && !MatchesAlternative(header, *item.members[index])) ++index;
  return index;
}

Status Decoder::Tagged(const Asn1Item& item, Octets input, Tagging tagging, Decoded& found) {
  Header header;
  if (Status status = ReadHeader(input, header); status.Failed()) return status;
  // End-of-contents octets are never an element, whatever an open type or an unusual tag would make of them.
  if (StartsWithEndOfContents(input)) return Absent(item, tagging, found);
  if (item.kind == TESSEL_KIND_CHOICE) {
    const uint32_t index = FindAlternative(item, header);
    return index < item.memberCount ? Alternative(item, input, index, found) : Absent(item, tagging, found);
  }
  if (item.kind == TESSEL_KIND_ANY) return OpenValue(input, header, found);

  const bool own = tagging == Tagging::kOwn;
  const bool matches =
      own ? Matches(header, TagClass(item), OwnTag(item)) : Matches(header, TESSEL_CLASS_UNIVERSAL, UniversalTag(item));
  const bool mayBeSegmented = item.kind == TESSEL_KIND_OCTET_STRING || item.kind == TESSEL_KIND_BIT_STRING;
  const bool rightForm = header.constructed == ConstructedBit(item) || (header.indefinite && mayBeSegmented);
  if (!matches || !rightForm) return Absent(item, tagging, found);

  Octets content;
  if (Status status = ReadContent(input, header, content); status.Failed()) return status;
  if (header.constructed == 0) {
    if (header.indefinite) return Fail(TESSEL_INDEFINITE_LENGTH);
    found.consumed = header.headerLength + header.contentLength;
    return Primitive(item, content, found);
  }
  Status status = Constructed(item, content, header.indefinite, found);
  found.consumed += header.headerLength;
  return status;
}

Status Decoder::Alternative(const Asn1Item& item, Octets input, uint32_t index, Decoded& found) {
  if (Status status = Place(Asn1Choice{index, nullptr}, {}, found); status.Failed()) return status;
  Decoded value;
  const Asn1Item& alternative = *item.members[index];
  if (Status status = Element(alternative, input, value); status.Failed()) {
    FreeTree(&alternative, value.node);
    FreeTree(&item, found.node);
    found.node = nullptr;
    return status;
  }
  static_cast<Asn1Choice*>(found.node)->value = value.node;
  found.consumed = value.consumed;
  return Status();
}

Status Decoder::OpenValue(Octets input, const Header& header, Decoded& found) {
  Octets content;
  if (Status status = ReadContent(input, header, content); status.Failed()) return status;
  uint32_t size = header.contentLength;
  if (header.indefinite) {
    if (Status status = ScanIndefiniteContent(content, size); status.Failed()) return status;
  }
  found.consumed = header.headerLength + size;
  return Value(header.tagNumber, input.first(found.consumed), found);
}

// The functions from here on are given a content, and report how much of it they used: all of it, unless the length was
// indefinite.

Status Decoder::Constructed(const Asn1Item& item, Octets content, bool indefinite, Decoded& found) {
  if (ShapeOf(item) == Shape::kSlotsNode) return Slots(item, content, indefinite, found);
  if (ShapeOf(item) == Shape::kListNode) return List(item, content, indefinite, found);
  if (item.kind == TESSEL_KIND_OCTET_STRING) return SegmentedString(content, indefinite, found);
  return Fail(TESSEL_INVALID_ARGUMENT);
}

// Calls `use` with the content of each segment and sets `position` behind the last. Segments are not descended into.
template <class Use>
Status WalkSegments(Octets content, bool indefinite, uint32_t& position, Use use) {
  position = 0;
  while (true) {
    const Octets rest = content.subspan(position);
    if (indefinite && StartsWithEndOfContents(rest)) {
      position += kEndOfContentsSize;
      return Status();
    }
    if (!indefinite && rest.empty()) return Status();
    Header header;
    if (Status status = ReadHeader(rest, header); status.Failed()) return status;
    if (header.tagNumber != TESSEL_KIND_OCTET_STRING) return Fail(TESSEL_WRONG_SEGMENT);
    Octets segment;
    if (Status status = ReadContent(rest, header, segment); status.Failed()) return status;
    use(segment);
    position += header.headerLength + header.contentLength;
  }
}

Status Decoder::SegmentedString(Octets content, bool indefinite, Decoded& found) {
  uint32_t length = 0;
  Status status = WalkSegments(content, indefinite, found.consumed,
                               [&length](Octets segment) { length += static_cast<uint32_t>(segment.size()); });
  if (status.Failed()) return status;
  if (status = Value(TESSEL_KIND_OCTET_STRING, {}, found); status.Failed() || length == 0) return status;

  auto& value = *static_cast<Asn1Value*>(found.node);
  value.data = static_cast<uint8_t*>(AllocateOctets(length));
  if (value.data == nullptr) {
    ReleaseNode(found.node);
    found.node = nullptr;
    return Fail(TESSEL_OUT_OF_MEMORY);
  }
  return WalkSegments(content, indefinite, found.consumed, [&value](Octets segment) {
    if (!segment.empty()) std::memcpy(value.data + value.length, segment.data(), segment.size());
    value.length += static_cast<uint32_t>(segment.size());
  });
}

Status Decoder::List(const Asn1Item& item, Octets content, bool indefinite, Decoded& found) {
  const Asn1Item* element = ElementOf(item);
  if (element == nullptr) return Fail(TESSEL_INCONSISTENT_DESCRIPTOR);
  if (Status status = Place(kEmptyList, {}, found); status.Failed()) return status;
  Status status = ListElements(*element, content, indefinite, *static_cast<Asn1List*>(found.node), found.consumed);
  if (status.Failed()) {
    FreeTree(&item, found.node);
    found.node = nullptr;
  }
  return status;
}

Status Decoder::ListElements(const Asn1Item& element, Octets content, bool indefinite, Asn1List& list,
                             uint32_t& position) {
  position = 0;
  while (true) {
    const Octets rest = content.subspan(position);
    if (indefinite && StartsWithEndOfContents(rest)) {
      position += kEndOfContentsSize;
      return Status();
    }
    if (!indefinite && rest.empty()) return Status();
    if (rest.size() < 2) return Fail(TESSEL_MALFORMED);

    Decoded found;
    Status status = Element(element, rest, found);
    // An OPTIONAL element that is absent would be absent for ever.
    if (status.Ok() && found.consumed == 0) status = Fail(TESSEL_MALFORMED);
    if (status.Ok()) status = AppendTo(list, found.node, pool_);
    if (status.Failed()) {
      FreeTree(&element, found.node);
      return status;
    }
    position += found.consumed;
  }
}

Status Decoder::Slots(const Asn1Item& item, Octets content, bool indefinite, Decoded& found) {
  found.node = pool_.Node(item.nodeSize);
  if (found.node == nullptr) return Fail(TESSEL_OUT_OF_MEMORY);
  std::memset(found.node, 0, item.nodeSize);
  Status status = Members(item, content, indefinite, found.node, found.consumed);
  if (status.Failed()) {
    FreeTree(&item, found.node);
    found.node = nullptr;
  }
  return status;
}

Status Decoder::Members(const Asn1Item& item, Octets content, bool indefinite, void* node, uint32_t& position) {
  position = 0;
  for (uint32_t i = 0; i < item.memberCount; ++i) {
    Decoded member;
    Status status = Element(*item.members[i], content.subspan(position), member);
    // Also of a failure: a value with invalid content is released with the others.
    StoreSlot(node, i, member.node);
    if (status.Failed()) return status;
    position += member.consumed;
  }
  if (indefinite) {
    if (!StartsWithEndOfContents(content.subspan(position))) return Fail(TESSEL_INDEFINITE_LENGTH);
    position += kEndOfContentsSize;
  } else {
    // What follows the last member is skipped.
    position = static_cast<uint32_t>(content.size());
  }
  return Status();
}

Status Decoder::Primitive(const Asn1Item& item, Octets content, Decoded& found) {
  if (ShapeOf(item) == Shape::kBitStringNode) return BitString(content, found);
  if (ShapeOf(item) != Shape::kValueNode) return Fail(TESSEL_UNSUPPORTED_KIND);
  if (Status status = Value(item.kind, content, found); status.Failed()) return status;
  const bool valid = (item.kind != TESSEL_KIND_BOOLEAN || IsBooleanContent(content)) &&
                     (item.kind != TESSEL_KIND_INTEGER || IsIntegerContent(content));
  return valid ? Status() : Fail(TESSEL_INVALID_CONTENT);
}

Status Decoder::BitString(Octets content, Decoded& found) {
  constexpr uint8_t kMostUnusedBits = 7;
  if (content.empty() || content[0] > kMostUnusedBits) return Fail(TESSEL_MALFORMED);
  return Place(Asn1BitString{content[0], 0, nullptr}, content.subspan(1), found);
}

Status Decoder::Value(uint32_t tag, Octets content, Decoded& found) {
  return Place(Asn1Value{tag, 0, nullptr}, content, found);
}

// Places a node; one with a content (an Asn1Value or Asn1BitString) receives its length and octets.
template <class Node>
Status Decoder::Place(Node node, Octets content, Decoded& found) {
  void* place = pool_.Node(sizeof(Node));
  if (place == nullptr) return Fail(TESSEL_OUT_OF_MEMORY);
  if constexpr (requires { node.data; }) {
    node.length = static_cast<uint32_t>(content.size());
    if (!content.empty()) node.data = pool_.Keep(content);
    if (!content.empty() && node.data == nullptr) {
      ReleaseNode(place);
      return Fail(TESSEL_OUT_OF_MEMORY);
    }
  }
  found.node = new (place) Node(node);
  return Status();
}

// How much of the input to copy at once: the element, when its header tells its length. What lies beyond it after all
// is copied piece by piece.
Octets ElementOctets(Octets input) {
  Header header;
  if (input.size() < 2 || ReadHeader(input, header).Failed() || header.indefinite) return {};
  const size_t size = uint64_t{header.headerLength} + header.contentLength < input.size()
                          ? size_t{header.headerLength} + header.contentLength
                          : input.size();
  return input.first(size);
}

}  // namespace

Status DecodeTree(const Asn1Item& item, Octets input, Decoded& decoded) {
  decoded = {};
  return Decoder(ElementOctets(input)).Element(item, input, decoded);
}

}  // namespace tessel

using namespace tessel;

uint32_t TESSEL_CALL Asn1DecodeItem(const uint8_t* data, uint32_t size, const Asn1Item* descriptor, void** object,
                                    uint32_t* consumed) {
  if (data == nullptr || descriptor == nullptr || object == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  Decoded decoded;
  const Status status = DecodeTree(*descriptor, Octets(data, size), decoded);
  *object = decoded.node;
  if (status.Ok() && consumed != nullptr) *consumed = decoded.consumed;
  return status;
}
