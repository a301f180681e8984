// Facts for programs.
#pragma once

#include <cstddef>

#include "facts/fact.h"

namespace tool {

// Makes what is made for the moment while a fact is written, so that lack of memory shows before anything is written:
// half an object would be no JSON. Writing takes no more memory than this.
void MakeForJson(const Fact& fact);

// Writes the value of a fact in UTF-8. Characters that could drive a terminal or disguise a text are escaped.
void WriteJson(const Fact& fact, const TextSink& write, size_t indent = 0);

}  // namespace tool
