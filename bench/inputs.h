// What all sides read: the certificates of Mozilla's bundle, and values that are made here.
#pragma once

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <string>
#include <string_view>
#include <vector>

#include "tessel/octets.hpp"

namespace bench {

using tessel::Octets;

// The one place that results are written to, of at least this size.
uint8_t* Output(size_t size);

// Fills it with other octets, so that a check does not find what was written before.
void ClearOutput();

// What inputs are made of, in DER.
std::string Header(char identifier, size_t length);
std::string Element(char identifier, const std::string& content);
std::vector<uint8_t> VectorOf(std::string_view text);

// A certificate in DER, and what a decoder must find in it.
struct CertificateInput {
  std::vector<uint8_t> octets;
  std::vector<uint8_t> serialNumber;
  std::time_t notBefore;
  // The value of the extension.
  std::vector<uint8_t> basicConstraints;
};

// Whether a decoder found what is in the input.
bool IsSerialNumber(Octets found, const CertificateInput& input);
bool IsNotBefore(std::time_t found, const CertificateInput& input);
bool IsBasicConstraints(Octets found, const CertificateInput& input);

// Those of Debian's ca-certificates that have basic constraints, in the order of their files' names. What is in them is
// found with tessel, so that a peer that finds another thing stops the program.
std::vector<CertificateInput> ReadCertificates();

// A CRL in DER.
struct CrlInput {
  std::vector<uint8_t> octets;
  size_t entries;
};

// Each entry has a random serial number of 16 octets, the same at each call, and each second one a reason code. The
// signature is no signature.
CrlInput MakeCrl(size_t entries);

struct SetInput {
  std::vector<uint8_t> octets;
  // The same set in the order of DER.
  std::vector<uint8_t> sorted;
};

// A SET OF OCTET STRING whose elements are in descending order and differ only behind their first 12 octets of 20.
SetInput MakeDescendingSet(size_t elements);

struct NestInput {
  std::vector<uint8_t> octets;
  size_t levels;
};

// Nest ::= SEQUENCE { INTEGER, Nest OPTIONAL }
NestInput MakeNest(size_t levels);

// What an input that was decoded has to be encoded to.
template <class Input>
const std::vector<uint8_t>& DerOf(const Input& input) {
  return input.octets;
}
inline const std::vector<uint8_t>& DerOf(const SetInput& input) { return input.sorted; }

}  // namespace bench
