// Facts about a certificate.
#pragma once

#include "asn1/ber.h"
#include "facts/fact.h"

namespace tool {

// The root of its tree, and its octets as they were read. The fact lends both.
Fact CertificateFact(const void* root, Octets element);

}  // namespace tool
