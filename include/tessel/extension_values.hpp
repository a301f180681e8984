// The values of the standard extensions as types (RFC 5280, 4.2 and 5.2).
#pragma once

#include "tessel/asn1.hpp"
#include "tessel/extension_values.h"
#include "tessel/names.hpp"

namespace tessel {

struct BasicConstraints {
  Asn1Value* cA;
  Asn1Value* pathLenConstraint;
};
inline constexpr auto kBasicConstraints = Sequence{
    Member<&BasicConstraints::cA, Default<kBoolean, kFalse>>,
    Member<&BasicConstraints::pathLenConstraint, Optional<kInteger>>,
};

struct AuthorityKeyIdentifier {
  Asn1Value* keyIdentifier;
  X509GeneralNames* authorityCertIssuer;
  Asn1Value* authorityCertSerialNumber;
};
inline constexpr auto kAuthorityKeyIdentifier = Sequence{
    Member<&AuthorityKeyIdentifier::keyIdentifier, Optional<Implicit<0, kOctetString>>>,
    Member<&AuthorityKeyIdentifier::authorityCertIssuer, Optional<Implicit<1, kX509GeneralNames>>>,
    Member<&AuthorityKeyIdentifier::authorityCertSerialNumber, Optional<Implicit<2, kInteger>>>,
};

struct PrivateKeyUsagePeriod {
  Asn1Value* notBefore;
  Asn1Value* notAfter;
};
inline constexpr auto kPrivateKeyUsagePeriod = Sequence{
    Member<&PrivateKeyUsagePeriod::notBefore, Optional<Implicit<0, kGeneralizedTime>>>,
    Member<&PrivateKeyUsagePeriod::notAfter, Optional<Implicit<1, kGeneralizedTime>>>,
};

struct DistributionPointName : Asn1Choice {
  enum : uint32_t { fullName, nameRelativeToCRLIssuer };
};
// DEVIATES: RFC 5280 (4.2.1.13) has one RDN for the relative name, and this a whole X509Name: programs hand in names,
// and read what they have written.
inline constexpr auto kDistributionPointName =
    Choice<DistributionPointName, Alternative<DistributionPointName::fullName, Implicit<0, kX509GeneralNames>>,
           Alternative<DistributionPointName::nameRelativeToCRLIssuer, Implicit<1, kX509Name>>>();

struct IssuingDistributionPoint {
  DistributionPointName* distributionPoint;
  Asn1Value* onlyContainsUserCerts;
  Asn1Value* onlyContainsCACerts;
  Asn1BitString* onlySomeReasons;
  Asn1Value* indirectCRL;
  Asn1Value* onlyContainsAttributeCerts;
};
// DEVIATES: the reasons have the tag [1], where RFC 5280 (5.2.5) has [3]: values that programs have written are read
// again.
// onlyContainsUserCerts has the tag [1] too: an element with this tag is read as that BOOLEAN when it can be.
template <const auto& onlyContainsUserCerts>
inline constexpr auto kIssuingDistributionPointWith = Sequence{
    Member<&IssuingDistributionPoint::distributionPoint, Optional<Explicit<0, kDistributionPointName>>>,
    Member<&IssuingDistributionPoint::onlyContainsUserCerts, onlyContainsUserCerts>,
    Member<&IssuingDistributionPoint::onlyContainsCACerts, Default<Implicit<2, kBoolean>, kFalse>>,
    Member<&IssuingDistributionPoint::onlySomeReasons, Optional<Implicit<1, kBitString>>>,
    Member<&IssuingDistributionPoint::indirectCRL, Default<Implicit<4, kBoolean>, kFalse>>,
    Member<&IssuingDistributionPoint::onlyContainsAttributeCerts, Default<Implicit<5, kBoolean>, kFalse>>,
};
inline constexpr const auto& kIssuingDistributionPoint =
    kIssuingDistributionPointWith<Default<Implicit<1, kBoolean>, kFalse>>;

}  // namespace tessel
