// Facts for programs.
#pragma once

#include "facts/fact.h"

namespace tool {

// Prints the value of a fact as an item of the JSON list (report.h), in UTF-8. Characters that could drive a terminal
// or disguise a text are escaped. When it throws nothing has been printed.
void PrintJsonListItem(const Fact& fact);

}  // namespace tool
