// Which functions can come to allocate memory, by the machine code of the library under test.
#pragma once

#include <set>
#include <string>

namespace test {

struct ExportedFunctions {
  std::set<std::string> all;
  // Those from which malloc, calloc or realloc can be reached.
  std::set<std::string> allocating;
};

// Whatever function an instruction names counts as called, so that a function whose address is only taken does too.
// Not seen are addresses taken without a name, as by position-independent code for 32 bits, and what the functions of
// the C library allocate for themselves. Local functions of the same name count as one. So a function can be listed
// that never allocates; one that does is left out only if it does so through a pointer alone.
ExportedFunctions ReadCallGraph();

}  // namespace test
