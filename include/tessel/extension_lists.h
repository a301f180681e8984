/* The values of the standard extensions that are lists (RFC 5280, 4.2). What holds for all four of them:
 *
 * Create makes an empty list and Decode reads one, which the caller frees with Free; Free always returns 0. Encode
 * writes it. Count tells how many elements there are. Add appends an element; Get reads the one at an index, Remove
 * releases it. An index that the list does not have is TESSEL_INVALID_ARGUMENT, an empty slot of it or a missing field
 * TESSEL_ABSENT. Identifiers are counted identifiers, which Add copies. Names that Get gives are lent. Names that Add
 * is given, each of them once, are taken when the arguments are in order: also when there is not memory enough for the
 * new element (TESSEL_OUT_OF_MEMORY), then they are released with it. A location without an alternative can be added;
 * encoding is TESSEL_ABSENT then. */
#ifndef TESSEL_EXTENSION_LISTS_H
#define TESSEL_EXTENSION_LISTS_H

#include <stdint.h>

#include "tessel/descriptor.h"
#include "tessel/names.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ExtensionExtendedKeyUsage ::= SEQUENCE OF OBJECT IDENTIFIER (4.2.1.12) */
typedef struct ExtensionExtendedKeyUsage ExtensionExtendedKeyUsage;
TESSEL_API extern const Asn1Item ExtensionExtendedKeyUsageItem;

/* CreateExtensionExtendedKeyUsage, DecodeExtensionExtendedKeyUsage, EncodeExtensionExtendedKeyUsage,
 * FreeExtensionExtendedKeyUsage, GetExtensionExtendedKeyUsageCount, AddExtensionExtendedKeyUsage,
 * GetExtensionExtendedKeyUsage, RemoveExtensionExtendedKeyUsage: the functions of a list of purposes. */
TESSEL_API uint32_t TESSEL_CALL CreateExtensionExtendedKeyUsage(ExtensionExtendedKeyUsage** list);
TESSEL_API uint32_t TESSEL_CALL DecodeExtensionExtendedKeyUsage(const uint8_t* data, uint32_t size,
                                                                ExtensionExtendedKeyUsage** list);
TESSEL_API uint32_t TESSEL_CALL EncodeExtensionExtendedKeyUsage(const ExtensionExtendedKeyUsage* list, uint8_t* buffer,
                                                                uint32_t* length);
TESSEL_API uint32_t TESSEL_CALL FreeExtensionExtendedKeyUsage(ExtensionExtendedKeyUsage* list);
TESSEL_API uint32_t TESSEL_CALL GetExtensionExtendedKeyUsageCount(const ExtensionExtendedKeyUsage* list,
                                                                  uint32_t* count);
TESSEL_API uint32_t TESSEL_CALL AddExtensionExtendedKeyUsage(ExtensionExtendedKeyUsage* list, const uint8_t* purpose);
TESSEL_API uint32_t TESSEL_CALL GetExtensionExtendedKeyUsage(const ExtensionExtendedKeyUsage* list, uint32_t index,
                                                             uint8_t* purpose, uint32_t* length);
TESSEL_API uint32_t TESSEL_CALL RemoveExtensionExtendedKeyUsage(ExtensionExtendedKeyUsage* list, uint32_t index);

/* ExtensionAuthorityInformationAccess ::= SEQUENCE OF SEQUENCE {
 *   accessMethod   OBJECT IDENTIFIER,
 *   accessLocation X509GeneralName } (4.2.2.1) */
typedef struct ExtensionAuthorityInformationAccess ExtensionAuthorityInformationAccess;
TESSEL_API extern const Asn1Item ExtensionAuthorityInformationAccessItem;

/* CreateExtensionAuthorityInformationAccess, DecodeExtensionAuthorityInformationAccess,
 * EncodeExtensionAuthorityInformationAccess, FreeExtensionAuthorityInformationAccess,
 * GetExtensionAuthorityInformationAccessCount, AddExtensionAuthorityInformationAccess,
 * GetExtensionAuthorityInformationAccess, RemoveExtensionAuthorityInformationAccess: the functions of a list of access
 * descriptions. Get's `accessLocation` can be null. */
TESSEL_API uint32_t TESSEL_CALL CreateExtensionAuthorityInformationAccess(ExtensionAuthorityInformationAccess** list);
TESSEL_API uint32_t TESSEL_CALL DecodeExtensionAuthorityInformationAccess(const uint8_t* data, uint32_t size,
                                                                          ExtensionAuthorityInformationAccess** list);
