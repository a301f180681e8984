// What the figures are compared with: the least that reading DER costs, and what memory costs.
#pragma once

#include <cstdint>
#include <vector>

#include "inputs.h"
#include "sides.h"
#include "table.h"

namespace bench {

// Reads the header of every element: steps into what is constructed, and over the content of what is primitive. Tag
// numbers may have any form, and lengths any definite one. Each element has to end within the one that it is in, as
// whoever reads it has to know: that makes the walk about a quarter slower than one that looks at the end of all octets
// only.
//
// Returns the sum of all identifier octets and lengths of contents, so that there is no header whose reading could be
// left out; 0 when the octets are not whole elements, one after another.
uint64_t WalkHeaders(Octets octets);

// Whether a walk by tessel's GetAsn1ObjectInfo comes to the same sum.
bool IsRightWalk(Octets octets);

uint64_t CountElements(Octets octets);

void CopyOctets(Octets octets);
bool IsRightCopy(Octets octets);

// Allocates a block of 32 octets for each element, and then frees them all.
bool AllocateElements(uint64_t elements);

Label WalkLabel();
Label CopyLabel(Kind kind);
Label AllocationsLabel();

template <class Input>
void AddWalk(Operation& operation, const std::vector<Input>& inputs) {
  operation.sides.push_back({WalkLabel(),
                             OnAll(inputs, [](const Input& input) { return WalkHeaders(input.octets) != 0; }),
                             OnAll(inputs, [](const Input& input) { return IsRightWalk(input.octets); })});
}

template <class Input>
void AddCopy(Operation& operation, Kind kind, const std::vector<Input>& inputs) {
  const auto copy = [](const Input& input) {
    CopyOctets(input.octets);
    return true;
  };
  operation.sides.push_back({CopyLabel(kind), OnAll(inputs, copy),
                             OnAll(inputs, [](const Input& input) { return IsRightCopy(input.octets); })});
}

template <class Input>
void AddAllocations(Operation& operation, const std::vector<Input>& inputs) {
  std::vector<uint64_t> counts;
  counts.reserve(inputs.size());
  for (const Input& input : inputs) counts.push_back(CountElements(input.octets));
  const Work work = [counts] { return std::all_of(counts.begin(), counts.end(), AllocateElements); };
  operation.sides.push_back({AllocationsLabel(), work, work});
}

}  // namespace bench
