// Facts about a certificate.
#pragma once

#include "fact.h"

namespace tool {

// The root of its tree, which lends what the fact tells.
Fact CertificateFact(const void* root);

}  // namespace tool
