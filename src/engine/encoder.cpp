#include "engine/encoder.h"

#include <algorithm>
#include <cstring>

#include "engine/descriptor.h"
#include "engine/header.h"
#include "engine/lifecycle.h"
#include "engine/nodes.h"

namespace tessel {
namespace {

// Takes an encoding from its end to its beginning, so that the length of a content is known when its header is due, at
// any depth and without being computed beforehand. Without a buffer it only counts.
class BackwardWriter {
 public:
  BackwardWriter() = default;
  explicit BackwardWriter(uint8_t* end) : end_(end) {}

  [[nodiscard]] bool OnlyCounts() const { return end_ == nullptr; }
  // Wider than any encoding, so that it cannot wrap.
  [[nodiscard]] uint64_t Written() const { return written_; }
  // The octet written last, which is the first of the encoding.
  [[nodiscard]] uint8_t* Front() const { return end_ - written_; }

  void Octet(uint8_t octet) {
    ++written_;
    if (!OnlyCounts()) *Front() = octet;
  }

  void Content(Octets octets) {
    written_ += octets.size();
    if (!OnlyCounts() && !octets.empty()) std::memcpy(Front(), octets.data(), octets.size());
  }

  // The content of an Asn1Value or Asn1BitString. One that has a length but no octets gets zeros.
  template <class Node>
  void ContentOfNode(const Node& node) {
    if (node.data != nullptr) return Content({node.data, node.length});
    written_ += node.length;
    if (!OnlyCounts() && node.length != 0) std::memset(Front(), 0, node.length);
  }

  // The header of a content that has been written since `start`.
  void Header(uint8_t classAndConstructed, uint32_t tagNumber, uint64_t start) {
    Length(written_ - start);
    if (tagNumber < kHighTagNumber) return Octet(static_cast<uint8_t>(classAndConstructed | tagNumber));
    Octet(tagNumber & 0x7F);
    for (tagNumber >>= 7; tagNumber != 0; tagNumber >>= 7) Octet(static_cast<uint8_t>(0x80 | (tagNumber & 0x7F)));
    Octet(classAndConstructed | kHighTagNumber);
  }

 private:
  void Length(uint64_t length) {
    if (length < kLongLength) return Octet(static_cast<uint8_t>(length));
    const uint64_t before = written_;
    for (; length != 0; length >>= 8) Octet(static_cast<uint8_t>(length));
    Octet(static_cast<uint8_t>(kLongLength | (written_ - before)));
  }

  uint8_t* end_ = nullptr;
  uint64_t written_ = 0;
};

// Sorts the elements of a SET OF after they have been written. While they are written it notes where each begins.
class SetSorter {
 public:
  // Without memory nothing can be noted.
  bool Reserve(uint32_t count) {
    const uint64_t size = uint64_t{count} * sizeof(Octets);
    if (size > SIZE_MAX) return false;
    elements_.reset(static_cast<Octets*>(AllocateOctets(static_cast<size_t>(size))));
    return elements_ != nullptr;
  }

  void Note(Octets element) { elements_[count_++] = element; }

  // The elements fill `region`; they were noted from the last to the first.
  Status Sort(std::span<uint8_t> region) {
    const std::span<Octets> elements(elements_.get(), count_);
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
  // The order of X.690, 11.6: octet by octet, and a beginning of another encoding before that encoding.
  static bool Precedes(Octets first, Octets second) {
    const size_t common = std::min(first.size(), second.size());
    const int difference = common == 0 ? 0 : std::memcmp(first.data(), second.data(), common);
    return difference != 0 ? difference < 0 : first.size() < second.size();
  }

  Scratch<Octets> elements_;
  uint32_t count_ = 0;
};

// Encodes one tree through a writer. Counting visits a tree in its order, so that the first of several failures is the
// one that is told; writing visits it backwards.
class Encoder {
 public:
  explicit Encoder(BackwardWriter writer) : writer_(writer) {}

