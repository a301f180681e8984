// Descriptors of ASN.1 types, written in C++: a struct of typed members and, beside it, a table that reads like the
// ASN.1 of the type.
//
//   // Extension ::= SEQUENCE { extnID OBJECT IDENTIFIER, critical BOOLEAN DEFAULT FALSE, extnValue OCTET STRING }
//   struct Extension { Asn1Oid* extnID; Asn1Value* critical; Asn1Value* extnValue; };
//   inline constexpr auto kExtension = Sequence{
//       Member<&Extension::extnID, kOid>,
//       Member<&Extension::critical, Default<kBoolean, kFalse>>,
//       Member<&Extension::extnValue, kOctetString>,
//   };
//
//   // Extensions ::= SEQUENCE OF Extension
//   struct Extensions : ListOf<Extension> {};
//   inline constexpr auto kExtensions = SequenceOf<Extensions, kExtension>();
//
//   // Time ::= CHOICE { utcTime UTCTime, generalTime GeneralizedTime }
//   struct Time : Asn1Choice { enum : uint32_t { utcTime, generalTime }; };
//   inline constexpr auto kTime = Choice<Time, Alternative<Time::utcTime, kUtcTime>,
//                                              Alternative<Time::generalTime, kGeneralizedTime>>();
//
// A descriptor is an Asn1Item (descriptor.h), which every function of the interface takes, and knows the type of its
// nodes (nodes.h). A member whose node is of another type than its item, a row too few and rows out of order do not
// compile. The library's own types are written so, in the headers of their families (certificate.hpp and others).
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

#include "tessel/descriptor.h"
#include "tessel/nodes.h"

