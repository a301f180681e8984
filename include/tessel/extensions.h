/* Extensions (RFC 5280, 4.1 and 4.2). */
#ifndef TESSEL_EXTENSIONS_H
#define TESSEL_EXTENSIONS_H

#include "tessel/descriptor.h"

#ifdef __cplusplus
extern "C" {
#endif

/* X509Extension ::= SEQUENCE { extnID OBJECT IDENTIFIER, critical BOOLEAN DEFAULT FALSE, extnValue OCTET STRING } */
typedef struct X509Extension X509Extension;
TESSEL_API extern const Asn1Item X509ExtensionItem;

/* X509Extensions ::= SEQUENCE OF X509Extension */
typedef struct X509Extensions X509Extensions;
TESSEL_API extern const Asn1Item X509ExtensionsItem;

#ifdef __cplusplus
}
#endif

#endif
