#include "show_parts.h"

#include <algorithm>
#include <optional>
#include <string_view>

#include "concat.h"
#include "known_oids.h"
#include "nodes.h"
#include "report.h"
#include "text.h"
#include "values.h"

namespace tool {
namespace {

enum AttributeSlot : unsigned { kAttributeType, kAttributeValue };
enum AlgorithmSlot : unsigned { kAlgorithm, kParameters };
enum PublicKeySlot : unsigned { kKeyAlgorithm, kKey };
enum ExtensionSlot : unsigned { kExtensionId, kCritical, kExtensionValue };
enum TimeAlternative : uint32_t { kUtcTime, kGeneralizedTime };

constexpr std::string_view kAbsent = "(absent)";

// The content of the element at the start of `octets`, when it is a universal one of this type.
std::optional<Octets> ContentOfType(Octets octets, uint32_t tag) {
  const std::optional<Element> element = ReadElement(octets);
  if (!element || element->tagClass != TESSEL_CLASS_UNIVERSAL || element->tagNumber != tag) return std::nullopt;
  return ContentOf(*element, octets);
}

std::optional<std::string> StringText(Octets value) {
  const std::optional<Element> element = ReadElement(value);
  if (!element || element->tagClass != TESSEL_CLASS_UNIVERSAL || element->constructed) return std::nullopt;
  const std::optional<std::u32string> characters = Characters(element->tagNumber, ContentOf(*element, value));
  if (!characters) return std::nullopt;
  return EscapeText(*characters, Escape::kName);
}

// A value whose type or syntax is not known is the hexadecimal form of its whole element (RFC 4514, 2.4).
std::string AttributeText(const void* attribute) {
  const Octets type = Content(Slot(attribute, kAttributeType));
  const Octets value = Content(Slot(attribute, kAttributeValue));
  const std::optional<std::string> dotted = DottedText(type);
  const bool known = dotted && !KnownName(*dotted).empty();
  const std::optional<std::string> text = known ? StringText(value) : std::nullopt;
  return Concat(OidName(type), '=', text ? *text : Concat('#', Hex(value)));
}

std::string RelativeNameText(const void* attributes) {
  std::string text;
  for (const void* attribute : Items(attributes)) text += Concat(text.empty() ? "" : "+", AttributeText(attribute));
  return text.empty() ? "(empty)" : text;
}

bool IsRsaKey(std::string_view algorithm) {
  return algorithm == "rsaEncryption" || algorithm == "RSASSA-PSS" || algorithm == "RSAES-OAEP";
}

// RSAPublicKey ::= SEQUENCE { modulus INTEGER, publicExponent INTEGER }
std::optional<std::string> RsaSizeText(Octets key) {
  const std::optional<Octets> sequence = ContentOfType(key, TESSEL_KIND_SEQUENCE);
  if (!sequence) return std::nullopt;
  const std::optional<Octets> modulus = ContentOfType(*sequence, TESSEL_KIND_INTEGER);
  if (!modulus) return std::nullopt;
  return Concat(BitCount(*modulus), " bits");
}

// EC parameters are the identifier of a curve; those of GOST are a SEQUENCE that starts with one.
std::optional<std::string> ParameterSetText(Octets parameters) {
  const std::optional<Octets> sequence = ContentOfType(parameters, TESSEL_KIND_SEQUENCE);
  const std::optional<Octets> oid = ContentOfType(sequence.value_or(parameters), TESSEL_KIND_OBJECT_IDENTIFIER);
  if (!oid) return std::nullopt;
  return OidName(*oid);
}

std::string KeySizeText(std::string_view algorithm, Octets parameters, Octets key) {
  std::optional<std::string> size = IsRsaKey(algorithm) ? RsaSizeText(key) : ParameterSetText(parameters);
  return size ? *size : OctetCount(key.size());
}

bool IsCritical(const void* extension) {
  const Octets critical = Content(Slot(extension, kCritical));
  return !critical.empty() && critical.front() != 0;
}

std::string ExtensionTitle(const void* extension) {
  return Concat(OidName(Content(Slot(extension, kExtensionId))), IsCritical(extension) ? ", critical" : "");
}

}  // namespace

std::string NameText(const void* nameChoice) {
  const void* name = Chosen(nameChoice).value;
  if (name == nullptr) return std::string(kAbsent);
  std::string text;
  for (const void* relativeName : Items(name)) text += Concat(text.empty() ? "" : ", ", RelativeNameText(relativeName));
  return text.empty() ? "(empty)" : text;
}

std::string ValidityTimeText(const void* timeChoice) {
  const Alternative time = Chosen(timeChoice);
  if (time.value == nullptr) return std::string(kAbsent);
  const uint32_t tag = time.index == kUtcTime ? TESSEL_KIND_UTC_TIME : TESSEL_KIND_GENERALIZED_TIME;
  return TimeText(tag, Content(time.value));
}

std::string AlgorithmText(const void* algorithmIdentifier) {
  if (algorithmIdentifier == nullptr) return std::string(kAbsent);
  return OidName(Content(Slot(algorithmIdentifier, kAlgorithm)));
}

std::string PublicKeyText(const void* subjectPublicKeyInfo) {
  if (subjectPublicKeyInfo == nullptr) return std::string(kAbsent);
  const void* identifier = Slot(subjectPublicKeyInfo, kKeyAlgorithm);
  const std::string algorithm = AlgorithmText(identifier);
  const Octets parameters = Content(Slot(identifier, kParameters));
  const Octets key = BitStringContent(Slot(subjectPublicKeyInfo, kKey));
  return Concat(algorithm, ", ", KeySizeText(algorithm, parameters, key));
}

void PrintExtensions(const void* extensions) {
  if (Items(extensions).empty()) return;
  size_t width = 0;
  for (const void* extension : Items(extensions)) width = std::max(width, ExtensionTitle(extension).size());
  Print("  Extensions:\n");
  for (const void* extension : Items(extensions)) {
    std::string line = Concat("    ", ExtensionTitle(extension));
    line.resize(4 + width + 2, ' ');
    Print(Concat(line, ShortHex(Content(Slot(extension, kExtensionValue))), '\n'));
  }
}

}  // namespace tool
