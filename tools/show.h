// `tessel show`: an object in a layout for people.
#ifndef TESSEL_TOOLS_SHOW_H
#define TESSEL_TOOLS_SHOW_H

#include "input.h"

namespace tool {

bool ShowObject(const Input& input);

}  // namespace tool

#endif
