#include "kinds.h"

#include <algorithm>

#include "describe_certificate.h"
#include "tessel/tessel.h"

namespace tool {
namespace {

template <typename Object>
uint32_t DecodeBy(uint32_t(TESSEL_CALL* decode)(const uint8_t*, uint32_t, Object**), Octets octets, void** object) {
  Object* decoded = nullptr;
  const uint32_t status = decode(octets.data(), static_cast<uint32_t>(octets.size()), &decoded);
  *object = decoded;
  return status;
}

const Kind kKinds[] = {
    {"certificate",
     {"CERTIFICATE", "X509 CERTIFICATE"},
     [](Octets octets, void** object) { return DecodeBy(DecodeCertificate, octets, object); },
     [](void* object) { return CertificateFact(static_cast<Certificate*>(object)); },
     [](void* object) { static_cast<void>(FreeCertificate(static_cast<Certificate*>(object))); }},
};

}  // namespace

bool Kind::HasLabel(std::string_view label) const {
  return !label.empty() && std::find(labels.begin(), labels.end(), label) != labels.end();
}

std::span<const Kind> Kinds() { return kKinds; }

}  // namespace tool
