// Names.
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "describe/describer.h"
#include "describe/primitives.h"
#include "describe/types.h"
#include "tessel/known_identifiers.hpp"
#include "texts/concat.h"
#include "texts/values.h"

namespace tool {
namespace {

using namespace tessel;

// People see the beginnings of long values, programs the whole.
enum class Extent { kBeginnings, kWhole };

// The value is the hexadecimal form of its whole element where its type or syntax is not known (RFC 4514, 2.4).
void WriteValue(const NameAttribute& attribute, Extent extent, const TextSink& write) {
  const bool isWhole = extent == Extent::kWhole;
  const bool isKnown = !KnownName(OidText(attribute.type)).empty();
  const std::optional<NameAttribute::Primitive> value = attribute.PrimitiveValue();
  if (isKnown && value && IsCharacterString(value->tag, value->content)) {
    constexpr Escape kEscape = Escape::kName;
    if (isWhole) return StringText(value->tag, value->content, kEscape)(write);
    return write(ShortText(value->tag, value->content, kEscape));
  }
  write("#");
  if (isWhole) return HexText(attribute.value)(write);
  write(ShortHex(attribute.value));
}

void WriteAttributes(const RelativeDistinguishedName& attributes, Extent extent, const TextSink& write) {
  if (attributes.count == 0) write("(empty)");
  for (uint32_t i = 0; i < attributes.count; ++i) {
    const AttributeTypeAndValue& it = *attributes.At(i);
    write(Concat(i == 0 ? "" : "+", OidName(ContentOf(*it.type)), '='));
    WriteValue({ContentOf(*it.type), ContentOf(*it.value)}, extent, write);
  }
}

void WriteName(const X509Name& name, Extent extent, const TextSink& write) {
  if (name.count == 0) write("(empty)");
  for (uint32_t i = 0; i < name.count; ++i) {
    if (i != 0) write(", ");
    WriteAttributes(*name.At(i), extent, write);
  }
}

Fact AttributeFact(const AttributeTypeAndValue& attribute) {
  Fact fact = FactOf(*attribute.type);
  fact.Hide("value", FactOf(*attribute.value));
  return fact;
}

Fact AttributesFact(const RelativeDistinguishedName& attributes) { return ListFact(attributes, AttributeFact); }

struct OtherName {
  Asn1Oid* type;
  Asn1Any* value;
};
constexpr auto kOtherName = Sequence{
    Member<&OtherName::type, kOid>,
    Member<&OtherName::value, Explicit<0, kAny>>,
};

Fact FactOf(const OtherName& name) {
  Fact fact = Describer<>::DescribeParts(kOtherName, name);
  fact.text = Concat(fact.parts[0].text, ", ", fact.parts[1].text);
  fact.HideParts();
  return fact;
}

Fact AddressFact(Octets octets, bool withMask) {
  const std::optional<std::string> text = withMask ? AddressRangeText(octets) : AddressText(octets);
  return text ? Fact::Of(*text, *text) : UnreadFact(octets);
}

Fact GeneralNameValueFact(const X509GeneralName& name, bool withMask) {
  if (const auto* other = Chosen<kX509GeneralName, X509GeneralName::otherName>(&name)) {
    return DecodedOrHexFact(kType<Implicit<0, kOtherName>>, ContentOf(*other));
  }
  if (const auto* directory = Chosen<kX509GeneralName, X509GeneralName::directoryName>(&name)) {
    return DecodedOrHexFact(kType<kX509Name>, ContentOf(*directory));
  }
  if (const auto* address = Chosen<kX509GeneralName, X509GeneralName::iPAddress>(&name)) {
    return AddressFact(ContentOf(*address), withMask);
  }
  return Describer<>::DescribeParts(kX509GeneralName, name).parts.front();
}

// By alternative.
constexpr std::string_view kLabels[] = {"Other name", "Email", "DNS", "X.400 address", "Name",
                                        "EDI party",  "URI",   "IP",  "Registered ID"};

Fact GeneralNameFact(const X509GeneralName& name, bool withMask) {
  Fact value = GeneralNameValueFact(name, withMask);
  Fact fact = Fact::Object(value.text);
  fact.label = kLabels[name.index];
  fact.Hide("kind", std::string(kOutline<kX509GeneralName>.names[name.index]));
  fact.Hide("value", std::move(value));
  return fact;
}

}  // namespace

Fact FactOf(const X509Name& name) {
  Fact fact = Fact::Object();
  WriteName(name, Extent::kBeginnings, [&fact](std::string_view piece) { fact.text += piece; });
  fact.Hide("text", [&name](const TextSink& write) { WriteName(name, Extent::kWhole, write); });
  fact.Hide("rdns", ListFact(name, AttributesFact));
  return fact;
}

Fact FactOf(const NameChoice& name) { return FactOf(*Chosen<kNameChoice, NameChoice::rdnSequence>(&name)); }

Fact FactOf(const RelativeDistinguishedName& name) {
  const auto alone = std::make_shared<BorrowedList<X509Name>>(const_cast<RelativeDistinguishedName*>(&name));
  Fact fact = FactOf(*alone->Node());
  fact.lender = alone;
  return fact;
}

Fact FactOf(const X509GeneralName& name) { return GeneralNameFact(name, false); }

Fact SubtreeBaseFact(const X509GeneralName& name) { return GeneralNameFact(name, true); }

}  // namespace tool
