// Every type that the library decodes.
#pragma once

#include <span>

#include "input.h"
#include "tessel/descriptor.h"

namespace fuzz {

struct Type {
  const Asn1Item* item;
  // Calls every function that reads an object of the type; null when there are none.
  void (*read)(void* object) = nullptr;
  // Changes one.
  void (*change)(void* object) = nullptr;
};

std::span<const Type> Types();

}  // namespace fuzz
