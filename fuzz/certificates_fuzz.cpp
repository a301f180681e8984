// Certificates, beside OpenSSL. What both accept both write with the same octets, and where only one accepts an input,
// the difference is one of the reasons that are listed here.
#include <openssl/asn1.h>
#include <openssl/err.h>

#include <algorithm>
#include <string_view>

#include "getters.h"
#include "peers/openssl_templates.h"

namespace fuzz {
namespace {

struct Reencoded {
  std::optional<Bytes> octets;
  // Why there are none.
  uint32_t reason = 0;
};

// What stands for a reason of OpenSSL's when the member that it failed at says more.
enum : uint32_t {
  // OpenSSL looks into open values, and tessel does not.
  kInOpenValue = 10000,
  // What OpenSSL reads as an OPTIONAL member that is malformed is none to tessel, which skips it behind the last: any
  // element where OpenSSL expects the extensions, and a BIT STRING in segments.
  kInsteadOfMember,
};

uint32_t OpensslReason() {
  const auto reason = static_cast<uint32_t>(ERR_GET_REASON(ERR_peek_error()));
  const char* place = "";
  std::string_view innermost;
  while (ERR_get_error_all(nullptr, nullptr, nullptr, &place, nullptr) != 0) {
    if (innermost.empty()) innermost = place;
  }
  if (innermost == "Field=parameter, Type=X509_ALGOR" || innermost == "Field=value, Type=PlainAttribute") {
    return kInOpenValue;
  }
  const bool isInsteadOfLast = innermost == "Field=extensions, Type=PlainTbsCertificate" &&
                               (reason == ASN1_R_WRONG_TAG || reason == ASN1_R_EXPLICIT_TAG_NOT_CONSTRUCTED);
  const bool isUniqueId = innermost == "Field=issuerUniqueId, Type=PlainTbsCertificate" ||
                          innermost == "Field=subjectUniqueId, Type=PlainTbsCertificate";
  return isUniqueId || isInsteadOfLast ? kInsteadOfMember : reason;
}

Reencoded ByTessel(const Bytes& input) {
  tessel::Owned<Certificate> certificate;
  Reencoded result;
  result.reason = tessel::Try(DecodeCertificate, input, certificate.Out());
  if (result.reason == TESSEL_OK) result.octets = FetchChecked(EncodeCertificate, certificate);
  return result;
}

Reencoded ByOpenssl(const Bytes& input) {
  using bench::openssl::CertificateTemplate;
  ERR_clear_error();
  const uint8_t* at = input.data();
  const bench::openssl::TemplateValue value(
      ASN1_item_d2i(nullptr, &at, static_cast<long>(input.size()), CertificateTemplate()), {CertificateTemplate()});
  if (value == nullptr) return {std::nullopt, OpensslReason()};
  bench::openssl::DropDefaults(*value);
  uint8_t* block = nullptr;
  const int length = ASN1_item_i2d(value.get(), &block, CertificateTemplate());
  Require(length > 0);
  Reencoded result{Bytes(block, block + length)};
  OPENSSL_free(block);
  return result;
}

// Why OpenSSL refuses what tessel does not.
bool OnlyOpensslRefuses(uint32_t reason) {
  switch (reason) {
    // Octets behind the last member of a SEQUENCE, which tessel skips, whether they are elements or not.
    case ASN1_R_SEQUENCE_LENGTH_MISMATCH:
    case ASN1_R_UNEXPECTED_EOC:
    case ASN1_R_BAD_OBJECT_HEADER:
    case ASN1_R_HEADER_TOO_LONG:
    // The same, or an EXPLICIT tag that is longer or shorter than what it holds.
    case ASN1_R_TOO_LONG:
    case ASN1_R_TOO_SMALL:
    case ASN1_R_EXPLICIT_LENGTH_MISMATCH:
    // A list of indefinite length that ends with what it is in.
    case ASN1_R_MISSING_EOC:
    // An object identifier with an arc that does not end, or begins with zeros: tessel keeps its octets.
    case ASN1_R_INVALID_OBJECT_ENCODING:
    case kInOpenValue:
    case kInsteadOfMember:
      return true;
    default:
      std::fprintf(stderr, "%s\n", ERR_reason_error_string(ERR_PACK(ERR_LIB_ASN1, 0, reason)));
      return false;
  }
}

// Whether there is a string in segments, which tessel reads of OCTET STRINGs of indefinite length only, or a SEQUENCE
// or SET that says it is primitive. As the list of extensions that is an absent one to tessel, in its wrapper.
bool HasOddForm(Octets octets) {
  while (octets.size() >= 2) {
    Element element;
    if (ReadHeader(octets, element) != TESSEL_OK) return false;
    const bool isConstructed = element.constructed != 0;
    const bool isConstructedType = element.tagNumber == TESSEL_KIND_SEQUENCE || element.tagNumber == TESSEL_KIND_SET;
    if (element.tagClass == TESSEL_CLASS_UNIVERSAL && isConstructedType != isConstructed) return true;
    octets = octets.subspan(element.headerLength);
    const Octets content = octets.first(std::min<size_t>(element.contentLength, octets.size()));
    if (isConstructed && HasOddForm(content)) return true;
    octets = octets.subspan(content.size());
  }
  return false;
}

// Why tessel refuses what OpenSSL does not.
bool OnlyTesselRefuses(const Bytes& input, uint32_t status) {
  switch (status) {
    // A BOOLEAN other than 0x00 and 0xFF.
    case TESSEL_INVALID_CONTENT:
      return true;
    case TESSEL_MALFORMED:
    case TESSEL_INVALID_ARGUMENT:
      return HasOddForm(input);
    default:
      std::fprintf(stderr, "status %u\n", status);
      return false;
  }
}

void Run(const Bytes& input) {
  const Reencoded tessel = ByTessel(input);
  const Reencoded openssl = ByOpenssl(input);
  if (tessel.octets && openssl.octets) {
    // Unused bits and open values are written by tessel as they were read, and by OpenSSL in order.
    Require(tessel.octets == openssl.octets || ByOpenssl(*tessel.octets).octets == openssl.octets || HasOddForm(input));
  } else if (tessel.octets) {
    Require(HasOddForm(input) || OnlyOpensslRefuses(openssl.reason));
  } else if (openssl.octets) {
    Require(OnlyTesselRefuses(input, tessel.reason));
  }
}

}  // namespace
}  // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  fuzz::Run(fuzz::Bytes(data, data + size));
  return 0;
}
