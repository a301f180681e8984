// Mbed TLS. It does not encode what it has decoded, and has no copies.
#include <mbedtls/x509_crl.h>
#include <mbedtls/x509_crt.h>

#include <string>

#include "peers/peers.h"

namespace bench::mbedtls {
namespace {

// These stay where they are: a value may point into itself.
template <class Value, void (*Initialize)(Value*), void (*Free)(Value*)>
class Parsed {
 public:
  template <class Parse>
  Parsed(Parse parse, Octets octets) {
    Initialize(&value_);
    isThere_ = parse(&value_, octets.data(), octets.size()) == 0;
  }
  Parsed(const Parsed&) = delete;
  Parsed& operator=(const Parsed&) = delete;
  ~Parsed() { Free(&value_); }

  explicit operator bool() const { return isThere_; }
  const Value* operator->() const { return &value_; }

 private:
  Value value_;
  bool isThere_;
};
using Certificate = Parsed<mbedtls_x509_crt, mbedtls_x509_crt_init, mbedtls_x509_crt_free>;
using Crl = Parsed<mbedtls_x509_crl, mbedtls_x509_crl_init, mbedtls_x509_crl_free>;

Label Peer(const char* name, const char* remark) { return {Kind::kPeer, std::string("Mbed TLS ") + name, remark}; }

template <class Parse>
void AddCertificateDecoder(Label label, const std::vector<CertificateInput>& inputs, Parse parse,
                           CertificateOperations& to) {
  AddDecoder(
      to.decode, std::move(label), inputs, [parse](Octets octets) { return Certificate(parse, octets); },
      [](const Certificate& certificate, const CertificateInput& input) {
        return IsSerialNumber({certificate->serial.p, certificate->serial.len}, input);
      });
}

size_t CountEntries(const Crl& crl) {
  size_t count = 0;
  for (const mbedtls_x509_crl_entry* entry = &crl->entry; entry != nullptr; entry = entry->next) {
    if (entry->raw.p != nullptr) ++count;
  }
  return count;
}

}  // namespace

void AddCertificates(const std::vector<CertificateInput>& inputs, CertificateOperations& to) {
  AddCertificateDecoder(
      Peer("`mbedtls_x509_crt_parse_der_nocopy`",
           "fills fields that point into the input, which has to stay; also makes a key object of the "
           "public key, and reads the values of the extensions that it knows. The others are left out."),
      inputs, mbedtls_x509_crt_parse_der_nocopy, to);
  AddCertificateDecoder(Peer("`mbedtls_x509_crt_parse_der`", "the same, into a copy of the input."), inputs,
                        mbedtls_x509_crt_parse_der, to);
}

void AddCrls(const std::vector<CrlInput>& inputs, CrlOperations& to) {
  AddCrlDecoder(
      to,
      Peer("`mbedtls_x509_crl_parse_der`",
           "copies the input and makes a list of entries that point into it, with the dates as numbers; extensions of "
           "entries stay octets."),
      inputs, [](Octets octets) { return Crl(mbedtls_x509_crl_parse_der, octets); }, CountEntries);
}

}  // namespace bench::mbedtls
