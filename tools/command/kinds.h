// The kinds of objects: those that `tessel show` knows, and what it can say about others.
#pragma once

#include <array>
#include <string_view>

#include "describe/describer.h"

namespace tool {

struct Kind {
  std::string_view name;
  // The labels of its PEM blocks; of a kind that is not shown yet, what they end with.
  std::array<std::string_view, 3> labels;
  // The identifier octets of the members of its outermost element and, behind a stroke, of the members of the first of
  // these, as far as they tell the kind.
  std::array<std::string_view, 4> starts;
  const Type* type;  // null: it is not shown yet
};

// In the order in which they are tried.
inline constexpr Kind kKinds[] = {
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

}  // namespace tool
