// `tessel tree`: the elements of any BER encoding.
#pragma once

#include "input.h"

namespace tool {

bool ShowTree(const Input& input);

}  // namespace tool
