#include "tessel/extension_lists.hpp"

#include <algorithm>

#include "engine/buffer.h"
#include "engine/codec.h"
#include "engine/lists.h"
#include "engine/nodes.h"
#include "engine/path.h"
#include "engine/primitives.h"
#include "engine/tree_owner.h"
#include "tessel/nodes.hpp"
#include "values/oid.h"

using namespace tessel;

constinit const Asn1Item ExtensionExtendedKeyUsageItem = kExtendedKeyUsage;
constinit const Asn1Item ExtensionAuthorityInformationAccessItem = kAuthorityInformationAccess;
constinit const Asn1Item ExtensionCrlDistributionPointsItem = kCrlDistributionPoints;
constinit const Asn1Item ExtensionCertificatePoliciesItem = kCertificatePolicies;

namespace tessel {
namespace {

constexpr Path<&AccessDescription::accessMethod> kAccessMethod;
constexpr Path<&AccessDescription::accessLocation> kAccessLocation;
constexpr Path<&PolicyInformation::policyIdentifier> kPolicyIdentifier;
constexpr Path<&PolicyInformation::policyQualifiers> kQualifiersOfPolicy;
constexpr Path<&PolicyQualifierInfo::policyQualifierId> kQualifierId;

// The qualifiers of a policy, of which one is asked for by its index. TESSEL_INVALID_ARGUMENT: the policy has none.
Status LoadQualifiers(const ExtensionCertificatePolicies* list, uint32_t policyIndex, PolicyQualifiers*& qualifiers,
                      Caller at = {}) {
  const ReadSlot<PolicyQualifiers> slot = kQualifiersOfPolicy.In(ElementOf(list, policyIndex, at));
  TRY(slot.Unreachable());
  qualifiers = slot.OrNull();
  return qualifiers == nullptr ? Fail(TESSEL_INVALID_ARGUMENT, at) : Status();
}

}  // namespace
}  // namespace tessel

// Extended key usage.

uint32_t TESSEL_CALL CreateExtensionExtendedKeyUsage(ExtensionExtendedKeyUsage** list) {
  return Create(kExtendedKeyUsage, Leaves::kEmpty, list);
}

uint32_t TESSEL_CALL DecodeExtensionExtendedKeyUsage(const uint8_t* data, uint32_t size,
                                                     ExtensionExtendedKeyUsage** list) {
  return Decode(kExtendedKeyUsage, data, size, list);
}

uint32_t TESSEL_CALL EncodeExtensionExtendedKeyUsage(const ExtensionExtendedKeyUsage* list, uint8_t* buffer,
                                                     uint32_t* length) {
  return Encode(kExtendedKeyUsage, list, buffer, length);
}

uint32_t TESSEL_CALL FreeExtensionExtendedKeyUsage(ExtensionExtendedKeyUsage* list) {
  return Free(kExtendedKeyUsage, list);
}

uint32_t TESSEL_CALL GetExtensionExtendedKeyUsageCount(const ExtensionExtendedKeyUsage* list, uint32_t* count) {
  return GetCount(list, count);
}

