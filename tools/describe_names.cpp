#include "describe_names.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "addresses.h"
#include "concat.h"
#include "describe_values.h"
#include "library.h"
#include "nodes.h"
#include "tessel/known_identifiers.hpp"
#include "text.h"
#include "values.h"

namespace tool {
namespace {

enum AttributeSlot : unsigned { kAttributeType, kAttributeValue };

// The kinds of general names by their alternatives (names.h).
enum GeneralNameKind : uint32_t { kOtherName, kMail, kDns, kX400, kDirectory, kEdiParty, kUri, kAddress, kRegistered };

struct KindNames {
  std::string_view label;
  std::string_view key;
};

constexpr KindNames kKindNames[] = {
    {"Other name", "otherName"},          {"Email", "rfc822Name"},   {"DNS", "dNSName"},
    {"X.400 address", "x400Address"},     {"Name", "directoryName"}, {"EDI party", "ediPartyName"},
    {"URI", "uniformResourceIdentifier"}, {"IP", "iPAddress"},       {"Registered ID", "registeredID"},
};

std::optional<std::string> StringText(Octets value) {
  const std::optional<Element> element = ReadElement(value);
  if (!element || element->tagClass != TESSEL_CLASS_UNIVERSAL || element->constructed) return std::nullopt;
  const std::optional<std::u32string> characters = Characters(element->tagNumber, ContentOf(*element, value));
  if (!characters) return std::nullopt;
  return EscapeText(*characters, Escape::kName);
}

// A value whose type or syntax is not known is the hexadecimal form of its whole element (RFC 4514, 2.4), which only
// the node has.
std::string AttributeText(Octets type, Octets value) {
  const std::optional<std::string> dotted = DottedText(type);
  const bool known = dotted && !tessel::KnownName(*dotted).empty();
  const std::optional<std::string> text = known ? StringText(value) : std::nullopt;
  return Concat(OidName(type), '=', text ? *text : Concat('#', Hex(value)));
}

Fact AttributeFact(const void* attribute) {
  const Octets type = Content(Slot(attribute, kAttributeType));
  const Octets value = Content(Slot(attribute, kAttributeValue));
  Fact fact = OidFact(type);
  fact.text = AttributeText(type, value);
  fact.Hide("value", ElementFact(value));
  return fact;
}

void AppendJoined(std::string& text, std::string_view separator, std::string_view more) {
  text += Concat(text.empty() ? "" : separator, more);
}

Fact AttributesFact(const void* attributes) {
  Fact fact = Fact::List();
  for (const void* attribute : Items(attributes)) {
    fact.Append(AttributeFact(attribute));
    AppendJoined(fact.text, "+", fact.parts.back().text);
    fact.parts.back().hidden = true;
  }
  fact.TellIfEmpty();
  return fact;
}

Fact NameOf(std::span<void* const> relativeNames) {
  std::string text;
  Fact rdns = Fact::List();
  for (const void* attributes : relativeNames) {
    rdns.Append(AttributesFact(attributes));
    AppendJoined(text, ", ", rdns.parts.back().text);
  }
  if (text.empty()) text = "(empty)";
  Fact fact = Fact::Object(text);
  fact.Hide("text", std::move(text));
  fact.Hide("rdns", std::move(rdns));
  return fact;
}

// OtherName ::= [0] IMPLICIT SEQUENCE { type-id OBJECT IDENTIFIER, value [0] EXPLICIT ANY }
Fact OtherNameFact(Octets element) {
  const std::optional<Element> outer = ReadElement(element);
  if (!outer) return UnreadFact(element);
  Octets rest = ContentOf(*outer, element);
  const std::optional<Element> type = ReadElement(rest);
  if (!type || type->tagNumber != TESSEL_KIND_OBJECT_IDENTIFIER) return UnreadFact(element);
  Fact typeFact = OidFact(ContentOf(*type, rest));
  rest = rest.subspan(type->ContentOffset() + type->contentLength);
  const std::optional<Element> wrapper = ReadElement(rest);
  if (!wrapper) return UnreadFact(element);
  Fact value = ElementFact(ContentOf(*wrapper, rest));
  Fact fact = Fact::Object(Concat(typeFact.text, ", ", value.text));
  fact.Hide("type", std::move(typeFact));
  fact.Hide("value", std::move(value));
  return fact;
}

Fact DirectoryNameFact(Octets encoded) {
  Owned<X509Name> name(FreeX509Name);
  if (DecodeX509Name(encoded.data(), SizeOf(encoded), name.Out()) != TESSEL_OK) return UnreadFact(encoded);
  return NameFact(name.Get());
}

Fact AddressFact(Octets octets, bool withMask) {
  const std::optional<std::string> text = withMask ? AddressRangeText(octets) : AddressText(octets);
  return text ? Fact::Of(*text, *text) : UnreadFact(octets);
}

Fact GeneralNameValueFact(uint32_t kind, Octets value, bool withMask) {
  switch (kind) {
    case kOtherName:
      return OtherNameFact(value);
    case kMail:
    case kDns:
    case kUri:
      return StringFact(TESSEL_KIND_IA5_STRING, value);
    case kDirectory:
      return DirectoryNameFact(value);
    case kAddress:
      return AddressFact(value, withMask);
    case kRegistered:
      return value.empty() ? UnreadFact(value) : OidFact(value.subspan(1));
    default:
      return UnreadFact(value);
  }
}

Fact GeneralNameFact(const X509GeneralName* name, bool withMask) {
  uint32_t kind = 0;
  Bytes value;
  const uint32_t status = Fetch(
      value, [&](uint8_t* buffer, uint32_t* length) { return GetX509GeneralNameValue(name, &kind, buffer, length); });
  if (status != TESSEL_OK || kind >= std::size(kKindNames)) return Fact::Of("(absent)", nullptr);
  Fact valueFact = GeneralNameValueFact(kind, value, withMask);
  Fact fact = Fact::Object(valueFact.text);
  fact.label = kKindNames[kind].label;
  fact.Hide("kind", std::string(kKindNames[kind].key));
  fact.Hide("value", std::move(valueFact));
  return fact;
}

}  // namespace

Fact NameFact(const X509Name* name) { return name == nullptr ? Fact::Of("(absent)", nullptr) : NameOf(Items(name)); }

Fact RelativeNameFact(void* attributes) { return NameOf({&attributes, 1}); }

Fact GeneralNameFact(const X509GeneralName* name) { return GeneralNameFact(name, false); }

Fact SubtreeBaseFact(const X509GeneralName* name) { return GeneralNameFact(name, true); }

Fact GeneralNamesFact(const X509GeneralNames* names) {
  Fact fact = Fact::List();
  for (const void* name : Items(names)) fact.Append(GeneralNameFact(static_cast<const X509GeneralName*>(name)));
  fact.TellIfEmpty();
  return fact;
}

}  // namespace tool
