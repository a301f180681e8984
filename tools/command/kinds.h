// The kinds of objects: those that `tessel show` knows, and what it can say about others.
#pragma once

#include <array>
#include <span>
#include <string_view>

#include "describe/describer.h"

namespace tool {

struct Kind {
  std::string_view name;
  // The labels of its PEM blocks; of a kind that is not shown yet, what they end with.
  std::array<std::string_view, 3> labels;
  // The identifier octets of the members of its outermost element and, behind a stroke, of the members of the first of
  // these, as far as they tell the kind.
  std::array<std::string_view, 4> starts;
  const Type* type;  // null: it is not shown yet
};

// In the order in which they are tried.
std::span<const Kind> Kinds();

// The kind of PEM blocks with this label; null when it is not known.
const Kind* KindOfLabel(std::string_view label);

// The kind that sound BER seems to be of by its first elements; null when that is not known.
const Kind* KindOfElements(Octets octets);

}  // namespace tool
