// Algorithms and public keys.
#include <algorithm>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "describe/describer.h"
#include "describe/primitives.h"
#include "describe/types.h"
#include "texts/concat.h"
#include "texts/values.h"

namespace tool {
namespace {

using namespace tessel;

// ---- RSASSA-PSS (RFC 4055, 3.1) ----

struct RsassaPssParameters {
  AlgorithmIdentifier* hashAlgorithm;
  AlgorithmIdentifier* maskGenAlgorithm;
  Asn1Value* saltLength;
  Asn1Value* trailerField;
};

constexpr auto kRsassaPssParameters = Sequence{
    Member<&RsassaPssParameters::hashAlgorithm, Optional<Explicit<0, kAlgorithmIdentifier>>>,
    Member<&RsassaPssParameters::maskGenAlgorithm, Optional<Explicit<1, kAlgorithmIdentifier>>>,
    Member<&RsassaPssParameters::saltLength, Optional<Explicit<2, kInteger>>>,
    Member<&RsassaPssParameters::trailerField, Optional<Explicit<3, kInteger>>>,
};

// What holds for members that are left out.
constexpr ObjectIdentifier kSha1("1.3.14.3.2.26");
constexpr ObjectIdentifier kMgf1("1.2.840.113549.1.1.8");
constexpr int64_t kSaltLength = 20;
constexpr int64_t kTrailerField = 1;

Octets AlgorithmOr(const ObjectIdentifier& byDefault, const AlgorithmIdentifier* identifier) {
  return identifier == nullptr ? byDefault.Content() : ContentOf(*identifier->algorithm);
}

Fact NumberOr(int64_t byDefault, const Asn1Value* number) {
  return number == nullptr ? Fact::Of(std::to_string(byDefault), byDefault) : IntegerFact(ContentOf(*number));
}

Octets ParametersOf(const AlgorithmIdentifier& identifier) {
  return identifier.parameters == nullptr ? Octets() : ContentOf(*identifier.parameters);
}

// Mask generation functions have the hash algorithm as parameter.
Fact MaskGenFact(const AlgorithmIdentifier* identifier) {
  Fact fact = OidFact(AlgorithmOr(kMgf1, identifier));
  std::optional<Octets> hash = kSha1.Content();
  if (identifier != nullptr) {
    const std::optional<Octets> parameter = ContentOfType(ParametersOf(*identifier), TESSEL_KIND_SEQUENCE);
    hash = ContentOfType(parameter.value_or(Octets()), TESSEL_KIND_OBJECT_IDENTIFIER);
  }
  if (!hash) return fact;
  Fact hashFact = OidFact(*hash);
  fact.text += Concat(" with ", hashFact.text);
  fact.Hide("hashAlgorithm", std::move(hashFact));
  return fact;
}

Fact FactOf(const RsassaPssParameters& parameters) {
  Fact hash = OidFact(AlgorithmOr(kSha1, parameters.hashAlgorithm));
  Fact maskGen = MaskGenFact(parameters.maskGenAlgorithm);
  Fact salt = NumberOr(kSaltLength, parameters.saltLength);
  Fact trailer = NumberOr(kTrailerField, parameters.trailerField);
  Fact fact = Fact::Object(Concat(hash.text, ", ", maskGen.text, ", salt of ", salt.text,
                                  salt.text == "1" ? " octet" : " octets",
                                  trailer.text == "1" ? "" : Concat(", trailer field ", trailer.text)));
  fact.Hide("hashAlgorithm", std::move(hash));
  fact.Hide("maskGenAlgorithm", std::move(maskGen));
  fact.Hide("saltLength", std::move(salt));
  fact.Hide("trailerField", std::move(trailer));
  return fact;
}

void TellPss(Fact& fact, Octets parameters) {
  try {
    Fact pss = DecodedFact(kType<kRsassaPssParameters>, parameters);
    fact.text += Concat(", ", pss.text);
    fact.Hide("pss", std::move(pss));
  } catch (const DecodingError& error) {
    fact.text += Concat(", parameters not readable (", error.Explained().Text(), ')');
  }
}

// ---- Keys ----

struct Key {
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

void TellOctets(Fact& fact, Octets key) {
  fact.text += Concat(", ", OctetCount(key.size()));
  fact.Hide("octets", static_cast<int64_t>(key.size()));
}

void TellBits(Fact& fact, Octets modulus) {
  const int64_t bits = BitCount(modulus);
  fact.text += Concat(", ", bits, " bits");
  fact.Hide("bits", bits);
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
    const bool isGiven = ContentOfType(key.parameters, TESSEL_KIND_SEQUENCE).has_value();
    fact.text += isGiven ? ", curve given by its parameters" : ", without a curve";
    return TellOctets(fact, key.octets);
  }
  Fact curve = OidFact(*oid);
  fact.text += Concat(", ", curve.text);
  fact.Hide("curve", std::move(curve));
}

// Tells the parameter sets that are written.
void TellGost(Fact& fact, const Key& key) {
  TellOctets(fact, ContentOfType(key.octets, TESSEL_KIND_OCTET_STRING).value_or(key.octets));
  Octets rest = ContentOfType(key.parameters, TESSEL_KIND_SEQUENCE).value_or(Octets());
  for (const std::string_view set : {"publicKeyParamSet", "digestParamSet", "encryptionParamSet"}) {
    const std::optional<Octets> oid = TakeContentOfType(rest, TESSEL_KIND_OBJECT_IDENTIFIER);
    if (!oid) return;
    fact.Add(set, set, OidFact(*oid));
  }
}

// What is told of a key beyond its algorithm. Of others the number of octets is.
struct KeyReader {
  std::string_view dotted;
  void (*tell)(Fact& fact, const Key& key);
};
constexpr std::string_view kRsassaPss = "1.2.840.113549.1.1.10";
constexpr KeyReader kKeyReaders[] = {
    {"1.2.840.113549.1.1.1", TellRsa},  {kRsassaPss, TellRsa},
    {"1.2.840.113549.1.1.7", TellRsa},  {"1.2.840.10040.4.1", TellModulus},
    {"1.2.840.10046.2.1", TellModulus}, {"1.2.840.10045.2.1", TellCurve},
    {"1.2.643.2.2.19", TellGost},       {"1.2.643.7.1.1.1.1", TellGost},
    {"1.2.643.7.1.1.1.2", TellGost},
};

void TellKey(Fact& fact, std::string_view dotted, const Key& key) {
  const auto reader = std::ranges::find(kKeyReaders, dotted, &KeyReader::dotted);
  if (reader == std::end(kKeyReaders)) return TellOctets(fact, key.octets);
  reader->tell(fact, key);
}

}  // namespace

Fact FactOf(const AlgorithmIdentifier& identifier) {
  Fact fact = OidFact(ContentOf(*identifier.algorithm));
  const Octets parameters = ParametersOf(identifier);
  if (parameters.empty()) return fact;
  fact.Hide("parameters", HexText(parameters));
  if (OidText(ContentOf(*identifier.algorithm)) == kRsassaPss) TellPss(fact, parameters);
  return fact;
}

Fact FactOf(const SubjectPublicKeyInfo& info) {
  Fact algorithm = FactOf(*info.algorithm);
  const Key key{ParametersOf(*info.algorithm), ContentOf(*info.subjectPublicKey)};
  Fact fact = Fact::Object(algorithm.text);
  fact.Hide("algorithm", std::move(algorithm));
  TellKey(fact, OidText(ContentOf(*info.algorithm->algorithm)), key);
  fact.Hide("key", HexText(key.octets));
  return fact;
}

}  // namespace tool
