#include <algorithm>
#include <string>
#include <string_view>

#include "asn1/tags.h"
#include "command/commands.h"
#include "command/report.h"
#include "tessel/known_identifiers.hpp"
#include "texts/concat.h"
#include "texts/values.h"

namespace tool {
namespace {

// Deeper elements are drawn at this level, with their depth as a number.
constexpr uint32_t kDrawnLevels = 40;
constexpr uint32_t kEndOfContentsTag = 0;

std::string BooleanText(Octets content) {
  if (content.size() != 1) return Concat(ShortHex(content), " (not one octet)");
  if (content.front() == 0x00) return "FALSE";
  return content.front() == 0xFF ? "TRUE" : Concat("TRUE (", tessel::Hex(content), ')');
}

std::string NullText(Octets content) { return content.empty() ? "" : Concat(ShortHex(content), " (must be empty)"); }

std::string BitsText(Octets content) {
  if (content.empty()) return "(without the number of unused bits)";
  const std::string_view bits = content.front() == 1 ? " unused bit)" : " unused bits)";
  return Concat(ShortHex(content.subspan(1)), " (", content.front(), bits);
}

std::string IdentifierText(Octets content) {
  const std::string dotted = OidText(content);
  const std::string_view name = tessel::KnownName(dotted);
  return name.empty() ? OidName(content) : Concat(dotted, " (", name, ')');
}

std::string StringText(uint64_t tag, Octets content) {
  const auto kind = static_cast<uint32_t>(tag);
  const bool isString = tessel::IsCharacterString(kind, {});
  if (!isString) return ShortHex(content);
  if (!tessel::IsCharacterString(kind, content))
    return Concat(ShortHex(content), " (not a whole number of characters)");
  return ShortText(kind, content, tessel::Escape::kQuotes);
}

// The content of a primitive element of a universal type.
std::string ValueText(uint64_t tag, Octets content) {
  switch (tag) {
    case TESSEL_KIND_BOOLEAN:
      return BooleanText(content);
    case TESSEL_KIND_INTEGER:
    case TESSEL_KIND_ENUMERATED:
      return IntegerText(content);
    case TESSEL_KIND_BIT_STRING:
      return BitsText(content);
    case kEndOfContentsTag:
    case TESSEL_KIND_NULL:
      return NullText(content);
    case TESSEL_KIND_OBJECT_IDENTIFIER:
      return IdentifierText(content);
    case TESSEL_KIND_UTC_TIME:
    case TESSEL_KIND_GENERALIZED_TIME:
      return ShortText(static_cast<uint32_t>(tag), content, tessel::Escape::kNothing);
    default:
      return StringText(tag, content);
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
  const std::string_view name = UniversalTypeName(element.tagClass, element.tagNumber);
  line += name.empty() ? TagText(element.tagClass, element.tagNumber) : std::string(name);
  if (!name.empty() && IsConstructedType(element.tagNumber) != element.constructed) {
    line += element.constructed ? " (constructed)" : " (primitive)";
  }
  if (element.constructed) return;
  const Octets content = ContentOf(element, octets);
  const std::string value = name.empty() ? ShortHex(content) : ValueText(element.tagNumber, content);
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
  if (walk.Break()) throw Refusal(walk.Break()->Text());
}

}  // namespace tool
