// `tessel tree`: the elements of any BER encoding.
#pragma once

#include "command/input.h"

namespace tool {

void ShowTree(const Input& input);

}  // namespace tool
