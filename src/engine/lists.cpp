#include "engine/lists.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

#include "engine/codec.h"
#include "engine/nodes.h"
#include "engine/primitives.h"
#include "engine/tree_owner.h"
#include "tessel/lists.hpp"

namespace tessel {
namespace {

constexpr uint32_t kFirstCapacity = 10;

// An array starts small, since most lists are short, and then grows by half and by 200. The array of a list that was
// decoded or copied may be smaller than kFirstCapacity.
uint64_t NextCapacity(uint32_t capacity) {
  return capacity < kFirstCapacity ? kFirstCapacity : uint64_t{capacity} + 200 + capacity / 2;
}

}  // namespace

Asn1List* NewLargeList(Pool& pool, uint32_t capacity) {
  Asn1List* list = NewList(pool, 0);
  if (list == nullptr) return nullptr;
  list->items = static_cast<void**>(pool.Array(capacity));
  list->capacity = capacity;
  if (list->items != nullptr) return list;
  ReleaseNode(list);
  return nullptr;
}

Status Grow(Asn1List& list) {
  const uint64_t capacity = NextCapacity(list.capacity);
  if (capacity > UINT32_MAX || capacity > SIZE_MAX / sizeof(void*)) return Fail(TESSEL_OUT_OF_MEMORY);
  const size_t size = static_cast<size_t>(capacity) * sizeof(void*);
  void* grown = AllocateOctets(size);
  if (grown == nullptr) return Fail(TESSEL_OUT_OF_MEMORY);
  if (list.count != 0) std::memcpy(grown, list.items, list.count * sizeof(void*));
  NoteChange();
  ReleaseArray(list);
  list.items = static_cast<void**>(grown);
  list.capacity = static_cast<uint32_t>(capacity);
  return Status();
}

Status AppendIfAbsent(Asn1List& list, const Plan& element, void* item) {
  Encoding encoding;
  TRY(encoding.Make(element, item));
  for (uint32_t i = 0; i < list.count; ++i) {
    Encoding present;
    TRY(present.Make(element, list.items[i]));
    if (std::ranges::equal(present.Get(), encoding.Get())) return Fail(TESSEL_ALREADY_PRESENT);
  }
  return AppendTo(list, item);
}

Status RemoveAt(Asn1List& list, const Plan& element, uint32_t index, Caller at) {
  if (index >= list.count) return Fail(TESSEL_INVALID_ARGUMENT, at);
  NoteChange();
  FreeTree(element, list.items[index]);
  std::copy(list.items + index + 1, list.items + list.count, list.items + index);
  --list.count;
  return Status();
}

void Clear(Asn1List& list, const Plan& element) {
  NoteChange();
  for (uint32_t i = 0; i < list.count; ++i) FreeTree(element, std::exchange(list.items[i], nullptr));
  list.count = 0;
}

void Sort(Asn1List& list) {
  if (list.compare == nullptr || list.count < 2) return;
  std::qsort(list.items, list.count, sizeof(void*), list.compare);
}

}  // namespace tessel

using namespace tessel;

uint32_t TESSEL_CALL GetAsn1ListItem(const Asn1List* list, uint32_t index, void** item) {
  if (list == nullptr || item == nullptr || index >= list->count) return Fail(TESSEL_INVALID_ARGUMENT);
  *item = list->items[index];
  return Status();
}

uint32_t TESSEL_CALL GetAsn1ListLength(const Asn1List* list) { return list == nullptr ? 0 : list->count; }

void TESSEL_CALL SetAsn1ListSorted(Asn1List* list, uint32_t sorted) {
  if (list != nullptr) list->sorted = sorted;
}

uint32_t TESSEL_CALL CreateOctetStrings(OctetStrings** strings) {
  return Create(kOctetStrings, Leaves::kAbsent, strings);
}

uint32_t TESSEL_CALL AddOctetStringsValue(OctetStrings* strings, const uint8_t* octets, uint32_t length) {
  if (strings == nullptr || octets == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  return AddNew(*strings, TreeOwner(kOctetString, NewValue(TESSEL_KIND_OCTET_STRING, {octets, length})));
}

uint32_t TESSEL_CALL GetOctetStringsCount(const OctetStrings* strings, uint32_t* count) {
  return GetCount(strings, count);
}

uint32_t TESSEL_CALL GetOctetStringsValue(const OctetStrings* strings, uint32_t index, uint8_t* buffer,
                                          uint32_t* length) {
  if (length == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  Asn1Value* value = nullptr;
  TRY(GetElement(strings, index, &value));
  *length = value->length;
  const Octets content = ContentOf(*value);
  // DEVIATES: the capacity is not looked at, for programs call with a `length` that they never set.
  if (buffer != nullptr) std::copy(content.begin(), content.end(), buffer);
  return Status();
}

uint32_t TESSEL_CALL FreeOctetStrings(OctetStrings* strings) {
  // DEVIATES: null is refused, unlike by the other free functions: callers know the status.
  return strings == nullptr ? Fail(TESSEL_INVALID_ARGUMENT) : Free(kOctetStrings, strings);
}
