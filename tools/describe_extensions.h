// Facts about extensions.
#pragma once

#include "fact.h"
#include "tessel/tessel.h"

namespace tool {

// Adds a certificate's extensions, if it has any.
void TellExtensions(Fact& fact, Certificate* certificate);

}  // namespace tool
