#include "command/tree.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "asn1/tags.h"
#include "command/report.h"
#include "tessel/known_identifiers.hpp"
#include "texts/concat.h"
#include "texts/values.h"

namespace tool {
namespace {

// Deeper elements are drawn at this level, with their depth as a number.
constexpr uint32_t kDrawnLevels = 40;
constexpr uint32_t kEndOfContentsTag = 0;

using ValueText = std::string (*)(uint32_t tag, Octets content);

std::string BooleanText(uint32_t, Octets content) {
  if (content.size() != 1) return Concat(ShortHex(content), " (not one octet)");
  if (content.front() == 0x00) return "FALSE";
  return content.front() == 0xFF ? "TRUE" : Concat("TRUE (", tessel::Hex(content), ')');
}

std::string NumberText(uint32_t, Octets content) { return IntegerText(content); }

std::string OctetsText(uint32_t, Octets content) { return ShortHex(content); }

std::string NullText(uint32_t, Octets content) {
  return content.empty() ? "" : Concat(ShortHex(content), " (must be empty)");
}

std::string BitsText(uint32_t, Octets content) {
  if (content.empty()) return "(without the number of unused bits)";
  const std::string_view bits = content.front() == 1 ? " unused bit)" : " unused bits)";
  return Concat(ShortHex(content.subspan(1)), " (", content.front(), bits);
}

std::string IdentifierText(uint32_t, Octets content) {
  const std::string dotted = OidText(content);
  const std::string_view name = tessel::KnownName(dotted);
  return name.empty() ? OidName(content) : Concat(dotted, " (", name, ')');
}

std::string StringText(uint32_t tag, Octets content) {
  if (!tessel::IsCharacterString(tag, content)) return Concat(ShortHex(content), " (not a whole number of characters)");
  return ShortText(tag, content, tessel::Escape::kQuotes);
}

std::string WrittenTime(uint32_t tag, Octets content) { return ShortText(tag, content, tessel::Escape::kNothing); }

// How the content of a primitive element of a universal type is written.
ValueText ValueTextOf(uint32_t tag) {
  switch (tag) {
    case TESSEL_KIND_BOOLEAN:
      return BooleanText;
    case TESSEL_KIND_INTEGER:
    case TESSEL_KIND_ENUMERATED:
      return NumberText;
    case TESSEL_KIND_BIT_STRING:
      return BitsText;
    case kEndOfContentsTag:
    case TESSEL_KIND_NULL:
      return NullText;
    case TESSEL_KIND_OBJECT_IDENTIFIER:
      return IdentifierText;
    case TESSEL_KIND_UTF8_STRING:
    case TESSEL_KIND_NUMERIC_STRING:
    case TESSEL_KIND_PRINTABLE_STRING:
    case TESSEL_KIND_TELETEX_STRING:
    case TESSEL_KIND_IA5_STRING:
    case TESSEL_KIND_VISIBLE_STRING:
    case TESSEL_KIND_UNIVERSAL_STRING:
    case TESSEL_KIND_BMP_STRING:
      return StringText;
    case TESSEL_KIND_UTC_TIME:
    case TESSEL_KIND_GENERALIZED_TIME:
      return WrittenTime;
    default:
      return OctetsText;
  }
}

void AppendPadded(std::string& line, std::string_view text, size_t width) {
  line.append(width - std::min(width, text.size()), ' ');
  line += text;
}

void AppendPosition(std::string& line, const Element& element) {
  AppendPadded(line, std::to_string(element.offset), 8);
  AppendPadded(line, std::to_string(element.headerLength), 4);
  AppendPadded(line, element.indefinite ? "indefinite" : std::to_string(element.contentLength), 12);
  line.append(2 + 2 * static_cast<size_t>(std::min(element.depth, kDrawnLevels)), ' ');
  if (element.depth > kDrawnLevels) line += Concat("(depth ", element.depth, ") ");
}

void AppendDescription(std::string& line, const Element& element, Octets octets) {
  const UniversalType* type = FindUniversalType(element.tagClass, element.tagNumber);
  line += type != nullptr ? std::string(type->name) : TagText(element, octets);
  if (type != nullptr && type->constructed != element.constructed) {
    line += element.constructed ? " (constructed)" : " (primitive)";
  }
  if (element.constructed) return;
  const ValueText text = type != nullptr ? ValueTextOf(element.tagNumber) : OctetsText;
  const std::string value = text(element.tagNumber, ContentOf(element, octets));
  if (!value.empty()) line += Concat(' ', value);
}

}  // namespace

void ShowTree(const Input& input) {
  PrintHeading(input.where);
  Walk walk(input.octets);
  std::string line;
  for (Element element; walk.Next(element);) {
    line.clear();
    AppendPosition(line, element);
    AppendDescription(line, element, input.octets);
    line += '\n';
    Print(line);
  }
  if (walk.Break()) throw Refusal(Concat("offset ", walk.Break()->offset, ": ", walk.Break()->reason));
}

}  // namespace tool
