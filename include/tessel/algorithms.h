/* Algorithm identifiers and public keys (RFC 5280, 4.1.1.2 and 4.1.2.7). */
#ifndef TESSEL_ALGORITHMS_H
#define TESSEL_ALGORITHMS_H

#include "tessel/descriptor.h"

#ifdef __cplusplus
extern "C" {
#endif

/* SubjectPublicKeyInfo ::= SEQUENCE { algorithm AlgorithmIdentifier, subjectPublicKey BIT STRING }
 * AlgorithmIdentifier ::= SEQUENCE { algorithm OBJECT IDENTIFIER, parameters ANY OPTIONAL } */
typedef struct SubjectPublicKeyInfo SubjectPublicKeyInfo;
TESSEL_API extern const Asn1Item SubjectPublicKeyInfoItem;

#ifdef __cplusplus
}
#endif

#endif
