// Readers of what extensions hold.
#pragma once

#include "ber.h"
#include "fact.h"

namespace tool {

// Makes the fact about a value from its encoding. A status other than 0: the value does not decode.
using ExtensionReader = uint32_t (*)(Octets value, Fact& fact);

// Reads a value by the library's functions for it (extension_values.h).
uint32_t ReadKeyUsage(Octets value, Fact& fact);
uint32_t ReadNetscapeCertificateType(Octets value, Fact& fact);
uint32_t ReadExtendedKeyUsage(Octets value, Fact& fact);
uint32_t ReadBasicConstraints(Octets value, Fact& fact);
uint32_t ReadSubjectKeyIdentifier(Octets value, Fact& fact);
uint32_t ReadAuthorityKeyIdentifier(Octets value, Fact& fact);
uint32_t ReadGeneralNames(Octets value, Fact& fact);
uint32_t ReadInformationAccess(Octets value, Fact& fact);
uint32_t ReadPrivateKeyUsagePeriod(Octets value, Fact& fact);
uint32_t ReadCertificatePolicies(Octets value, Fact& fact);
uint32_t ReadCrlDistributionPoints(Octets value, Fact& fact);

// Reads a value by a descriptor of its own.
uint32_t ReadPolicyMappings(Octets value, Fact& fact);
uint32_t ReadPolicyConstraints(Octets value, Fact& fact);
uint32_t ReadInhibitAnyPolicy(Octets value, Fact& fact);
uint32_t ReadNameConstraints(Octets value, Fact& fact);
uint32_t ReadSubjectDirectoryAttributes(Octets value, Fact& fact);
uint32_t ReadTlsFeatures(Octets value, Fact& fact);
uint32_t ReadIssuerSignTool(Octets value, Fact& fact);

// Reads a value that is a single string, number, time or identifier.
uint32_t ReadSingleValue(Octets value, Fact& fact);

}  // namespace tool
