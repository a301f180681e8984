/* Algorithm identifiers, public keys and the GOST R 34.10 parameters (RFC 5280, 4.1.1.2 and 4.1.2.7; RFC 4491; RFC
 * 9215). */
#ifndef TESSEL_ALGORITHMS_H
#define TESSEL_ALGORITHMS_H

#include <stdint.h>

#include "tessel/descriptor.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Reading and setting algorithm identifiers. All functions whose names end in AlgorithmOidAndParameters or
 * AlgorithmIdAndParameters work alike.
 *
 * The getters have two halves. `oid` and `oidLength` receive the algorithm as a counted identifier; `parameters` and
 * `parametersLength` the whole element of the parameters, as it is stored, or length 0 when there are none. A half
 * whose buffer and length are both null is left out; with only the length null it is TESSEL_INVALID_ARGUMENT. Both
 * halves are always answered. The status is TESSEL_BUFFER_TOO_SMALL when either buffer is too small, otherwise that of
 * the identifier, then that of the parameters.
 *
 * The setters copy a counted identifier, or the one of a number (oid.h; TESSEL_UNKNOWN_ID when the table does not have
 * it), and the parameters, an encoded element that is not checked. With null parameters, or of no octets, there are
 * none afterwards. A setter that fails leaves the algorithm identifier as it was. */

/* AlgorithmIdentifier ::= SEQUENCE { algorithm OBJECT IDENTIFIER, parameters ANY OPTIONAL } */
typedef struct AlgorithmIdentifier AlgorithmIdentifier;
TESSEL_API extern const Asn1Item AlgorithmIdentifierItem;

/* SubjectPublicKeyInfo ::= SEQUENCE { algorithm AlgorithmIdentifier, subjectPublicKey BIT STRING } */
typedef struct SubjectPublicKeyInfo SubjectPublicKeyInfo;
TESSEL_API extern const Asn1Item SubjectPublicKeyInfoItem;

/* Reads an encoded SubjectPublicKeyInfo: its algorithm and parameters, as all getters do, and the octets of its key.
 * Every output is answered; the first failure of the key, the parameters and the identifier is the status. Statuses
 * also as for Asn1DecodeItem. */
TESSEL_API uint32_t TESSEL_CALL DecodeSubjectPublicKeyInfo(const uint8_t* data, uint32_t size, uint8_t* oid,
                                                           uint32_t* oidLength, uint8_t* key, uint32_t* keyLength,
                                                           uint8_t* parameters, uint32_t* parametersLength);

/* The octets of the key. TESSEL_ABSENT: there is no key. */
TESSEL_API uint32_t TESSEL_CALL GetSubjectPublicKeyInfoPublicKey(const SubjectPublicKeyInfo* info, uint8_t* buffer,
                                                                 uint32_t* length);

/* The parameters of GOST R 34.10-2001 and 34.10-2012 keys. The mode tells what an algorithm identifier holds: 0 a NULL
 * (05 00), 1 the SEQUENCE below, 0xFF nothing. Any other mode is TESSEL_INVALID_ARGUMENT. */

/* AlgorithmGostR34102001Parameters ::= SEQUENCE {
 *   publicKeyParamSet  OBJECT IDENTIFIER,
 *   digestParamSet     OBJECT IDENTIFIER,
 *   encryptionParamSet OBJECT IDENTIFIER DEFAULT 1.2.643.2.2.31.1 } */
TESSEL_API extern const Asn1Item AlgorithmGostR34102001ParametersItem;

/* AlgorithmGostR34102012Parameters: the same with DEFAULT 1.2.643.7.1.2.5.1.1. */
TESSEL_API extern const Asn1Item AlgorithmGostR34102012ParametersItem;

/* Three tables give the parameter sets numbers.
 *
 * Public keys: 6 is 1.2.643.2.2.35.0; 1, 2, 3 are 1.2.643.2.2.35.1, .2, .3 (CryptoPro A, B, C); 4 and 5 are
 * 1.2.643.2.2.36.0 and .1 (CryptoPro XchA, XchB); 7 and 9 are 1.2.643.7.1.2.1.1.0 and .1 (256 bits: test, A); 8, 10, 11
 * and 12 are 1.2.643.7.1.2.1.2.0, .1, .2 and .3 (512 bits: test, A, B, C).
 *
 * Digests: 2 and 1 are 1.2.643.2.2.30.0 and .1 (GOST R 34.11-94); 3 and 4 are 1.2.643.7.1.1.2.2 and .3 (GOST R
 * 34.11-2012 of 256 and 512 bits).
 *
 * Encryption: 8 is 1.2.643.2.2.31.0; 1 to 7 are 1.2.643.2.2.31.1 to .7 (GOST 28147-89); 9 is 1.2.643.7.1.2.5.1.1. */

