#include "describe_certificate.h"

#include <string>
#include <string_view>
#include <utility>

#include "concat.h"
#include "describe_extensions.h"
#include "describe_keys.h"
#include "describe_names.h"
#include "describe_values.h"
#include "library.h"
#include "nodes.h"
#include "status_text.h"
#include "text.h"
#include "values.h"

namespace tool {
namespace {

// What no getter tells is read from the nodes: the algorithm beside the signature, and times as they are written.
enum CertificateSlot : unsigned { kTbsCertificate, kSignatureAlgorithm };
enum TbsCertificateSlot : unsigned { kValidity = 4 };
enum ValiditySlot : unsigned { kNotBefore, kNotAfter };
enum AlgorithmSlot : unsigned { kAlgorithm, kParameters };
enum TimeAlternative : uint32_t { kUtcTime, kGeneralizedTime };

Fact Absent() { return Fact::Of("(absent)", nullptr); }

// The stored number is one less than the version that people speak of.
Fact VersionFact(const Certificate* certificate) {
  int32_t stored = 0;
  const uint32_t status = GetCertificateVersion(certificate, &stored);
  if (status == TESSEL_ABSENT) return Absent();
  if (status != TESSEL_OK) return Fact::Of(Concat("unknown (", StatusText(status), ')'), nullptr);
  const int64_t version = int64_t{stored} + 1;
  const bool known = version >= 1 && version <= 3;
  return Fact::Of(known ? std::to_string(version) : Concat("unknown (stored as ", stored, ')'), version);
}

Fact SerialNumberFact(const Certificate* certificate) {
  uint32_t length = 0;
  const uint8_t* octets = ptr_GetCertificateSerialNumber(certificate, &length);
  if (octets == nullptr) return Absent();
  const std::string text = SerialNumberText({octets, length});
  return Fact::Of(text, text);
}

using NameGetter = uint32_t(TESSEL_CALL*)(Certificate*, X509Name**);

Fact NameOf(Certificate* certificate, NameGetter get) {
  X509Name* name = nullptr;
  return get(certificate, &name) == TESSEL_OK ? NameFact(name) : Absent();
}

Fact ValidityTimeFact(const Certificate* certificate, ValiditySlot slot) {
  const Alternative time = Chosen(Slot(Slot(Slot(certificate, kTbsCertificate), kValidity), slot));
  if (time.value == nullptr) return Absent();
  return TimeFact(time.index == kUtcTime ? TESSEL_KIND_UTC_TIME : TESSEL_KIND_GENERALIZED_TIME, Content(time.value));
}

Bytes Copied(Octets octets) { return {octets.begin(), octets.end()}; }

Algorithm AlgorithmBesideSignature(const Certificate* certificate) {
  const void* identifier = Slot(certificate, kSignatureAlgorithm);
  return {Copied(Content(Slot(identifier, kAlgorithm))), Copied(Content(Slot(identifier, kParameters)))};
}

// Both places should say the same; people are told of the signed one when it says something else.
void TellSignatureAlgorithm(Fact& fact, const Certificate* certificate) {
  Algorithm inside;
  const uint32_t status = FetchAlgorithm(inside, [certificate](auto... outputs) {
    return GetCertificateSignatureAlgorithmOidAndParameters(certificate, outputs...);
  });
  const Algorithm outside = AlgorithmBesideSignature(certificate);
  Fact algorithm = AlgorithmFact(outside);
  Fact signedAlgorithm = status == TESSEL_OK ? AlgorithmFact(inside) : Absent();
  if (inside.oid != outside.oid) {
    algorithm.text += Concat(", but ", signedAlgorithm.text, " in the signed part");
  } else if (inside.parameters != outside.parameters) {
    algorithm.text += ", with other parameters in the signed part";
  }
  fact.Add("signatureAlgorithm", "Signature algorithm", std::move(algorithm));
  fact.Hide("signedSignatureAlgorithm", std::move(signedAlgorithm));
}

void HideSignature(Fact& fact, const Certificate* certificate) {
  Bytes signature;
  const uint32_t status = Fetch(signature, [certificate](uint8_t* buffer, uint32_t* length) {
    return GetCertificateSignature(certificate, buffer, length);
  });
  if (status == TESSEL_OK) fact.Hide("signature", Hex(signature));
}

using UniqueIdGetter = uint32_t(TESSEL_CALL*)(const Certificate*, uint8_t*, uint32_t*, uint8_t*);

void TellUniqueId(Fact& fact, std::string_view key, std::string_view label, const Certificate* certificate,
                  UniqueIdGetter get) {
  Bytes octets;
  uint8_t unused = 0;
  const auto fetch = [&](uint8_t* buffer, uint32_t* length) { return get(certificate, buffer, length, &unused); };
  if (Fetch(octets, fetch) != TESSEL_OK) return;
  Fact id = UnreadFact(octets);
  id.Hide("unusedBits", int64_t{unused});
  fact.Add(key, label, std::move(id));
}

}  // namespace

Fact CertificateFact(Certificate* certificate) {
  Fact fact = Fact::Object();
  fact.Add("version", "Version", VersionFact(certificate));
  fact.Add("serialNumber", "Serial number", SerialNumberFact(certificate));
  fact.Add("issuer", "Issuer", NameOf(certificate, GetCertificateIssuer));
  fact.Add("subject", "Subject", NameOf(certificate, GetCertificateSubject));
  fact.Add("notBefore", "Valid from", ValidityTimeFact(certificate, kNotBefore));
  fact.Add("notAfter", "Valid until", ValidityTimeFact(certificate, kNotAfter));
  fact.Add("publicKey", "Public key", PublicKeyFact(certificate));
  TellSignatureAlgorithm(fact, certificate);
  HideSignature(fact, certificate);
  TellUniqueId(fact, "issuerUniqueId", "Issuer unique ID", certificate, GetCertificateIssuerUniqueId);
  TellUniqueId(fact, "subjectUniqueId", "Subject unique ID", certificate, GetCertificateSubjectUniqueId);
  TellExtensions(fact, certificate);
  return fact;
}

}  // namespace tool
