// Values of types that are described by asn1.hpp: the library's own, and those of callers.
//
//   TreeOf<Quota> quota = Decode(kQuota, octets);
//   Quota changed = *quota;                      // the pointers, which lead to the nodes of the tree
//   NumberNode limit(TESSEL_KIND_INTEGER, 5);
//   changed.limit = limit.Member();
//   Bytes written = Encode(kQuota, changed);
//
// A decoded tree is not changed: one that differs is put together from its nodes and from others (nodes.hpp).
#pragma once

#ifdef __cpp_exceptions

#include <concepts>
#include <cstdint>

#include "tessel/asn1.hpp"
#include "tessel/calls.hpp"
#include "tessel/nodes.hpp"

namespace tessel {

// A tree whose root is of a known type.
template <class Node>
class TreeOf : public Tree {
 public:
  template <std::derived_from<tessel::Item<Node>> Descriptor>
  explicit TreeOf(const Descriptor& item) : Tree(item) {}

  const Node& operator*() const { return As<Node>(); }
  const Node* operator->() const { return &As<Node>(); }
};

// The value at the start of the octets; `consumed` receives the length of its encoding. Throws an Error.
template <class Descriptor>
TreeOf<typename Descriptor::Node> Decode(const Descriptor& item, Octets octets, uint32_t* consumed = nullptr) {
  TreeOf<typename Descriptor::Node> tree(item);
  Call(Asn1DecodeItem, octets, &tree.Item(), tree.Out(), consumed);
  return tree;
}

// The DER of a value. Throws an Error.
template <class Descriptor>
Bytes Encode(const Descriptor& item, const typename Descriptor::Node& node) {
  return Fetch(GetAsn1EncodedValue, static_cast<const void*>(&node), static_cast<const Asn1Item*>(&item));
}

}  // namespace tessel

#endif
