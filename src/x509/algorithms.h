// Algorithm identifiers, public keys and the GOST R 34.10 parameters.
#pragma once

#include <array>
#include <cstdint>

#include "engine/slot.h"
#include "engine/status.h"
#include "tessel/algorithms.hpp"
#include "values/oid.h"

namespace tessel {

// The numbers of algorithms that the GOST functions look at (oid.h).
enum GostAlgorithm : uint32_t {
  kGostR34102001 = 102,
  kGostR34102012With256Bits = 3000,
  kGostR34102012With512Bits = 3001
};

// What the parameters of a GOST algorithm identifier are.
enum GostParametersMode : uint8_t { kNullParameters = 0, kParameterSets = 1, kNoParameters = 0xFF };

// The three parameter sets by their numbers.
struct GostParameterSets {
  uint32_t publicKey = 0;
  uint32_t digest = 0;
  uint32_t encryption = 0;
};

// A caller's buffers for an algorithm identifier: its counted identifier, and the element of its parameters. A half
// whose buffer and length are both null is left out.
struct AlgorithmBuffers {
  uint8_t* oid;
  uint32_t* oidLength;
  uint8_t* parameters;
  uint32_t* parametersLength;
};

// Delivers both halves of an algorithm identifier, one also when the other fails, and returns the status of each.
struct AlgorithmHalves {
  Status oid;
  Status parameters;
};
AlgorithmHalves GetAlgorithmHalves(const ReadSlot<AlgorithmIdentifier>& slot, const AlgorithmBuffers& to);

// The convention of all functions named ...AlgorithmOidAndParameters and ...AlgorithmIdAndParameters.
Status GetAlgorithm(const ReadSlot<AlgorithmIdentifier>& slot, const AlgorithmBuffers& to);
Status SetAlgorithm(const Slot<AlgorithmIdentifier>& slot, const uint8_t* oid, Octets parameters);
Status SetAlgorithm(const Slot<AlgorithmIdentifier>& slot, uint32_t id, Octets parameters);

// Sets both or, after a failure, none.
Status SetAlgorithms(const Slot<AlgorithmIdentifier>& one, const Slot<AlgorithmIdentifier>& other, const uint8_t* oid,
                     Octets parameters);

// An algorithm identifier by numbers, as SetAlgorithmGostR34102001AndParameters takes them.
class EncodedGostAlgorithm {
 public:
  Status Make(uint32_t id, uint8_t mode, const GostParameterSets& sets, Caller at = {});
  [[nodiscard]] const uint8_t* Oid() const { return oid_; }
  [[nodiscard]] Octets Parameters() const { return Octets(parameters_).first(length_); }

 private:
  const uint8_t* oid_ = nullptr;
  // More than any sets of the tables need.
  std::array<uint8_t, 128> parameters_;
  uint32_t length_ = 0;
};

// Does what SetAlgorithmGostR34102001AndParameters does.
Status SetGostAlgorithm(const Slot<AlgorithmIdentifier>& slot, uint32_t id, uint8_t mode,
                        const GostParameterSets& sets);

// Reads the parameter sets of a key, which must be such as its algorithm allows, as
// GetCertificateDecodedPublicKeyGostR34102012 does.
Status GetGostParameterSets(const ReadSlot<AlgorithmIdentifier>& slot, GostParameterSets& sets);

}  // namespace tessel
