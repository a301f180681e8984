// Lists: what SEQUENCE OF and SET OF are held in.
#pragma once

#include <cstdint>

#include "engine/descriptor.h"
#include "engine/memory.h"
#include "engine/owned_tree.h"
#include "engine/status.h"
#include "tessel/lists.h"
#include "tessel/nodes.h"

namespace tessel {

inline constexpr Asn1List kEmptyList{0, nullptr, 0, nullptr, 1};

// Appends an item, which the list owns from then on. When it fails the list is as it was.
Status AppendTo(Asn1List& list, void* item);

// The same for a list in the making, whose first array is placed in the pool.
Status AppendTo(Asn1List& list, void* item, Pool& pool);

// The same, unless the list has an item with the same encoding already: then TESSEL_ALREADY_PRESENT.
Status AppendIfAbsent(Asn1List& list, const Asn1Item& element, void* item);

// Releases the item at an index, by its descriptor, and closes the gap.
Status RemoveAt(Asn1List& list, const Asn1Item& element, uint32_t index, Site at = {});

// Releases all items and keeps the array.
void Clear(Asn1List& list, const Asn1Item& element);

// Puts the items in the order of the list's `compare`, if it has one.
void Sort(Asn1List& list);

// What the add, count and get functions of a list of a named type say.

template <class Element>
Status Add(ListOf<Element>* list, Element* element, Site at = {}) {
  if (list == nullptr || element == nullptr) return Fail(TESSEL_INVALID_ARGUMENT, at);
  return AppendTo(*list, element);
}

// Appends an element that was just made, if there was memory for it; the list takes it when that succeeds.
template <class Element>
Status AddNew(ListOf<Element>& list, OwnedTree<Element> element, Site at = {}) {
  if (element.Get() == nullptr) return Fail(TESSEL_OUT_OF_MEMORY, at);
  Status status = AppendTo(list, element.Get());
  if (status.Ok()) static_cast<void>(element.Release());
  return status;
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
