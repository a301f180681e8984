// Writing descriptors: a type is a struct of typed members and, beside it, a table that reads like its ASN.1.
//
//   // Extension ::= SEQUENCE { extnID OBJECT IDENTIFIER, critical BOOLEAN DEFAULT FALSE, extnValue OCTET STRING }
//   struct Extension { Asn1Oid* extnID; Asn1Value* critical; Asn1Value* extnValue; };
//   inline constexpr auto kExtension = Sequence{
//       Member<&Extension::extnID, kOid>,
//       Member<&Extension::critical, Default<kBoolean, kFalse>>,
//       Member<&Extension::extnValue, kOctetString>,
//   };
//
// A struct of n pointers has the layout of a node of n slots. A row whose member has another node type than its item, a
// row too few and rows out of order do not compile.
#pragma once

#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <utility>

#include "engine/plan.h"
#include "tessel/descriptor.h"
#include "tessel/nodes.h"

namespace tessel {

template <const auto& item>
using NodeOf = typename std::remove_cvref_t<decltype(item)>::Node;

// Lists and choices of a named type derive from these, so that their elements are reached with their own type.
template <class Element>
struct ListOf : Asn1List {
  using ElementType = Element;
  [[nodiscard]] Element* At(uint32_t index) const { return static_cast<Element*>(items[index]); }
};

inline constexpr int32_t kNoTagNumber = -1;

template <class Node>
constexpr Item<Node> Primitive(Asn1Kind kind) {
  return {{0, static_cast<uint32_t>(kind), kNoTagNumber, 0, nullptr, 0, nullptr}, nullptr};
}

inline constexpr auto kBoolean = Primitive<Asn1Value>(TESSEL_KIND_BOOLEAN);
inline constexpr auto kInteger = Primitive<Asn1Value>(TESSEL_KIND_INTEGER);
inline constexpr auto kBitString = Primitive<Asn1BitString>(TESSEL_KIND_BIT_STRING);
inline constexpr auto kOctetString = Primitive<Asn1Value>(TESSEL_KIND_OCTET_STRING);
inline constexpr auto kNull = Primitive<Asn1Value>(TESSEL_KIND_NULL);
inline constexpr auto kOid = Primitive<Asn1Oid>(TESSEL_KIND_OBJECT_IDENTIFIER);
inline constexpr auto kUtf8String = Primitive<Asn1Value>(TESSEL_KIND_UTF8_STRING);
inline constexpr auto kIa5String = Primitive<Asn1Value>(TESSEL_KIND_IA5_STRING);
inline constexpr auto kEnumerated = Primitive<Asn1Value>(TESSEL_KIND_ENUMERATED);
inline constexpr auto kUtcTime = Primitive<Asn1Value>(TESSEL_KIND_UTC_TIME);
inline constexpr auto kGeneralizedTime = Primitive<Asn1Value>(TESSEL_KIND_GENERALIZED_TIME);
inline constexpr auto kAny = Primitive<Asn1Any>(TESSEL_KIND_ANY);

// The DEFAULT values that are a single octet 0. The octet is off the heap's alignment, as a content in a block is.
alignas(16) inline constexpr uint8_t kZeroContent[] = {0xFF, 0x00};
inline constexpr Asn1Value kFalse{TESSEL_KIND_BOOLEAN, 1, const_cast<uint8_t*>(kZeroContent + 1)};
inline constexpr Asn1Value kZero{TESSEL_KIND_INTEGER, 1, const_cast<uint8_t*>(kZeroContent + 1)};

namespace detail {

template <class Node>
constexpr Item<Node> WithFlags(Item<Node> item, uint32_t flags) {
  item.flags |= flags;
  return item;
}

template <class Node>
constexpr Item<Node> WithTag(Item<Node> item, int32_t tagNumber, uint32_t flags) {
  item.tagNumber = tagNumber;
  return WithFlags(item, flags);
}

template <class Node>
constexpr Item<Node> WithDefault(Item<Node> item, const Node* value) {
  item.defaultValue = value;
  item.hasDefault = true;
  return WithFlags(item, TESSEL_FLAG_OPTIONAL);
}

template <const auto&... items>
inline constexpr const Asn1Item* kMembers[] = {&items...};

template <const auto&... items>
inline constexpr Plan kPlans[] = {Plan(items)...};

template <class Node, const auto&... items>
constexpr Item<Node> Constructed(Asn1Kind kind, uint32_t nodeSize) {
  return {{TESSEL_FLAG_CONSTRUCTED, static_cast<uint32_t>(kind), kNoTagNumber, nodeSize, kMembers<items...>,
           sizeof...(items), nullptr},
          kPlans<items...>};
}

template <class Struct, class Node>
Struct StructOf(Node* Struct::*);

}  // namespace detail

template <const auto& item>
inline constexpr auto Optional = detail::WithFlags(item, TESSEL_FLAG_OPTIONAL);

template <const auto& item, const auto& value>
inline constexpr auto Default = detail::WithDefault(item, &value);

template <int32_t tagNumber, const auto& item>
inline constexpr auto Implicit = detail::WithTag(item, tagNumber, TESSEL_CLASS_CONTEXT);

template <int32_t tagNumber, const auto& item>
inline constexpr auto Explicit = detail::WithTag(item, tagNumber, TESSEL_CLASS_CONTEXT | TESSEL_FLAG_EXPLICIT);

template <auto memberPointer, const auto& memberItem>
struct MemberRow {
  using Struct = decltype(detail::StructOf(memberPointer));
  using Node = NodeOf<memberItem>;
  static constexpr Node* Struct::*kPointer = memberPointer;
  static constexpr const auto& kItem = memberItem;
};

// One row of a SEQUENCE. The member must point to the node type of its item.
template <auto memberPointer, const auto& memberItem>
inline constexpr MemberRow<memberPointer, memberItem> Member{};

// For an open value that is always constructed, under a tag of its own.
template <const auto& item>
inline constexpr auto AlwaysConstructed = detail::WithFlags(item, TESSEL_FLAG_CONSTRUCTED);

namespace detail {

template <class Node, size_t row>
inline constexpr Node kMark{};

// Fills the slots of the struct in its own order, and looks whether each row finds the mark of its place.
template <class Struct, class... Rows, size_t... places>
consteval bool AreInSlotOrder(std::index_sequence<places...>) {
  const Struct node{const_cast<typename Rows::Node*>(&kMark<typename Rows::Node, places>)...};
  return ((node.*Rows::kPointer == &kMark<typename Rows::Node, places>)&&...);
}

}  // namespace detail

// The descriptor of a SEQUENCE: its rows in braces, one for each member of the struct and in their order.
template <class First, class... Rest>
struct Sequence : Item<typename First::Struct> {
  using Struct = typename First::Struct;
  static_assert((std::is_same_v<Struct, typename Rest::Struct> && ...), "rows of different structs");
  static_assert(sizeof(Struct) == (1 + sizeof...(Rest)) * sizeof(void*), "one row for each member");
  static_assert(detail::AreInSlotOrder<Struct, First, Rest...>(std::make_index_sequence<1 + sizeof...(Rest)>()),
                "rows stand in the order of the members");

