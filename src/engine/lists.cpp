#include "engine/lists.h"

namespace tessel {
namespace {

constexpr uint32_t kFirstCapacity = 10;

// An array starts small, since most lists are, and then grows by half and a good step.
uint64_t NextCapacity(uint32_t capacity) {
  return capacity == 0 ? kFirstCapacity : uint64_t{capacity} + 200 + capacity / 2;
}

Status Grow(Asn1List& list) {
  const uint64_t capacity = NextCapacity(list.capacity);
  if (capacity > UINT32_MAX || capacity > SIZE_MAX / sizeof(void*)) return Fail(TESSEL_OUT_OF_MEMORY);
  void* grown = GrowOctets(list.items, list.count * sizeof(void*), static_cast<size_t>(capacity) * sizeof(void*));
  if (grown == nullptr) return Fail(TESSEL_OUT_OF_MEMORY);
  list.items = static_cast<void**>(grown);
  list.capacity = static_cast<uint32_t>(capacity);
  return Status();
}

}  // namespace

Status AppendTo(Asn1List& list, void* item) {
  if (list.count == list.capacity) {
    if (Status status = Grow(list); status.Failed()) return status;
  }
  list.items[list.count++] = item;
  return Status();
}

Status AppendTo(Asn1List& list, void* item, Pool& pool) {
  if (list.capacity == 0) {
    list.items = static_cast<void**>(pool.Node(kFirstCapacity * sizeof(void*)));
    if (list.items == nullptr) return Fail(TESSEL_OUT_OF_MEMORY);
    list.capacity = kFirstCapacity;
  }
  return AppendTo(list, item);
}

}  // namespace tessel
