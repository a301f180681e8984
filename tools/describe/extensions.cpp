#include "describe/extensions.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "asn1/decoding.h"
#include "describe/extension_readers.h"
#include "describe/nodes.h"
#include "describe/primitives.h"
#include "texts/concat.h"
#include "texts/values.h"

namespace tool {
namespace {

enum ExtensionSlot : unsigned { kIdentifier, kCritical, kValue };

std::vector<const ExtensionReader*> ReadersFor(std::string_view dotted) {
  std::vector<const ExtensionReader*> found;
  for (const auto readers : {StandardReaders(), DistributionPointReaders(), UntypedReaders()}) {
    for (const ExtensionReader& reader : readers) {
      if (reader.dotted == dotted) found.push_back(&reader);
    }
  }
  return found;
}

// `length` receives how many octets of the value are told.
Fact ReadValue(const ExtensionReader& reader, Octets value, uint32_t& length) {
  if (value.empty()) throw DecodingError(TESSEL_MALFORMED);
  if (reader.item == nullptr) {
    const std::optional<Element> element = ReadElement(value);
    length = element ? element->headerLength + element->contentLength : static_cast<uint32_t>(value.size());
    return ElementFact(value.first(length));
  }
  Fact fact = DecodedFact(*reader.item, value, reader.describe, &length);
  fact.TellIfEmpty();
  return fact;
}

void TellValue(Fact& fact, Octets oid, Octets value) {
  std::string label;
  for (const ExtensionReader* reader : ReadersFor(OidText(oid))) {
    try {
      uint32_t length = 0;
      fact.Add("value", {}, ReadValue(*reader, value, length));
      // Decoders do not look at octets behind the element.
      const Octets trailing = value.subspan(length);
      if (!trailing.empty()) fact.Add("trailing", "Octets behind the value", HexFact(trailing));
      return;
    } catch (const DecodingError& error) {
      label = Concat("Does not decode (", error.Problem(), ')');
    }
  }
  fact.Add("hex", label, HexFact(value));
}

Fact ExtensionFact(const void* extension) {
  const Octets oid = Content(Slot(extension, kIdentifier));
  const Octets critical = Content(Slot(extension, kCritical));
  const bool isCritical = !critical.empty() && critical.front() != 0;
  Fact fact = OidFact(oid);
  if (isCritical) fact.text += ", critical";
  fact.Hide("critical", isCritical);
  TellValue(fact, oid, Content(Slot(extension, kValue)));
  return fact;
}

}  // namespace

Fact ExtensionsFact(const void* extensions) {
  Fact fact = ListFact(extensions, ExtensionFact);
  fact.TellIfEmpty();
  return fact;
}

}  // namespace tool