  constexpr explicit Sequence(First /*row*/, Rest... /*rows*/)
      : Item<Struct>(detail::Constructed<Struct, First::kItem, Rest::kItem...>(TESSEL_KIND_SEQUENCE, sizeof(Struct))) {}
};

// List: a struct derived from ListOf<the element's node>.
template <class List, const auto& element>
requires std::derived_from<List, ListOf<NodeOf<element>>>
constexpr auto SequenceOf() { return detail::Constructed<List, element>(TESSEL_KIND_SEQUENCE_OF, 0); }

template <class List, const auto& element>
requires std::derived_from<List, ListOf<NodeOf<element>>>
constexpr auto SetOf() { return detail::Constructed<List, element>(TESSEL_KIND_SET_OF, 0); }

// Node: a struct derived from Asn1Choice.
template <std::derived_from<Asn1Choice> Node, const auto&... alternatives>
constexpr auto Choice() {
  return detail::Constructed<Node, alternatives...>(TESSEL_KIND_CHOICE, 0);
}

static_assert(sizeof(Asn1Item) == 5 * sizeof(uint32_t) + 2 * sizeof(void*) + (sizeof(void*) == 8 ? 4 : 0));
static_assert(sizeof(void*) != 4 || sizeof(Asn1Item) == 28);
static_assert(offsetof(Asn1Item, members) == 16);
static_assert(sizeof(Asn1Oid) == sizeof(Asn1Value) && sizeof(Asn1Any) == sizeof(Asn1Value));

// Nodes for callers of 32 bits: fields of 32 bits each, without a gap.
static_assert(sizeof(void*) != 4 || (sizeof(Asn1Value) == 12 && offsetof(Asn1Value, data) == 8));
static_assert(sizeof(void*) != 4 || (sizeof(Asn1BitString) == 12 && offsetof(Asn1BitString, data) == 8));
static_assert(sizeof(void*) != 4 || (sizeof(Asn1Choice) == 8 && offsetof(Asn1Choice, value) == 4));
static_assert(sizeof(void*) != 4 ||
              (sizeof(Asn1List) == 20 && offsetof(Asn1List, items) == 4 && offsetof(Asn1List, capacity) == 8 &&
               offsetof(Asn1List, compare) == 12 && offsetof(Asn1List, sorted) == 16));

}  // namespace tessel
