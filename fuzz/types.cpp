#include "types.h"

#include "getters.h"

namespace fuzz {
namespace {

template <auto read>
void Read(void* object) {
  [object]<class Node>(void (*function)(Node*)) { function(static_cast<Node*>(object)); }(read);
}

// By the number that an input's first octet is: append only, so that kept inputs stay what they are.
const Type kTypes[] = {
    {&CertificateItem, Read<ReadCertificate>},
    {&CertificatesItem, Read<ReadCertificates>},
    {&X509CrlItem},
    {&X509CrlsItem},
    {&X509RevokedCertificatesItem},
    {&X509NameItem, Read<ReadName>},
    {&X509GeneralNameItem, Read<ReadGeneralName>},
    {&X509GeneralNamesItem, Read<ReadGeneralNames>},
    {&PKIFreeTextItem, Read<ReadFreeText>},
    {&X509ExtensionItem, Read<ReadExtension>},
    {&X509ExtensionsItem,
     [](void* object) {
       const X509ExtensionsSlot slot{static_cast<X509Extensions*>(object)};
       ReadExtensions(&slot);
     }},
    {&AlgorithmIdentifierItem},
    {&SubjectPublicKeyInfoItem, Read<ReadPublicKeyInfo>},
    {&AlgorithmGostR34102001ParametersItem},
    {&AlgorithmGostR34102012ParametersItem},
    {&ExtensionBasicConstraintsItem},
    {&ExtensionAuthorityKeyIdentifierItem},
    {&ExtensionPrivateKeyUsagePeriodItem},
    {&ExtensionIssuingDistributionPointItem},
    {&ExtensionExtendedKeyUsageItem, Read<ReadExtendedKeyUsage>},
    {&ExtensionAuthorityInformationAccessItem, Read<ReadAccessDescriptions>},
    {&ExtensionCrlDistributionPointsItem, Read<ReadDistributionPoints>},
    {&ExtensionCertificatePoliciesItem, Read<ReadPolicies>},
};

}  // namespace

std::span<const Type> Types() { return kTypes; }

}  // namespace fuzz