namespace tessel {

// The descriptors of the members or alternatives of a type, or of the elements of a list.
template <const auto&... items>
struct ItemList {};

template <class NodeType>
struct Item : Asn1Item {
  using Node = NodeType;
  using Members = ItemList<>;
  static constexpr bool kHasDefault = false;
};

template <const auto& item>
using NodeOf = typename std::remove_cvref_t<decltype(item)>::Node;

// Lists of a named type derive from this, so that their elements are reached with their own type.
template <class Element>
struct ListOf : Asn1List {
  using ElementType = Element;
  [[nodiscard]] Element* At(uint32_t index) const { return static_cast<Element*>(items[index]); }
};

inline constexpr int32_t kNoTagNumber = -1;

template <class Node>
constexpr Item<Node> Primitive(Asn1Kind kind) {
  return {{0, static_cast<uint32_t>(kind), kNoTagNumber, 0, nullptr, 0, nullptr}};
}

inline constexpr auto kBoolean = Primitive<Asn1Value>(TESSEL_KIND_BOOLEAN);
inline constexpr auto kInteger = Primitive<Asn1Value>(TESSEL_KIND_INTEGER);
inline constexpr auto kBitString = Primitive<Asn1BitString>(TESSEL_KIND_BIT_STRING);
inline constexpr auto kOctetString = Primitive<Asn1Value>(TESSEL_KIND_OCTET_STRING);
inline constexpr auto kNull = Primitive<Asn1Value>(TESSEL_KIND_NULL);
inline constexpr auto kOid = Primitive<Asn1Oid>(TESSEL_KIND_OBJECT_IDENTIFIER);
inline constexpr auto kEnumerated = Primitive<Asn1Value>(TESSEL_KIND_ENUMERATED);
inline constexpr auto kUtf8String = Primitive<Asn1Value>(TESSEL_KIND_UTF8_STRING);
inline constexpr auto kNumericString = Primitive<Asn1Value>(TESSEL_KIND_NUMERIC_STRING);
inline constexpr auto kPrintableString = Primitive<Asn1Value>(TESSEL_KIND_PRINTABLE_STRING);
inline constexpr auto kTeletexString = Primitive<Asn1Value>(TESSEL_KIND_TELETEX_STRING);
inline constexpr auto kIa5String = Primitive<Asn1Value>(TESSEL_KIND_IA5_STRING);
inline constexpr auto kVisibleString = Primitive<Asn1Value>(TESSEL_KIND_VISIBLE_STRING);
inline constexpr auto kUniversalString = Primitive<Asn1Value>(TESSEL_KIND_UNIVERSAL_STRING);
inline constexpr auto kBmpString = Primitive<Asn1Value>(TESSEL_KIND_BMP_STRING);
inline constexpr auto kUtcTime = Primitive<Asn1Value>(TESSEL_KIND_UTC_TIME);
inline constexpr auto kGeneralizedTime = Primitive<Asn1Value>(TESSEL_KIND_GENERALIZED_TIME);
inline constexpr auto kAny = Primitive<Asn1Any>(TESSEL_KIND_ANY);

// The DEFAULT values whose content is a single octet 0. The octet is kept off the alignment of the heap, because the
// library tells by the address whether it has to release memory.
alignas(16) inline constexpr uint8_t kZeroContent[] = {0xFF, 0x00};
inline constexpr Asn1Value kFalse{TESSEL_KIND_BOOLEAN, 1, const_cast<uint8_t*>(kZeroContent + 1)};
inline constexpr Asn1Value kZero{TESSEL_KIND_INTEGER, 1, const_cast<uint8_t*>(kZeroContent + 1)};

namespace detail {

template <class Descriptor>
constexpr Descriptor WithFlags(Descriptor item, uint32_t flags) {
  item.flags |= flags;
  return item;
}

template <class Descriptor>
constexpr Descriptor WithTag(Descriptor item, int32_t tagNumber, uint32_t flags) {
  item.tagNumber = tagNumber;
  return WithFlags(item, flags);
}

template <class Descriptor>
struct WithDefault : Descriptor {
  static constexpr bool kHasDefault = true;
  constexpr WithDefault(const Descriptor& item, const typename Descriptor::Node* value)
      : Descriptor(WithFlags(item, TESSEL_FLAG_OPTIONAL)) {
    this->defaultValue = value;
  }
};

template <const auto&... items>
inline constexpr const Asn1Item* kMembers[] = {&items...};

template <class Node, const auto&... items>
constexpr Item<Node> Constructed(Asn1Kind kind, uint32_t nodeSize, ItemList<items...> /*members*/) {
  return {{TESSEL_FLAG_CONSTRUCTED, static_cast<uint32_t>(kind), kNoTagNumber, nodeSize, kMembers<items...>,
           sizeof...(items), nullptr}};
}

template <class Struct, class Node>
Struct StructOf(Node* Struct::*);

// The name of this function with its argument, as compilers write it, ends with the name of the member or enumerator.
template <auto value>
consteval const char* NamedBy() {
  return __PRETTY_FUNCTION__;
}
template <auto value>
consteval std::string_view Name() {
  std::string_view text = NamedBy<value>();
  text = text.substr(0, text.find_last_not_of(")]") + 1);
  return text.substr(text.find_last_of(": ") + 1);
}

}  // namespace detail

// The name of a member or an enumerator, as it is written: kNameOf<&Extension::extnID> is "extnID". For g++ and clang.
template <auto value>
inline constexpr std::string_view kNameOf = detail::Name<value>();

template <const auto& item>
inline constexpr auto Optional = detail::WithFlags(item, TESSEL_FLAG_OPTIONAL);

template <const auto& item, const auto& value>
inline constexpr auto Default = detail::WithDefault(item, &value);

// A descriptor holds one tag. The tag of a CHOICE is EXPLICIT (X.680, 31.2.7), and a second one goes to a type of its
// own: neither compiles otherwise.
template <int32_t tagNumber, const auto& item>
requires(tagNumber >= 0 &&
         (item.kind != TESSEL_KIND_CHOICE || (item.flags & TESSEL_FLAG_EXPLICIT) != 0)) inline constexpr auto Implicit =
    detail::WithTag(item, tagNumber, TESSEL_CLASS_CONTEXT);

template <int32_t tagNumber, const auto& item>
requires(tagNumber >= 0 && item.tagNumber == kNoTagNumber) inline constexpr auto Explicit =
    detail::WithTag(item, tagNumber, TESSEL_CLASS_CONTEXT | TESSEL_FLAG_EXPLICIT);

// For an open value that is always constructed, under a tag of its own.
template <const auto& item>
inline constexpr auto AlwaysConstructed = detail::WithFlags(item, TESSEL_FLAG_CONSTRUCTED);

template <auto memberPointer, const auto& memberItem>
struct MemberRow {
  using Struct = decltype(detail::StructOf(memberPointer));
  using Node = NodeOf<memberItem>;
  static constexpr Node* Struct::*kPointer = memberPointer;
  static constexpr const auto& kItem = memberItem;
  // A template, so that a name is compiled only when it is used.
  template <auto pointer = memberPointer>
  static constexpr std::string_view kName = kNameOf<pointer>;
};

// One row of a SEQUENCE. The member must point to the node type of its item.
template <auto memberPointer, const auto& memberItem>
inline constexpr MemberRow<memberPointer, memberItem> Member{};

namespace detail {

template <class Node, size_t row>
inline constexpr Node kMark{};

// Fills the members of the struct, in the struct's order, with pointers to different marks. Then each row, by its
// pointer to member, must find the mark with the number of the row.
template <class Struct, class... Rows, size_t... places>
consteval bool AreInOrder(std::index_sequence<places...>) {
  const Struct node{const_cast<typename Rows::Node*>(&kMark<typename Rows::Node, places>)...};
  return ((node.*Rows::kPointer == &kMark<typename Rows::Node, places>)&&...);
}

}  // namespace detail

// The descriptor of a SEQUENCE: its rows in braces, one for each member of the struct and in their order. A struct of n
// pointers is laid out as the node of a SEQUENCE of n members.
template <class First, class... Rest>
struct Sequence : Item<typename First::Struct> {
  using Struct = typename First::Struct;
  using Members = ItemList<First::kItem, Rest::kItem...>;

