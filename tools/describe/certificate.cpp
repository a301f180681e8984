// Certificates.
#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "asn1/ber.h"
#include "describe/describer.h"
#include "describe/primitives.h"
#include "describe/types.h"
#include "tessel/calls.hpp"
#include "tessel/tree.hpp"
#include "texts/concat.h"
#include "texts/sha256.h"
#include "texts/values.h"

namespace tool {
namespace {

using namespace tessel;

// The stored number is one less than the version that people speak of.
Fact VersionFact(const Asn1Value& number) {
  const std::optional<int64_t> stored = SmallInteger(ContentOf(number));
  const std::string unknown = Concat("unknown (stored as ", IntegerText(ContentOf(number)), ')');
  if (!stored || *stored >= INT32_MAX) return Fact::Of(unknown, nullptr);
  const bool isKnown = *stored >= 0 && *stored <= 2;
  return Fact::Of(isKnown ? std::to_string(*stored + 1) : unknown, *stored + 1);
}

template <class Node>
bool AreSame(const Node* one, const Node* other) {
  if (one == nullptr || other == nullptr) return one == other;
  return std::ranges::equal(ContentOf(*one), ContentOf(*other));
}

// Both places should say the same; people are told of the signed one when it says something else.
void TellSignatureAlgorithm(Fact& fact, const AlgorithmIdentifier& outside, const AlgorithmIdentifier& inside) {
  Fact algorithm = FactOf(outside);
  Fact signedAlgorithm = FactOf(inside);
  if (!AreSame(outside.algorithm, inside.algorithm)) {
    algorithm.text += Concat(", but ", signedAlgorithm.text, " in the signed part");
  } else if (!AreSame(outside.parameters, inside.parameters)) {
    algorithm.text += ", with other parameters in the signed part";
  }
  fact.Add("signatureAlgorithm", "Signature algorithm", std::move(algorithm));
  fact.Hide("signedSignatureAlgorithm", std::move(signedAlgorithm));
}

// The library checks the keys that have a digest set. Most of RFC 9215 have none.
void TellConsistency(Fact& key, const Certificate& certificate) {
  if (std::ranges::count(key.parts, "digestParamSet", &Fact::key) == 0) return;
  Bytes octets;
  uint32_t sets[3] = {};
  const uint32_t status =
      StatusOf(GetCertificateDecodedPublicKeyGostR34102012, &certificate, Into(octets), &sets[0], &sets[1], &sets[2]);
  const bool isAccepted = status == TESSEL_OK;
  const std::string text = isAccepted ? "accepted" : Concat("refused: ", StatusText(status));
  key.Add("consistent", "Consistency check", Fact::Of(text, isAccepted));
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
  const std::string text = Hex(digest);
  return Fact::Of(text, text);
}

Fact Sha1Fact(Octets octets) {
  std::array<uint8_t, 20> digest{};
  Call(sha1, octets, digest.data());
  return FingerprintFact(digest);
}

Fact FingerprintsFact(Octets certificate, const SubjectPublicKeyInfo& info) {
  const Octets written = PublicKeyInfoIn(certificate);
  const Bytes encoded = written.empty() ? Encode(kSubjectPublicKeyInfo, info) : Bytes();
  const Octets key = written.empty() ? Octets(encoded) : written;
  Fact fact = Fact::Object();
  fact.Add("sha1", "SHA-1", Sha1Fact(certificate));
  fact.Add("sha256", "SHA-256", FingerprintFact(Sha256(certificate)));
  fact.Add("publicKeySha1", "Public key SHA-1", Sha1Fact(key));
  fact.Add("publicKeySha256", "Public key SHA-256", FingerprintFact(Sha256(key)));
  return fact;
}

}  // namespace

Fact FactOf(const Certificate& certificate, Octets octets) {
  const TbsCertificate& tbs = *certificate.tbsCertificate;
  Fact fact = Fact::Object();
  Fact key = FactOf(*tbs.subjectPublicKeyInfo);
  TellConsistency(key, certificate);
  fact.Add("version", "Version", VersionFact(*tbs.version));
  fact.Add("serialNumber", "Serial number", SerialNumberFact(*tbs.serialNumber));
  fact.Add("issuer", "Issuer", FactOf(*tbs.issuer));
  fact.Add("subject", "Subject", FactOf(*tbs.subject));
  fact.Add("notBefore", "Valid from", FactOf(*tbs.validity->notBefore));
  fact.Add("notAfter", "Valid until", FactOf(*tbs.validity->notAfter));
  fact.Add("publicKey", "Public key", std::move(key));
  TellSignatureAlgorithm(fact, *certificate.signatureAlgorithm, *tbs.signature);
  fact.Hide("signature", HexText(ContentOf(*certificate.signatureValue)));
  fact.Add("fingerprints", "Fingerprints", FingerprintsFact(octets, *tbs.subjectPublicKeyInfo));
  if (tbs.issuerUniqueID != nullptr) fact.Add("issuerUniqueId", "Issuer unique ID", FactOf(*tbs.issuerUniqueID));
  if (tbs.subjectUniqueID != nullptr) fact.Add("subjectUniqueId", "Subject unique ID", FactOf(*tbs.subjectUniqueID));
  if (tbs.extensions != nullptr) {
    fact.Add("extensions", "Extensions", Describer<>::Describe(kX509Extensions, *tbs.extensions));
  }
  return fact;
}

}  // namespace tool
