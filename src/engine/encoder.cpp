#include "engine/encoder.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "engine/buffer.h"
#include "engine/header.h"
#include "engine/lifecycle.h"
#include "engine/lists.h"
#include "engine/nodes.h"
#include "tessel/asn1.hpp"

namespace tessel {
namespace {

enum class Pass : bool { kCounts, kWrites };

// The length of the encoding so far; returned in registers where the platform can. It has 64 bits, so that it cannot
// wrap.
struct Encoded {
  uint64_t length;
  Status status;
};

// Sorts the elements of a SET OF after they have been written. While they are written, it notes where each stands.
class SetSorter {
 public:
  // Makes room to note `count` elements; false when there is no memory.
  bool Reserve(uint32_t count) {
    if (count <= few_.size()) return true;
    const uint64_t size = uint64_t{count} * sizeof(Octets);
    if (size > SIZE_MAX) return false;
    many_.reset(static_cast<Octets*>(AllocateOctets(static_cast<size_t>(size))));
    elements_ = many_.get();
    return elements_ != nullptr;
  }

  void Note(Octets element) { elements_[count_++] = element; }

  // Sorts the elements within `region`, which they fill. They were noted from the last to the first.
  Status Sort(std::span<uint8_t> region) {
    const std::span<Octets> elements(elements_, count_);
    std::reverse(elements.begin(), elements.end());
    if (std::is_sorted(elements.begin(), elements.end(), Precedes)) return Status();

    Scratch<uint8_t> copy(static_cast<uint8_t*>(AllocateOctets(region.size())));
    if (copy == nullptr) return Fail(TESSEL_OUT_OF_MEMORY);
    std::memcpy(copy.get(), region.data(), region.size());
    for (Octets& element : elements) {
      element = {copy.get() + (element.data() - region.data()), element.size()};
    }
    std::sort(elements.begin(), elements.end(), Precedes);
    uint8_t* to = region.data();
    for (const Octets element : elements) {
      std::memcpy(to, element.data(), element.size());
      to += element.size();
    }
    return Status();
  }

 private:
  // The order of X.690, 11.6: octet by octet, and an encoding before a longer one that begins with it.
  static bool Precedes(Octets first, Octets second) {
    const size_t common = std::min(first.size(), second.size());
    const int difference = common == 0 ? 0 : std::memcmp(first.data(), second.data(), common);
    return difference != 0 ? difference < 0 : first.size() < second.size();
  }

  std::array<Octets, 8> few_;
  Scratch<Octets> many_;
  Octets* elements_ = few_.data();
  uint32_t count_ = 0;
};

// Encodes one tree, from the end of its encoding to the beginning: when a header is written, its content is written
// already, and the length of the content is known. Each function takes the length of the encoding so far and returns
// the new one. The pass that writes visits the tree from the last member to the first. The pass that only counts has no
// buffer and visits the tree from the first member to the last, so that the first of several failures is the one that
// is returned.
template <Pass pass>
class Encoder {
 public:
  // The buffer is written from its end downwards. What it has no room for is only counted.
  explicit Encoder(std::span<uint8_t> buffer) : end_(buffer.data() + buffer.size()), room_(buffer.size()) {}

  Encoded Element(const Plan& plan, const void* node, uint64_t length);

 private:
  Encoded Branch(const Plan& plan, const void* node, uint64_t length);
  Encoded AnyElement(const Plan& plan, const void* node, uint64_t length);
  Encoded Wrapped(const Plan& plan, const void* node, uint64_t length);
  Encoded Own(const Plan& plan, const void* node, uint64_t length);
  Encoded Alternative(const Plan& plan, const Asn1Choice& choice, uint64_t length);
  Encoded OpenValue(const Asn1Item& item, const Asn1Value& value, uint64_t length);
  Encoded Content(const Plan& plan, const void* node, uint64_t length);
  Encoded Members(const Plan& plan, const void* node, uint64_t length);
  Encoded List(const Plan& plan, const Asn1List& list, uint64_t length);
  Encoded SortedList(const Plan& element, const Asn1List& list, uint64_t length);

