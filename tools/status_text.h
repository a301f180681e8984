// What the library's statuses mean, for people.
#ifndef TESSEL_TOOLS_STATUS_TEXT_H
#define TESSEL_TOOLS_STATUS_TEXT_H

#include <cstdint>
#include <string>

namespace tool {

std::string StatusText(uint32_t status);

}  // namespace tool

#endif
