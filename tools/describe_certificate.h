// Facts about a certificate.
#pragma once

#include "fact.h"
#include "tessel/tessel.h"

namespace tool {

// The getters of a certificate's names take one that can be changed: they make a name that is missing.
Fact CertificateFact(Certificate* certificate);

}  // namespace tool
