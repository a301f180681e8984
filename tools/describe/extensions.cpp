// Extensions.
#include <optional>
#include <string>
#include <utility>

#include "describe/describer.h"
#include "describe/extension_values.h"
#include "describe/primitives.h"
#include "describe/types.h"
#include "texts/concat.h"
#include "texts/values.h"

namespace tool {
namespace {

void TellValue(Fact& fact, std::string_view dotted, Octets value) {
  std::string label;
  for (const ExtensionType& known : ExtensionTypes()) {
    if (known.dotted != dotted) continue;
    try {
      uint32_t length = 0;
      fact.Add("value", {}, DecodedFact(*known.type, value, &length));
      // Decoders do not look at octets behind the element.
      const Octets trailing = value.subspan(length);
      if (!trailing.empty()) fact.Add("trailing", "Octets behind the value", HexFact(trailing));
      return;
    } catch (const DecodingError& error) {
      label = Concat("Does not decode (", error.Explained().Text(), ')');
    }
  }
  fact.Add("hex", label, HexFact(value));
}

}  // namespace

Fact FactOf(const X509Extension& extension) {
  const bool isCritical = ContentOf(*extension.critical).front() != 0;
  Fact fact = FactOf(*extension.extnID);
  if (isCritical) fact.text += ", critical";
  fact.Hide("critical", isCritical);
  TellValue(fact, OidText(ContentOf(*extension.extnID)), ContentOf(*extension.extnValue));
  return fact;
}

}  // namespace tool
