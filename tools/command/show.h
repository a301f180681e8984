// `tessel show`: an object as people or programs want it.
#pragma once

#include "command/input.h"

namespace tool {

void ShowObject(const Input& input);

// The same as one value of a JSON list.
void ShowObjectAsJson(const Input& input);

}  // namespace tool
