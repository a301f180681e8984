/* Builds the certificate of an authority from its public key, a key for ECDSA. Without an argument it prints the octets
 * to be signed, as PEM; with their signature as its argument, in Base64, the certificate. */
#include <string.h>

#include "console.h"

static const uint8_t kCommonName[] = {3, 0x55, 0x04, 0x03};       /* 2.5.4.3 */
static const uint8_t kBasicConstraints[] = {3, 0x55, 0x1D, 0x13}; /* 2.5.29.19 */
static const uint8_t kSerialNumber[] = {0x2A, 0x17, 0x80, 0x01};
static const char kName[] = "Пример УЦ";

static uint32_t SetKey(Certificate* certificate, const Octets* publicKeyInfo) {
  uint8_t algorithm[256], key[2048], parameters[256];
  uint32_t algorithmLength = sizeof algorithm, keyLength = sizeof key, parametersLength = sizeof parameters;
  uint32_t status = TESSEL_OK;
  TRY(DecodeSubjectPublicKeyInfo(publicKeyInfo->data, publicKeyInfo->length, algorithm, &algorithmLength, key,
                                 &keyLength, parameters, &parametersLength));
  TRY(SetCertificatePublicKeyAlgorithmOidAndParameters(certificate, algorithm, parameters, parametersLength));
  TRY(SetCertificatePublicKey(certificate, key, keyLength));
  TRY(SetCertificateSubjectKeyIdentifier(certificate));
done:
  return status;
}

static uint32_t SetRest(Certificate* certificate) {
  uint8_t algorithm[256], constraints[16];
  uint32_t status = TESSEL_OK, algorithmLength = sizeof algorithm, constraintsLength = sizeof constraints;
  X509Name* subject = NULL;              /* lent */
  X509ExtensionsSlot* extensions = NULL; /* lent */
  LibraryTime* time = NULL;
  TRY(SetCertificateVersion(certificate, 2)); /* v3 */
  TRY(SetCertificateSerialNumber(certificate, kSerialNumber, sizeof kSerialNumber));
  TRY(ConvertStringToOid("1.2.840.10045.4.3.2", algorithm, &algorithmLength)); /* ecdsa-with-SHA256 */
  TRY(SetCertificateSignatureAlgorithmOidAndParameters(certificate, algorithm, NULL, 0));
  TRY(GetCertificateSubject(certificate, &subject));
  TRY(AddX509NameEntry(subject, (const uint8_t*)kName, sizeof kName - 1, TESSEL_KIND_UTF8_STRING, kCommonName, 1));
  TRY(SetCertificateIssuer(certificate, subject));
  TRY(CreateLibraryTime(&time));
  TRY(SetLibraryTime(time, 1, 1, 2020, 0, 0, 0));
  TRY(SetCertificateValidNotBefore(certificate, time));
  TRY(SetLibraryTime(time, 31, 12, 2059, 23, 59, 59));
  TRY(SetCertificateValidNotAfter(certificate, time));
  TRY(EncodeExtensionBasicConstraints(1, 0xFFFFFFFF, constraints, &constraintsLength));
  TRY(GetCertificateExtensions(certificate, &extensions));
  TRY(AddX509ExtensionsExtension(extensions, kBasicConstraints, 1, constraints, constraintsLength));
done:
  FreeLibraryTime(time);
  return status;
}

int main(int argc, char** argv) {
  const char* signatureText = argc > 1 ? argv[1] : NULL;
  Octets publicKeyInfo = {NULL, 0}, signature = {NULL, 0}, encoded = {NULL, 0};
  Certificate* certificate = NULL;
  uint32_t status = TESSEL_OK;
  TRY(ReadPem(&publicKeyInfo));
  TRY(CreateCertificate(&certificate));
  TRY(SetKey(certificate, &publicKeyInfo));
  TRY(SetRest(certificate));
  if (signatureText == NULL) {
    FETCH(encoded, GetCertificateToBeSignedPart(certificate, encoded.data, &encoded.length));
    TRY(WritePem(&encoded, "TO BE SIGNED"));
  } else {
    FETCH(signature, DecodePem(signatureText, (uint32_t)strlen(signatureText), signature.data, &signature.length));
    TRY(SetCertificateSignature(certificate, signature.data, signature.length));
    FETCH(encoded, EncodeCertificate(certificate, encoded.data, &encoded.length));
    TRY(WritePem(&encoded, "CERTIFICATE"));
  }
done:
  FreeCertificate(certificate);
  free(encoded.data);
  free(signature.data);
  free(publicKeyInfo.data);
  return ExitCode(status);
}
