// Readers of what extensions hold.
#pragma once

#include <span>
#include <string_view>

#include "facts/fact.h"
#include "tessel/descriptor.h"

namespace tool {

// How the values of extensions with this identifier are read.
struct ExtensionReader {
  std::string_view dotted;
  // Null: the value is a single string, number, time or identifier.
  const Asn1Item* item;
  // Makes the fact from the root of the value's tree, which lends what it tells.
  Fact (*describe)(const void* root);
};

// Where several have one identifier they are tried in this order.
std::span<const ExtensionReader> StandardReaders();
std::span<const ExtensionReader> DistributionPointReaders();
std::span<const ExtensionReader> UntypedReaders();

}  // namespace tool
