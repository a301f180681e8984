/* Distinguished names (RFC 5280, 4.1.2.4). */
#ifndef TESSEL_NAMES_H
#define TESSEL_NAMES_H

#include "tessel/descriptor.h"

#ifdef __cplusplus
extern "C" {
#endif

/* X509Name ::= SEQUENCE OF SET OF SEQUENCE { type OBJECT IDENTIFIER, value ANY } */
typedef struct X509Name X509Name;
TESSEL_API extern const Asn1Item X509NameItem;

#ifdef __cplusplus
}
#endif

#endif
