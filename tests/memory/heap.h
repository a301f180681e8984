// Counts what a program takes from the heap, and refuses it: malloc and its kin are defined in heap.cpp, and so serve
// the library too.
#pragma once

#include <cstddef>
#include <cstdint>

namespace test {

// Since it was made.
class HeapCount {
 public:
  HeapCount();
  [[nodiscard]] uint64_t Allocations() const;
  // Octets that were taken and not given back, as the heap rounds them.
  [[nodiscard]] int64_t Held() const;

 private:
  uint64_t allocations_;
  int64_t held_;
};

// Lets one allocation fail: the n-th after it was made, or none when n is 0. Only one such object lives at a time.
class FailingAllocation {
 public:
  explicit FailingAllocation(uint64_t n);
  ~FailingAllocation();
  FailingAllocation(const FailingAllocation&) = delete;
  FailingAllocation& operator=(const FailingAllocation&) = delete;
  // Whether there were as many.
  [[nodiscard]] bool Happened() const;
};

// Aligns what malloc gives to one pointer instead of two.
class MisalignedHeap {
 public:
  MisalignedHeap();
  ~MisalignedHeap();
  MisalignedHeap(const MisalignedHeap&) = delete;
  MisalignedHeap& operator=(const MisalignedHeap&) = delete;
};

// Lets all allocations above a size fail. Only one such object lives at a time.
class LargestAllocation {
 public:
  explicit LargestAllocation(size_t size);
  ~LargestAllocation();
  LargestAllocation(const LargestAllocation&) = delete;
  LargestAllocation& operator=(const LargestAllocation&) = delete;
};

}  // namespace test