  // Each of these returns the new length.
  uint64_t Octet(uint8_t octet, uint64_t length);
  template <class Node>
  uint64_t NodeContent(const Node& node, uint64_t length);
  uint64_t ShortHeader(uint32_t identifier, uint64_t start, uint64_t length);
  uint64_t Header(uint32_t classAndConstructed, uint32_t tagNumber, uint64_t start, uint64_t length);
  uint64_t LongLength(uint64_t contentLength, uint64_t length);

  // The octet written last, which is the first of the encoding so far.
  [[nodiscard]] uint8_t* Front(uint64_t length) const { return end_ - length; }
  // The index of the member or element that the pass visits as number `i`.
  static uint32_t InOrder(uint32_t i, uint32_t count) { return pass == Pass::kCounts ? i : count - 1 - i; }

  [[nodiscard]] bool HasRoom(uint64_t length) const { return pass == Pass::kWrites && length <= room_; }

  uint8_t* const end_;
  const size_t room_;
};

template <Pass pass>
inline uint64_t Encoder<pass>::Octet(uint8_t octet, uint64_t length) {
  if (HasRoom(length + 1)) *Front(length + 1) = octet;
  return length + 1;
}

// Writes the octets of an Asn1Value or Asn1BitString.
template <Pass pass>
template <class Node>
inline uint64_t Encoder<pass>::NodeContent(const Node& node, uint64_t length) {
  length += node.length;
  if (!HasRoom(length)) return length;
  // DEVIATES: contents are written as they are stored, DER or not (X.690, 11), for signatures cover what was read.
  if (node.data != nullptr) {
    CopyOctets(Front(length), node.data, node.length);
  } else if (node.length != 0) {
    // DEVIATES: a node that has a length and no octets is written as zeros, which programs that fill in nodes
    // themselves rely on.
    std::memset(Front(length), 0, node.length);
  }
  return length;
}

// Writes the header, with a single identifier octet, of the content that made the encoding grow from `start` to
// `length`.
template <Pass pass>
inline uint64_t Encoder<pass>::ShortHeader(uint32_t identifier, uint64_t start, uint64_t length) {
  const uint64_t contentLength = length - start;
  if (contentLength >= kLongLength) return Octet(static_cast<uint8_t>(identifier), LongLength(contentLength, length));
  length += 2;
  if (HasRoom(length)) {
    Front(length)[0] = static_cast<uint8_t>(identifier);
    Front(length)[1] = static_cast<uint8_t>(contentLength);
  }
  return length;
}

// Writes the header of such a content with any tag number.
template <Pass pass>
uint64_t Encoder<pass>::Header(uint32_t classAndConstructed, uint32_t tagNumber, uint64_t start, uint64_t length) {
  if (tagNumber < kHighTagNumber) return ShortHeader(classAndConstructed | tagNumber, start, length);
  length = ShortHeader(tagNumber & 0x7F, start, length);
  for (tagNumber >>= 7; tagNumber != 0; tagNumber >>= 7) {
    length = Octet(static_cast<uint8_t>(0x80 | (tagNumber & 0x7F)), length);
  }
  return Octet(static_cast<uint8_t>(classAndConstructed | kHighTagNumber), length);
}

template <Pass pass>
uint64_t Encoder<pass>::LongLength(uint64_t contentLength, uint64_t length) {
  const uint64_t before = length;
  for (; contentLength != 0; contentLength >>= 8) length = Octet(static_cast<uint8_t>(contentLength), length);
  return Octet(static_cast<uint8_t>(kLongLength | (length - before)), length);
}

// Most elements are values, which are written here by the form of their item alone. All others are written by Branch.
template <Pass pass>
inline Encoded Encoder<pass>::Element(const Plan& plan, const void* node, uint64_t length) {
  if (node == nullptr) return {length, IsOptional(*plan.item) ? Status() : Fail(TESSEL_ABSENT)};
  if (!IsValueForm(plan.form)) return Branch(plan, node, length);
  const auto& value = *static_cast<const Asn1Value*>(node);
  if (plan.form == Form::kValueWithDefault && EqualsDefault(plan, value)) return {length, Status()};
  const uint64_t end = NodeContent(value, length);
  return {plan.form == Form::kOpen ? end : ShortHeader(plan.identifier, length, end), Status()};
}

template <Pass pass>
Encoded Encoder<pass>::Branch(const Plan& plan, const void* node, uint64_t length) {
  if (plan.form == Form::kChoice) return Alternative(plan, *static_cast<const Asn1Choice*>(node), length);
  if (plan.form == Form::kNone) return AnyElement(plan, node, length);
  const Encoded content = Content(plan, node, length);
  return {ShortHeader(plan.identifier, length, content.length), content.status};
}

// Writes an element whose item has no form. Not inlined, to keep what is rare out of the code for all others.
template <Pass pass>
[[gnu::noinline]] Encoded Encoder<pass>::AnyElement(const Plan& plan, const void* node, uint64_t length) {
  const Asn1Item& item = *plan.item;
  if (IsOptional(item) && item.defaultValue != nullptr) {
    bool isDefault = false;
    const Status status = CompareTrees(item, node, item.defaultValue, isDefault);
    if (status.Failed() || isDefault) return {length, status};
  }
  return IsExplicit(item) ? Wrapped(plan, node, length) : Own(plan, node, length);
}

template <Pass pass>
Encoded Encoder<pass>::Wrapped(const Plan& plan, const void* node, uint64_t length) {
  const Asn1Item& item = *plan.item;
  if (item.tagNumber < 0) return {length, Fail(TESSEL_INCONSISTENT_DESCRIPTOR)};
  Encoded inner{length, Status()};
  if (plan.layout == NodeLayout::kOpenNode) {
    inner.length = NodeContent(*static_cast<const Asn1Value*>(node), length);
  } else if (plan.layout == NodeLayout::kChoiceNode) {
    inner = Alternative(plan, *static_cast<const Asn1Choice*>(node), length);
  } else {
    inner = Content(plan, node, length);
    inner.length = Header(ConstructedBit(item), UniversalTag(item), length, inner.length);
  }
  return {Header(TagClass(item) | kConstructedBit, OwnTag(item), length, inner.length), inner.status};
}

template <Pass pass>
Encoded Encoder<pass>::Own(const Plan& plan, const void* node, uint64_t length) {
  if (plan.layout == NodeLayout::kChoiceNode) return Alternative(plan, *static_cast<const Asn1Choice*>(node), length);
  if (plan.layout == NodeLayout::kOpenNode) return OpenValue(*plan.item, *static_cast<const Asn1Value*>(node), length);
  const Asn1Item& item = *plan.item;
  const Encoded content = Content(plan, node, length);
  return {Header(TagClass(item) | ConstructedBit(item), OwnTag(item), length, content.length), content.status};
}

template <Pass pass>
inline Encoded Encoder<pass>::Alternative(const Plan& plan, const Asn1Choice& choice, uint64_t length) {
  if (choice.index >= plan.memberCount) return {length, Fail(TESSEL_WRONG_ALTERNATIVE)};
  if (plan.members != nullptr) return Element(plan.members[choice.index], choice.value, length);
  if (!IsConsistent(*plan.item)) return {length, Fail(TESSEL_INCONSISTENT_DESCRIPTOR)};
  return Element(Plan(*plan.item->members[choice.index]), choice.value, length);
}

// The part of an element behind its identifier octets, which are several when the tag number is 31 or more.
Asn1Value BehindIdentifier(const Asn1Value& element) {
  const Octets octets = ContentOf(element);
  uint32_t size = 1;
  if (!octets.empty() && (octets[0] & kHighTagNumber) == kHighTagNumber) {
    while (size < octets.size() && (octets[size++] & 0x80) != 0) {
    }
  }
  return {element.tag, element.length - size, octets.empty() ? nullptr : element.data + size};
}

template <Pass pass>
Encoded Encoder<pass>::OpenValue(const Asn1Item& item, const Asn1Value& value, uint64_t length) {
  // DEVIATES: an open value is written as it was read, in BER too (X.690, 10.1), and takes on no tag but a
  // context-specific one: what it is, is not known here.
  if (TagClass(item) != TESSEL_CLASS_CONTEXT || value.length == 0) return {NodeContent(value, length), Status()};
  if (OwnTag(item) >= kHighTagNumber || item.tagNumber < 0) return {length, Fail(TESSEL_INCONSISTENT_DESCRIPTOR)};
  const uint32_t constructed = value.data == nullptr ? 0 : value.data[0] & kConstructedBit;
  const auto identifier = static_cast<uint8_t>(constructed | TESSEL_CLASS_CONTEXT | OwnTag(item));
  return {Octet(identifier, NodeContent(BehindIdentifier(value), length)), Status()};
}

template <Pass pass>
[[gnu::always_inline]] inline Encoded Encoder<pass>::Content(const Plan& plan, const void* node, uint64_t length) {
  if (plan.layout == NodeLayout::kSlotsNode) return Members(plan, node, length);
  if (plan.layout == NodeLayout::kListNode) return List(plan, *static_cast<const Asn1List*>(node), length);
  if (plan.layout == NodeLayout::kValueNode)
    return {NodeContent(*static_cast<const Asn1Value*>(node), length), Status()};
  if (plan.layout == NodeLayout::kBitStringNode) {
    const auto& bits = *static_cast<const Asn1BitString*>(node);
    return {Octet(static_cast<uint8_t>(bits.unused), NodeContent(bits, length)), Status()};
  }
  return {length, Fail(TESSEL_UNSUPPORTED_KIND)};
}

template <Pass pass>
inline Encoded Encoder<pass>::Members(const Plan& plan, const void* node, uint64_t length) {
  // DEVIATES: a SET is not written, whose members go in the order of their tags (X.690, 10.3): no type of the library
  // is one.
  if (plan.kind == TESSEL_KIND_SET) return {length, Fail(TESSEL_UNSUPPORTED_KIND)};
  MemberPlans members(plan);
  if (!members.AreConsistent()) return {length, Fail(TESSEL_INCONSISTENT_DESCRIPTOR)};
  const uint32_t count = members.Count();
  for (uint32_t i = 0; i < count; ++i) {
    const uint32_t index = InOrder(i, count);
    const Encoded member = Element(members[index], LoadSlot(node, index), length);
    if (member.status.Failed()) return member;
    length = member.length;
  }
  return {length, Status()};
}

template <Pass pass>
inline Encoded Encoder<pass>::List(const Plan& plan, const Asn1List& list, uint64_t length) {
  MemberPlans plans(plan);
  if (!plans.AreConsistent()) return {length, Fail(TESSEL_INCONSISTENT_DESCRIPTOR)};
  const Plan& element = plans[0];
  const bool sorts = plan.kind == TESSEL_KIND_SET_OF && list.sorted != 0 && list.count > 1;
  if (sorts && pass == Pass::kWrites) return SortedList(element, list, length);
  for (uint32_t i = 0; i < list.count; ++i) {
    // Near the end of the pass there is no element so far ahead. The index is then `count` or more (backwards because
    // it wraps), and Prefetch does nothing.
    Prefetch(list, InOrder(i + kItemsAhead, list.count));
    const Encoded encoded = Element(element, list.items[InOrder(i, list.count)], length);
    if (encoded.status.Failed()) return encoded;
    length = encoded.length;
  }
  return {length, Status()};
}

// Not inlined, because a list that is not sorted does not need the sorter's room on the stack.
template <Pass pass>
[[gnu::noinline]] Encoded Encoder<pass>::SortedList(const Plan& element, const Asn1List& list, uint64_t length) {
  SetSorter sorter;
  if (!sorter.Reserve(list.count)) return {length, Fail(TESSEL_OUT_OF_MEMORY)};
  const uint64_t start = length;
  for (uint32_t i = list.count; i-- > 0;) {
    const Encoded encoded = Element(element, list.items[i], length);
    if (encoded.status.Failed()) return encoded;
    if (HasRoom(encoded.length)) sorter.Note({Front(encoded.length), static_cast<size_t>(encoded.length - length)});
    length = encoded.length;
  }
  if (!HasRoom(length)) return {length, Status()};
  return {length, sorter.Sort({Front(length), static_cast<size_t>(length - start)})};
}

}  // namespace

Status MeasureTree(const Plan& plan, const void* node, uint32_t& length) {
  const Encoded encoded = Encoder<Pass::kCounts>({}).Element(plan, node, 0);
  if (encoded.status.Failed()) return encoded.status;
  if (encoded.length > UINT32_MAX) return Fail(TESSEL_LENGTH_TOO_LARGE);
  length = static_cast<uint32_t>(encoded.length);
  return Status();
}

Status WriteTree(const Plan& plan, const void* node, uint8_t* buffer, uint32_t length) {
  return Encoder<Pass::kWrites>({buffer, length}).Element(plan, node, 0).status;
}

namespace {

// An encoding is first written on the stack, or, when the caller's buffer has more than kSmallEncoding and at most
// kLargeEncoding octets, on the heap. If it fits there, the tree is visited only once, and the caller's buffer is left
// alone until the encoding has succeeded.
constexpr size_t kSmallEncoding = 16384;
constexpr size_t kLargeEncoding = size_t{64} << 20;

// Writes a tree that was not measured, and sets `length` to that of its encoding. What does not fit into `place` is
// only counted. When it returns false, MeasureTree must find the failure to return: the first in the order of the tree.
bool WriteUnmeasured(const Plan& plan, const void* node, std::span<uint8_t> place, uint64_t& length) {
  const Encoded encoded = Encoder<Pass::kWrites>(place).Element(plan, node, 0);
  length = encoded.length;
  return encoded.status.Ok() && length <= UINT32_MAX;
}

}  // namespace

Status EncodeTree(const Plan& plan, const void* node, uint8_t* buffer, uint32_t& length) {
  if (buffer == nullptr) return MeasureTree(plan, node, length);
  const uint32_t capacity = length;
  uint8_t small[kSmallEncoding];
  const bool isLarge = capacity > sizeof small && capacity <= kLargeEncoding;
  const Scratch<uint8_t> large(isLarge ? static_cast<uint8_t*>(AllocateOctets(capacity)) : nullptr);
  const std::span<uint8_t> place = large != nullptr ? std::span(large.get(), capacity) : std::span<uint8_t>(small);

  uint64_t needed = 0;
  const bool isKnown = WriteUnmeasured(plan, node, place, needed);
  if (isKnown && needed <= place.size())
    return Deliver(place.last(static_cast<size_t>(needed)), buffer, &length, SourceLocation());
  if (!isKnown) {
    TRY(MeasureTree(plan, node, length));
  } else {
    length = static_cast<uint32_t>(needed);
  }
  return capacity < length ? Fail(TESSEL_BUFFER_TOO_SMALL) : WriteTree(plan, node, buffer, length);
}

Status Encoding::Make(const Plan& plan, const void* node) {
  TRY(MeasureTree(plan, node, length_));
  block_.reset(static_cast<uint8_t*>(AllocateOctets(length_)));
  return block_ == nullptr ? Fail(TESSEL_OUT_OF_MEMORY) : WriteTree(plan, node, block_.get(), length_);
}

}  // namespace tessel

using namespace tessel;

uint32_t TESSEL_CALL Asn1Encode(const void* object, const Asn1Item* descriptor, uint8_t** buffer, uint32_t* length) {
  if (object == nullptr || descriptor == nullptr || length == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  if (Status status = MeasureTree(*descriptor, object, *length); status.Failed() || buffer == nullptr) return status;
  *buffer = nullptr;
  if (*length == 0) return Status();
  Scratch<uint8_t> block(static_cast<uint8_t*>(AllocateOctets(*length)));
  if (block == nullptr) return Fail(TESSEL_OUT_OF_MEMORY);
  TRY(WriteTree(*descriptor, object, block.get(), *length));
  *buffer = block.release();
  return Status();
}
