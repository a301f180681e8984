// The kinds of objects that `tessel show` knows, and what it can say about others.
#pragma once

#include <array>
#include <span>
#include <string>
#include <string_view>

#include "describe/describer.h"

namespace tool {

struct Kind {
  std::string_view name;
  std::array<std::string_view, 2> labels;  // those of its PEM blocks
  const Type* type;

  [[nodiscard]] bool HasLabel(std::string_view label) const;
};

// In the order in which they are tried.
std::span<const Kind> Kinds();

// What a PEM block with another label holds, such as "a CRL"; empty when that is not known.
std::string_view OtherKindOfLabel(std::string_view label);

// What well-formed BER seems to be by the identifiers of its first elements; empty when that is not known.
std::string_view OtherKindOfElements(Octets octets);

}  // namespace tool
