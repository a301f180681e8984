// GnuTLS. It decodes into the trees of libtasn1, whose nodes have names and are found by them.
#include <gnutls/x509.h>

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "peers/peers.h"

namespace bench::gnutls {
namespace {

template <class Handle, void (*Free)(Handle)>
struct Deleter {
  using pointer = Handle;
  void operator()(Handle handle) const { Free(handle); }
};
using Certificate = std::unique_ptr<gnutls_x509_crt_t, Deleter<gnutls_x509_crt_t, gnutls_x509_crt_deinit>>;
using Crl = std::unique_ptr<gnutls_x509_crl_t, Deleter<gnutls_x509_crl_t, gnutls_x509_crl_deinit>>;

// Octets that GnuTLS has allocated.
class AllocatedDatum {
 public:
  AllocatedDatum() = default;
  AllocatedDatum(AllocatedDatum&& other) noexcept : datum_(std::exchange(other.datum_, {})) {}
  AllocatedDatum& operator=(AllocatedDatum&&) = delete;
  ~AllocatedDatum() { gnutls_free(datum_.data); }

  gnutls_datum_t* Get() { return &datum_; }
  operator Octets() const { return {datum_.data, datum_.size}; }

 private:
  gnutls_datum_t datum_{};
};

Label Peer(const char* name, const char* remark) { return {Kind::kPeer, std::string("GnuTLS ") + name, remark}; }

gnutls_datum_t DatumOf(Octets octets) {
  return {const_cast<uint8_t*>(octets.data()), static_cast<unsigned int>(octets.size())};
}

template <class Owner, class Handle, class Initialize, class Import>
Owner Decode(Octets octets, Initialize initialize, Import import) {
  Handle handle = nullptr;
  if (initialize(&handle) != GNUTLS_E_SUCCESS) return nullptr;
  Owner owner(handle);
  const gnutls_datum_t input = DatumOf(octets);
  if (import(handle, &input, GNUTLS_X509_FMT_DER) != GNUTLS_E_SUCCESS) return nullptr;
  return owner;
}

Certificate DecodeCertificate(Octets octets) {
  return Decode<Certificate, gnutls_x509_crt_t>(octets, gnutls_x509_crt_init, gnutls_x509_crt_import);
}

// Makes GnuTLS forget the encoding that it kept, by setting what is set already.
Certificate DecodeCertificateWithoutEncoding(Octets octets) {
  Certificate certificate = DecodeCertificate(octets);
  if (certificate == nullptr) return nullptr;
  const int version = gnutls_x509_crt_get_version(certificate.get());
  if (gnutls_x509_crt_set_version(certificate.get(), static_cast<unsigned>(version)) < 0) return nullptr;
  return certificate;
}

AllocatedDatum EncodeCertificate(const Certificate& certificate) {
  AllocatedDatum result;
  gnutls_x509_crt_export2(certificate.get(), GNUTLS_X509_FMT_DER, result.Get());
  return result;
}

Crl DecodeCrl(Octets octets) {
  return Decode<Crl, gnutls_x509_crl_t>(octets, gnutls_x509_crl_init, gnutls_x509_crl_import);
}

AllocatedDatum EncodeCrl(const Crl& crl) {
  AllocatedDatum result;
  gnutls_x509_crl_export2(crl.get(), GNUTLS_X509_FMT_DER, result.Get());
  return result;
}

constexpr size_t kLargestValue = 100;

std::optional<Octets> ReadSerialNumber(const Certificate& certificate) {
  size_t size = kLargestValue;
  uint8_t* output = Output(size);
  if (gnutls_x509_crt_get_serial(certificate.get(), output, &size) != GNUTLS_E_SUCCESS) return std::nullopt;
  return Octets(output, size);
}

std::optional<std::time_t> ReadNotBefore(const Certificate& certificate) {
  const std::time_t time = gnutls_x509_crt_get_activation_time(certificate.get());
  if (time == static_cast<std::time_t>(-1)) return std::nullopt;
  return time;
}

std::optional<Octets> FindBasicConstraints(const Certificate& certificate) {
  size_t size = kLargestValue;
  uint8_t* output = Output(size);
  if (gnutls_x509_crt_get_extension_by_oid(certificate.get(), "2.5.29.19", 0, output, &size, nullptr) !=
      GNUTLS_E_SUCCESS) {
    return std::nullopt;
  }
  return Octets(output, size);
}

void AddReaders(const std::vector<CertificateInput>& inputs, CertificateOperations& to) {
  const auto held = Hold(inputs, DecodeCertificate);
  AddReader(to.serialNumber, Peer("`gnutls_x509_crt_get_serial`", "copies the octets."), held, ReadSerialNumber,
            IsSerialNumber);
  AddReader(to.notBefore, Peer("`gnutls_x509_crt_get_activation_time`", "reads the text into seconds since 1970."),
            held, ReadNotBefore, IsNotBefore);
  AddReader(to.extension, Peer("`gnutls_x509_crt_get_extension_by_oid`", "finds by the text 2.5.29.19, and copies."),
            held, FindBasicConstraints, IsBasicConstraints);
}

}  // namespace

void AddCertificates(const std::vector<CertificateInput>& inputs, CertificateOperations& to) {
  AddDecoder(to.decode,
             Peer("`gnutls_x509_crt_import`",
                  "a tree of named nodes, and a copy of the input; also compares the two signature algorithms, "
                  "finds the names, the key and the extensions in the tree, and reads the validity."),
             inputs, DecodeCertificate, [](const Certificate& certificate, const CertificateInput& input) {
               const std::optional<Octets> serial = ReadSerialNumber(certificate);
               return serial.has_value() && IsSerialNumber(*serial, input);
             });
  AddEncoder(to.encode,
             Peer("`gnutls_x509_crt_export2` after a change",
                  "really encodes, after the version was set to what it was: counts the size and writes, in one call, "
                  "into a block that it allocates."),
             Hold(inputs, DecodeCertificateWithoutEncoding), EncodeCertificate);
  AddReaders(inputs, to);
}

void AddCrls(const std::vector<CrlInput>& inputs, CrlOperations& to) {
  // With 200,000 entries the import takes minutes.
  if (!IsSmall(inputs)) return;
  AddCrlDecoder(to,
                Peer("`gnutls_x509_crl_import`",
                     "a tree of named nodes; the time grows with the square of the entries. No entry is read."),
                inputs, DecodeCrl,
                [](const Crl& crl) { return static_cast<size_t>(gnutls_x509_crl_get_crt_count(crl.get())); });
  AddEncoder(
      to.encode,
      Peer("`gnutls_x509_crl_export2`", "counts the size and writes, in one call, into a block that it allocates."),
      Hold(inputs, DecodeCrl), EncodeCrl);
}

}  // namespace bench::gnutls