TESSEL_API uint32_t TESSEL_CALL EncodeExtensionAuthorityInformationAccess(
    const ExtensionAuthorityInformationAccess* list, uint8_t* buffer, uint32_t* length);
TESSEL_API uint32_t TESSEL_CALL FreeExtensionAuthorityInformationAccess(ExtensionAuthorityInformationAccess* list);
TESSEL_API uint32_t TESSEL_CALL
GetExtensionAuthorityInformationAccessCount(const ExtensionAuthorityInformationAccess* list, uint32_t* count);
TESSEL_API uint32_t TESSEL_CALL AddExtensionAuthorityInformationAccess(ExtensionAuthorityInformationAccess* list,
                                                                       const uint8_t* accessMethod,
                                                                       X509GeneralName* accessLocation);
TESSEL_API uint32_t TESSEL_CALL GetExtensionAuthorityInformationAccess(const ExtensionAuthorityInformationAccess* list,
                                                                       uint32_t index, uint8_t* accessMethod,
                                                                       uint32_t* length,
                                                                       X509GeneralName** accessLocation);
TESSEL_API uint32_t TESSEL_CALL RemoveExtensionAuthorityInformationAccess(ExtensionAuthorityInformationAccess* list,
                                                                          uint32_t index);

/* ExtensionCrlDistributionPoints ::= SEQUENCE OF SEQUENCE {
 *   distributionPoint [0] EXPLICIT DistributionPointName OPTIONAL,
 *   reasons           [1] IMPLICIT BIT STRING OPTIONAL,
 *   cRLIssuer         [2] IMPLICIT X509GeneralNames OPTIONAL } (4.2.1.13)
 * DistributionPointName ::= CHOICE {
 *   fullName                [0] IMPLICIT X509GeneralNames,
 *   nameRelativeToCRLIssuer [1] IMPLICIT X509Name }
 * The relative name is a whole X509Name, where RFC 5280 has one RDN. */
typedef struct ExtensionCrlDistributionPoints ExtensionCrlDistributionPoints;
TESSEL_API extern const Asn1Item ExtensionCrlDistributionPointsItem;

/* CreateExtensionCrlDistributionPoints, DecodeExtensionCrlDistributionPoints, EncodeExtensionCrlDistributionPoints,
 * FreeExtensionCrlDistributionPoints, GetExtensionCrlDistributionPointsCount, AddExtensionCrlDistributionPoint,
 * GetExtensionCrlDistributionPoint, RemoveExtensionCrlDistributionPoint: the functions of a list of distribution
 * points.
 *
 * Add: null names, and reasons 0, are absent. TESSEL_INVALID_ARGUMENT: nothing at all is given, or both names.
 * Get: every output is required; what is absent is null or 0. TESSEL_WRONG_ALTERNATIVE: the point has another kind of
 * name. */
TESSEL_API uint32_t TESSEL_CALL CreateExtensionCrlDistributionPoints(ExtensionCrlDistributionPoints** list);
TESSEL_API uint32_t TESSEL_CALL DecodeExtensionCrlDistributionPoints(const uint8_t* data, uint32_t size,
                                                                     ExtensionCrlDistributionPoints** list);
TESSEL_API uint32_t TESSEL_CALL EncodeExtensionCrlDistributionPoints(const ExtensionCrlDistributionPoints* list,
                                                                     uint8_t* buffer, uint32_t* length);
TESSEL_API uint32_t TESSEL_CALL FreeExtensionCrlDistributionPoints(ExtensionCrlDistributionPoints* list);
TESSEL_API uint32_t TESSEL_CALL GetExtensionCrlDistributionPointsCount(const ExtensionCrlDistributionPoints* list,
                                                                       uint32_t* count);
TESSEL_API uint32_t TESSEL_CALL AddExtensionCrlDistributionPoint(ExtensionCrlDistributionPoints* list,
                                                                 X509GeneralNames* fullName, X509Name* relativeName,
                                                                 uint32_t reasons, X509GeneralNames* cRLIssuer);
TESSEL_API uint32_t TESSEL_CALL GetExtensionCrlDistributionPoint(const ExtensionCrlDistributionPoints* list,
                                                                 uint32_t index, X509GeneralNames** fullName,
                                                                 X509Name** relativeName, uint32_t* reasons,
                                                                 X509GeneralNames** cRLIssuer);
TESSEL_API uint32_t TESSEL_CALL RemoveExtensionCrlDistributionPoint(ExtensionCrlDistributionPoints* list,
                                                                    uint32_t index);

