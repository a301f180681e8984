#include "input.h"

#include <cstdio>

namespace fuzz {

void Require(bool holds, const char* file, int line) {
  if (holds) return;
  std::fprintf(stderr, "%s:%d: does not hold\n", file, line);
  std::abort();
}

}  // namespace fuzz
