#include "x509/extensions.h"

constinit const Asn1Item X509ExtensionItem = tessel::kX509Extension;
constinit const Asn1Item X509ExtensionsItem = tessel::kX509Extensions;
