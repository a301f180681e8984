// Lists: the nodes of SEQUENCE OF and SET OF.
#pragma once

#include <cstdint>
#include <new>
#include <utility>

#include "engine/codec.h"
#include "engine/memory.h"
#include "engine/slot.h"
#include "engine/status.h"
#include "engine/tree_owner.h"
#include "tessel/asn1.hpp"
#include "tessel/lists.h"
#include "tessel/nodes.h"

namespace tessel {

inline constexpr Asn1List kEmptyList{0, nullptr, 0, nullptr, 1};

// The first array of a list in a pool stands right behind the list's node when it is small, and is released with the
// node.
inline constexpr uint32_t kLargestFirstArray = 16;
inline constexpr size_t kLargestListNode = sizeof(Asn1List) + kLargestFirstArray * sizeof(void*);
inline void** FirstArray(Asn1List& list) { return reinterpret_cast<void**>(&list + 1); }
// ReleaseArray tells by its address whether an array stands behind the node. That is certain because the place of a
// node is rounded up to kHeapAlignment, beyond its size: no array from the heap can begin where the node ends.
static_assert(sizeof(Asn1List) % kHeapAlignment != 0);

// An empty list with room for `capacity` elements; null when there is no memory.
Asn1List* NewLargeList(Pool& pool, uint32_t capacity);
inline Asn1List* NewList(Pool& pool, uint32_t capacity) {
  if (capacity > kLargestFirstArray) return NewLargeList(pool, capacity);
  void* place = pool.Node(sizeof(Asn1List) + capacity * sizeof(void*));
  if (place == nullptr) return nullptr;
  auto* list = new (place) Asn1List{0, nullptr, capacity, nullptr, 1};
  if (capacity != 0) list->items = FirstArray(*list);
  return list;
}

// Begins to fetch the node of an element that is visited soon, since in a large tree it is in no cache. Does nothing
// when there is no element at the index.
inline void Prefetch(const Asn1List& list, uint32_t index) {
  if (index < list.count) __builtin_prefetch(list.items[index]);
}
inline constexpr uint32_t kItemsAhead = 4;

// Releases the array of a list, when it is an allocation of its own.
inline void ReleaseArray(Asn1List& list) {
  if (list.items != FirstArray(list)) ReleaseOctets(list.items);
}

Status Grow(Asn1List& list);

// Makes room for one more element.
inline Status MakeRoom(Asn1List& list) { return list.count == list.capacity ? Grow(list) : Status(); }

// Appends an element, which the list takes. After a failure the list is unchanged.
inline Status AppendTo(Asn1List& list, void* item) {
  TRY(MakeRoom(list));
  NoteChange();
  list.items[list.count++] = NoteTaken(item);
  return Status();
}

// Appends an element, which the list takes. TESSEL_ALREADY_PRESENT: the list has an element with the same encoding.
Status AppendIfAbsent(Asn1List& list, const Plan& element, void* item);

// Releases the element at an index and closes the gap.
Status RemoveAt(Asn1List& list, const Plan& element, uint32_t index, Caller at = {});

// Releases the elements for which `isGone(index)` is true, and closes the gaps. `isGone` is called once for each
// element, from the first to the last. The element still stands at its index then, and none has been released.
template <class IsGone>
void RemoveIf(Asn1List& list, const Plan& element, IsGone isGone) {
  uint32_t left = 0;
  for (uint32_t i = 0; i < list.count; ++i) {
    if (!isGone(i)) std::swap(list.items[left++], list.items[i]);
  }
  if (left != list.count) NoteChange();
  for (uint32_t i = left; i < list.count; ++i) FreeTree(element, list.items[i]);
  list.count = left;
}

// Releases all elements and keeps the array.
void Clear(Asn1List& list, const Plan& element);

// Puts the elements in the order of the list's `compare`, if it has one.
void Sort(Asn1List& list);

// What the add, remove, count and get functions of the lists of named types do.

// Appends an element, which the list takes. TESSEL_INVALID_ARGUMENT also when it is a part of another object.
template <class Element>
Status Add(ListOf<Element>* list, Element* element, Caller at = {}) {
  if (list == nullptr || element == nullptr || !CanBeTaken(element)) return Fail(TESSEL_INVALID_ARGUMENT, at);
  return AppendTo(*list, element);
}

// Appends an element that was just made, which the list takes. TESSEL_OUT_OF_MEMORY also when its owner is empty.
template <class Element>
Status AddNew(ListOf<Element>& list, TreeOwner<Element> element, Caller at = {}) {
  if (element.Get() == nullptr) return Fail(TESSEL_OUT_OF_MEMORY, at);
  Status status = AppendTo(list, element.Get());
  if (status.Ok()) static_cast<void>(element.Release());
  return status;
}

// Appends a copy of an element. The source can be made of borrowed nodes.
template <class Element>
Status AddCopy(ListOf<Element>& list, const TypeOf<Element>& item, const Element* source, Caller at = {}) {
  TreeOwner<Element> copy(item);
  TRY(Copy(item, source, copy.Out(), at));
  return AddNew(list, std::move(copy), at);
}

// Appends a copy of an element to the list in a slot. When the slot holds none, a list is made. After a failure the
// slot is unchanged.
template <class List, class Element>
Status AddCopyTo(const Slot<List>& slot, const TypeOf<List>& listItem, const TypeOf<Element>& item,
                 const Element* source) {
  TRY(slot.Unreachable());
  if (slot.Member() != nullptr) return AddCopy(*slot.Member(), item, source, slot.At());
  TreeOwner<List> list(listItem);
  TRY(Create(listItem, Leaves::kEmpty, list.Out(), slot.At()));
  TRY(AddCopy(*list.Get(), item, source, slot.At()));
  return Take(slot, listItem, list.Release());
}

// Releases the element at an index.
template <class Element>
Status RemoveElement(ListOf<Element>* list, const TypeOf<Element>& item, uint32_t index, Caller at = {}) {
  return list == nullptr ? Fail(TESSEL_INVALID_ARGUMENT, at) : RemoveAt(*list, item, index, at);
}

inline Status GetCount(const Asn1List* list, uint32_t* count, Caller at = {}) {
  if (list == nullptr || count == nullptr) return Fail(TESSEL_INVALID_ARGUMENT, at);
  *count = list->count;
  return Status();
}

// Lends the element.
template <class Element>
Status GetElement(const ListOf<Element>* list, uint32_t index, Element** element, Caller at = {}) {
  if (list == nullptr || element == nullptr || index >= list->count) return Fail(TESSEL_INVALID_ARGUMENT, at);
  if (list->At(index) == nullptr) return Fail(TESSEL_ABSENT, at);
  *element = list->At(index);
  return Status();
}

}  // namespace tessel
