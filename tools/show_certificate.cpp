#include "show_certificate.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "concat.h"
#include "nodes.h"
#include "report.h"
#include "show_parts.h"
#include "text.h"
#include "values.h"

namespace tool {
namespace {

enum CertificateSlot : unsigned { kTbsCertificate, kSignatureAlgorithm };
enum TbsCertificateSlot : unsigned {
  kVersion,
  kSerialNumber,
  kSignature,
  kIssuer,
  kValidity,
  kSubject,
  kSubjectPublicKeyInfo,
  kIssuerUniqueId,
  kSubjectUniqueId,
  kExtensions
};
enum ValiditySlot : unsigned { kNotBefore, kNotAfter };

void PrintField(std::string_view label, std::string_view value) {
  constexpr size_t kLabelWidth = 21;
  std::string line = Concat("  ", label, ':');
  line.append(kLabelWidth - std::min(kLabelWidth, label.size() + 1), ' ');
  Print(Concat(line, value, '\n'));
}

// The stored number is one less than the version that people speak of.
std::string VersionText(Octets content) {
  const std::optional<int64_t> number = SmallInteger(content);
  const bool known = number && *number >= 0 && *number <= 2;
  return known ? std::to_string(*number + 1) : Concat("unknown (stored as ", IntegerText(content), ')');
}

void PrintUniqueId(std::string_view label, const void* bits) {
  if (bits != nullptr) PrintField(label, ShortHex(BitStringContent(bits)));
}

}  // namespace

void PrintCertificate(const void* certificate) {
  const void* tbs = Slot(certificate, kTbsCertificate);
  const void* validity = Slot(tbs, kValidity);
  PrintField("Version", VersionText(Content(Slot(tbs, kVersion))));
  PrintField("Serial number", SerialNumberText(Content(Slot(tbs, kSerialNumber))));
  PrintField("Issuer", NameText(Slot(tbs, kIssuer)));
  PrintField("Subject", NameText(Slot(tbs, kSubject)));
  PrintField("Valid from", ValidityTimeText(Slot(validity, kNotBefore)));
  PrintField("Valid until", ValidityTimeText(Slot(validity, kNotAfter)));
  PrintField("Public key", PublicKeyText(Slot(tbs, kSubjectPublicKeyInfo)));
  PrintField("Signature algorithm", AlgorithmText(Slot(certificate, kSignatureAlgorithm)));
  PrintUniqueId("Issuer unique ID", Slot(tbs, kIssuerUniqueId));
  PrintUniqueId("Subject unique ID", Slot(tbs, kSubjectUniqueId));
  PrintExtensions(Slot(tbs, kExtensions));
}

}  // namespace tool
