// Facts for people.
#pragma once

#include <string>

#include "fact.h"

namespace tool {

// The parts of a fact as lines, each after so many blanks. Texts of labelled neighbours stand in one column; what is
// told about a part stands below it, further in.
std::string TextLines(const Fact& fact, size_t indent);

}  // namespace tool
