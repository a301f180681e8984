#include "command/kinds.h"

#include <algorithm>
#include <string>

#include "asn1/ber.h"
#include "texts/concat.h"

namespace tool {
namespace {

// The first that fits counts.
constexpr Kind kKinds[] = {
    {"certificate", {"CERTIFICATE", "X509 CERTIFICATE"}, {}, &kType<tessel::kCertificate>},
    {"CRL", {"CRL"}, {"303003/02303017", "303003/02303018", "303003/303017", "303003/303018"}, nullptr},
    {"certificate request", {"CERTIFICATE REQUEST"}, {"303003/023030A0", "303003/023030."}, nullptr},
    {"certificate with trust settings of OpenSSL", {"TRUSTED CERTIFICATE"}, {}, nullptr},
    {"attribute certificate", {"ATTRIBUTE CERTIFICATE"}, {"303003/0230A0"}, nullptr},
    {"CMS message", {"PKCS7", "PKCS #7 SIGNED DATA", "CMS"}, {"06A0/"}, nullptr},
    {"OCSP request", {"OCSP REQUEST"}, {"30/30", "30/A", "30A0/30", "30A0/A"}, nullptr},
    {"OCSP response", {"OCSP RESPONSE"}, {"0AA0/", "0A/"}, nullptr},
    {"encrypted private key", {"ENCRYPTED PRIVATE KEY"}, {"3004/06"}, nullptr},
    {"private key", {"PRIVATE KEY"}, {"023004", "0204", "020202020202020202/"}, nullptr},
    {"public key", {"PUBLIC KEY"}, {"3003/06"}, nullptr},
    {"set of key parameters", {"PARAMETERS"}, {}, nullptr},
    {"response of a time stamp authority", {}, {"3030/02."}, nullptr},
    {"request for a time stamp", {}, {"023002", "023006", "023001"}, nullptr},
    {"PKCS #12 file", {}, {"02303"}, nullptr},
};

// What a kind's `starts` are compared with. Empty for octets that are no sound BER.
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

template <class IsOf>
const Kind* FindKind(IsOf isOf) {
  const auto* found = std::ranges::find_if(kKinds, isOf);
  return found == std::end(kKinds) ? nullptr : found;
}

}  // namespace

std::span<const Kind> Kinds() { return kKinds; }

const Kind* KindOfLabel(std::string_view label) {
  return FindKind([label](const Kind& kind) {
    return std::ranges::any_of(kind.labels, [&](std::string_view known) {
      return !known.empty() && (kind.type == nullptr ? label.ends_with(known) : label == known);
    });
  });
}

const Kind* KindOfElements(Octets octets) {
  return FindKind([start = StartOf(octets)](const Kind& kind) {
    return std::ranges::any_of(kind.starts,
                               [&](std::string_view known) { return !known.empty() && start.starts_with(known); });
  });
}

}  // namespace tool
