// The way to a member of a tree, named once in a source file and used by every function that touches the member.
#pragma once

#include <cstdint>
#include <type_traits>

#include "engine/lists.h"
#include "engine/slot.h"
#include "engine/status.h"
#include "tessel/asn1.hpp"

namespace tessel {

// A path has one pointer to member for each step: Path<&Certificate::tbsCertificate, &TbsCertificate::serialNumber>.
template <auto first, auto... rest>
class Path {
  using Root = decltype(detail::StructOf(first));

 public:
  // The slot of the last member. It is unreachable when the root is null (TESSEL_INVALID_ARGUMENT) or a member on the
  // way is absent (TESSEL_ABSENT).
  static auto In(Root* root, Caller at = {}) { return Step<Slot, first, rest...>(root, StatusOf(root, at), at); }
  static auto In(const Root* root, Caller at = {}) {
    return Step<ReadSlot, first, rest...>(root, StatusOf(root, at), at);
  }

  // The slot of the last member, from the node that `slot` holds. It is unreachable also when `slot` cannot be loaded.
  static auto In(const Slot<Root>& slot) { return StepFrom<Slot>(slot); }
  static auto In(const ReadSlot<Root>& slot) { return StepFrom<ReadSlot>(slot); }

 private:
  static Status StatusOf(const Root* root, SourceLocation at) {
    return root == nullptr ? Fail(TESSEL_INVALID_ARGUMENT, at) : Status();
  }

  template <template <class> class Result>
  static auto StepFrom(const auto& slot) {
    Root* root = nullptr;
    Status status = slot.Load(root);
    return Step<Result, first, rest...>(root, status, slot.At());
  }

  template <template <class> class Result, auto member, auto... further, class Struct>
  static auto Step(Struct* parent, Status status, SourceLocation at) {
    using Child = std::remove_pointer_t<std::remove_cvref_t<decltype(parent->*member)>>;
    if constexpr (sizeof...(further) == 0) {
      return status.Failed() ? Result<Child>(status, at) : Result<Child>(parent->*member, at);
    } else {
      Child* child = status.Failed() ? nullptr : parent->*member;
      if (status.Ok() && child == nullptr) status = Fail(TESSEL_ABSENT, at);
      return Step<Result, further...>(child, status, at);
    }
  }
};

// The slot of an element of a list, from which a path can lead on. It is unreachable when GetElement fails.
template <class Element>
ReadSlot<Element> ElementOf(const ListOf<Element>* list, uint32_t index, Caller at = {}) {
  Element* element = nullptr;
  const Status status = GetElement(list, index, &element, at);
  return status.Failed() ? ReadSlot<Element>(status, at) : ReadSlot<Element>(element, at);
}

// The slot of an element of the list that `slot` holds. It is unreachable also when `slot` cannot be loaded.
template <class List>
auto ElementOf(const ReadSlot<List>& slot, uint32_t index) {
  List* list = nullptr;
  const Status status = slot.Load(list);
  return status.Failed() ? ReadSlot<typename List::ElementType>(status, slot.At()) : ElementOf(list, index, slot.At());
}

}  // namespace tessel
