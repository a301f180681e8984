#include "describe_values.h"

#include <string>
#include <utility>

#include "concat.h"
#include "tessel/known_identifiers.hpp"
#include "tessel/tessel.h"
#include "text.h"
#include "values.h"

namespace tool {
namespace {

constexpr std::string_view kHex = "hex";

// Without a text when the type, or its content, tells nothing.
Fact PrimitiveFact(uint32_t tag, Octets content) {
  switch (tag) {
    case TESSEL_KIND_BOOLEAN:
      return content.size() == 1 ? Fact::Flag(content.front() != 0) : Fact();
    case TESSEL_KIND_NULL:
      return content.empty() ? Fact::Of("NULL", nullptr) : Fact();
    case TESSEL_KIND_INTEGER:
    case TESSEL_KIND_ENUMERATED:
      return IntegerFact(content);
    case TESSEL_KIND_OBJECT_IDENTIFIER:
      return OidFact(content);
    case TESSEL_KIND_UTC_TIME:
    case TESSEL_KIND_GENERALIZED_TIME:
      return TimeFact(tag, content);
    default:
      return Characters(tag, content) ? StringFact(tag, content) : Fact();
  }
}

}  // namespace

std::optional<Octets> ContentOfType(Octets octets, uint32_t tag) {
  const std::optional<Element> element = ReadElement(octets);
  if (!element || element->tagClass != TESSEL_CLASS_UNIVERSAL || element->tagNumber != tag) return std::nullopt;
  return ContentOf(*element, octets);
}

Fact HexFact(Octets octets) {
  return octets.empty() ? Fact::Of("(empty)", std::string()) : Fact::Of(ShortHex(octets), Hex(octets));
}

Fact UnreadFact(Octets octets) {
  Fact fact = Fact::Object(octets.empty() ? "(empty)" : ShortHex(octets));
  fact.Hide(kHex, Hex(octets));
  return fact;
}

Fact OidFact(Octets content) {
  const std::optional<std::string> dotted = DottedText(content);
  Fact fact = Fact::Object(OidName(content));
  fact.Hide(dotted ? "oid" : "oidHex", dotted ? *dotted : Hex(content));
  if (!dotted) return fact;
  if (const std::string_view name = tessel::KnownName(*dotted); !name.empty()) fact.Hide("name", std::string(name));
  return fact;
}

Fact StringFact(uint32_t tag, Octets content) {
  const std::optional<std::u32string> characters = Characters(tag, content);
  if (!characters) return UnreadFact(content);
  std::string text = characters->empty() ? "(empty)" : EscapeText(*characters, Escape::kBackslash);
  if (std::optional<std::string> utf8 = Utf8(*characters)) return Fact::Of(std::move(text), *std::move(utf8));
  Fact fact = UnreadFact(content);
  fact.text = std::move(text);
  return fact;
}

Fact IntegerFact(Octets content) {
  if (const std::optional<int64_t> number = SmallInteger(content)) return Fact::Of(IntegerText(content), *number);
  Fact fact = UnreadFact(content);
  fact.text = IntegerText(content);
  return fact;
}

Fact TimeFact(uint32_t tag, Octets content) {
  const std::optional<std::string> iso = IsoTime(tag, content);
  const std::string_view written(reinterpret_cast<const char*>(content.data()), content.size());
  return Fact::Of(TimeText(tag, content), iso ? *iso : Printable(written));
}

Fact ElementFact(Octets element) {
  const std::optional<Element> header = ReadElement(element);
  if (!header || header->tagClass != TESSEL_CLASS_UNIVERSAL || header->constructed) return UnreadFact(element);
  Fact fact = PrimitiveFact(header->tagNumber, ContentOf(*header, element));
  if (fact.text.empty()) return UnreadFact(element);
  // What programs have to read themselves is the whole element, which has the type.
  for (Fact& part : fact.parts) {
    if (part.key == kHex) part.value = Hex(element);
  }
  return fact;
}

Fact NamedBitsFact(uint32_t bits, std::span<const std::string_view> names) {
  Fact fact = Fact::List();
  for (size_t i = 0; i < 32; ++i) {
    if ((bits >> (i / 8 * 8 + 7 - i % 8) & 1) == 0) continue;
    const std::string name = i < names.size() ? std::string(names[i]) : Concat("bit ", i);
    fact.text += Concat(fact.text.empty() ? "" : ", ", name);
    fact.AppendHidden(name);
  }
  if (fact.text.empty()) fact.text = "(none)";
  return fact;
}

}  // namespace tool
