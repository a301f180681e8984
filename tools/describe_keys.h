// Facts about algorithms and public keys.
#pragma once

#include "fact.h"
#include "library.h"

namespace tool {

struct Algorithm {
  Bytes oid;         // content octets
  Bytes parameters;  // the whole element; empty when there are none

  bool operator==(const Algorithm&) const = default;
};

// Reads an algorithm by a getter of the library (algorithms.h), `call(oid, oidLength, parameters, parametersLength)`.
template <typename Getter>
uint32_t FetchAlgorithm(Algorithm& algorithm, Getter call) {
  CountedOid oid;
  uint32_t length = 0;
  uint32_t status = call(oid.octets, &oid.length, nullptr, &length);
  if (status != TESSEL_OK) return status;
  algorithm.parameters.resize(length);
  status = length == 0 ? status : call(nullptr, nullptr, algorithm.parameters.data(), &length);
  const Octets content = oid.Content();
  algorithm.oid.assign(content.begin(), content.end());
  return status;
}

// An algorithm by its name; programs get its parameters too.
Fact AlgorithmFact(const Algorithm& algorithm);

// The subject's public key of a certificate: its algorithm, its size or its parameter sets.
Fact PublicKeyFact(const Certificate* certificate);

}  // namespace tool
