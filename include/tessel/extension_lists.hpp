// The values of the standard extensions that are lists, as types (RFC 5280, 4.2).
#pragma once

#include "tessel/asn1.hpp"
#include "tessel/extension_lists.h"
#include "tessel/extension_values.hpp"
#include "tessel/free.hpp"
#include "tessel/names.hpp"

struct ExtensionExtendedKeyUsage : tessel::ListOf<Asn1Oid> {};

namespace tessel {

inline constexpr auto kExtendedKeyUsage = SequenceOf<ExtensionExtendedKeyUsage, kOid>();

// AccessDescription ::= SEQUENCE { accessMethod OBJECT IDENTIFIER, accessLocation GeneralName }
struct AccessDescription {
  Asn1Oid* accessMethod;
  X509GeneralName* accessLocation;
};
inline constexpr auto kAccessDescription = Sequence{
    Member<&AccessDescription::accessMethod, kOid>,
    Member<&AccessDescription::accessLocation, kX509GeneralName>,
};

struct DistributionPoint {
  DistributionPointName* distributionPoint;
  Asn1BitString* reasons;
  X509GeneralNames* cRLIssuer;
};
inline constexpr auto kDistributionPoint = Sequence{
    Member<&DistributionPoint::distributionPoint, Optional<Explicit<0, kDistributionPointName>>>,
    Member<&DistributionPoint::reasons, Optional<Implicit<1, kBitString>>>,
    Member<&DistributionPoint::cRLIssuer, Optional<Implicit<2, kX509GeneralNames>>>,
};

// PolicyQualifierInfo ::= SEQUENCE { policyQualifierId OBJECT IDENTIFIER, qualifier ANY }
struct PolicyQualifierInfo {
  Asn1Oid* policyQualifierId;
  Asn1Any* qualifier;
};
inline constexpr auto kPolicyQualifierInfo = Sequence{
    Member<&PolicyQualifierInfo::policyQualifierId, kOid>,
    Member<&PolicyQualifierInfo::qualifier, kAny>,
};

struct PolicyQualifiers : ListOf<PolicyQualifierInfo> {};
inline constexpr auto kPolicyQualifiers = SequenceOf<PolicyQualifiers, kPolicyQualifierInfo>();

struct PolicyInformation {
  Asn1Oid* policyIdentifier;
  PolicyQualifiers* policyQualifiers;
};
inline constexpr auto kPolicyInformation = Sequence{
    Member<&PolicyInformation::policyIdentifier, kOid>,
    Member<&PolicyInformation::policyQualifiers, Optional<kPolicyQualifiers>>,
};

}  // namespace tessel

struct ExtensionAuthorityInformationAccess : tessel::ListOf<tessel::AccessDescription> {};

struct ExtensionCrlDistributionPoints : tessel::ListOf<tessel::DistributionPoint> {};

struct ExtensionCertificatePolicies : tessel::ListOf<tessel::PolicyInformation> {};

namespace tessel {

inline constexpr auto kAuthorityInformationAccess =
    SequenceOf<ExtensionAuthorityInformationAccess, kAccessDescription>();

inline constexpr auto kCrlDistributionPoints = SequenceOf<ExtensionCrlDistributionPoints, kDistributionPoint>();

inline constexpr auto kCertificatePolicies = SequenceOf<ExtensionCertificatePolicies, kPolicyInformation>();

template <>
inline constexpr auto kFreeFunction<ExtensionExtendedKeyUsage> = FreeExtensionExtendedKeyUsage;
template <>
inline constexpr auto kFreeFunction<ExtensionAuthorityInformationAccess> = FreeExtensionAuthorityInformationAccess;
template <>
inline constexpr auto kFreeFunction<ExtensionCrlDistributionPoints> = FreeExtensionCrlDistributionPoints;
template <>
inline constexpr auto kFreeFunction<ExtensionCertificatePolicies> = FreeExtensionCertificatePolicies;

}  // namespace tessel
