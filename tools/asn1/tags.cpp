#include "asn1/tags.h"

#include <iterator>
#include <optional>

#include "tessel/descriptor.h"
#include "texts/concat.h"

namespace tool {
namespace {

// By tag number.
constexpr UniversalType kUniversalTypes[] = {
    {"end-of-contents"},
    {"BOOLEAN"},
    {"INTEGER"},
    {"BIT STRING"},
    {"OCTET STRING"},
    {"NULL"},
    {"OBJECT IDENTIFIER"},
    {"ObjectDescriptor"},
    {"EXTERNAL", true},
    {"REAL"},
    {"ENUMERATED"},
    {"EMBEDDED PDV", true},
    {"UTF8String"},
    {"RELATIVE-OID"},
    {"TIME"},
    {"[UNIVERSAL 15]"},
    {"SEQUENCE", true},
    {"SET", true},
    {"NumericString"},
    {"PrintableString"},
    {"TeletexString"},
    {"VideotexString"},
    {"IA5String"},
    {"UTCTime"},
    {"GeneralizedTime"},
    {"GraphicString"},
    {"VisibleString"},
    {"GeneralString"},
    {"UniversalString"},
    {"CHARACTER STRING", true},
    {"BMPString"},
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

// Names of types begin with a capital letter.
std::string Phrase(const UniversalType& type) {
  const bool isName = type.name.front() >= 'A' && type.name.front() <= 'Z';
  return isName ? WithArticle(type.name) : std::string(type.name);
}

}  // namespace

const UniversalType* FindUniversalType(uint8_t tagClass, uint32_t tagNumber) {
  const bool isKnown = tagClass == TESSEL_CLASS_UNIVERSAL && tagNumber < std::size(kUniversalTypes);
  return isKnown ? &kUniversalTypes[tagNumber] : nullptr;
}

std::string TagText(uint8_t tagClass, uint32_t tagNumber) { return Concat('[', ClassWord(tagClass), tagNumber, ']'); }

std::string TagText(const Element& element, Octets octets) {
  constexpr uint8_t kHighTagForm = 0x1F;
  Octets rest = octets.subspan(element.offset, element.headerLength);
  if ((rest.front() & kHighTagForm) != kHighTagForm) return TagText(element.tagClass, element.tagNumber);
  rest = rest.subspan(1);
  const std::optional<Base128> number = TakeBase128(rest);
  const bool isShort = number && !number->wide;
  return Concat('[', ClassWord(element.tagClass),
                isShort ? std::to_string(number->value) : "number of more than 64 bits", ']');
}

std::string TagPhrase(uint8_t tagClass, uint32_t tagNumber) {
  const UniversalType* type = FindUniversalType(tagClass, tagNumber);
  return type == nullptr ? TagText(tagClass, tagNumber) : Phrase(*type);
}

std::string TagPhrase(const Element& element, Octets octets) {
  const UniversalType* type = FindUniversalType(element.tagClass, element.tagNumber);
  return type == nullptr ? TagText(element, octets) : Phrase(*type);
}

}  // namespace tool
