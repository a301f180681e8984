// The commands on one input, by their names.
#pragma once

#include "command/input.h"

namespace tool {

// `tessel show`: an object as people want it, or programs, as one value of a JSON list.
void ShowObject(const Input& input);
void ShowObjectAsJson(const Input& input);

// `tessel tree`: the elements of any BER encoding.
void ShowTree(const Input& input);

}  // namespace tool
