// How much of the heap a decoded CRL holds. All the libraries take their memory from malloc.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "inputs.h"
#include "table.h"

namespace bench {

struct HeapSide {
  Label label;
  // Makes the value, and returns how many octets of the heap it holds before it goes.
  std::function<size_t()> measure;
};

struct HeapOperation {
  std::string name;
  double items = 1;
  std::vector<HeapSide> sides{};
};

// What malloc has given out and not got back, in octets.
size_t HeapInUse();

template <class Decode>
void AddHeapSide(HeapOperation& operation, Label label, Octets octets, Decode decode) {
  const auto measure = [octets, decode]() -> size_t {
    const size_t before = HeapInUse();
    const auto decoded = decode(octets);
    Require(static_cast<bool>(decoded), "an input is refused");
    return HeapInUse() - before;
  };
  operation.sides.push_back({std::move(label), measure});
}

// Octets of the heap for one item.
std::vector<Figure> MeasureHeap(const std::vector<HeapOperation>& operations);

}  // namespace bench
