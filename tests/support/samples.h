// Real objects.
#pragma once

#include <string>
#include <vector>

#include "support/octets.h"

namespace test {

struct Sample {
  std::string file;
  Bytes octets;
};

// The certificates of Debian's ca-certificates, and those of the corpus beside the source tree when it is there.
const std::vector<Sample>& Certificates();

// The CRLs of the corpus; none when it is not there.
const std::vector<Sample>& Crls();

// The certificate of a file in the folder samples.
Bytes ReadSample(const std::string& file);

// A CRL with so many entries, each with a serial number of 16 octets, and every second with a reason. Its signature is
// none.
Bytes MakeCrl(uint32_t entries);

}  // namespace test
