// Facts for programs.
#pragma once

#include "fact.h"

namespace tool {

// Prints the value of a fact as JSON, in UTF-8. Characters that could drive a terminal or disguise a text are escaped.
void PrintJson(const Fact& fact);

}  // namespace tool
