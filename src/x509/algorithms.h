// Algorithm identifiers and public keys (RFC 5280, 4.1.1.2 and 4.1.2.7).
#pragma once

#include "engine/descriptor.h"
#include "tessel/algorithms.h"

// AlgorithmIdentifier ::= SEQUENCE { algorithm OBJECT IDENTIFIER, parameters ANY OPTIONAL }
struct AlgorithmIdentifier {
  Asn1Oid* algorithm;
  Asn1Any* parameters;
};

struct SubjectPublicKeyInfo {
  AlgorithmIdentifier* algorithm;
  Asn1BitString* subjectPublicKey;
};

namespace tessel {

inline constexpr auto kAlgorithmIdentifier = Sequence{
    Member<&AlgorithmIdentifier::algorithm, kOid>,
    Member<&AlgorithmIdentifier::parameters, Optional<kAny>>,
};

inline constexpr auto kSubjectPublicKeyInfo = Sequence{
    Member<&SubjectPublicKeyInfo::algorithm, kAlgorithmIdentifier>,
    Member<&SubjectPublicKeyInfo::subjectPublicKey, kBitString>,
};

}  // namespace tessel
