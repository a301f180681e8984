// Reading nodes, and values put together from nodes that live on the stack and borrow their octets. Such a value can be
// encoded, and that is all: it is never released, and no object takes it.
//
//   NumberNode limit(TESSEL_KIND_INTEGER, 5);
//   const Quota quota{limit.Member(), nullptr};     // struct Quota { Asn1Value* limit; Asn1Value* note; };
//   Bytes octets = Encode(kQuota, quota);           // tree.hpp
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

#include "tessel/asn1.hpp"
#include "tessel/octets.hpp"

namespace tessel {

// The content octets of an Asn1Value or Asn1BitString; none when `data` is null, whatever the length.
template <class Node>
constexpr Octets ContentOf(const Node& node) {
  return {node.data, node.data == nullptr ? 0 : node.length};
}

constexpr Asn1Value Borrow(uint32_t tag, Octets content) {
  return {tag, static_cast<uint32_t>(content.size()), const_cast<uint8_t*>(content.data())};
}

// An open value, by its whole encoding, which is not empty. The node's tag is the first octet.
constexpr Asn1Any BorrowOpenValue(Octets encoding) { return {Borrow(encoding[0], encoding)}; }

// An identifier, by its counted form: the number of content octets, then these.
constexpr Asn1Oid BorrowOid(const uint8_t* counted) {
  return {Borrow(TESSEL_KIND_OBJECT_IDENTIFIER, {counted + 1, counted[0]})};
}

// The node when there is something in it, null for a member that is left out.
template <class Node>
Node* NullIfEmpty(Node& node) {
  return node.data == nullptr || node.length == 0 ? nullptr : &node;
}

// A list of one element.
template <class List>
class BorrowedList {
 public:
  explicit BorrowedList(typename List::ElementType* element) : item_(element) {
    static_cast<Asn1List&>(list_) = {1, &item_, 1, nullptr, 1};
  }
  BorrowedList(const BorrowedList&) = delete;
  BorrowedList& operator=(const BorrowedList&) = delete;

  [[nodiscard]] List* Node() { return &list_; }

 private:
  void* item_;
  List list_{};
};

// TRUE and FALSE. The content is kept off the alignment of the heap, as kZeroContent is.
alignas(16) inline constexpr uint8_t kTrueContent[] = {0x00, 0xFF};
inline constexpr Asn1Value kTrue{TESSEL_KIND_BOOLEAN, 1, const_cast<uint8_t*>(kTrueContent + 1)};
inline Asn1Value* BorrowBoolean(bool flag) { return const_cast<Asn1Value*>(flag ? &kTrue : &kFalse); }

// Whether the first of two octets of a two's-complement number says no more than the sign bit of the second.
constexpr bool IsRedundant(uint8_t first, uint8_t second) { return first == ((second & 0x80) != 0 ? 0xFF : 0x00); }

// An INTEGER or ENUMERATED of a number.
class NumberNode {
 public:
  NumberNode(Asn1Kind kind, int32_t number) {
    const auto bits = static_cast<uint32_t>(number);
    octets_ = {static_cast<uint8_t>(bits >> 24), static_cast<uint8_t>(bits >> 16), static_cast<uint8_t>(bits >> 8),
               static_cast<uint8_t>(bits)};
    size_t first = 0;
    while (first + 1 < octets_.size() && IsRedundant(octets_[first], octets_[first + 1])) ++first;
    node_ = Borrow(static_cast<uint32_t>(kind), Octets(octets_).subspan(first));
  }
  NumberNode(const NumberNode&) = delete;
  NumberNode& operator=(const NumberNode&) = delete;

  [[nodiscard]] const Asn1Value& Node() const { return node_; }
  [[nodiscard]] Asn1Value* Member() { return &node_; }

 private:
  std::array<uint8_t, 4> octets_;
  Asn1Value node_;
};

// What is left of a string of bits without the zero bits at its end; nothing, when no bit is set.
struct BitCount {
  uint32_t length = 0;
  uint8_t unused = 0;
};
constexpr BitCount WithoutTrailingZeros(Octets octets) {
  for (size_t length = octets.size(); length > 0; --length) {
    if (octets[length - 1] == 0) continue;
    return {static_cast<uint32_t>(length), static_cast<uint8_t>(std::countr_zero(octets[length - 1]))};
  }
  return {};
}

// Named bits of a number: bit 7 is named bit 0, bit 0 named bit 7, bit 15 named bit 8. Zero bits at the end are left
// out (X.690, 11.2.2).
class NamedBitsNode {
 public:
  explicit NamedBitsNode(uint32_t flags)
      : octets_{static_cast<uint8_t>(flags), static_cast<uint8_t>(flags >> 8), static_cast<uint8_t>(flags >> 16),
                static_cast<uint8_t>(flags >> 24)} {
    const BitCount count = WithoutTrailingZeros(octets_);
    node_ = {count.unused, count.length, octets_.data()};
  }
  NamedBitsNode(const NamedBitsNode&) = delete;
  NamedBitsNode& operator=(const NamedBitsNode&) = delete;

  [[nodiscard]] const Asn1BitString& Node() const { return node_; }
  [[nodiscard]] Asn1BitString* Member() { return &node_; }

 private:
  std::array<uint8_t, 4> octets_;
  Asn1BitString node_{};
};

// The number that the first 32 named bits stand for, as in NamedBitsNode.
inline uint32_t NamedBitsOf(const Asn1BitString& bits) {
  uint32_t flags = 0;
  for (uint32_t i = 0; bits.data != nullptr && i < bits.length && i < sizeof flags; ++i) {
    flags |= uint32_t{bits.data[i]} << 8 * i;
  }
  return flags;
}

}  // namespace tessel
