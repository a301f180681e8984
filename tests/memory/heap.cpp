#include "memory/heap.h"

#include <malloc.h>

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

void* Count(void* block) {
  if (block == nullptr) return nullptr;
  ++allocations;
  held += static_cast<int64_t>(malloc_usable_size(block));
  return block;
}

void Discount(void* block) { held -= static_cast<int64_t>(malloc_usable_size(block)); }

}  // namespace

// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name)
extern "C" {

void* malloc(size_t size) { return Count(__libc_malloc(size)); }
void* calloc(size_t count, size_t size) { return Count(__libc_calloc(count, size)); }
void free(void* block) {
  Discount(block);
  __libc_free(block);
}
void* realloc(void* block, size_t size) {
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

}  // namespace test
