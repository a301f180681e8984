// OpenSSL. Its X509 and X509_CRL do more than decode, and keep encodings; the lines named "templates" are its ASN.1
// engine alone.
#include <openssl/evp.h>
#include <openssl/objects.h>
#include <openssl/x509.h>
#include <openssl/x509v3.h>

#include <ctime>
#include <memory>
#include <optional>
#include <string>

#include "peers/openssl_templates.h"
#include "peers/peers.h"

namespace bench::openssl {
namespace {

template <class Type, void (*Free)(Type*)>
struct Deleter {
  void operator()(Type* value) const { Free(value); }
};
using X509Value = std::unique_ptr<X509, Deleter<X509, X509_free>>;
using CrlValue = std::unique_ptr<X509_CRL, Deleter<X509_CRL, X509_CRL_free>>;

Label Peer(const char* name, const char* remark) { return {Kind::kPeer, std::string("OpenSSL ") + name, remark}; }
Label Aside(const char* name, const char* remark) { return {Kind::kAside, std::string("OpenSSL ") + name, remark}; }

// Asks an i2d function for the size and then for the octets.
template <class Encode>
Octets EncodeTwice(Encode encode) {
  const int size = encode(nullptr);
  if (size <= 0) return {};
  uint8_t* const output = Output(static_cast<size_t>(size));
  uint8_t* at = output;
  const int written = encode(&at);
  return written == size ? Octets(output, static_cast<size_t>(size)) : Octets();
}

// The templates.

auto TemplateDecoder(const ASN1_ITEM* item) {
  return [item](Octets octets) {
    const uint8_t* at = octets.data();
    return TemplateValue(ASN1_item_d2i(nullptr, &at, static_cast<long>(octets.size()), item), {item});
  };
}

Octets EncodeTemplate(const TemplateValue& value) {
  const ASN1_ITEM* item = value.get_deleter().item;
  return EncodeTwice([&value, item](uint8_t** at) { return ASN1_item_i2d(value.get(), at, item); });
}

TemplateValue CopyTemplate(const TemplateValue& value) {
  const ASN1_ITEM* item = value.get_deleter().item;
  return TemplateValue(static_cast<ASN1_VALUE*>(ASN1_item_dup(item, value.get())), {item});
}

Label TemplateDecodingLabel() {
  return Peer("templates `ASN1_item_d2i`",
              "its ASN.1 engine alone, with templates of this program: the same tree as tessel's, but each node and "
              "each content is an allocation of its own.");
}

Label TemplateEncodingLabel() {
  return Peer("templates `ASN1_item_i2d`", "its ASN.1 engine alone: really encodes all of the tree.");
}

Label TemplateCopyLabel() {
  return Peer("templates `ASN1_item_dup`", "its ASN.1 engine alone, which copies by encoding and decoding.");
}

// Certificates.

X509Value DecodeX509(Octets octets) {
  const uint8_t* at = octets.data();
  return X509Value(d2i_X509(nullptr, &at, static_cast<long>(octets.size())));
}

// Makes OpenSSL forget the encoding that it kept of the part that is signed.
X509Value DecodeX509WithoutEncoding(Octets octets) {
  X509Value certificate = DecodeX509(octets);
  if (certificate != nullptr) i2d_re_X509_tbs(certificate.get(), nullptr);
  return certificate;
}

Octets EncodeX509(const X509Value& certificate) {
  return EncodeTwice([&certificate](uint8_t** at) { return i2d_X509(certificate.get(), at); });
}

X509Value CopyX509(const X509Value& certificate) { return X509Value(X509_dup(certificate.get())); }

Octets SerialNumberOf(const X509Value& certificate) { return OctetsOf(X509_get0_serialNumber(certificate.get())); }

std::optional<Octets> ReadSerialNumber(const X509Value& certificate) {
  const Octets serial = SerialNumberOf(certificate);
  if (serial.empty()) return std::nullopt;
  uint8_t* const output = Output(serial.size());
  std::copy(serial.begin(), serial.end(), output);
  return Octets(output, serial.size());
}

std::optional<std::tm> ReadNotBefore(const X509Value& certificate) {
  std::tm time{};
  if (ASN1_TIME_to_tm(X509_get0_notBefore(certificate.get()), &time) != 1) return std::nullopt;
  return time;
}

std::optional<Octets> FindBasicConstraints(const X509Value& certificate) {
  const int index = X509_get_ext_by_NID(certificate.get(), NID_basic_constraints, -1);
  if (index < 0) return std::nullopt;
  return OctetsOf(X509_EXTENSION_get_data(X509_get_ext(certificate.get(), index)));
}

void AddCertificateReaders(const std::vector<CertificateInput>& inputs, CertificateOperations& to) {
  const auto held = Hold(inputs, DecodeX509);
  AddReader(to.serialNumber, Peer("`X509_get0_serialNumber`", "lends the number; this program copies its octets."),
            held, ReadSerialNumber, IsSerialNumber);
  AddReader(to.notBefore, Peer("`X509_get0_notBefore`, `ASN1_TIME_to_tm`", "reads the text into calendar fields."),
            held, ReadNotBefore,
            [](std::tm time, const CertificateInput& input) { return IsNotBefore(timegm(&time), input); });
  AddReader(to.extension, Peer("`X509_get_ext_by_NID`", "finds the extension by its number and lends the value."), held,
            FindBasicConstraints, IsBasicConstraints);
}

// CRLs.

CrlValue DecodeCrl(Octets octets) {
  const uint8_t* at = octets.data();
  return CrlValue(d2i_X509_CRL(nullptr, &at, static_cast<long>(octets.size())));
}

CrlValue DecodeCrlWithoutEncoding(Octets octets) {
  CrlValue crl = DecodeCrl(octets);
  if (crl != nullptr) i2d_re_X509_CRL_tbs(crl.get(), nullptr);
  return crl;
}

Octets EncodeCrl(const CrlValue& crl) {
  return EncodeTwice([&crl](uint8_t** at) { return i2d_X509_CRL(crl.get(), at); });
}

CrlValue CopyCrl(const CrlValue& crl) { return CrlValue(X509_CRL_dup(crl.get())); }

size_t CountEntries(const CrlValue& crl) {
  return static_cast<size_t>(sk_X509_REVOKED_num(X509_CRL_get_REVOKED(crl.get())));
}

}  // namespace

void AddCertificates(const std::vector<CertificateInput>& inputs, CertificateOperations& to) {
  const auto decodeTemplate = TemplateDecoder(CertificateTemplate());
  AddDecoder(to.decode, TemplateDecodingLabel(), inputs, decodeTemplate,
             [](const TemplateValue& value, const CertificateInput& input) {
               return IsSerialNumber(TemplateSerialNumber(*value), input);
             });
  AddDecoder(to.decode,
             Peer("`d2i_X509`",
                  "its ordinary call: also decodes the public key into a key object, brings names into a normal form, "
                  "and keeps copies of the encodings of the signed part and of the names."),
             inputs, DecodeX509, [](const X509Value& certificate, const CertificateInput& input) {
               return IsSerialNumber(SerialNumberOf(certificate), input);
             });

  const auto templates = Hold(inputs, decodeTemplate);
  AddEncoder(to.encode, TemplateEncodingLabel(), templates, EncodeTemplate);
  AddEncoder(to.encode,
             Peer("`i2d_X509` after `i2d_re_X509_tbs`",
                  "encodes anew, apart from the names, whose kept encodings are copied."),
             Hold(inputs, DecodeX509WithoutEncoding), EncodeX509);
  AddEncoder(to.encode, Aside("`i2d_X509`", "copies the kept encoding of the signed part; no encoding of the tree."),
             Hold(inputs, DecodeX509), EncodeX509);

  AddCopier(to.copy, TemplateCopyLabel(), templates, CopyTemplate, EncodeTemplate);
  AddCopier(to.copy, Peer("`X509_dup`", "copies by encoding, from the kept encoding, and decoding as `d2i_X509` does."),
            Hold(inputs, DecodeX509), CopyX509, EncodeX509);
  AddCertificateReaders(inputs, to);
}

void AddCrls(const std::vector<CrlInput>& inputs, CrlOperations& to) {
  const auto decodeTemplate = TemplateDecoder(CrlTemplate());
  AddCrlDecoder(to, TemplateDecodingLabel(), inputs, decodeTemplate,
                [](const TemplateValue& value) { return CountTemplateEntries(*value); });
  AddCrlDecoder(to,
                Peer("`d2i_X509_CRL`",
                     "its ordinary call: also digests the whole CRL, decodes the reason and looks at the extensions of "
                     "each entry, and keeps a copy of the encoding of the signed part."),
                inputs, DecodeCrl, CountEntries);

  const auto templates = Hold(inputs, decodeTemplate);
  AddEncoder(to.encode, TemplateEncodingLabel(), templates, EncodeTemplate);
  AddEncoder(to.encode,
             Peer("`i2d_X509_CRL` after `i2d_re_X509_CRL_tbs`",
                  "encodes anew, apart from the issuer, whose kept encoding is copied."),
             Hold(inputs, DecodeCrlWithoutEncoding), EncodeCrl);
  const auto held = Hold(inputs, DecodeCrl);
  AddEncoder(to.encode,
             Aside("`i2d_X509_CRL`", "copies the kept encoding of the signed part; no encoding of the tree."), held,
             EncodeCrl);

  AddCopier(to.copy, TemplateCopyLabel(), templates, CopyTemplate, EncodeTemplate);
  AddCopier(to.copy,
            Peer("`X509_CRL_dup`", "copies by encoding, from the kept encoding, and decoding as `d2i_X509_CRL` does."),
            held, CopyCrl, EncodeCrl);
}

void AddSetEncoding(const std::vector<SetInput>& inputs, Operation& to) {
  const auto held = Hold(inputs, TemplateDecoder(OctetStringSetTemplate()));
  AddEncoder(to, TemplateEncodingLabel(), held, EncodeTemplate);
}

void AddNest(const std::vector<NestInput>& inputs, Operation& decode, Operation& encode) {
  const auto decodeNest = TemplateDecoder(NestTemplate());
  AddDecoder(decode, TemplateDecodingLabel(), inputs, decodeNest,
             [](const TemplateValue& value, const NestInput& input) {
               return std::ranges::equal(EncodeTemplate(value), input.octets);
             });
  AddEncoder(encode, TemplateEncodingLabel(), Hold(inputs, decodeNest), EncodeTemplate);
}

}  // namespace bench::openssl
