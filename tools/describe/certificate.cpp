#include "describe/certificate.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <utility>

#include "describe/extensions.h"
#include "describe/keys.h"
#include "describe/names.h"
#include "describe/nodes.h"
#include "describe/primitives.h"
#include "tessel/calls.hpp"
#include "texts/concat.h"
#include "texts/sha256.h"
#include "texts/values.h"

namespace tool {
namespace {

enum CertificateSlot : unsigned { kTbsCertificate, kSignatureAlgorithm, kSignatureValue };
enum TbsCertificateSlot : unsigned {
  kVersion,
  kSerialNumber,
  kSignature,
  kIssuer,
  kValidity,
  kSubject,
  kPublicKeyInfo,
  kIssuerUniqueId,
  kSubjectUniqueId,
  kExtensions
};
enum ValiditySlot : unsigned { kNotBefore, kNotAfter };
enum TimeAlternative : uint32_t { kUtcTime, kGeneralizedTime };

// The stored number is one less than the version that people speak of.
Fact VersionFact(const void* number) {
  const std::optional<int64_t> stored = SmallInteger(Content(number));
  const std::string unknown = Concat("unknown (stored as ", IntegerText(Content(number)), ')');
  if (!stored || *stored >= INT32_MAX) return Fact::Of(unknown, nullptr);
  const bool isKnown = *stored >= 0 && *stored <= 2;
  return Fact::Of(isKnown ? std::to_string(*stored + 1) : unknown, *stored + 1);
}

Fact TimeOf(const void* choice) {
  const Alternative time = Chosen(choice);
  return TimeFact(time.index == kUtcTime ? TESSEL_KIND_UTC_TIME : TESSEL_KIND_GENERALIZED_TIME, Content(time.value));
}

bool HaveSame(const void* one, const void* other, unsigned slot) {
  return std::ranges::equal(Content(Slot(one, slot)), Content(Slot(other, slot)));
}

// Both places should say the same; people are told of the signed one when it says something else.
void TellSignatureAlgorithm(Fact& fact, const void* outside, const void* inside) {
  Fact algorithm = AlgorithmFact(outside);
  Fact signedAlgorithm = AlgorithmFact(inside);
  if (!HaveSame(outside, inside, kAlgorithm)) {
    algorithm.text += Concat(", but ", signedAlgorithm.text, " in the signed part");
  } else if (!HaveSame(outside, inside, kParameters)) {
    algorithm.text += ", with other parameters in the signed part";
  }
  fact.Add("signatureAlgorithm", "Signature algorithm", std::move(algorithm));
  fact.Hide("signedSignatureAlgorithm", std::move(signedAlgorithm));
}

void TellUniqueId(Fact& fact, std::string_view key, std::string_view label, const void* bits) {
  if (bits == nullptr) return;
  Fact id = UnreadFact(BitStringContent(bits));
  id.Hide("unusedBits", int64_t{static_cast<const Asn1BitString*>(bits)->unused});
  fact.Add(key, label, std::move(id));
}

// The SubjectPublicKeyInfo as it was read: the sixth member of the to-be-signed part besides the version. It ends where
// the next element begins that does not lie within it. Nothing where octets that decoders pass over, such as those
// behind the members of a SEQUENCE, are no BER.
Octets PublicKeyInfoIn(Octets certificate) {
  constexpr unsigned kPlace = 6;
  constexpr uint32_t kDepth = 2;
  Walk walk(certificate);
  unsigned place = 0;
  uint32_t start = 0;
  for (Element element; walk.Next(element);) {
    if (place == kPlace && element.depth <= kDepth) return certificate.subspan(start, element.offset - start);
    if (place == kPlace || element.depth != kDepth || element.tagClass != TESSEL_CLASS_UNIVERSAL) continue;
    if (++place == kPlace) start = element.offset;
  }
  return {};
}

Fact FingerprintFact(Octets digest) {
  const std::string text = tessel::Hex(digest);
  return Fact::Of(text, text);
}

void TellFingerprints(Fact& fact, Octets certificate, const void* publicKeyInfo) {
  const auto sha1Of = [](Octets octets) {
    std::array<uint8_t, 20> digest{};
    tessel::Call(sha1, octets, digest.data());
    return FingerprintFact(digest);
  };
  const Octets written = PublicKeyInfoIn(certificate);
  tessel::Bytes encoded;
  if (written.empty()) {
    tessel::Call(GetAsn1EncodedValue, publicKeyInfo, &SubjectPublicKeyInfoItem, tessel::Into(encoded));
  }
  const Octets key = written.empty() ? Octets(encoded) : written;
  Fact fingerprints = Fact::Object();
  fingerprints.Add("sha1", "SHA-1", sha1Of(certificate));
  fingerprints.Add("sha256", "SHA-256", FingerprintFact(Sha256(certificate)));
  fingerprints.Add("publicKeySha1", "Public key SHA-1", sha1Of(key));
  fingerprints.Add("publicKeySha256", "Public key SHA-256", FingerprintFact(Sha256(key)));
  fact.Add("fingerprints", "Fingerprints", std::move(fingerprints));
}

}  // namespace

Fact CertificateFact(const void* root, Octets element) {
  const void* tbs = Slot(root, kTbsCertificate);
  const void* validity = Slot(tbs, kValidity);
  Fact fact = Fact::Object();
  fact.Add("version", "Version", VersionFact(Slot(tbs, kVersion)));
  fact.Add("serialNumber", "Serial number", SerialNumberFact(Content(Slot(tbs, kSerialNumber))));
  fact.Add("issuer", "Issuer", NameFact(Chosen(Slot(tbs, kIssuer)).value));
  fact.Add("subject", "Subject", NameFact(Chosen(Slot(tbs, kSubject)).value));
  fact.Add("notBefore", "Valid from", TimeOf(Slot(validity, kNotBefore)));
  fact.Add("notAfter", "Valid until", TimeOf(Slot(validity, kNotAfter)));
  fact.Add("publicKey", "Public key", PublicKeyFact(Slot(tbs, kPublicKeyInfo), static_cast<const Certificate*>(root)));
  TellSignatureAlgorithm(fact, Slot(root, kSignatureAlgorithm), Slot(tbs, kSignature));
  fact.Hide("signature", HexText(BitStringContent(Slot(root, kSignatureValue))));
  TellFingerprints(fact, element, Slot(tbs, kPublicKeyInfo));
  TellUniqueId(fact, "issuerUniqueId", "Issuer unique ID", Slot(tbs, kIssuerUniqueId));
  TellUniqueId(fact, "subjectUniqueId", "Subject unique ID", Slot(tbs, kSubjectUniqueId));
  if (const void* extensions = Slot(tbs, kExtensions); extensions != nullptr) {
    fact.Add("extensions", "Extensions", ExtensionsFact(extensions));
  }
  return fact;
}

}  // namespace tool
