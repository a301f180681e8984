// Reading the nodes of a decoded object. Any member may be absent, so every reader takes null and passes it on.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <span>

#include "asn1/ber.h"
#include "facts/fact.h"
#include "tessel/nodes.h"

namespace tool {

// A member of a SEQUENCE, whose node is one pointer a member.
inline const void* Slot(const void* sequence, unsigned index) {
  const void* member = nullptr;
  if (sequence == nullptr) return member;
  std::memcpy(&member, static_cast<const std::byte*>(sequence) + index * sizeof(member), sizeof(member));
  return member;
}

// The elements of a SEQUENCE OF or SET OF.
inline std::span<void* const> Items(const void* list) {
  const auto* node = static_cast<const Asn1List*>(list);
  if (node == nullptr) return {};
  return {node->items, node->count};
}

// A list of what `describe` tells of each element.
template <typename Describe>
Fact ListFact(std::span<void* const> items, Describe describe) {
  return Fact::List([=](const FactSink& sink) {
    return std::ranges::all_of(items, [&](const void* item) { return sink(describe(item)); });
  });
}
template <typename Describe>
Fact ListFact(const void* list, Describe describe) {
  return ListFact(Items(list), describe);
}

// The alternative that a CHOICE holds.
struct Alternative {
  uint32_t index = 0;
  void* value = nullptr;
};
inline Alternative Chosen(const void* choice) {
  const auto* node = static_cast<const Asn1Choice*>(choice);
  if (node == nullptr) return {};
  return {node->index, node->value};
}

template <typename Node>
Octets ContentOf(const void* node) {
  const auto* typed = static_cast<const Node*>(node);
  if (typed == nullptr || typed->data == nullptr) return {};
  return {typed->data, typed->length};
}

// The content of a primitive type; of an open value the whole element.
inline Octets Content(const void* value) { return ContentOf<Asn1Value>(value); }
inline Octets BitStringContent(const void* bits) { return ContentOf<Asn1BitString>(bits); }

}  // namespace tool
