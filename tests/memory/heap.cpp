#include "memory/heap.h"

#include <malloc.h>

#include <cstdint>

// What glibc has below the functions that are replaced here.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" {
void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* block, size_t size);
void __libc_free(void* block);
}
// NOLINTEND(bugprone-reserved-identifier)

namespace {

// The tests have one thread.
uint64_t allocations = 0;
int64_t held = 0;
// How many allocations there are to the one that fails, that one included; 0 when none does.
uint64_t untilFailure = 0;
bool hasFailed = false;
size_t largest = SIZE_MAX;
// Whether blocks are aligned to a pointer only. Such a block begins behind the first pointer of one of the heap's.
bool isMisaligned = false;
constexpr size_t kShift = sizeof(void*);

bool IsRefused(size_t size) {
  const bool failsNow = untilFailure != 0 && --untilFailure == 0;
  hasFailed |= failsNow;
  return failsNow || size > largest;
}

void* Count(void* block) {
  if (block == nullptr) return nullptr;
  ++allocations;
  held += static_cast<int64_t>(malloc_usable_size(block));
  return block;
}

// The heap's own block.
void* Original(void* block) {
  const bool isShifted = reinterpret_cast<uintptr_t>(block) % (2 * sizeof(void*)) != 0;
  return isShifted ? static_cast<uint8_t*>(block) - kShift : block;
}

void Discount(void* block) { held -= static_cast<int64_t>(malloc_usable_size(block)); }

}  // namespace

// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name)
extern "C" {

void* malloc(size_t size) {
  if (IsRefused(size)) return nullptr;
  void* block = Count(__libc_malloc(isMisaligned ? size + kShift : size));
  return isMisaligned && block != nullptr ? static_cast<uint8_t*>(block) + kShift : block;
}
void* calloc(size_t count, size_t size) {
  const bool isRefused = IsRefused(size != 0 && count > SIZE_MAX / size ? SIZE_MAX : count * size);
  return isRefused ? nullptr : Count(__libc_calloc(count, size));
}
void free(void* block) {
  block = Original(block);
  Discount(block);
  __libc_free(block);
}
void* realloc(void* block, size_t size) {
  if (IsRefused(size)) return nullptr;
  const auto before = static_cast<int64_t>(malloc_usable_size(block));
  void* resized = __libc_realloc(block, size);
  if (resized != nullptr) held -= before;
  return Count(resized);
}

}  // extern "C"
// NOLINTEND(readability-inconsistent-declaration-parameter-name)

namespace test {

HeapCount::HeapCount() : allocations_(allocations), held_(held) {}
uint64_t HeapCount::Allocations() const { return allocations - allocations_; }
int64_t HeapCount::Held() const { return held - held_; }

FailingAllocation::FailingAllocation(uint64_t n) {
  untilFailure = n;
  hasFailed = false;
}
FailingAllocation::~FailingAllocation() { untilFailure = 0; }
bool FailingAllocation::Happened() const { return hasFailed; }

MisalignedHeap::MisalignedHeap() { isMisaligned = true; }
MisalignedHeap::~MisalignedHeap() { isMisaligned = false; }

LargestAllocation::LargestAllocation(size_t size) { largest = size; }
LargestAllocation::~LargestAllocation() { largest = SIZE_MAX; }

}  // namespace test
