// Types of ASN.1 described by OpenSSL's own templates, but without what OpenSSL's own types do beside: no call-back
// decodes a key, normalises a name or keeps an encoding.
#pragma once

#include <openssl/asn1t.h>

#include <memory>

#include "inputs.h"

namespace bench::openssl {

const ASN1_ITEM* CertificateTemplate();
const ASN1_ITEM* CrlTemplate();
const ASN1_ITEM* OctetStringSetTemplate();
const ASN1_ITEM* NestTemplate();

// How many entries a value of CrlTemplate has; the octets of a serial number in one of CertificateTemplate.
size_t CountTemplateEntries(const ASN1_VALUE& crl);
Octets TemplateSerialNumber(const ASN1_VALUE& certificate);

// The templates know no DEFAULT: takes away a version and criticalities that are it, and need not have been written.
void DropDefaults(ASN1_VALUE& certificate);

struct TemplateDeleter {
  const ASN1_ITEM* item;
  void operator()(ASN1_VALUE* value) const { ASN1_item_free(value, item); }
};
using TemplateValue = std::unique_ptr<ASN1_VALUE, TemplateDeleter>;

inline Octets OctetsOf(const ASN1_STRING* string) {
  return {ASN1_STRING_get0_data(string), static_cast<size_t>(ASN1_STRING_length(string))};
}

}  // namespace bench::openssl
