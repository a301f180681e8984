// Lists: what SEQUENCE OF and SET OF are held in.
#pragma once

#include <cstdint>

#include "engine/descriptor.h"
#include "engine/memory.h"
#include "engine/status.h"
#include "tessel/nodes.h"

namespace tessel {

inline constexpr Asn1List kEmptyList{0, nullptr, 0, nullptr, 1};

// Appends an item, which the list owns from then on. When it fails the list is as it was.
Status AppendTo(Asn1List& list, void* item);

// The same for a list in the making, whose first array is placed in the pool.
Status AppendTo(Asn1List& list, void* item, Pool& pool);

// What the add, count and get functions of a list of a named type say.

template <class Element>
Status Add(ListOf<Element>* list, Element* element, Site at = {}) {
  if (list == nullptr || element == nullptr) return Fail(TESSEL_INVALID_ARGUMENT, at);
  return AppendTo(*list, element);
}

inline Status GetCount(const Asn1List* list, uint32_t* count, Site at = {}) {
  if (list == nullptr || count == nullptr) return Fail(TESSEL_INVALID_ARGUMENT, at);
  *count = list->count;
  return Status();
}

// Lends the element.
template <class Element>
Status GetElement(const ListOf<Element>* list, uint32_t index, Element** element, Site at = {}) {
  if (list == nullptr || element == nullptr || index >= list->count) return Fail(TESSEL_INVALID_ARGUMENT, at);
  if (list->At(index) == nullptr) return Fail(TESSEL_ABSENT, at);
  *element = list->At(index);
  return Status();
}

}  // namespace tessel
