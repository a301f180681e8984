// What the library's statuses mean, for people.
#pragma once

#include <cstdint>
#include <string>

namespace tool {

std::string StatusText(uint32_t status);

}  // namespace tool
