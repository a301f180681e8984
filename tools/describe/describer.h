// Facts about values of any described type (tessel/asn1.hpp), by the names of its members.
//
// A SEQUENCE is told as an object of the members that are there, a CHOICE as an object of the one that it holds, a list
// as a list, and a primitive value by its kind. A type that needs better words has an overload of FactOf (types.h), a
// single member or alternative a saying:
//
//   constexpr Sayings kSayings{
//       Say<&BasicConstraints::cA>{.key = "ca"},
//       Say<&DistributionPoint::reasons>{.tell = ReasonsFact},
//   };
//   Fact fact = Describer<kSayings>::Describe(kBasicConstraints, constraints);
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "asn1/decoding.h"
#include "describe/primitives.h"
#include "describe/types.h"
#include "facts/fact.h"
#include "tessel/asn1.hpp"
#include "tessel/nodes.hpp"

namespace tool {

namespace detail {

template <class Struct, class Node>
Node NodeOfMember(Node* Struct::*);
std::nullptr_t NodeOfMember(uint32_t enumerator);

}  // namespace detail

// How a member, or an alternative by its enumerator, is told where its name and its type do not say it well.
template <auto name>
struct Say {
  using Node = decltype(detail::NodeOfMember(name));

  std::string_view key = tessel::kNameOf<name>;
  std::optional<std::string_view> label = std::nullopt;  // by default the key in words
  Fact (*tell)(const Node& node) = nullptr;
  bool isOfParent = false;  // its parts stand among those of what it is a part of
};

// A table of them, in which no member stands twice.
template <class... Rows>
struct Sayings : Rows... {};
template <class... Rows>
Sayings(Rows...) -> Sayings<Rows...>;

inline constexpr Sayings<> kNoSayings{};

// "notBefore" as "Not before", "cRLIssuer" as "CRL issuer".
std::string InWords(std::string_view name);

// A list of what `describe` tells of each element, whenever it is asked for.
template <class List, class Describe>
Fact ListFact(const List& list, Describe describe) {
  Fact fact = Fact::List([&list, describe](const FactSink& sink) {
    for (uint32_t i = 0; i < list.count; ++i) {
      if (!sink(describe(*list.At(i)))) return false;
    }
    return true;
  });
  if (list.count == 0) fact.text = "(empty)";
  return fact;
}

template <const auto& sayings = kNoSayings>
class Describer {
 public:
  // By the overload for the type, where there is one.
  template <class Descriptor>
  static Fact Describe(const Descriptor& item, const typename Descriptor::Node& node) {
    if constexpr (requires { FactOf(node); }) {
      return FactOf(node);
    } else {
      return DescribeParts(item, node);
    }
  }

  template <class... Rows, class Node>
  static Fact DescribeParts(const tessel::Sequence<Rows...>& /*item*/, const Node& node) {
    Fact fact = Fact::Object();
    (Tell<Rows::kPointer>(fact, Rows::kItem, node.*Rows::kPointer), ...);
    fact.TellIfEmpty();
    return fact;
  }

  template <class Node, class... Rows>
  static Fact DescribeParts(const tessel::ChoiceDescriptor<Node, Rows...>& /*item*/, const Node& node) {
    Fact fact = Fact::Object();
    (TellIfChosen<Rows>(fact, node), ...);
    return fact;
  }

  template <class List, const auto& element>
  static Fact DescribeParts(const tessel::ListDescriptor<List, element>& /*item*/, const List& list) {
    return ListFact(list, [](const tessel::NodeOf<element>& node) { return Describe(element, node); });
  }

  static Fact DescribeParts(const Asn1Item& item, const Asn1Value& node) {
    return ValueFact(item.kind, ContentOf(node));
  }

 private:
  template <class Row>
  static void TellIfChosen(Fact& fact, const Asn1Choice& choice) {
    if (choice.index != Row::kIndex) return;
    Tell<Row::kIndex>(fact, Row::kItem, static_cast<const typename Row::Node*>(choice.value));
  }

  template <auto name, class Descriptor>
  static void Tell(Fact& fact, const Descriptor& item, const typename Descriptor::Node* node) {
    if (node == nullptr) return;
    constexpr Say<name> kSaying = SayingOf<name>();
    Fact part = TellBy(kSaying, item, *node);
    if (kSaying.isOfParent) return fact.TakeParts(std::move(part));
    fact.Add(kSaying.key, kSaying.label ? std::string(*kSaying.label) : InWords(kSaying.key), std::move(part));
  }

  // Alternatives are always told by their types.
  template <auto name, class Descriptor>
  static Fact TellBy(const Say<name>& saying, const Descriptor& item, const typename Descriptor::Node& node) {
    if constexpr (std::is_member_pointer_v<decltype(name)>) {
      if (saying.tell != nullptr) return saying.tell(node);
    }
    return Describe(item, node);
  }

  template <auto name>
  static consteval Say<name> SayingOf() {
    if constexpr (std::derived_from<std::remove_cvref_t<decltype(sayings)>, Say<name>>) {
      return sayings;
    } else {
      return {};
    }
  }
};

// A type of which values are decoded to be described.
struct Type {
  const tessel::Outline* outline;
  // By the root of a tree and the octets that it was decoded from, which the fact lends both.
  Fact (*describe)(const void* root, Octets octets);
};

template <const auto& item, const auto& sayings = kNoSayings>
inline constexpr Type kType = {&tessel::kOutline<item>, [](const void* root, Octets octets) {
                                 const auto& node = *static_cast<const tessel::NodeOf<item>*>(root);
                                 if constexpr (requires { FactOf(node, octets); }) {
                                   return FactOf(node, octets);
                                 } else {
                                   return Describer<sayings>::Describe(item, node);
                                 }
                               }};

// The fact about the value at the start of the octets. It keeps the value's tree, and lends the octets; `consumed`
// receives the length of the encoding. Throws a DecodingError.
Fact DecodedFact(const Type& type, Octets octets, uint32_t* consumed = nullptr);

// The same, or the octets in hexadecimal where they do not decode.
Fact DecodedOrHexFact(const Type& type, Octets octets);

}  // namespace tool
