// `tessel tree`: the elements of any BER encoding.
#ifndef TESSEL_TOOLS_TREE_H
#define TESSEL_TOOLS_TREE_H

#include "input.h"

namespace tool {

bool ShowTree(const Input& input);

}  // namespace tool

#endif
