#include "describe/names.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "asn1/decoding.h"
#include "describe/nodes.h"
#include "describe/primitives.h"
#include "tessel/known_identifiers.hpp"
#include "texts/addresses.h"
#include "texts/concat.h"
#include "texts/values.h"

namespace tool {
namespace {

using RelativeNames = std::span<void* const>;

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

// People see the beginnings of long values, programs the whole.
enum class Extent { kBeginnings, kWhole };

// The value is the hexadecimal form of its whole element where its type or syntax is not known (RFC 4514, 2.4).
void WriteValue(const tessel::NameAttribute& attribute, Extent extent, const TextSink& write) {
  const bool isWhole = extent == Extent::kWhole;
  const bool isKnown = !tessel::KnownName(OidText(attribute.type)).empty();
  const std::optional<tessel::NameAttribute::Primitive> value = attribute.PrimitiveValue();
  if (isKnown && value && tessel::IsCharacterString(value->tag, value->content)) {
    constexpr tessel::Escape kEscape = tessel::Escape::kName;
    if (isWhole) return StringText(value->tag, value->content, kEscape)(write);
    return write(ShortText(value->tag, value->content, kEscape));
  }
  write("#");
  if (isWhole) return HexText(attribute.value)(write);
  write(ShortHex(attribute.value));
}

tessel::NameAttribute AttributeOf(const void* node) {
  return {Content(Slot(node, kAttributeType)), Content(Slot(node, kAttributeValue))};
}

void WriteName(RelativeNames relativeNames, Extent extent, const TextSink& write) {
  std::string_view before;
  for (const void* attributes : relativeNames) {
    if (Items(attributes).empty()) write(Concat(before, "(empty)"));
    for (const void* attribute : Items(attributes)) {
      const tessel::NameAttribute it = AttributeOf(attribute);
      write(Concat(before, OidName(it.type), '='));
      WriteValue(it, extent, write);
      before = "+";
    }
    before = ", ";
  }
  if (relativeNames.empty()) write("(empty)");
}

Fact AttributeFact(const void* node) {
  const tessel::NameAttribute attribute = AttributeOf(node);
  Fact fact = OidFact(attribute.type);
  fact.Hide("value", ElementFact(attribute.value));
  return fact;
}

Fact AttributesFact(const void* attributes) { return ListFact(attributes, AttributeFact); }

Fact NameOf(RelativeNames relativeNames) {
  Fact fact = Fact::Object();
  WriteName(relativeNames, Extent::kBeginnings, [&fact](std::string_view piece) { fact.text += piece; });
  fact.Hide("text", [=](const TextSink& write) { WriteName(relativeNames, Extent::kWhole, write); });
  fact.Hide("rdns", ListFact(relativeNames, AttributesFact));
  return fact;
}

// OtherName ::= [0] IMPLICIT SEQUENCE { type-id OBJECT IDENTIFIER, value [0] EXPLICIT ANY }
Fact OtherNameFact(Octets element) {
  const std::optional<Element> outer = ReadElement(element);
  if (!outer) return UnreadFact(element);
  Octets rest = ContentOf(*outer, element);
  const std::optional<Octets> type = TakeContentOfType(rest, TESSEL_KIND_OBJECT_IDENTIFIER);
  const std::optional<Element> wrapper = ReadElement(rest);
  const bool isWrapped = wrapper && wrapper->tagClass == TESSEL_CLASS_CONTEXT && wrapper->tagNumber == 0;
  if (!type || !isWrapped) return UnreadFact(element);
  Fact typeFact = OidFact(*type);
  Fact value = ElementFact(ContentOf(*wrapper, rest));
  Fact fact = Fact::Object(Concat(typeFact.text, ", ", value.text));
  fact.Hide("type", std::move(typeFact));
  fact.Hide("value", std::move(value));
  return fact;
}

Fact DirectoryNameFact(Octets encoded) {
  try {
    return DecodedFact(X509NameItem, encoded, NameFact);
  } catch (const DecodingError&) {
    return UnreadFact(encoded);
  }
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
      return OidFact(value);
    default:
      return UnreadFact(value);
  }
}

Fact GeneralNameFact(const void* name, bool withMask) {
  const Alternative chosen = Chosen(name);
  if (chosen.value == nullptr || chosen.index >= std::size(kKindNames)) return Fact::Of("(absent)", nullptr);
  Fact value = GeneralNameValueFact(chosen.index, Content(chosen.value), withMask);
  Fact fact = Fact::Object(value.text);
  fact.label = kKindNames[chosen.index].label;
  fact.Hide("kind", std::string(kKindNames[chosen.index].key));
  fact.Hide("value", std::move(value));
  return fact;
}

}  // namespace

Fact NameFact(const void* name) { return name == nullptr ? Fact::Of("(absent)", nullptr) : NameOf(Items(name)); }

Fact RelativeNameFact(const Asn1Choice& choice) { return NameOf({&choice.value, 1}); }

Fact GeneralNameFact(const void* name) { return GeneralNameFact(name, false); }

Fact SubtreeBaseFact(const void* name) { return GeneralNameFact(name, true); }

Fact GeneralNamesFact(const void* names) {
  Fact fact = ListFact(names, [](const void* name) { return GeneralNameFact(name); });
  fact.TellIfEmpty();
  return fact;
}

}  // namespace tool
