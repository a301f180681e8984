// The types of what extensions hold.
#pragma once

#include <span>
#include <string_view>

#include "describe/describer.h"

namespace tool {

// What extensions with this identifier hold.
struct ExtensionType {
  std::string_view dotted;
  const Type* type;
};

// Where several have one identifier they are tried in this order.
std::span<const ExtensionType> ExtensionTypes();

}  // namespace tool
