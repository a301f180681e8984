#include "describe_keys.h"

#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "concat.h"
#include "describe_values.h"
#include "status_text.h"
#include "text.h"
#include "values.h"

namespace tool {
namespace {

// The library's numbers of the algorithms whose keys have parameter sets (oid.h).
enum GostKey : uint32_t { kGost2001 = 102, kGost2012Short = 3000, kGost2012Long = 3001 };

struct Key {
  std::string_view algorithm;
  Octets parameters;
  Octets octets;
};

struct ParameterSet {
  std::string_view key;
  Bytes oid = {};  // content octets; empty when there is none
  bool isDefault = false;
};

Fact Unreadable(uint32_t status) { return Fact::Of(Concat("(not readable: ", StatusText(status), ')'), nullptr); }

bool IsRsa(std::string_view algorithm) {
  return algorithm == "rsaEncryption" || algorithm == "RSASSA-PSS" || algorithm == "RSAES-OAEP";
}

// The INTEGERs that a SEQUENCE starts with: RSAPublicKey { modulus, publicExponent }, Dss-Parms { p, q, g }.
std::vector<Octets> LeadingIntegers(Octets encoded) {
  std::vector<Octets> integers;
  Octets rest = ContentOfType(encoded, TESSEL_KIND_SEQUENCE).value_or(Octets());
  while (const std::optional<Octets> integer = ContentOfType(rest, TESSEL_KIND_INTEGER)) {
    integers.push_back(*integer);
    rest = Octets(integer->data() + integer->size(), rest.data() + rest.size());
  }
  return integers;
}

void TellBits(Fact& fact, Octets modulus) {
  const uint32_t bits = BitCount(modulus);
  fact.text += Concat(", ", bits, " bits");
  fact.Hide("bits", int64_t{bits});
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

// The three sets as they stand there, in their order.
void ReadWrittenSets(Octets parameters, std::span<ParameterSet> sets) {
  Octets rest = ContentOfType(parameters, TESSEL_KIND_SEQUENCE).value_or(Octets());
  for (ParameterSet& set : sets) {
    const std::optional<Octets> oid = ContentOfType(rest, TESSEL_KIND_OBJECT_IDENTIFIER);
    if (!oid) return;
    set.oid.assign(oid->begin(), oid->end());
    rest = Octets(oid->data() + oid->size(), rest.data() + rest.size());
  }
}

// The library knows the DEFAULT of a set that is not written. It does not read parameters that lack another set.
void ReadSets(uint32_t algorithm, Octets parameters, std::span<ParameterSet> sets) {
  ReadWrittenSets(parameters, sets);
  CountedOid oids[3];
  uint8_t mode = 0;
  const uint32_t status = DecodeAlgorithmGostR3410ParameterOids(algorithm, parameters.data(), SizeOf(parameters), &mode,
                                                                oids[0].octets, &oids[0].length, oids[1].octets,
                                                                &oids[1].length, oids[2].octets, &oids[2].length);
  for (size_t i = 0; status == TESSEL_OK && i < std::size(oids); ++i) {
    if (oids[i].length == 0 || !sets[i].oid.empty()) continue;
    const Octets content = oids[i].Content();
    sets[i].oid.assign(content.begin(), content.end());
    sets[i].isDefault = true;
  }
}

void TellSet(Fact& fact, const ParameterSet& set) {
  if (set.oid.empty()) return;
  Fact oid = OidFact(set.oid);
  if (set.isDefault) {
    oid.text += " (by default)";
    oid.Hide("default", true);
  }
  fact.Add(set.key, set.key, std::move(oid));
}

Fact ConsistencyFact(const Certificate* certificate) {
  Bytes key;
  uint32_t sets[3] = {};
  const uint32_t status = Fetch(key, [&](uint8_t* buffer, uint32_t* length) {
    return GetCertificateDecodedPublicKeyGostR34102012(certificate, buffer, length, &sets[0], &sets[1], &sets[2]);
  });
  return Fact::Of(status == TESSEL_OK ? "accepted" : Concat("refused: ", StatusText(status)), status == TESSEL_OK);
}

void TellGost(Fact& fact, const Certificate* certificate, uint32_t algorithm, const Key& key) {
  Bytes unwrapped;
  const uint32_t status = Fetch(unwrapped, [certificate](uint8_t* buffer, uint32_t* length) {
    return GetCertificatePublicKeyGostR3410(certificate, buffer, length);
  });
  TellOctets(fact, status == TESSEL_OK ? Octets(unwrapped) : key.octets);
  ParameterSet sets[] = {{"publicKeyParamSet"}, {"digestParamSet"}, {"encryptionParamSet"}};
  ReadSets(algorithm, key.parameters, sets);
  for (const ParameterSet& set : sets) TellSet(fact, set);
  fact.Add("consistent", "Consistency check", ConsistencyFact(certificate));
}

// The library's number of an algorithm of GOST keys.
std::optional<uint32_t> GostNumber(Octets oid) {
  Bytes counted{static_cast<uint8_t>(oid.size())};
  counted.insert(counted.end(), oid.begin(), oid.end());
  uint32_t number = 0;
  if (oid.size() > UINT8_MAX || FindAlgIdByOid(counted.data(), &number) != TESSEL_OK) return std::nullopt;
  const bool isKey = number == kGost2001 || number == kGost2012Short || number == kGost2012Long;
  return isKey ? std::optional(number) : std::nullopt;
}

}  // namespace

Fact AlgorithmFact(const Algorithm& algorithm) {
  Fact fact = OidFact(algorithm.oid);
  if (!algorithm.parameters.empty()) fact.Hide("parameters", Hex(algorithm.parameters));
  return fact;
}

Fact PublicKeyFact(const Certificate* certificate) {
  Algorithm algorithm;
  uint32_t status = FetchAlgorithm(algorithm, [certificate](auto... outputs) {
    return GetCertificatePublicKeyAlgorithmOidAndParameters(certificate, outputs...);
  });
  if (status != TESSEL_OK) return Unreadable(status);
  Bytes octets;
  status = Fetch(octets, [certificate](uint8_t* buffer, uint32_t* length) {
    return GetCertificatePublicKey(certificate, buffer, length);
  });

  Fact algorithmFact = AlgorithmFact(algorithm);
  Fact fact = Fact::Object(algorithmFact.text);
  const std::string name = algorithmFact.text;
  const Key key{name, algorithm.parameters, octets};
  fact.Hide("algorithm", std::move(algorithmFact));
  if (status != TESSEL_OK) {
    fact.text += Concat(", ", Unreadable(status).text);
  } else if (const std::optional<uint32_t> gost = GostNumber(algorithm.oid)) {
    TellGost(fact, certificate, *gost, key);
  } else if (IsRsa(name)) {
    TellRsa(fact, key);
  } else if (name == "DSA" || name == "DH") {
    TellModulus(fact, key);
  } else if (name == "EC") {
    TellCurve(fact, key);
  } else {
    TellOctets(fact, octets);
  }
  fact.Hide("key", Hex(octets));
  return fact;
}

}  // namespace tool
