#include "describe_extensions.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "concat.h"
#include "describe_values.h"
#include "extension_readers.h"
#include "library.h"
#include "status_text.h"
#include "text.h"
#include "values.h"

namespace tool {
namespace {

struct KnownExtension {
  std::string_view dotted;
  ExtensionReader read;
};

constexpr KnownExtension kKnownExtensions[] = {
    {"2.5.29.9", ReadSubjectDirectoryAttributes},
    {"2.5.29.14", ReadSubjectKeyIdentifier},
    {"2.5.29.15", ReadKeyUsage},
    {"2.5.29.16", ReadPrivateKeyUsagePeriod},
    {"2.5.29.17", ReadGeneralNames},
    {"2.5.29.18", ReadGeneralNames},
    {"2.5.29.19", ReadBasicConstraints},
    {"2.5.29.30", ReadNameConstraints},
    {"2.5.29.31", ReadCrlDistributionPoints},
    {"2.5.29.32", ReadCertificatePolicies},
    {"2.5.29.33", ReadPolicyMappings},
    {"2.5.29.35", ReadAuthorityKeyIdentifier},
    {"2.5.29.36", ReadPolicyConstraints},
    {"2.5.29.37", ReadExtendedKeyUsage},
    {"2.5.29.46", ReadCrlDistributionPoints},
    {"2.5.29.54", ReadInhibitAnyPolicy},
    {"1.3.6.1.5.5.7.1.1", ReadInformationAccess},
    {"1.3.6.1.5.5.7.1.11", ReadInformationAccess},
    {"1.3.6.1.5.5.7.1.24", ReadTlsFeatures},
    {"1.3.6.1.5.5.7.48.1.5", ReadSingleValue},
    {"1.3.6.1.4.1.11129.2.4.3", ReadSingleValue},
    {"1.3.6.1.4.1.311.20.2", ReadSingleValue},
    {"1.3.6.1.4.1.311.21.1", ReadSingleValue},
    {"2.16.840.1.113730.1.1", ReadNetscapeCertificateType},
    {"2.16.840.1.113730.1.2", ReadSingleValue},
    {"2.16.840.1.113730.1.3", ReadSingleValue},
    {"2.16.840.1.113730.1.4", ReadSingleValue},
    {"2.16.840.1.113730.1.8", ReadSingleValue},
    {"2.16.840.1.113730.1.13", ReadSingleValue},
    {"1.2.643.100.111", ReadSingleValue},
    {"1.2.643.100.112", ReadIssuerSignTool},
    {"1.2.643.100.114", ReadSingleValue},
    {"1.2.643.3.123.3.1", ReadSingleValue},
};

ExtensionReader ReaderFor(Octets oid) {
  const std::optional<std::string> dotted = DottedText(oid);
  for (const KnownExtension& known : kKnownExtensions) {
    if (dotted && *dotted == known.dotted) return known.read;
  }
  return nullptr;
}

// Decoders do not look at octets behind the element.
void TellTrailingOctets(Fact& fact, Octets value) {
  const std::optional<Element> element = ReadElement(value);
  if (!element) return;
  const Octets trailing = value.subspan(element->headerLength + element->contentLength);
  if (!trailing.empty()) fact.Add("trailing", "Octets behind the value", HexFact(trailing));
}

void TellValue(Fact& fact, Octets oid, Octets value) {
  const ExtensionReader read = ReaderFor(oid);
  if (read == nullptr) return fact.Add("hex", {}, HexFact(value));
  Fact valueFact;
  const uint32_t status = value.empty() ? uint32_t{TESSEL_MALFORMED} : read(value, valueFact);
  if (status != TESSEL_OK) {
    fact.Add("hex", Concat("Does not decode (", StatusText(status), ")"), HexFact(value));
    return;
  }
  fact.Add("value", {}, std::move(valueFact));
  TellTrailingOctets(fact, value);
}

Fact ExtensionFact(const X509ExtensionsSlot* slot, uint32_t index) {
  CountedOid oid;
  uint32_t critical = 0;
  Bytes value;
  const uint32_t status = Fetch(value, [&](uint8_t* buffer, uint32_t* length) {
    oid.length = sizeof oid.octets;
    return GetX509ExtensionsExtension(slot, index, oid.octets, &oid.length, &critical, buffer, length);
  });
  if (status != TESSEL_OK) return Fact::Object(Concat("(not readable: ", StatusText(status), ')'));
  Fact fact = OidFact(oid.Content());
  if (critical != 0) fact.text += ", critical";
  fact.Hide("critical", critical != 0);
  TellValue(fact, oid.Content(), value);
  return fact;
}

}  // namespace

void TellExtensions(Fact& fact, Certificate* certificate) {
  X509ExtensionsSlot* slot = nullptr;
  uint32_t count = 0;
  if (GetCertificateExtensions(certificate, &slot) != TESSEL_OK ||
      GetX509ExtensionsExtensionsCount(slot, &count) != TESSEL_OK || slot->list == nullptr) {
    return;
  }
  Fact extensions = Fact::List();
  for (uint32_t i = 0; i < count; ++i) extensions.Append(ExtensionFact(slot, i));
  extensions.TellIfEmpty();
  fact.Add("extensions", "Extensions", std::move(extensions));
}

}  // namespace tool
