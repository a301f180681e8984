// Facts for programs.
#pragma once

#include <string>

#include "fact.h"

namespace tool {

// The value of a fact as JSON, in ASCII.
std::string Json(const Fact& fact);

}  // namespace tool