  Status Element(const Asn1Item& item, const void* node);
  [[nodiscard]] uint64_t Written() const { return writer_.Written(); }

 private:
  Status Wrapped(const Asn1Item& item, const void* node);
  Status Own(const Asn1Item& item, const void* node);
  Status Alternative(const Asn1Item& item, const Asn1Choice& choice);
  Status OpenValue(const Asn1Item& item, const Asn1Value& value);
  Status Content(const Asn1Item& item, const void* node);
  Status Members(const Asn1Item& item, const void* node);
  Status List(const Asn1Item& item, const Asn1List& list);
  Status SortedList(const Asn1Item& element, const Asn1List& list);

  [[nodiscard]] uint32_t InOrder(uint32_t i, uint32_t count) const { return writer_.OnlyCounts() ? i : count - 1 - i; }

  BackwardWriter writer_;
};

Status Encoder::Element(const Asn1Item& item, const void* node) {
  if (IsOptional(item)) {
    if (node == nullptr) return Status();
    if (item.defaultValue != nullptr) {
      bool isDefault = false;
      Status status = CompareTrees(item, node, item.defaultValue, isDefault);
      if (status.Failed() || isDefault) return status;
    }
  }
  if (node == nullptr) return Fail(TESSEL_ABSENT);
  return IsExplicit(item) ? Wrapped(item, node) : Own(item, node);
}

Status Encoder::Wrapped(const Asn1Item& item, const void* node) {
  if (item.tagNumber < 0) return Fail(TESSEL_INCONSISTENT_DESCRIPTOR);
  const uint64_t start = writer_.Written();
  if (item.kind == TESSEL_KIND_ANY) {
    writer_.ContentOfNode(*static_cast<const Asn1Value*>(node));
  } else if (item.kind == TESSEL_KIND_CHOICE) {
    Status status = Alternative(item, *static_cast<const Asn1Choice*>(node));
    if (status.Failed()) return status;
  } else {
    if (Status status = Content(item, node); status.Failed()) return status;
    writer_.Header(ConstructedBit(item), UniversalTag(item), start);
  }
  writer_.Header(TagClass(item) | kConstructedBit, OwnTag(item), start);
  return Status();
}

Status Encoder::Own(const Asn1Item& item, const void* node) {
  if (item.kind == TESSEL_KIND_CHOICE) return Alternative(item, *static_cast<const Asn1Choice*>(node));
  if (item.kind == TESSEL_KIND_ANY) return OpenValue(item, *static_cast<const Asn1Value*>(node));
  const uint64_t start = writer_.Written();
  if (Status status = Content(item, node); status.Failed()) return status;
  writer_.Header(TagClass(item) | ConstructedBit(item), OwnTag(item), start);
  return Status();
}

Status Encoder::Alternative(const Asn1Item& item, const Asn1Choice& choice) {
  if (choice.index >= item.memberCount) return Fail(TESSEL_WRONG_ALTERNATIVE);
  return Element(*item.members[choice.index], choice.value);
}

Status Encoder::OpenValue(const Asn1Item& item, const Asn1Value& value) {
  writer_.ContentOfNode(value);
  if (TagClass(item) != TESSEL_CLASS_CONTEXT || value.length == 0) return Status();
  if (OwnTag(item) >= kHighTagNumber || item.tagNumber < 0) return Fail(TESSEL_INCONSISTENT_DESCRIPTOR);
  if (!writer_.OnlyCounts()) {
    *writer_.Front() = static_cast<uint8_t>(ConstructedBit(item) | TESSEL_CLASS_CONTEXT | OwnTag(item));
  }
  return Status();
}

Status Encoder::Content(const Asn1Item& item, const void* node) {
  switch (ShapeOf(item)) {
    case Shape::kValueNode:
      writer_.ContentOfNode(*static_cast<const Asn1Value*>(node));
      return Status();
    case Shape::kBitStringNode: {
      const auto& bits = *static_cast<const Asn1BitString*>(node);
      writer_.ContentOfNode(bits);
      writer_.Octet(static_cast<uint8_t>(bits.unused));
      return Status();
    }
    case Shape::kSlotsNode:
      return Members(item, node);
    case Shape::kListNode:
      return List(item, *static_cast<const Asn1List*>(node));
    case Shape::kOpenNode:
    case Shape::kChoiceNode:
    case Shape::kNotAKind:
      break;
  }
  return Fail(TESSEL_UNSUPPORTED_KIND);
}

Status Encoder::Members(const Asn1Item& item, const void* node) {
  if (item.kind == TESSEL_KIND_SET) return Fail(TESSEL_UNSUPPORTED_KIND);
  for (uint32_t i = 0; i < item.memberCount; ++i) {
    const uint32_t index = InOrder(i, item.memberCount);
    if (Status status = Element(*item.members[index], LoadSlot(node, index)); status.Failed()) return status;
  }
  return Status();
}

Status Encoder::List(const Asn1Item& item, const Asn1List& list) {
  const Asn1Item* element = ElementOf(item);
  if (element == nullptr) return Fail(TESSEL_INCONSISTENT_DESCRIPTOR);
  const bool sorts = item.kind == TESSEL_KIND_SET_OF && list.sorted != 0 && list.count > 1;
  if (sorts && !writer_.OnlyCounts()) return SortedList(*element, list);
  for (uint32_t i = 0; i < list.count; ++i) {
    if (Status status = Element(*element, list.items[InOrder(i, list.count)]); status.Failed()) return status;
  }
  return Status();
}

Status Encoder::SortedList(const Asn1Item& element, const Asn1List& list) {
  SetSorter sorter;
  if (!sorter.Reserve(list.count)) return Fail(TESSEL_OUT_OF_MEMORY);
  const uint64_t start = writer_.Written();
  for (uint32_t i = list.count; i-- > 0;) {
    const uint64_t before = writer_.Written();
    if (Status status = Element(element, list.items[i]); status.Failed()) return status;
    sorter.Note({writer_.Front(), static_cast<size_t>(writer_.Written() - before)});
  }
  return sorter.Sort({writer_.Front(), static_cast<size_t>(writer_.Written() - start)});
}

}  // namespace

Status MeasureTree(const Asn1Item& item, const void* node, uint32_t& length) {
  Encoder counter{BackwardWriter()};
  if (Status status = counter.Element(item, node); status.Failed()) return status;
  if (counter.Written() > UINT32_MAX) return Fail(TESSEL_LENGTH_TOO_LARGE);
  length = static_cast<uint32_t>(counter.Written());
  return Status();
}

Status WriteTree(const Asn1Item& item, const void* node, uint8_t* buffer, uint32_t length) {
  if (length == 0) return Status();
  return Encoder(BackwardWriter(buffer + length)).Element(item, node);
}

Status EncodeTree(const Asn1Item& item, const void* node, uint8_t* buffer, uint32_t& length) {
  const uint32_t capacity = length;
  if (Status status = MeasureTree(item, node, length); status.Failed()) return status;
  if (buffer == nullptr) return Status();
  if (capacity < length) return Fail(TESSEL_BUFFER_TOO_SMALL);
  return WriteTree(item, node, buffer, length);
}

Status Encoding::Make(const Asn1Item& item, const void* node) {
  if (Status status = MeasureTree(item, node, length_); status.Failed()) return status;
  block_.reset(static_cast<uint8_t*>(AllocateOctets(length_)));
  return block_ == nullptr ? Fail(TESSEL_OUT_OF_MEMORY) : WriteTree(item, node, block_.get(), length_);
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
  if (Status status = WriteTree(*descriptor, object, block.get(), *length); status.Failed()) return status;
  *buffer = block.release();
  return Status();
}
