// The openssl command line: another program's view of what the library reads and writes.
#pragma once

#include <cstdint>
#include <filesystem>
#include <ostream>
#include <string>
#include <vector>

#include "support/octets.h"

namespace test {

// An element as openssl finds it.
struct Element {
  Bytes whole;
  Bytes content;
  std::vector<Element> children;
};

// A kind of key, and how it signs.
struct Scheme {
  const char* name;
  const char* key;            // options of genpkey
  const char* digest;         // option of dgst
  const char* signature;      // the algorithm
  const char* parameters;     // its parameters, in hex
  uint32_t keyAlgorithm = 0;  // GOST: the library's numbers
  uint32_t signatureAlgorithm = 0;
  uint32_t keySet = 0;
  uint32_t digestSet = 0;

  // The option that loads what openssl needs; GOST is in an engine.
  [[nodiscard]] std::string Engine() const { return keyAlgorithm == 0 ? " " : " -engine gost "; }
};

// How GoogleTest shows it.
inline void PrintTo(const Scheme& scheme, std::ostream* out) { *out << scheme.name; }

inline constexpr Scheme kSchemes[] = {
    {"Rsa2048", "-algorithm RSA -pkeyopt rsa_keygen_bits:2048", "-sha256", "1.2.840.113549.1.1.11", "05 00"},
    {"EcdsaP256", "-algorithm EC -pkeyopt ec_paramgen_curve:P-256", "-sha256", "1.2.840.10045.4.3.2", ""},
    {"Gost256CryptoProA", "-algorithm gost2012_256 -pkeyopt paramset:A", "-md_gost12_256", "1.2.643.7.1.1.3.2", "",
     3000, 3002, 1, 3},
    {"Gost256Tc26A", "-algorithm gost2012_256 -pkeyopt paramset:TCA", "-md_gost12_256", "1.2.643.7.1.1.3.2", "", 3000,
     3002, 9, 3},
    {"Gost512Tc26A", "-algorithm gost2012_512 -pkeyopt paramset:A", "-md_gost12_512", "1.2.643.7.1.1.3.3", "", 3001,
     3003, 10, 4},
};

// Runs openssl in a new folder, which is removed with the object.
class Openssl {
 public:
  Openssl();
  ~Openssl();
  Openssl(const Openssl&) = delete;
  Openssl& operator=(const Openssl&) = delete;

  void Write(const std::string& file, const Bytes& octets) const;
  [[nodiscard]] Bytes Read(const std::string& file) const;

  // What `openssl <arguments>` prints, on both of its outputs. A command that fails, such as one that is not installed,
  // fails the test.
  [[nodiscard]] std::string Run(const std::string& arguments) const;
  // The same of a command that must fail.
  [[nodiscard]] std::string Refusal(const std::string& arguments) const;

  // The elements that `openssl asn1parse` finds in octets, one after the other at the top.
  [[nodiscard]] std::vector<Element> Parse(const Bytes& octets) const;
  // Makes a key in a file, and tells its SubjectPublicKeyInfo.
  [[nodiscard]] Bytes NewKey(const Scheme& scheme, const std::string& file) const;
  // Signs octets with the key of a file.
  [[nodiscard]] Bytes Sign(const Scheme& scheme, const std::string& file, const Bytes& octets) const;

 private:
  [[nodiscard]] std::string Print(const std::string& arguments, bool succeeds) const;

  std::filesystem::path folder_;
};

}  // namespace test
