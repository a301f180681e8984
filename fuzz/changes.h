// Changes an object, whatever it holds, so that it is a mixture of what was decoded and what was put there later.
#pragma once

#include "tessel/tessel.h"

namespace fuzz {

void ChangeName(X509Name* name);
void ChangeGeneralNames(X509GeneralNames* names);
void ChangeFreeText(PKIFreeText* text);
void ChangeExtension(X509Extension* extension);
void ChangeExtensions(X509ExtensionsSlot* slot);
void ChangeExtendedKeyUsage(ExtensionExtendedKeyUsage* list);
void ChangeAccessDescriptions(ExtensionAuthorityInformationAccess* list);
void ChangeDistributionPoints(ExtensionCrlDistributionPoints* list);
void ChangePolicies(ExtensionCertificatePolicies* list);
void ChangeCertificate(Certificate* certificate);
void ChangeCertificates(Certificates* certificates);

}  // namespace fuzz
