// Facts about a certificate.
#pragma once

#include "ber.h"
#include "fact.h"

namespace tool {

// The root of its tree, and its octets as they were read. The fact lends both.
Fact CertificateFact(const void* root, Octets element);

}  // namespace tool
