#include "command/kinds.h"

#include <algorithm>

#include "asn1/ber.h"
#include "tessel/octets.hpp"
#include "tessel/tessel.h"
#include "texts/concat.h"

namespace tool {
namespace {

const Kind kKinds[] = {
    {"certificate", {"CERTIFICATE", "X509 CERTIFICATE"}, &kType<tessel::kCertificate>},
};

constexpr std::string_view kRequest = "a certificate request";
constexpr std::string_view kMessage = "a CMS message";
constexpr std::string_view kEncryptedKey = "an encrypted private key";
constexpr std::string_view kPrivateKey = "a private key";
constexpr std::string_view kPublicKey = "a public key";
constexpr std::string_view kOcspRequest = "an OCSP request";
constexpr std::string_view kOcspResponse = "an OCSP response";

struct OtherKind {
  std::string_view sign;
  std::string_view kind;
};

// By the ends of labels. The first that fits counts.
constexpr OtherKind kLabelEnds[] = {
    {"CRL", "a CRL"},
    {"CERTIFICATE REQUEST", kRequest},
    {"TRUSTED CERTIFICATE", "a certificate with trust settings of OpenSSL"},
    {"ATTRIBUTE CERTIFICATE", "an attribute certificate"},
    {"PKCS7", kMessage},
    {"PKCS #7 SIGNED DATA", kMessage},
    {"CMS", kMessage},
    {"OCSP REQUEST", kOcspRequest},
    {"OCSP RESPONSE", kOcspResponse},
    {"ENCRYPTED PRIVATE KEY", kEncryptedKey},
    {"PRIVATE KEY", kPrivateKey},
    {"PUBLIC KEY", kPublicKey},
    {"PARAMETERS", "a set of key parameters"},
};

// By the identifier octets of the members of the outermost element and, behind a stroke, of the members of the first of
// these, as far as they go. The first that fits counts.
constexpr OtherKind kStarts[] = {
    {"303003/02303017", "a CRL"},
    {"303003/02303018", "a CRL"},
    {"303003/303017", "a CRL"},
    {"303003/303018", "a CRL"},
    {"303003/023030A0", kRequest},
    {"303003/023030.", kRequest},
    {"303003/0230A0", "an attribute certificate"},
    {"3003/06", kPublicKey},
    {"3004/06", kEncryptedKey},
    {"06A0/", kMessage},
    {"0AA0/", kOcspResponse},
    {"0A/", kOcspResponse},
    {"30/30", kOcspRequest},
    {"30/A", kOcspRequest},
    {"30A0/30", kOcspRequest},
    {"30A0/A", kOcspRequest},
    {"3030/02.", "a response of a time stamp authority"},
    {"023002", "a request for a time stamp"},
    {"023006", "a request for a time stamp"},
    {"023001", "a request for a time stamp"},
    {"02303", "a PKCS #12 file"},
    {"023004", kPrivateKey},
    {"0204", kPrivateKey},
    {"020202020202020202/", kPrivateKey},
};

// Empty for octets that are no sound BER.
std::string StartOf(Octets octets) {
  constexpr size_t kLongest = 20;
  std::string members;
  std::string first;
  Walk walk(octets);
  for (Element element; walk.Next(element);) {
    const std::string identifier = element.IsEndOfContents() ? "" : tessel::Hex(octets.subspan(element.offset, 1));
    if (element.depth == 1 && members.size() < kLongest) members += identifier;
    if (element.depth == 2 && members.size() == 2 && first.size() < kLongest) first += identifier;
    if (walk.Depth() == 0) return Concat(members, '/', first, '.');
  }
  return {};
}

}  // namespace

bool Kind::HasLabel(std::string_view label) const {
  return !label.empty() && std::find(labels.begin(), labels.end(), label) != labels.end();
}

std::span<const Kind> Kinds() { return kKinds; }

std::string_view OtherKindOfLabel(std::string_view label) {
  for (const OtherKind& other : kLabelEnds) {
    if (label.ends_with(other.sign)) return other.kind;
  }
  return {};
}

std::string_view OtherKindOfElements(Octets octets) {
  const std::string start = StartOf(octets);
  for (const OtherKind& other : kStarts) {
    if (start.starts_with(other.sign)) return other.kind;
  }
  return {};
}

}  // namespace tool
