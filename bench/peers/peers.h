// The other libraries. Each has a source file of its own, because their headers do not go together.
//
// The inputs that are handed to them have to live until all was measured.
#pragma once

#include <utility>
#include <vector>

#include "heap.h"
#include "inputs.h"
#include "sides.h"
#include "table.h"

namespace bench {

struct CertificateOperations {
  Operation decode{"decode, free"};
  Operation encode{"encode: size, then octets"};
  Operation copy{"copy, free"};
  Operation serialNumber{"read the serial number"};
  Operation notBefore{"read notBefore"};
  Operation extension{"find the basic constraints"};
};

struct CrlOperations {
  Operation decode;
  Operation encode;
  Operation copy;
  HeapOperation heap;
};

// Some functions of some peers take time that grows with the square of the entries. They are measured up to this size.
inline bool IsSmall(const std::vector<CrlInput>& inputs) { return inputs.front().entries <= 10'000; }

// A decoder of CRLs, as a side of both decoding and the heap. countEntries(decoded): how many entries it found.
template <class Decode, class CountEntries>
void AddCrlDecoder(CrlOperations& to, Label label, const std::vector<CrlInput>& inputs, Decode decode,
                   CountEntries countEntries) {
  AddHeapSide(to.heap, label, inputs.front().octets, decode);
  AddDecoder(to.decode, std::move(label), inputs, decode, [countEntries](const auto& decoded, const CrlInput& input) {
    return countEntries(decoded) == input.entries;
  });
}

namespace gnutls {
void AddCertificates(const std::vector<CertificateInput>& inputs, CertificateOperations& to);
void AddCrls(const std::vector<CrlInput>& inputs, CrlOperations& to);
}  // namespace gnutls

namespace mbedtls {
void AddCertificates(const std::vector<CertificateInput>& inputs, CertificateOperations& to);
void AddCrls(const std::vector<CrlInput>& inputs, CrlOperations& to);
}  // namespace mbedtls

namespace nss {
void AddCertificates(const std::vector<CertificateInput>& inputs, CertificateOperations& to);
void AddCrls(const std::vector<CrlInput>& inputs, CrlOperations& to);
}  // namespace nss

namespace openssl {
void AddCertificates(const std::vector<CertificateInput>& inputs, CertificateOperations& to);
void AddCrls(const std::vector<CrlInput>& inputs, CrlOperations& to);
void AddSetEncoding(const std::vector<SetInput>& inputs, Operation& to);
// OpenSSL refuses what is nested more than 30 deep.
void AddNest(const std::vector<NestInput>& inputs, Operation& decode, Operation& encode);
}  // namespace openssl

namespace wolfssl {
void AddCertificates(const std::vector<CertificateInput>& inputs, CertificateOperations& to);
void AddCrls(const std::vector<CrlInput>& inputs, CrlOperations& to);
}  // namespace wolfssl

}  // namespace bench
