// Facts about algorithms and public keys, by their nodes. They lend what these hold.
#pragma once

#include "asn1/ber.h"
#include "facts/fact.h"
#include "tessel/tessel.h"

namespace tool {

// The members of an AlgorithmIdentifier.
enum AlgorithmSlot : unsigned { kAlgorithm, kParameters };

// An AlgorithmIdentifier by the name of its algorithm; programs get its parameters too.
Fact AlgorithmFact(const void* identifier);

// The subject's public key, a SubjectPublicKeyInfo of the certificate: its algorithm, its size or its parameter sets.
Fact PublicKeyFact(const void* info, const Certificate* certificate);

}  // namespace tool
