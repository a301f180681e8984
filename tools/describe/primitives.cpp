#include "describe/primitives.h"

#include <algorithm>
#include <string>
#include <utility>

#include "describe/types.h"
#include "tessel/known_identifiers.hpp"
#include "texts/concat.h"
#include "texts/values.h"

namespace tool {
namespace {

constexpr std::string_view kHex = "hex";

// Long texts are written in pieces of about this size.
constexpr size_t kPiece = 4096;

void WriteHex(Octets octets, const TextSink& write) {
  while (!octets.empty()) {
    const size_t size = std::min(octets.size(), kPiece);
    write(tessel::Hex(octets.first(size)));
    octets = octets.subspan(size);
  }
}

bool IsWellFormed(uint32_t tag, Octets content) {
  while (!content.empty()) {
    if (!tessel::IsCharacter(tessel::TakeCharacter(tag, content))) return false;
  }
  return true;
}

void WriteString(uint32_t tag, Octets content, std::optional<tessel::Escape> escape, const TextSink& write) {
  std::string piece;
  for (bool isFirst = true; !content.empty(); isFirst = false) {
    const char32_t c = tessel::TakeCharacter(tag, content);
    if (escape) {
      tessel::AppendEscaped(piece, c, isFirst, content.empty(), *escape);
    } else {
      tessel::AppendUtf8(piece, c);
    }
    if (piece.size() < kPiece && !content.empty()) continue;
    write(piece);
    piece.clear();
  }
}

// People see the beginning of a long string.
Fact StringFact(uint32_t tag, Octets content) {
  std::string text = content.empty() ? "(empty)" : ShortText(tag, content, tessel::Escape::kBackslash);
  if (IsWellFormed(tag, content)) return Fact::Of(std::move(text), StringText(tag, content));
  Fact fact = UnreadFact(content);
  fact.text = std::move(text);
  return fact;
}

// Programs get ISO 8601, or what is written when that is no time.
Fact TimeFact(uint32_t tag, Octets content) {
  const std::optional<std::string> iso = IsoTime(tag, content);
  return Fact::Of(TimeText(tag, content), iso ? *iso : ShortText(tag, content, tessel::Escape::kNothing));
}

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
      return tessel::IsCharacterString(tag, content) ? StringFact(tag, content) : Fact();
  }
}

}  // namespace

LentText HexText(Octets octets) {
  return [octets](const TextSink& write) { WriteHex(octets, write); };
}

LentText StringText(uint32_t tag, Octets content, std::optional<tessel::Escape> escape) {
  return [=](const TextSink& write) { WriteString(tag, content, escape, write); };
}

Fact HexFact(Octets octets) { return Fact::Of(octets.empty() ? "(empty)" : ShortHex(octets), HexText(octets)); }

Fact UnreadFact(Octets octets) {
  Fact fact = Fact::Object(octets.empty() ? "(empty)" : ShortHex(octets));
  fact.Hide(kHex, HexText(octets));
  return fact;
}

Fact OidFact(Octets content) {
  const std::string dotted = OidText(content);
  Fact fact = Fact::Object(OidName(content));
  if (dotted.empty()) {
    fact.Hide("oidHex", HexText(content));
    return fact;
  }
  fact.Hide("oid", dotted);
  if (fact.text != dotted) fact.Hide("name", fact.text);
  return fact;
}

Fact IntegerFact(Octets content) {
  if (const std::optional<int64_t> number = SmallInteger(content)) return Fact::Of(IntegerText(content), *number);
  Fact fact = UnreadFact(content);
  fact.text = IntegerText(content);
  return fact;
}

Fact SerialNumberFact(const Asn1Value& number) {
  const Octets content = ContentOf(number);
  if (content.empty() || (content.front() & 0x80) == 0) return HexFact(WithoutLeadingZeros(content));
  const tessel::Bytes negated = Negated(content);
  return Fact::Of(Concat('-', ShortHex(WithoutLeadingZeros(negated))), [negated](const TextSink& write) {
    write("-");
    WriteHex(WithoutLeadingZeros(negated), write);
  });
}

Fact FactOf(const tessel::Time& time) {
  const auto& written = *static_cast<const Asn1Value*>(time.value);
  return TimeFact(written.tag, ContentOf(written));
}

Fact ElementFact(Octets element) {
  const std::optional<Element> header = ReadElement(element);
  if (!header || header->tagClass != TESSEL_CLASS_UNIVERSAL || header->constructed) return UnreadFact(element);
  Fact fact = PrimitiveFact(static_cast<uint32_t>(header->tagNumber), ContentOf(*header, element));
  if (fact.text.empty()) return UnreadFact(element);
  // What programs have to read themselves is the whole element, which has the type.
  for (Fact& part : fact.parts) {
    if (part.key == kHex) part.value = HexText(element);
  }
  return fact;
}

Fact ValueFact(uint32_t kind, Octets content) {
  Fact fact = PrimitiveFact(kind, content);
  return fact.text.empty() ? HexFact(content) : std::move(fact);
}

Fact FactOf(const Asn1BitString& bits) {
  Fact fact = UnreadFact(ContentOf(bits));
  fact.Hide("unusedBits", int64_t{bits.unused});
  return fact;
}

Fact NamedBitsFact(const Asn1BitString& bits, std::span<const std::string_view> names) {
  const Octets octets = ContentOf(bits);
  const size_t unused = octets.empty() ? 0 : bits.unused;
  const size_t count = 8 * octets.size() - std::min<size_t>(unused, 8);
  Fact fact = Fact::List([=](const FactSink& sink) {
    for (size_t i = 0; i < count; ++i) {
      if ((octets[i / 8] >> (7 - i % 8) & 1) == 0) continue;
      const std::string name = i < names.size() ? std::string(names[i]) : Concat("bit ", i);
      Fact bit = Fact::Of(name, name);
      bit.hidden = true;
      if (!sink(bit)) return false;
    }
    return true;
  });
  constexpr size_t kShownBits = 32;
  size_t shown = 0;
  const bool isAll = fact.VisitParts([&](const Fact& bit) {
    if (shown == kShownBits) return false;
    fact.text += Concat(shown++ == 0 ? "" : ", ", bit.text);
    return true;
  });
  if (shown == 0) fact.text = "(none)";
  if (!isAll) fact.text += Concat("... (", OctetCount(octets.size()), ')');
  return fact;
}

}  // namespace tool