uint32_t TESSEL_CALL AddExtensionExtendedKeyUsage(ExtensionExtendedKeyUsage* list, const uint8_t* purpose) {
  if (list == nullptr || purpose == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  const Asn1Oid source = BorrowOid(purpose);
  return AddCopy(*list, kOid, &source);
}

uint32_t TESSEL_CALL GetExtensionExtendedKeyUsage(const ExtensionExtendedKeyUsage* list, uint32_t index,
                                                  uint8_t* purpose, uint32_t* length) {
  Asn1Oid* oid = nullptr;
  TRY(GetElement(list, index, &oid));
  return DeliverOid(ContentOf(*oid), purpose, length);
}

uint32_t TESSEL_CALL RemoveExtensionExtendedKeyUsage(ExtensionExtendedKeyUsage* list, uint32_t index) {
  return RemoveElement(list, kOid, index);
}

// Authority information access.

uint32_t TESSEL_CALL CreateExtensionAuthorityInformationAccess(ExtensionAuthorityInformationAccess** list) {
  return Create(kAuthorityInformationAccess, Leaves::kEmpty, list);
}

uint32_t TESSEL_CALL DecodeExtensionAuthorityInformationAccess(const uint8_t* data, uint32_t size,
                                                               ExtensionAuthorityInformationAccess** list) {
  return Decode(kAuthorityInformationAccess, data, size, list);
}

uint32_t TESSEL_CALL EncodeExtensionAuthorityInformationAccess(const ExtensionAuthorityInformationAccess* list,
                                                               uint8_t* buffer, uint32_t* length) {
  return Encode(kAuthorityInformationAccess, list, buffer, length);
}

uint32_t TESSEL_CALL FreeExtensionAuthorityInformationAccess(ExtensionAuthorityInformationAccess* list) {
  return Free(kAuthorityInformationAccess, list);
}

uint32_t TESSEL_CALL GetExtensionAuthorityInformationAccessCount(const ExtensionAuthorityInformationAccess* list,
                                                                 uint32_t* count) {
  return GetCount(list, count);
}

uint32_t TESSEL_CALL AddExtensionAuthorityInformationAccess(ExtensionAuthorityInformationAccess* list,
                                                            const uint8_t* accessMethod,
                                                            X509GeneralName* accessLocation) {
  if (AnyNull(list, accessMethod, accessLocation) || !CanBeTaken(accessLocation)) return Fail(TESSEL_INVALID_ARGUMENT);
  // DEVIATES: the names are taken even when memory fails, where others take on success only: callers do not release
  // them then.
  TreeOwner<X509GeneralName> location(kX509GeneralName, accessLocation);
  Asn1Oid method = BorrowOid(accessMethod);
  const AccessDescription source{&method, nullptr};
  TreeOwner<AccessDescription> description(kAccessDescription);
  TRY(Copy(kAccessDescription, &source, description.Out()));
  description->accessLocation = Taken(location.Release());
  return AddNew(*list, std::move(description));
}

uint32_t TESSEL_CALL GetExtensionAuthorityInformationAccess(const ExtensionAuthorityInformationAccess* list,
                                                            uint32_t index, uint8_t* accessMethod, uint32_t* length,
                                                            X509GeneralName** accessLocation) {
  if (accessLocation != nullptr) *accessLocation = kAccessLocation.In(ElementOf(list, index)).OrNull();
  return GetOid(kAccessMethod.In(ElementOf(list, index)), accessMethod, length);
}

uint32_t TESSEL_CALL RemoveExtensionAuthorityInformationAccess(ExtensionAuthorityInformationAccess* list,
                                                               uint32_t index) {
  return RemoveElement(list, kAccessDescription, index);
}

// CRL distribution points.

uint32_t TESSEL_CALL CreateExtensionCrlDistributionPoints(ExtensionCrlDistributionPoints** list) {
  return Create(kCrlDistributionPoints, Leaves::kEmpty, list);
}

uint32_t TESSEL_CALL DecodeExtensionCrlDistributionPoints(const uint8_t* data, uint32_t size,
                                                          ExtensionCrlDistributionPoints** list) {
  return Decode(kCrlDistributionPoints, data, size, list);
}

uint32_t TESSEL_CALL EncodeExtensionCrlDistributionPoints(const ExtensionCrlDistributionPoints* list, uint8_t* buffer,
                                                          uint32_t* length) {
  return Encode(kCrlDistributionPoints, list, buffer, length);
}

uint32_t TESSEL_CALL FreeExtensionCrlDistributionPoints(ExtensionCrlDistributionPoints* list) {
  return Free(kCrlDistributionPoints, list);
}

uint32_t TESSEL_CALL GetExtensionCrlDistributionPointsCount(const ExtensionCrlDistributionPoints* list,
                                                            uint32_t* count) {
  return GetCount(list, count);
}

uint32_t TESSEL_CALL AddExtensionCrlDistributionPoint(ExtensionCrlDistributionPoints* list, X509GeneralNames* fullName,
                                                      X509Name* relativeName, uint32_t reasons,
                                                      X509GeneralNames* cRLIssuer) {
  const bool nothing = fullName == nullptr && relativeName == nullptr && reasons == 0 && cRLIssuer == nullptr;
  if (list == nullptr || nothing || (fullName != nullptr && relativeName != nullptr)) {
    return Fail(TESSEL_INVALID_ARGUMENT);
  }
  // An object can be taken only once, so fullName and cRLIssuer must not be the same.
  const bool canBeTaken = CanBeTaken(fullName) && CanBeTaken(relativeName) && CanBeTaken(cRLIssuer);
  if (!canBeTaken || (fullName != nullptr && fullName == cRLIssuer)) return Fail(TESSEL_INVALID_ARGUMENT);
  TreeOwner<X509GeneralNames> full(kX509GeneralNames, fullName);
  TreeOwner<X509Name> relative(kX509Name, relativeName);
  TreeOwner<X509GeneralNames> issuer(kX509GeneralNames, cRLIssuer);
  // The distribution point is copied without names. The caller's own names are then put into the copy.
  DistributionPointName name{
      {fullName != nullptr ? DistributionPointName::fullName : DistributionPointName::nameRelativeToCRLIssuer,
       nullptr}};
  NamedBitsNode bits(reasons);
  const DistributionPoint source{fullName == nullptr && relativeName == nullptr ? nullptr : &name,
                                 reasons == 0 ? nullptr : bits.Member(), nullptr};
  TreeOwner<DistributionPoint> point(kDistributionPoint);
  TRY(Copy(kDistributionPoint, &source, point.Out()));
  if (fullName != nullptr) point->distributionPoint->value = Taken(full.Release());
  if (relativeName != nullptr) point->distributionPoint->value = Taken(relative.Release());
  point->cRLIssuer = Taken(issuer.Release());
  return AddNew(*list, std::move(point));
}

uint32_t TESSEL_CALL GetExtensionCrlDistributionPoint(const ExtensionCrlDistributionPoints* list, uint32_t index,
                                                      X509GeneralNames** fullName, X509Name** relativeName,
                                                      uint32_t* reasons, X509GeneralNames** cRLIssuer) {
  if (AnyNull(fullName, relativeName, reasons, cRLIssuer)) return Fail(TESSEL_INVALID_ARGUMENT);
  *fullName = nullptr;
  *relativeName = nullptr;
  *reasons = 0;
  *cRLIssuer = nullptr;
  DistributionPoint* point = nullptr;
  TRY(GetElement(list, index, &point));
  if (const DistributionPointName* name = point->distributionPoint; name != nullptr) {
    if (name->index >= kDistributionPointName.memberCount) return Fail(TESSEL_WRONG_ALTERNATIVE);
    if (name->index == DistributionPointName::fullName) {
      *fullName = static_cast<X509GeneralNames*>(name->value);
    } else {
      *relativeName = static_cast<X509Name*>(name->value);
    }
  }
  if (point->reasons != nullptr) *reasons = NamedBitsOf(*point->reasons);
  *cRLIssuer = point->cRLIssuer;
  return Status();
}

uint32_t TESSEL_CALL RemoveExtensionCrlDistributionPoint(ExtensionCrlDistributionPoints* list, uint32_t index) {
  return RemoveElement(list, kDistributionPoint, index);
}

// Certificate policies.

uint32_t TESSEL_CALL CreateExtensionCertificatePolicies(ExtensionCertificatePolicies** list) {
  return Create(kCertificatePolicies, Leaves::kEmpty, list);
}

uint32_t TESSEL_CALL DecodeExtensionCertificatePolicies(const uint8_t* data, uint32_t size,
                                                        ExtensionCertificatePolicies** list) {
  return Decode(kCertificatePolicies, data, size, list);
}

uint32_t TESSEL_CALL EncodeExtensionCertificatePolicies(const ExtensionCertificatePolicies* list, uint8_t* buffer,
                                                        uint32_t* length) {
  return Encode(kCertificatePolicies, list, buffer, length);
}

uint32_t TESSEL_CALL FreeExtensionCertificatePolicies(ExtensionCertificatePolicies* list) {
  return Free(kCertificatePolicies, list);
}

uint32_t TESSEL_CALL GetExtensionPolicyInformationCount(const ExtensionCertificatePolicies* list, uint32_t* count) {
  return GetCount(list, count);
}

uint32_t TESSEL_CALL AddExtensionPolicyInformation(ExtensionCertificatePolicies* list, const uint8_t* policy,
                                                   uint32_t* index) {
  if (list == nullptr || policy == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  Asn1Oid identifier = BorrowOid(policy);
  const PolicyInformation source{&identifier, nullptr};
  Status status = AddCopy(*list, kPolicyInformation, &source);
  if (status.Ok() && index != nullptr) *index = list->count - 1;
  return status;
}

uint32_t TESSEL_CALL GetExtensionPolicyInformation(const ExtensionCertificatePolicies* list, uint32_t index,
                                                   uint8_t* policy, uint32_t* length) {
  return GetOid(kPolicyIdentifier.In(ElementOf(list, index)), policy, length);
}

uint32_t TESSEL_CALL RemoveExtensionPolicyInformation(ExtensionCertificatePolicies* list, uint32_t index) {
  return RemoveElement(list, kPolicyInformation, index);
}

uint32_t TESSEL_CALL GetExtensionPolicyQualifiersCount(const ExtensionCertificatePolicies* list, uint32_t policyIndex,
                                                       uint32_t* count) {
  if (count == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  Asn1Oid* identifier = nullptr;
  TRY(kPolicyIdentifier.In(ElementOf(list, policyIndex)).Load(identifier));
  const PolicyQualifiers* qualifiers = kQualifiersOfPolicy.In(ElementOf(list, policyIndex)).OrNull();
  *count = qualifiers == nullptr ? 0 : qualifiers->count;
  return Status();
}

uint32_t TESSEL_CALL AddExtensionPolicyQualifier(ExtensionCertificatePolicies* list, uint32_t policyIndex,
                                                 const uint8_t* qualifierId, const uint8_t* /*qualifier*/,
                                                 uint32_t /*size*/) {
  if (qualifierId == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  PolicyInformation* policy = nullptr;
  TRY(GetElement(list, policyIndex, &policy));
  // DEVIATES: the qualifier that is added has the policy's identifier, and not `qualifierId` and `qualifier`: programs
  // that have qualifiers build the value themselves.
  const PolicyQualifierInfo standIn{policy->policyIdentifier, nullptr};
  return AddCopyTo(kQualifiersOfPolicy.In(policy), kPolicyQualifiers, kPolicyQualifierInfo, &standIn);
}

uint32_t TESSEL_CALL GetExtensionPolicyQualifier(const ExtensionCertificatePolicies* list, uint32_t policyIndex,
                                                 uint32_t qualifierIndex, uint8_t* qualifierId,
                                                 uint32_t* qualifierIdLength, uint8_t* qualifier,
                                                 uint32_t* qualifierLength) {
  if (qualifierIdLength == nullptr || qualifierLength == nullptr) return Fail(TESSEL_INVALID_ARGUMENT);
  PolicyQualifiers* qualifiers = nullptr;
  TRY(LoadQualifiers(list, policyIndex, qualifiers));
  PolicyQualifierInfo* info = nullptr;
  TRY(GetElement(qualifiers, qualifierIndex, &info));
  const Octets encoding = info->qualifier == nullptr ? Octets() : ContentOf(*info->qualifier);
  Status qualifierStatus = Deliver(encoding, qualifier, qualifierLength);
  Status idStatus = GetOid(kQualifierId.In(info), qualifierId, qualifierIdLength);
  return FirstFailure(qualifierStatus, idStatus);
}

uint32_t TESSEL_CALL RemoveExtensionPolicyQualifier(ExtensionCertificatePolicies* list, uint32_t policyIndex,
                                                    uint32_t qualifierIndex) {
  PolicyQualifiers* qualifiers = nullptr;
  TRY(LoadQualifiers(list, policyIndex, qualifiers));
  return RemoveElement(qualifiers, kPolicyQualifierInfo, qualifierIndex);
}
