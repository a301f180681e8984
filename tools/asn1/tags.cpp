#include "asn1/tags.h"

#include <iterator>

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

// By the class bits.
constexpr std::string_view kClassWords[] = {"UNIVERSAL ", "APPLICATION ", "", "PRIVATE "};

}  // namespace

const UniversalType* FindUniversalType(uint8_t tagClass, uint64_t tagNumber) {
  const bool isKnown = tagClass == TESSEL_CLASS_UNIVERSAL && tagNumber < std::size(kUniversalTypes);
  return isKnown ? &kUniversalTypes[tagNumber] : nullptr;
}

std::string TagText(uint8_t tagClass, uint64_t tagNumber) {
  const std::string number = tagNumber == kWideTagNumber ? "number of more than 64 bits" : std::to_string(tagNumber);
  return Concat('[', kClassWords[tagClass >> 6], number, ']');
}

std::string TagPhrase(uint8_t tagClass, uint64_t tagNumber) {
  const UniversalType* type = FindUniversalType(tagClass, tagNumber);
  if (type == nullptr) return TagText(tagClass, tagNumber);
  // Names of types begin with a capital letter.
  const bool isName = type->name.front() >= 'A' && type->name.front() <= 'Z';
  return isName ? WithArticle(type->name) : std::string(type->name);
}

}  // namespace tool
