// Names of the object identifiers that people meet in certificates.
#pragma once

#include <string_view>

namespace tool {

// The name of an object identifier by its dotted text; empty when it is not known. Types of name attributes have the
// short names that they have in distinguished names.
std::string_view KnownName(std::string_view dotted);

}  // namespace tool
