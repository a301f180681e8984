#include "describe/keys.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "asn1/decoding.h"
#include "describe/descriptors.h"
#include "describe/nodes.h"
#include "describe/primitives.h"
#include "texts/concat.h"
#include "texts/values.h"

namespace tool {
namespace {

enum PublicKeyInfoSlot : unsigned { kKeyAlgorithm, kKeyOctets };

// RSASSA-PSS-params ::= SEQUENCE {
//   hashAlgorithm    [0] EXPLICIT AlgorithmIdentifier DEFAULT SHA-1,
//   maskGenAlgorithm [1] EXPLICIT AlgorithmIdentifier DEFAULT mgf1 with SHA-1,
//   saltLength       [2] EXPLICIT INTEGER DEFAULT 20,
//   trailerField     [3] EXPLICIT INTEGER DEFAULT 1 } (RFC 4055, 3.1)
const Asn1Item kHashAlgorithm = Optional(Explicit(0, AlgorithmIdentifierItem));
const Asn1Item kMaskGenAlgorithm = Optional(Explicit(1, AlgorithmIdentifierItem));
constexpr Asn1Item kSaltLength = Optional(Explicit(2, Primitive(TESSEL_KIND_INTEGER)));
constexpr Asn1Item kTrailerField = Optional(Explicit(3, Primitive(TESSEL_KIND_INTEGER)));
const Members<4> kPssMembers = {&kHashAlgorithm, &kMaskGenAlgorithm, &kSaltLength, &kTrailerField};
const Asn1Item kPssParameters = Sequence(kPssMembers);
enum PssSlot : unsigned { kHash, kMaskGen, kSalt, kTrailer };
constexpr tessel::ObjectIdentifier kSha1("1.3.14.3.2.26");
constexpr tessel::ObjectIdentifier kMgf1("1.2.840.113549.1.1.8");

// Mask generation functions have the hash algorithm as parameter.
Fact MaskGenFact(const void* identifier) {
  Fact fact = OidFact(identifier == nullptr ? kMgf1.Content() : Content(Slot(identifier, kAlgorithm)));
  const std::optional<Octets> hash = ContentOfType(Content(Slot(identifier, kParameters)), TESSEL_KIND_SEQUENCE);
  const std::optional<Octets> oid = hash ? ContentOfType(*hash, TESSEL_KIND_OBJECT_IDENTIFIER) : std::nullopt;
  if (identifier != nullptr && !oid) return fact;
  Fact hashFact = OidFact(oid ? *oid : kSha1.Content());
  fact.text += Concat(" with ", hashFact.text);
  fact.Hide("hashAlgorithm", std::move(hashFact));
  return fact;
}

Fact NumberOrDefault(const void* number, int64_t byDefault) {
  return number == nullptr ? Fact::Of(std::to_string(byDefault), byDefault) : IntegerFact(Content(number));
}

Fact PssFact(const void* parameters) {
  const void* hashIdentifier = Slot(parameters, kHash);
  Fact hash = OidFact(hashIdentifier == nullptr ? kSha1.Content() : Content(Slot(hashIdentifier, kAlgorithm)));
  Fact maskGen = MaskGenFact(Slot(parameters, kMaskGen));
  Fact salt = NumberOrDefault(Slot(parameters, kSalt), 20);
  Fact trailer = NumberOrDefault(Slot(parameters, kTrailer), 1);
  Fact fact = Fact::Object(
      Concat(hash.text, ", ", maskGen.text, ", salt of ", salt.text, salt.text == "1" ? " octet" : " octets"));
  if (trailer.text != "1") fact.text += Concat(", trailer field ", trailer.text);
  fact.Hide("hashAlgorithm", std::move(hash));
  fact.Hide("maskGenAlgorithm", std::move(maskGen));
  fact.Hide("saltLength", std::move(salt));
  fact.Hide("trailerField", std::move(trailer));
  return fact;
}

void TellPss(Fact& fact, Octets parameters) {
  try {
    Fact pss = DecodedFact(kPssParameters, parameters, PssFact);
    fact.text += Concat(", ", pss.text);
    fact.Hide("pss", std::move(pss));
  } catch (const DecodingError& error) {
    fact.text += Concat(", parameters not readable (", error.Problem(), ')');
  }
}

struct Key {
  Octets parameters;
  Octets octets;
  const Certificate* certificate;  // whose key it is
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
    const bool isGiven = ContentOfType(key.parameters, TESSEL_KIND_SEQUENCE).has_value();
    fact.text += isGiven ? ", curve given by its parameters" : ", without a curve";
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
void TellGost(Fact& fact, const Key& key) {
  TellOctets(fact, ContentOfType(key.octets, TESSEL_KIND_OCTET_STRING).value_or(key.octets));
  bool isComplete = false;
  Octets rest = ContentOfType(key.parameters, TESSEL_KIND_SEQUENCE).value_or(Octets());
  for (const std::string_view set : {"publicKeyParamSet", "digestParamSet", "encryptionParamSet"}) {
    const std::optional<Octets> oid = TakeContentOfType(rest, TESSEL_KIND_OBJECT_IDENTIFIER);
    if (!oid) break;
    fact.Add(set, set, OidFact(*oid));
    isComplete = isComplete || set == "digestParamSet";
  }
  if (isComplete) fact.Add("consistent", "Consistency check", ConsistencyFact(key.certificate));
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

Fact AlgorithmFact(const void* identifier) {
  const Octets parameters = Content(Slot(identifier, kParameters));
  const Octets oid = Content(Slot(identifier, kAlgorithm));
  Fact fact = OidFact(oid);
  if (parameters.empty()) return fact;
  fact.Hide("parameters", HexText(parameters));
  if (OidText(oid) == kRsassaPss) TellPss(fact, parameters);
  return fact;
}

Fact PublicKeyFact(const void* info, const Certificate* certificate) {
  const void* identifier = Slot(info, kKeyAlgorithm);
  Fact algorithm = AlgorithmFact(identifier);
  const Key key{Content(Slot(identifier, kParameters)), BitStringContent(Slot(info, kKeyOctets)), certificate};
  Fact fact = Fact::Object(algorithm.text);
  fact.Hide("algorithm", std::move(algorithm));
  TellKey(fact, OidText(Content(Slot(identifier, kAlgorithm))), key);
  fact.Hide("key", HexText(key.octets));
  return fact;
}

}  // namespace tool
