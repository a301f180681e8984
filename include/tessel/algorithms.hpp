// Algorithm identifiers, public keys and the GOST R 34.10 parameters as types (RFC 5280, 4.1.1.2; RFC 4491; RFC 9215).
#pragma once

#include "tessel/algorithms.h"
#include "tessel/asn1.hpp"
#include "tessel/nodes.hpp"
#include "tessel/object_identifier.hpp"

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

// AlgorithmGostR34102001Parameters and AlgorithmGostR34102012Parameters alike: they differ in the DEFAULT.
struct AlgorithmGostR3410Parameters {
  Asn1Oid* publicKeyParamSet;
  Asn1Oid* digestParamSet;
  Asn1Oid* encryptionParamSet;
};

inline constexpr ObjectIdentifier kGost28147CryptoProA("1.2.643.2.2.31.1");
inline constexpr ObjectIdentifier kGost28147Tc26Z("1.2.643.7.1.2.5.1.1");
inline constexpr Asn1Oid kGost28147CryptoProANode = BorrowOid(kGost28147CryptoProA.Counted());
inline constexpr Asn1Oid kGost28147Tc26ZNode = BorrowOid(kGost28147Tc26Z.Counted());

inline constexpr auto kAlgorithmGostR34102001Parameters = Sequence{
    Member<&AlgorithmGostR3410Parameters::publicKeyParamSet, kOid>,
    Member<&AlgorithmGostR3410Parameters::digestParamSet, kOid>,
    Member<&AlgorithmGostR3410Parameters::encryptionParamSet, Default<kOid, kGost28147CryptoProANode>>,
};

inline constexpr auto kAlgorithmGostR34102012Parameters = Sequence{
    Member<&AlgorithmGostR3410Parameters::publicKeyParamSet, kOid>,
    Member<&AlgorithmGostR3410Parameters::digestParamSet, kOid>,
    Member<&AlgorithmGostR3410Parameters::encryptionParamSet, Default<kOid, kGost28147Tc26ZNode>>,
};

}  // namespace tessel
