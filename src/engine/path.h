// The way to a member of a tree, named once under its struct and used by every function that touches the member.
#pragma once

#include <cstdint>

#include "engine/codec.h"
#include "engine/descriptor.h"
#include "engine/status.h"

namespace tessel {

// One pointer to member a step: Path<&Certificate::tbsCertificate, &TbsCertificate::serialNumber>.
template <auto first, auto... rest>
class Path {
  using Root = decltype(detail::StructOf(first));

 public:
  // The last member. A null root is TESSEL_INVALID_ARGUMENT, a null member on the way TESSEL_ABSENT.
  template <class Node>
  static Status Reach(const Root* root, Node*& node, Site at = {}) {
    if (root == nullptr) return Fail(TESSEL_INVALID_ARGUMENT, at);
    return Step<Node, first, rest...>(root, node, at);
  }

  // The encoding of the last member, in the caller's buffer.
  template <class Node>
  static Status Encode(const Item<Node>& item, const Root* root, uint8_t* buffer, uint32_t* length, Site at = {}) {
    Node* node = nullptr;
    if (Status status = Reach(root, node, at); status.Failed()) return status;
    return tessel::Encode(item, node, buffer, length, at);
  }

 private:
  template <class Node, auto member, auto... further, class Struct>
  static Status Step(const Struct* parent, Node*& node, Site at) {
    auto* child = parent->*member;
    if (child == nullptr) return Fail(TESSEL_ABSENT, at);
    if constexpr (sizeof...(further) == 0) {
      node = child;
      return Status();
    } else {
      return Step<Node, further...>(child, node, at);
    }
  }
};

}  // namespace tessel
