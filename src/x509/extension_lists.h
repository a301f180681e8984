// The values of the standard extensions that are lists.
#pragma once

#include "engine/descriptor.h"
#include "tessel/extension_lists.h"
#include "x509/extension_values.h"
#include "x509/names.h"

struct ExtensionExtendedKeyUsage : tessel::ListOf<Asn1Oid> {};

// AccessDescription ::= SEQUENCE { accessMethod OBJECT IDENTIFIER, accessLocation GeneralName }
struct AccessDescription {
  Asn1Oid* accessMethod;
  X509GeneralName* accessLocation;
};

struct ExtensionAuthorityInformationAccess : tessel::ListOf<AccessDescription> {};

struct DistributionPoint {
  DistributionPointName* distributionPoint;
  Asn1BitString* reasons;
  X509GeneralNames* cRLIssuer;
};

struct ExtensionCrlDistributionPoints : tessel::ListOf<DistributionPoint> {};

// PolicyQualifierInfo ::= SEQUENCE { policyQualifierId OBJECT IDENTIFIER, qualifier ANY }
struct PolicyQualifierInfo {
  Asn1Oid* policyQualifierId;
  Asn1Any* qualifier;
};

struct PolicyQualifiers : tessel::ListOf<PolicyQualifierInfo> {};

struct PolicyInformation {
  Asn1Oid* policyIdentifier;
  PolicyQualifiers* policyQualifiers;
};

struct ExtensionCertificatePolicies : tessel::ListOf<PolicyInformation> {};

namespace tessel {

inline constexpr auto kExtendedKeyUsage = SequenceOf<ExtensionExtendedKeyUsage, kOid>();

inline constexpr auto kAccessDescription = Sequence{
    Member<&AccessDescription::accessMethod, kOid>,
    Member<&AccessDescription::accessLocation, kX509GeneralName>,
};

inline constexpr auto kAuthorityInformationAccess =
    SequenceOf<ExtensionAuthorityInformationAccess, kAccessDescription>();

inline constexpr auto kDistributionPoint = Sequence{
    Member<&DistributionPoint::distributionPoint, Optional<Explicit<0, kDistributionPointName>>>,
    Member<&DistributionPoint::reasons, Optional<Implicit<1, kBitString>>>,
    Member<&DistributionPoint::cRLIssuer, Optional<Implicit<2, kX509GeneralNames>>>,
};

inline constexpr auto kCrlDistributionPoints = SequenceOf<ExtensionCrlDistributionPoints, kDistributionPoint>();

inline constexpr auto kPolicyQualifierInfo = Sequence{
    Member<&PolicyQualifierInfo::policyQualifierId, kOid>,
    Member<&PolicyQualifierInfo::qualifier, kAny>,
};

inline constexpr auto kPolicyQualifiers = SequenceOf<PolicyQualifiers, kPolicyQualifierInfo>();

inline constexpr auto kPolicyInformation = Sequence{
    Member<&PolicyInformation::policyIdentifier, kOid>,
    Member<&PolicyInformation::policyQualifiers, Optional<kPolicyQualifiers>>,
};

inline constexpr auto kCertificatePolicies = SequenceOf<ExtensionCertificatePolicies, kPolicyInformation>();

}  // namespace tessel
