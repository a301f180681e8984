// The way to a member of a tree, named once under its struct and used by every function that touches the member.
#pragma once

#include <cstdint>
#include <type_traits>

#include "engine/lists.h"
#include "engine/slot.h"
#include "engine/status.h"
#include "tessel/asn1.hpp"

namespace tessel {

// One pointer to member a step: Path<&Certificate::tbsCertificate, &TbsCertificate::serialNumber>.
template <auto first, auto... rest>
class Path {
  using Root = decltype(detail::StructOf(first));

 public:
  // The slot of the last member. Unreachable: a null root is TESSEL_INVALID_ARGUMENT, a null member on the way
  // TESSEL_ABSENT. Functions that only read have a const root; all they do with the slot is to load it.
  static auto In(const Root* root, Site at = {}) {
    return Step<first, rest...>(const_cast<Root*>(root), root == nullptr ? Fail(TESSEL_INVALID_ARGUMENT, at) : Status(),
                                at);
  }

  // The same in the node that a slot holds. Unreachable also as Slot::Load tells.
  static auto In(const Slot<Root>& slot) {
    Root* root = nullptr;
    Status status = slot.Load(root);
    return Step<first, rest...>(root, status, slot.At());
  }

  // The same in an element of a list. Unreachable also as GetElement tells.
  static auto InElement(const ListOf<Root>* list, uint32_t index, Site at = {}) {
    Root* element = nullptr;
    Status status = GetElement(list, index, &element, at);
    return Step<first, rest...>(element, status, at);
  }

 private:
  template <auto member, auto... further, class Struct>
  static auto Step(Struct* parent, Status status, Site at) {
    using Child = std::remove_pointer_t<std::remove_reference_t<decltype(parent->*member)>>;
    if constexpr (sizeof...(further) == 0) {
      return status.Failed() ? Slot<Child>(status, at) : Slot<Child>(parent->*member, at);
    } else {
      Child* child = status.Failed() ? nullptr : parent->*member;
      if (status.Ok() && child == nullptr) status = Fail(TESSEL_ABSENT, at);
      return Step<further...>(child, status, at);
    }
  }
};

}  // namespace tessel
