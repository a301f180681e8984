#include "peers/openssl_templates.h"

#include <openssl/x509.h>

#include <utility>

namespace bench::openssl {
namespace {

// Lists are declared without the type of their elements, which the templates name.
using Stack = OPENSSL_STACK;

struct PlainAttribute {
  ASN1_OBJECT* type;
  ASN1_TYPE* value;
};

struct PlainKey {
  X509_ALGOR* algorithm;
  ASN1_BIT_STRING* key;
};

struct PlainTbsCertificate {
  ASN1_INTEGER* version;
  ASN1_INTEGER* serialNumber;
  X509_ALGOR* signature;
  Stack* issuer;
  X509_VAL* validity;
  Stack* subject;
  PlainKey* key;
  ASN1_BIT_STRING* issuerUniqueId;
  ASN1_BIT_STRING* subjectUniqueId;
  Stack* extensions;
};

struct PlainCertificate {
  PlainTbsCertificate* tbsCertificate;
  X509_ALGOR* algorithm;
  ASN1_BIT_STRING* signature;
};

struct PlainRevoked {
  ASN1_INTEGER* serialNumber;
  ASN1_TIME* date;
  Stack* extensions;
};

struct PlainTbsCrl {
  ASN1_INTEGER* version;
  X509_ALGOR* signature;
  Stack* issuer;
  ASN1_TIME* thisUpdate;
  ASN1_TIME* nextUpdate;
  Stack* revoked;
  Stack* extensions;
};

struct PlainCrl {
  PlainTbsCrl* tbsCrl;
  X509_ALGOR* algorithm;
  ASN1_BIT_STRING* signature;
};

struct PlainNest {
  ASN1_INTEGER* number;
  PlainNest* inner;
};

// The macros end without a semicolon, which clang-format does not expect.
// clang-format off
ASN1_SEQUENCE(PlainAttribute) = {
    ASN1_SIMPLE(PlainAttribute, type, ASN1_OBJECT),
    ASN1_SIMPLE(PlainAttribute, value, ASN1_ANY),
} static_ASN1_SEQUENCE_END(PlainAttribute)

ASN1_ITEM_TEMPLATE(PlainRdn) =
    ASN1_EX_TEMPLATE_TYPE(ASN1_TFLG_SET_OF, 0, Rdn, PlainAttribute)
static_ASN1_ITEM_TEMPLATE_END(PlainRdn)

ASN1_ITEM_TEMPLATE(PlainName) =
    ASN1_EX_TEMPLATE_TYPE(ASN1_TFLG_SEQUENCE_OF, 0, Name, PlainRdn)
static_ASN1_ITEM_TEMPLATE_END(PlainName)

ASN1_SEQUENCE(PlainKey) = {
    ASN1_SIMPLE(PlainKey, algorithm, X509_ALGOR),
    ASN1_SIMPLE(PlainKey, key, ASN1_BIT_STRING),
} static_ASN1_SEQUENCE_END(PlainKey)

ASN1_SEQUENCE(PlainTbsCertificate) = {
    ASN1_EXP_OPT(PlainTbsCertificate, version, ASN1_INTEGER, 0),
    ASN1_SIMPLE(PlainTbsCertificate, serialNumber, ASN1_INTEGER),
    ASN1_SIMPLE(PlainTbsCertificate, signature, X509_ALGOR),
    ASN1_SIMPLE(PlainTbsCertificate, issuer, PlainName),
    ASN1_SIMPLE(PlainTbsCertificate, validity, X509_VAL),
    ASN1_SIMPLE(PlainTbsCertificate, subject, PlainName),
    ASN1_SIMPLE(PlainTbsCertificate, key, PlainKey),
    ASN1_IMP_OPT(PlainTbsCertificate, issuerUniqueId, ASN1_BIT_STRING, 1),
    ASN1_IMP_OPT(PlainTbsCertificate, subjectUniqueId, ASN1_BIT_STRING, 2),
    ASN1_EXP_SEQUENCE_OF_OPT(PlainTbsCertificate, extensions, X509_EXTENSION, 3),
} static_ASN1_SEQUENCE_END(PlainTbsCertificate)

ASN1_SEQUENCE(PlainCertificate) = {
    ASN1_SIMPLE(PlainCertificate, tbsCertificate, PlainTbsCertificate),
    ASN1_SIMPLE(PlainCertificate, algorithm, X509_ALGOR),
    ASN1_SIMPLE(PlainCertificate, signature, ASN1_BIT_STRING),
} static_ASN1_SEQUENCE_END(PlainCertificate)

ASN1_SEQUENCE(PlainRevoked) = {
    ASN1_SIMPLE(PlainRevoked, serialNumber, ASN1_INTEGER),
    ASN1_SIMPLE(PlainRevoked, date, ASN1_TIME),
    ASN1_SEQUENCE_OF_OPT(PlainRevoked, extensions, X509_EXTENSION),
} static_ASN1_SEQUENCE_END(PlainRevoked)

ASN1_SEQUENCE(PlainTbsCrl) = {
    ASN1_OPT(PlainTbsCrl, version, ASN1_INTEGER),
    ASN1_SIMPLE(PlainTbsCrl, signature, X509_ALGOR),
    ASN1_SIMPLE(PlainTbsCrl, issuer, PlainName),
    ASN1_SIMPLE(PlainTbsCrl, thisUpdate, ASN1_TIME),
    ASN1_OPT(PlainTbsCrl, nextUpdate, ASN1_TIME),
    ASN1_SEQUENCE_OF_OPT(PlainTbsCrl, revoked, PlainRevoked),
    ASN1_EXP_SEQUENCE_OF_OPT(PlainTbsCrl, extensions, X509_EXTENSION, 0),
} static_ASN1_SEQUENCE_END(PlainTbsCrl)

ASN1_SEQUENCE(PlainCrl) = {
    ASN1_SIMPLE(PlainCrl, tbsCrl, PlainTbsCrl),
    ASN1_SIMPLE(PlainCrl, algorithm, X509_ALGOR),
    ASN1_SIMPLE(PlainCrl, signature, ASN1_BIT_STRING),
} static_ASN1_SEQUENCE_END(PlainCrl)

ASN1_ITEM_TEMPLATE(OctetStringSet) =
    ASN1_EX_TEMPLATE_TYPE(ASN1_TFLG_SET_OF, 0, OctetStringSet, ASN1_OCTET_STRING)
static_ASN1_ITEM_TEMPLATE_END(OctetStringSet)

static const ASN1_ITEM* PlainNest_it();

ASN1_SEQUENCE(PlainNest) = {
    ASN1_SIMPLE(PlainNest, number, ASN1_INTEGER),
    ASN1_OPT(PlainNest, inner, PlainNest),
} static_ASN1_SEQUENCE_END(PlainNest)
// clang-format on

}  // namespace

const ASN1_ITEM* CertificateTemplate() { return PlainCertificate_it(); }
const ASN1_ITEM* CrlTemplate() { return PlainCrl_it(); }
const ASN1_ITEM* OctetStringSetTemplate() { return OctetStringSet_it(); }
const ASN1_ITEM* NestTemplate() { return PlainNest_it(); }

size_t CountTemplateEntries(const ASN1_VALUE& crl) {
  return static_cast<size_t>(OPENSSL_sk_num(reinterpret_cast<const PlainCrl&>(crl).tbsCrl->revoked));
}

Octets TemplateSerialNumber(const ASN1_VALUE& certificate) {
  return OctetsOf(reinterpret_cast<const PlainCertificate&>(certificate).tbsCertificate->serialNumber);
}

void DropDefaults(ASN1_VALUE& certificate) {
  PlainTbsCertificate& tbs = *reinterpret_cast<PlainCertificate&>(certificate).tbsCertificate;
  const bool hasVersion = tbs.version != nullptr && ASN1_INTEGER_get(tbs.version) == 0;
  if (hasVersion) ASN1_INTEGER_free(std::exchange(tbs.version, nullptr));
  for (int i = 0; i < OPENSSL_sk_num(tbs.extensions); ++i) {
    auto* extension = static_cast<X509_EXTENSION*>(OPENSSL_sk_value(tbs.extensions, i));
    if (X509_EXTENSION_get_critical(extension) == 0) X509_EXTENSION_set_critical(extension, 0);
  }
}

}  // namespace bench::openssl
