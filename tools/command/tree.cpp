#include "command/tree.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "command/report.h"
#include "tessel/known_identifiers.hpp"
#include "texts/concat.h"
#include "texts/values.h"

namespace tool {
namespace {

// Deeper elements are drawn at this level, with their depth as a number.
constexpr uint32_t kDrawnLevels = 40;

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

struct UniversalType {
  std::string_view name;
  bool constructed = false;  // what its elements usually are
  ValueText value = OctetsText;
};

// By tag number.
constexpr UniversalType kUniversalTypes[] = {
    {"end-of-contents", false, NullText},
    {"BOOLEAN", false, BooleanText},
    {"INTEGER", false, NumberText},
    {"BIT STRING", false, BitsText},
    {"OCTET STRING"},
    {"NULL", false, NullText},
    {"OBJECT IDENTIFIER", false, IdentifierText},
    {"ObjectDescriptor"},
    {"EXTERNAL", true},
    {"REAL"},
    {"ENUMERATED", false, NumberText},
    {"EMBEDDED PDV", true},
    {"UTF8String", false, StringText},
    {"RELATIVE-OID"},
    {"TIME"},
    {"[UNIVERSAL 15]"},
    {"SEQUENCE", true},
    {"SET", true},
    {"NumericString", false, StringText},
    {"PrintableString", false, StringText},
    {"TeletexString", false, StringText},
    {"VideotexString"},
    {"IA5String", false, StringText},
    {"UTCTime", false, WrittenTime},
    {"GeneralizedTime", false, WrittenTime},
    {"GraphicString"},
    {"VisibleString", false, StringText},
    {"GeneralString"},
    {"UniversalString", false, StringText},
    {"CHARACTER STRING", true},
    {"BMPString", false, StringText},
};

std::string_view ClassWord(uint8_t tagClass) {
  switch (tagClass) {
    case TESSEL_CLASS_UNIVERSAL:
      return "UNIVERSAL ";
    case TESSEL_CLASS_APPLICATION:
      return "APPLICATION ";
    case TESSEL_CLASS_PRIVATE:
      return "PRIVATE ";
    default:
      return "";
  }
}

// The element's own tag number is cut to 32 bits, so a long one is read from the identifier octets.
std::string TagNumberText(const Element& element, Octets octets) {
  Octets rest = octets.subspan(element.offset, element.headerLength);
  if ((rest.front() & 0x1F) != 0x1F) return std::to_string(element.tagNumber);
  rest = rest.subspan(1);
  const std::optional<Base128> number = TakeBase128(rest);
  return number && !number->wide ? std::to_string(number->value) : "number of more than 64 bits";
}

std::string TagText(const Element& element, Octets octets) {
  return Concat('[', ClassWord(element.tagClass), TagNumberText(element, octets), ']');
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
  const bool universal = element.tagClass == TESSEL_CLASS_UNIVERSAL;
  const bool named = universal && element.tagNumber < std::size(kUniversalTypes);
  const UniversalType* type = named ? &kUniversalTypes[element.tagNumber] : nullptr;
  line += named ? std::string(type->name) : TagText(element, octets);
  if (named && type->constructed != element.constructed)
    line += element.constructed ? " (constructed)" : " (primitive)";
  if (element.constructed) return;
  const std::string value = (named ? type->value : OctetsText)(element.tagNumber, ContentOf(element, octets));
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
