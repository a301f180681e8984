// wolfSSL. It reads the fields of certificates that TLS needs, and keeps their octets: it does not encode what it has
// decoded.
#include <wolfssl/options.h>
// The options come first.
#include <wolfssl/ssl.h>
#include <wolfssl/wolfcrypt/asn.h>

#include <memory>
#include <optional>
#include <string>

#include "peers/peers.h"

namespace bench::wolfssl {
namespace {

// What its parser fills; it stays where it is.
class Parsed {
 public:
  explicit Parsed(Octets octets) {
    InitDecodedCert(&certificate_, octets.data(), static_cast<word32>(octets.size()), nullptr);
    isThere_ = ParseCert(&certificate_, CERT_TYPE, NO_VERIFY, nullptr) == 0;
  }
  Parsed(const Parsed&) = delete;
  Parsed& operator=(const Parsed&) = delete;
  ~Parsed() { FreeDecodedCert(&certificate_); }

  explicit operator bool() const { return isThere_; }
  [[nodiscard]] Octets SerialNumber() const {
    return {static_cast<const uint8_t*>(certificate_.serial), static_cast<size_t>(certificate_.serialSz)};
  }

 private:
  DecodedCert certificate_;
  bool isThere_;
};

template <class Type, void (*Free)(Type*)>
struct Deleter {
  void operator()(Type* value) const { Free(value); }
};
using Certificate = std::unique_ptr<WOLFSSL_X509, Deleter<WOLFSSL_X509, wolfSSL_X509_free>>;
using Crl = std::unique_ptr<WOLFSSL_X509_CRL, Deleter<WOLFSSL_X509_CRL, wolfSSL_X509_CRL_free>>;

Label Peer(const char* name, const char* remark) { return {Kind::kPeer, std::string("wolfSSL ") + name, remark}; }

Certificate DecodeCertificate(Octets octets) {
  const uint8_t* at = octets.data();
  return Certificate(wolfSSL_d2i_X509(nullptr, &at, static_cast<int>(octets.size())));
}

std::optional<Octets> ReadSerialNumber(const Certificate& certificate) {
  int size = EXTERNAL_SERIAL_SIZE;
  uint8_t* output = Output(EXTERNAL_SERIAL_SIZE);
  if (wolfSSL_X509_get_serial_number(certificate.get(), output, &size) != WOLFSSL_SUCCESS) return std::nullopt;
  return Octets(output, static_cast<size_t>(size));
}

bool HasSerialNumber(const Certificate& certificate, const CertificateInput& input) {
  const std::optional<Octets> serial = ReadSerialNumber(certificate);
  return serial.has_value() && IsSerialNumber(*serial, input);
}

Crl DecodeCrl(Octets octets) {
  return Crl(wolfSSL_d2i_X509_CRL(nullptr, octets.data(), static_cast<int>(octets.size())));
}

}  // namespace

void AddCertificates(const std::vector<CertificateInput>& inputs, CertificateOperations& to) {
  AddDecoder(
      to.decode,
      Peer("`ParseCert`",
           "fills fields, most of which point into the input; also digests the names and the key, makes texts and "
           "lists of the names, and reads the values of the extensions that it knows. Nothing is verified."),
      inputs, [](Octets octets) { return Parsed(octets); },
      [](const Parsed& parsed, const CertificateInput& input) { return IsSerialNumber(parsed.SerialNumber(), input); });
  AddDecoder(to.decode,
             Peer("`wolfSSL_d2i_X509`",
                  "`ParseCert`, copies of its fields and of the input, and a key object, for which it seeds a random "
                  "number generator."),
             inputs, DecodeCertificate, HasSerialNumber);
  AddReader(to.serialNumber, Peer("`wolfSSL_X509_get_serial_number`", "copies the octets."),
            Hold(inputs, DecodeCertificate), ReadSerialNumber, IsSerialNumber);
}

void AddCrls(const std::vector<CrlInput>& inputs, CrlOperations& to) {
  const Label label =
      Peer("`wolfSSL_d2i_X509_CRL`",
           "a list of serial numbers and dates, each copied; extensions of entries are left out. Nothing "
           "is verified, and it does not encode.");
  AddHeapSide(to.heap, label, inputs.front().octets, DecodeCrl);
  // There is no function that counts the entries: they are there when the heap holds as many of their structs.
  AddDecoder(to.decode, label, inputs, DecodeCrl, [](const Crl& /*crl*/, const CrlInput& input) {
    const size_t before = HeapInUse();
    const Crl second = DecodeCrl(input.octets);
    return second != nullptr && HeapInUse() - before >= input.entries * sizeof(RevokedCert);
  });
}

}  // namespace bench::wolfssl
