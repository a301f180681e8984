#include "describe_keys.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "concat.h"
#include "decoding.h"
#include "describe_values.h"
#include "nodes.h"
#include "values.h"

namespace tool {
namespace {

enum AlgorithmSlot : unsigned { kAlgorithm, kParameters };
enum PublicKeyInfoSlot : unsigned { kKeyAlgorithm, kKeyOctets };

struct Key {
  std::string name;  // of its algorithm
  Octets parameters;
  Octets octets;
};

// The INTEGERs that a SEQUENCE starts with: RSAPublicKey { modulus, publicExponent }, Dss-Parms { p, q, g }.
std::vector<Octets> LeadingIntegers(Octets encoded) {
  std::vector<Octets> integers;
  Octets rest = ContentOfType(encoded, TESSEL_KIND_SEQUENCE).value_or(Octets());
  while (integers.size() < 3) {
    const std::optional<Octets> integer = TakeContentOfType(rest, TESSEL_KIND_INTEGER);
    if (!integer) break;
    integers.push_back(*integer);
  }
  return integers;
}

void TellBits(Fact& fact, Octets modulus) {
  const int64_t bits = BitCount(modulus);
  fact.text += Concat(", ", bits, " bits");
  fact.Hide("bits", bits);
}

void TellOctets(Fact& fact, Octets key) {
  fact.text += Concat(", ", OctetCount(key.size()));
  fact.Hide("octets", static_cast<int64_t>(key.size()));
}

void TellRsa(Fact& fact, const Key& key) {
  const std::vector<Octets> integers = LeadingIntegers(key.octets);
  if (integers.empty()) return TellOctets(fact, key.octets);
  TellBits(fact, integers[0]);
  if (integers.size() < 2) return;
  Fact exponent = IntegerFact(integers[1]);
  if (exponent.text != "65537") fact.text += Concat(", exponent ", exponent.text);
  fact.Hide("exponent", std::move(exponent));
}

// Of DSA and DH keys the parameters hold the modulus.
void TellModulus(Fact& fact, const Key& key) {
  const std::vector<Octets> integers = LeadingIntegers(key.parameters);
  if (integers.empty()) return TellOctets(fact, key.octets);
  TellBits(fact, integers[0]);
}

void TellCurve(Fact& fact, const Key& key) {
  const std::optional<Octets> oid = ContentOfType(key.parameters, TESSEL_KIND_OBJECT_IDENTIFIER);
  if (!oid) {
    fact.text += ", curve given by its parameters";
    return TellOctets(fact, key.octets);
  }
  Fact curve = OidFact(*oid);
  fact.text += Concat(", ", curve.text);
  fact.Hide("curve", std::move(curve));
}

Fact ConsistencyFact(const Certificate* certificate) {
  tessel::Bytes key;
  uint32_t sets[3] = {};
  const uint32_t status = StatusOf(GetCertificateDecodedPublicKeyGostR34102012, certificate, tessel::Into(key),
                                   &sets[0], &sets[1], &sets[2]);
  return Fact::Of(status == TESSEL_OK ? "accepted" : Concat("refused: ", tessel::StatusText(status)),
                  status == TESSEL_OK);
}

// Tells the sets that are written. Keys of RFC 9215 may have no digest set; the library checks those that have one.
void TellGost(Fact& fact, const Key& key, const Certificate* certificate) {
  TellOctets(fact, ContentOfType(key.octets, TESSEL_KIND_OCTET_STRING).value_or(key.octets));
  bool isComplete = false;
  Octets rest = ContentOfType(key.parameters, TESSEL_KIND_SEQUENCE).value_or(Octets());
  for (const std::string_view set : {"publicKeyParamSet", "digestParamSet", "encryptionParamSet"}) {
    const std::optional<Octets> oid = TakeContentOfType(rest, TESSEL_KIND_OBJECT_IDENTIFIER);
    if (!oid) break;
    fact.Add(set, set, OidFact(*oid));
    isComplete = isComplete || set == "digestParamSet";
  }
  if (isComplete) fact.Add("consistent", "Consistency check", ConsistencyFact(certificate));
}

// What is told of a key beyond its algorithm. Of others the number of octets is.
void TellKey(Fact& fact, const Key& key, const Certificate* certificate) {
  if (key.name == "rsaEncryption" || key.name == "RSASSA-PSS" || key.name == "RSAES-OAEP") return TellRsa(fact, key);
  if (key.name == "DSA" || key.name == "DH") return TellModulus(fact, key);
  if (key.name == "EC") return TellCurve(fact, key);
  if (key.name == "GOST R 34.10-2001" || key.name == "GOST R 34.10-2012 256" || key.name == "GOST R 34.10-2012 512") {
    return TellGost(fact, key, certificate);
  }
  TellOctets(fact, key.octets);
}

}  // namespace

Fact AlgorithmFact(const void* identifier) {
  const Octets parameters = Content(Slot(identifier, kParameters));
  Fact fact = OidFact(Content(Slot(identifier, kAlgorithm)));
  if (parameters.empty()) return fact;
  fact.Hide("parameters", HexText(parameters));
  return fact;
}

Fact PublicKeyFact(const void* info, const Certificate* certificate) {
  const void* identifier = Slot(info, kKeyAlgorithm);
  Fact algorithm = AlgorithmFact(identifier);
  const Key key{OidName(Content(Slot(identifier, kAlgorithm))), Content(Slot(identifier, kParameters)),
                BitStringContent(Slot(info, kKeyOctets))};
  Fact fact = Fact::Object(algorithm.text);
  fact.Hide("algorithm", std::move(algorithm));
  TellKey(fact, key, certificate);
  fact.Hide("key", HexText(key.octets));
  return fact;
}

}  // namespace tool
