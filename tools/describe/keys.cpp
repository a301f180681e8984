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

constexpr ObjectIdentifier kSha1Identifier("1.3.14.3.2.26");
constexpr ObjectIdentifier kMgf1Identifier("1.2.840.113549.1.1.8");
constexpr Asn1Oid kSha1Oid = BorrowOid(kSha1Identifier.Counted());
constexpr Asn1Oid kMgf1Oid = BorrowOid(kMgf1Identifier.Counted());
// AlgorithmIdentifier { sha-1, NULL }. As all defaults it is kept off the alignment of the heap (asn1.hpp).
alignas(16) constexpr uint8_t kSha1Octets[] = {0xFF, 0x30, 0x09, 0x06, 0x05, 0x2B, 0x0E, 0x03, 0x02, 0x1A, 0x05, 0x00};
constexpr Asn1Any kSha1Parameter = BorrowOpenValue(Octets(kSha1Octets).subspan(1));
constexpr AlgorithmIdentifier kSha1{const_cast<Asn1Oid*>(&kSha1Oid), nullptr};
constexpr AlgorithmIdentifier kMgf1WithSha1{const_cast<Asn1Oid*>(&kMgf1Oid), const_cast<Asn1Any*>(&kSha1Parameter)};
alignas(16) constexpr uint8_t kNumbers[] = {0xFF, 20, 1};
constexpr Asn1Value kTwenty = Borrow(TESSEL_KIND_INTEGER, Octets(kNumbers).subspan(1, 1));
constexpr Asn1Value kOne = Borrow(TESSEL_KIND_INTEGER, Octets(kNumbers).subspan(2, 1));

constexpr auto kRsassaPssParameters = Sequence{
    Member<&RsassaPssParameters::hashAlgorithm, Default<Explicit<0, kAlgorithmIdentifier>, kSha1>>,
    Member<&RsassaPssParameters::maskGenAlgorithm, Default<Explicit<1, kAlgorithmIdentifier>, kMgf1WithSha1>>,
    Member<&RsassaPssParameters::saltLength, Default<Explicit<2, kInteger>, kTwenty>>,
    Member<&RsassaPssParameters::trailerField, Default<Explicit<3, kInteger>, kOne>>,
};

Fact AlgorithmOidFact(const AlgorithmIdentifier& identifier) { return OidFact(ContentOf(*identifier.algorithm)); }

Octets ParametersOf(const AlgorithmIdentifier& identifier) {
  return identifier.parameters == nullptr ? Octets() : ContentOf(*identifier.parameters);
}

// Mask generation functions have the hash algorithm as parameter.
Fact MaskGenFact(const AlgorithmIdentifier& identifier) {
  Fact fact = AlgorithmOidFact(identifier);
  const std::optional<Octets> hash = ContentOfType(ParametersOf(identifier), TESSEL_KIND_SEQUENCE);
  const std::optional<Octets> oid = hash ? ContentOfType(*hash, TESSEL_KIND_OBJECT_IDENTIFIER) : std::nullopt;
  if (!oid) return fact;
  Fact hashFact = OidFact(*oid);
  fact.text += Concat(" with ", hashFact.text);
  fact.Hide("hashAlgorithm", std::move(hashFact));
  return fact;
}

constexpr Sayings kPssSayings{
    Say<&RsassaPssParameters::hashAlgorithm>{.tell = AlgorithmOidFact},
    Say<&RsassaPssParameters::maskGenAlgorithm>{.tell = MaskGenFact},
};

Fact FactOf(const RsassaPssParameters& parameters) {
  Fact fact = Describer<kPssSayings>::DescribeParts(kRsassaPssParameters, parameters);
  fact.HideParts();
  const std::string& salt = fact.parts[2].text;
  const std::string& trailer = fact.parts[3].text;
  fact.text = Concat(fact.parts[0].text, ", ", fact.parts[1].text, ", salt of ", salt,
                     salt == "1" ? " octet" : " octets", trailer == "1" ? "" : Concat(", trailer field ", trailer));
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
  Fact fact = AlgorithmOidFact(identifier);
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
