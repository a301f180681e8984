// Facts for people.
#pragma once

#include <cstddef>

#include "facts/fact.h"

namespace tool {

// Writes the parts of a fact as lines, each after so many blanks. Texts of labelled neighbours stand in one column;
// what is told about a part stands below it, further in.
void WriteLines(const Fact& fact, size_t indent, const TextSink& write);

}  // namespace tool
