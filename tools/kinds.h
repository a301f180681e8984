// The kinds of objects that `tessel show` knows.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

#include "ber.h"
#include "fact.h"

namespace tool {

struct Kind {
  std::string_view name;
  std::array<std::string_view, 2> labels;  // those of its PEM blocks
  uint32_t (*decode)(Octets octets, void** object);
  Fact (*describe)(void* object);
  void (*release)(void* object);

  [[nodiscard]] bool HasLabel(std::string_view label) const;
};

// In the order in which they are tried.
std::span<const Kind> Kinds();

}  // namespace tool