  static_assert((std::is_same_v<Struct, typename Rest::Struct> && ...), "rows of different structs");
  static_assert(sizeof(Struct) == (1 + sizeof...(Rest)) * sizeof(void*), "one row for each member");
  static_assert(detail::AreInOrder<Struct, First, Rest...>(std::make_index_sequence<1 + sizeof...(Rest)>()),
                "rows stand in the order of the members");

  constexpr explicit Sequence(First /*row*/, Rest... /*rows*/)
      : Item<Struct>(detail::Constructed<Struct>(TESSEL_KIND_SEQUENCE, sizeof(Struct), Members())) {}
};

template <class List, const auto& elementItem>
struct ListDescriptor : Item<List> {
  using Members = ItemList<elementItem>;
  static constexpr const auto& kElement = elementItem;
  constexpr explicit ListDescriptor(Asn1Kind listKind)
      : Item<List>(detail::Constructed<List>(listKind, 0, Members())) {}
};

// List: a struct derived from ListOf<the element's node>.
template <class List, const auto& element>
requires std::derived_from<List, ListOf<NodeOf<element>>>
constexpr auto SequenceOf() { return ListDescriptor<List, element>(TESSEL_KIND_SEQUENCE_OF); }

template <class List, const auto& element>
requires std::derived_from<List, ListOf<NodeOf<element>>>
constexpr auto SetOf() { return ListDescriptor<List, element>(TESSEL_KIND_SET_OF); }

template <auto enumerator, const auto& alternativeItem>
struct AlternativeRow {
  using Node = NodeOf<alternativeItem>;
  static constexpr auto kIndex = enumerator;
  static constexpr const auto& kItem = alternativeItem;
  template <auto index = enumerator>
  static constexpr std::string_view kName = kNameOf<index>;
};

// One alternative of a CHOICE, under the enumerator that is its index.
template <auto enumerator, const auto& alternativeItem>
inline constexpr AlternativeRow<enumerator, alternativeItem> Alternative{};

namespace detail {

template <class... Rows, size_t... places>
consteval bool AreNumbered(std::index_sequence<places...>) {
  return ((static_cast<size_t>(Rows::kIndex) == places) && ...);
}

}  // namespace detail

template <class NodeType, class... Rows>
struct ChoiceDescriptor : Item<NodeType> {
  using Members = ItemList<Rows::kItem...>;
  template <auto enumerator>
  using NodeAt = typename std::tuple_element_t<static_cast<size_t>(enumerator), std::tuple<Rows...>>::Node;

  static_assert(detail::AreNumbered<Rows...>(std::index_sequence_for<Rows...>()),
                "alternatives stand in the order of their numbers");

  constexpr ChoiceDescriptor() : Item<NodeType>(detail::Constructed<NodeType>(TESSEL_KIND_CHOICE, 0, Members())) {}
};

// Node: a struct derived from Asn1Choice. The alternatives are rows, in the order of their numbers.
template <std::derived_from<Asn1Choice> Node, const auto&... alternatives>
requires(sizeof...(alternatives) != 0) constexpr auto Choice() {
  return ChoiceDescriptor<Node, std::remove_cvref_t<decltype(alternatives)>...>();
}

// What a CHOICE holds, when it is this alternative; otherwise null.
template <const auto& choiceItem, auto enumerator>
auto* Chosen(const NodeOf<choiceItem>* choice) {
  using Node = typename std::remove_cvref_t<decltype(choiceItem)>::template NodeAt<enumerator>;
  const bool isChosen = choice != nullptr && choice->index == static_cast<uint32_t>(enumerator);
  return isChosen ? static_cast<Node*>(choice->value) : nullptr;
}

// A descriptor with the names of its members, for programs that look into values of any type while they run.
struct Outline {
  const Asn1Item* item;
  // One for each member or alternative of the item; of a list, one without a name for its elements.
  const Outline* const* members;
  const std::string_view* names;
};

namespace detail {

template <const auto& item>
constexpr Outline OutlineOf();

}  // namespace detail

template <const auto& item>
inline constexpr Outline kOutline = detail::OutlineOf<item>();

namespace detail {

template <const auto&... items>
inline constexpr const Outline* kOutlines[] = {&kOutline<items>...};
template <class... Rows>
inline constexpr std::string_view kRowNames[] = {Rows::template kName<>...};

template <class NodeType>
constexpr Outline OutlineOf(const Item<NodeType>& item) {
  return {&item, nullptr, nullptr};
}
template <class... Rows>
constexpr Outline OutlineOf(const Sequence<Rows...>& item) {
  return {&item, kOutlines<Rows::kItem...>, kRowNames<Rows...>};
}
template <class NodeType, class... Rows>
constexpr Outline OutlineOf(const ChoiceDescriptor<NodeType, Rows...>& item) {
  return {&item, kOutlines<Rows::kItem...>, kRowNames<Rows...>};
}
inline constexpr std::string_view kNoName[] = {{}};
template <class List, const auto& elementItem>
constexpr Outline OutlineOf(const ListDescriptor<List, elementItem>& item) {
  return {&item, kOutlines<elementItem>, kNoName};
}

template <const auto& item>
constexpr Outline OutlineOf() {
  return OutlineOf(item);
}

}  // namespace detail

}  // namespace tessel
