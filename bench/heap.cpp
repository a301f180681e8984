#include "heap.h"

#include <malloc.h>

namespace bench {

size_t HeapInUse() {
  const struct mallinfo2 heap = mallinfo2();
  // Small blocks, and those that are mappings of their own.
  return heap.uordblks + heap.hblkhd;
}

std::vector<Figure> MeasureHeap(const std::vector<HeapOperation>& operations) {
  std::vector<Figure> figures;
  for (const HeapOperation& operation : operations) {
    for (const HeapSide& side : operation.sides) {
      figures.push_back({operation.name, side.label, static_cast<double>(side.measure()) / operation.items});
    }
  }
  return figures;
}

}  // namespace bench
