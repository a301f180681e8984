// Counts what a program takes from the heap: malloc and its kin are defined in heap.cpp, and so serve the library too.
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

}  // namespace test
