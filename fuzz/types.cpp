#include "types.h"

#include "changes.h"
#include "getters.h"

namespace fuzz {
namespace {

// A function of any type's objects, as one of nodes.
template <auto function>
void With(void* object) {
  [object]<class Node>(void (*call)(Node*)) { call(static_cast<Node*>(object)); }(function);
}

// The same for one that takes extensions in a slot.
template <auto function>
void WithSlot(X509Extensions* list) {
  X509ExtensionsSlot slot{list};
  function(&slot);
}

// By the number that an input's first octet is: append only, so that kept inputs stay what they are.
const Type kTypes[] = {
    {&CertificateItem, With<ReadCertificate>, With<ChangeCertificate>},
    {&CertificatesItem, With<ReadCertificates>, With<ChangeCertificates>},
    {&X509CrlItem, With<ReadCrl>},
    {&X509CrlsItem, With<ReadCrls>},
    {&X509RevokedCertificatesItem, With<ReadRevokedCertificates>},
    {&X509NameItem, With<ReadName>, With<ChangeName>},
    {&X509GeneralNameItem, With<ReadGeneralName>},
    {&X509GeneralNamesItem, With<ReadGeneralNames>, With<ChangeGeneralNames>},
    {&PKIFreeTextItem, With<ReadFreeText>, With<ChangeFreeText>},
    {&X509ExtensionItem, With<ReadExtension>, With<ChangeExtension>},
    {&X509ExtensionsItem, With<WithSlot<ReadExtensions>>, With<WithSlot<ChangeExtensions>>},
    {&AlgorithmIdentifierItem},
    {&SubjectPublicKeyInfoItem, With<ReadPublicKeyInfo>},
    {&AlgorithmGostR34102001ParametersItem},
    {&AlgorithmGostR34102012ParametersItem},
    {&ExtensionBasicConstraintsItem},
    {&ExtensionAuthorityKeyIdentifierItem},
    {&ExtensionPrivateKeyUsagePeriodItem},
    {&ExtensionIssuingDistributionPointItem},
    {&ExtensionExtendedKeyUsageItem, With<ReadExtendedKeyUsage>, With<ChangeExtendedKeyUsage>},
    {&ExtensionAuthorityInformationAccessItem, With<ReadAccessDescriptions>, With<ChangeAccessDescriptions>},
    {&ExtensionCrlDistributionPointsItem, With<ReadDistributionPoints>, With<ChangeDistributionPoints>},
    {&ExtensionCertificatePoliciesItem, With<ReadPolicies>, With<ChangePolicies>},
};

}  // namespace

std::span<const Type> Types() { return kTypes; }

}  // namespace fuzz
