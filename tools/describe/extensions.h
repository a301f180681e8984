// Facts about extensions.
#pragma once

#include "facts/fact.h"

namespace tool {

// The node of a list of extensions, which lends what the fact tells.
Fact ExtensionsFact(const void* extensions);

}  // namespace tool
