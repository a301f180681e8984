// `tessel show`: an object in a layout for people.
#pragma once

#include "input.h"

namespace tool {

bool ShowObject(const Input& input);

}  // namespace tool