/* ExtensionCertificatePolicies ::= SEQUENCE OF SEQUENCE {
 *   policyIdentifier OBJECT IDENTIFIER,
 *   policyQualifiers SEQUENCE OF SEQUENCE { policyQualifierId OBJECT IDENTIFIER, qualifier ANY } OPTIONAL } (4.2.1.4)
 */
typedef struct ExtensionCertificatePolicies ExtensionCertificatePolicies;
TESSEL_API extern const Asn1Item ExtensionCertificatePoliciesItem;

/* CreateExtensionCertificatePolicies, DecodeExtensionCertificatePolicies, EncodeExtensionCertificatePolicies,
 * FreeExtensionCertificatePolicies, GetExtensionPolicyInformationCount, AddExtensionPolicyInformation,
 * GetExtensionPolicyInformation, RemoveExtensionPolicyInformation: the functions of a list of policies. Add makes a
 * policy without qualifiers, and tells its index when `index` is not null. */
TESSEL_API uint32_t TESSEL_CALL CreateExtensionCertificatePolicies(ExtensionCertificatePolicies** list);
TESSEL_API uint32_t TESSEL_CALL DecodeExtensionCertificatePolicies(const uint8_t* data, uint32_t size,
                                                                   ExtensionCertificatePolicies** list);
TESSEL_API uint32_t TESSEL_CALL EncodeExtensionCertificatePolicies(const ExtensionCertificatePolicies* list,
                                                                   uint8_t* buffer, uint32_t* length);
TESSEL_API uint32_t TESSEL_CALL FreeExtensionCertificatePolicies(ExtensionCertificatePolicies* list);
TESSEL_API uint32_t TESSEL_CALL GetExtensionPolicyInformationCount(const ExtensionCertificatePolicies* list,
                                                                   uint32_t* count);
TESSEL_API uint32_t TESSEL_CALL AddExtensionPolicyInformation(ExtensionCertificatePolicies* list, const uint8_t* policy,
                                                              uint32_t* index);
TESSEL_API uint32_t TESSEL_CALL GetExtensionPolicyInformation(const ExtensionCertificatePolicies* list, uint32_t index,
                                                              uint8_t* policy, uint32_t* length);
TESSEL_API uint32_t TESSEL_CALL RemoveExtensionPolicyInformation(ExtensionCertificatePolicies* list, uint32_t index);

/* How many qualifiers a policy has. TESSEL_ABSENT: the policy has no identifier. */
TESSEL_API uint32_t TESSEL_CALL GetExtensionPolicyQualifiersCount(const ExtensionCertificatePolicies* list,
                                                                  uint32_t policyIndex, uint32_t* count);

/* Does NOT add the qualifier that it is given: what it appends to the policy's qualifiers is an entry that reads as the
 * policy itself, with the policy's identifier and no qualifier. A list with such an entry can be read, copied, changed
 * and released; encoding it is TESSEL_ABSENT, for the qualifier that is missing. Callers that need qualifiers build the
 * tree of the value themselves, with CreateAsn1Object and Asn1DecodeItem, and ExtensionCertificatePoliciesItem. */
TESSEL_API uint32_t TESSEL_CALL AddExtensionPolicyQualifier(ExtensionCertificatePolicies* list, uint32_t policyIndex,
                                                            const uint8_t* qualifierId, const uint8_t* qualifier,
                                                            uint32_t size);

/* Reads a qualifier: its identifier and its element. The element is copied first, if its buffer suffices, its length is
 * written in any case, and then the identifier is. TESSEL_BUFFER_TOO_SMALL: either buffer is too small.
 * TESSEL_INVALID_ARGUMENT: no such policy or qualifier. */
TESSEL_API uint32_t TESSEL_CALL GetExtensionPolicyQualifier(const ExtensionCertificatePolicies* list,
                                                            uint32_t policyIndex, uint32_t qualifierIndex,
                                                            uint8_t* qualifierId, uint32_t* qualifierIdLength,
                                                            uint8_t* qualifier, uint32_t* qualifierLength);

/* Removes a qualifier. TESSEL_INVALID_ARGUMENT: no such policy or qualifier. */
TESSEL_API uint32_t TESSEL_CALL RemoveExtensionPolicyQualifier(ExtensionCertificatePolicies* list, uint32_t policyIndex,
                                                               uint32_t qualifierIndex);

#ifdef __cplusplus
}
#endif

#endif