/* Tells the mode of an algorithm identifier's parameters, and in mode 1 the numbers of the three sets, whose outputs
 * are required then and untouched otherwise. Null parameters, or of no octets, are mode 0xFF. TESSEL_UNKNOWN_OID: a
 * table does not have a set. TESSEL_MALFORMED: the parameters cannot be decoded, whatever is wrong with them. */
TESSEL_API uint32_t TESSEL_CALL DecodeAlgorithmGostR34102001Parameters(const uint8_t* parameters, uint32_t size,
                                                                       uint8_t* mode, uint32_t* publicKeySet,
                                                                       uint32_t* digestSet, uint32_t* encryptionSet);

/* DecodeAlgorithmGostR3410ParameterOids: the same with counted identifiers. `algorithm` is 102, 3000 or 3001 (oid.h):
 * 102 reads AlgorithmGostR34102001Parameters, the others AlgorithmGostR34102012Parameters; any other is
 * TESSEL_INVALID_ARGUMENT. DecodeAlgorithmGostR34102001ParameterOids, DecodeAlgorithmGostR34102012ParameterOids: for
 * 102 and 3000.
 *
 * In modes 0 and 0xFF the three lengths become 0. In mode 1 every output is answered; the first failure of the
 * encryption, the digest and the public key set is the status. */
TESSEL_API uint32_t TESSEL_CALL DecodeAlgorithmGostR3410ParameterOids(uint32_t algorithm, const uint8_t* parameters,
                                                                      uint32_t size, uint8_t* mode,
                                                                      uint8_t* publicKeySet,
                                                                      uint32_t* publicKeySetLength, uint8_t* digestSet,
                                                                      uint32_t* digestSetLength, uint8_t* encryptionSet,
                                                                      uint32_t* encryptionSetLength);
TESSEL_API uint32_t TESSEL_CALL DecodeAlgorithmGostR34102001ParameterOids(
    const uint8_t* parameters, uint32_t size, uint8_t* mode, uint8_t* publicKeySet, uint32_t* publicKeySetLength,
    uint8_t* digestSet, uint32_t* digestSetLength, uint8_t* encryptionSet, uint32_t* encryptionSetLength);
TESSEL_API uint32_t TESSEL_CALL DecodeAlgorithmGostR34102012ParameterOids(
    const uint8_t* parameters, uint32_t size, uint8_t* mode, uint8_t* publicKeySet, uint32_t* publicKeySetLength,
    uint8_t* digestSet, uint32_t* digestSetLength, uint8_t* encryptionSet, uint32_t* encryptionSetLength);

/* Writes the parameters of an algorithm identifier in the caller's buffer, for algorithm 102: nothing (length 0), a
 * NULL, or in mode 1 the SEQUENCE of the sets with these numbers, which are not looked at in other modes.
 * TESSEL_UNKNOWN_ID: a table does not have a number. */
TESSEL_API uint32_t TESSEL_CALL EncodeAlgorithmGostR34102001Parameters(uint8_t mode, uint32_t publicKeySet,
                                                                       uint32_t digestSet, uint32_t encryptionSet,
                                                                       uint8_t* buffer, uint32_t* length);

/* EncodeAlgorithmGostR3410ParametersOid: the same with counted identifiers and for an `algorithm` of 102, 3000 or 3001;
 * any other is TESSEL_INVALID_ARGUMENT. A null encryption set is left out, as is one that is the DEFAULT.
 * EncodeAlgorithmGostR34102001ParametersOid, EncodeAlgorithmGostR34102012ParametersOid: for 102 and 3000. */
TESSEL_API uint32_t TESSEL_CALL EncodeAlgorithmGostR3410ParametersOid(uint32_t algorithm, uint8_t mode,
                                                                      const uint8_t* publicKeySet,
                                                                      const uint8_t* digestSet,
                                                                      const uint8_t* encryptionSet, uint8_t* buffer,
                                                                      uint32_t* length);
TESSEL_API uint32_t TESSEL_CALL EncodeAlgorithmGostR34102001ParametersOid(uint8_t mode, const uint8_t* publicKeySet,
                                                                          const uint8_t* digestSet,
                                                                          const uint8_t* encryptionSet, uint8_t* buffer,
                                                                          uint32_t* length);
TESSEL_API uint32_t TESSEL_CALL EncodeAlgorithmGostR34102012ParametersOid(uint8_t mode, const uint8_t* publicKeySet,
                                                                          const uint8_t* digestSet,
                                                                          const uint8_t* encryptionSet, uint8_t* buffer,
                                                                          uint32_t* length);

/* Sets an algorithm identifier: the algorithm by its number (oid.h), the parameters by
 * EncodeAlgorithmGostR34102001Parameters. */
TESSEL_API uint32_t TESSEL_CALL SetAlgorithmGostR34102001AndParameters(AlgorithmIdentifier* identifier,
                                                                       uint32_t algorithm, uint8_t mode,
                                                                       uint32_t publicKeySet, uint32_t digestSet,
                                                                       uint32_t encryptionSet);

#ifdef __cplusplus
}
#endif

#endif
