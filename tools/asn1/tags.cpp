#include "asn1/tags.h"

#include <algorithm>
#include <iterator>

#include "tessel/descriptor.h"
#include "texts/concat.h"

namespace tool {
namespace {

// By tag number.
constexpr std::string_view kUniversalTypes[] = {
    "end-of-contents",   "BOOLEAN",          "INTEGER",       "BIT STRING",     "OCTET STRING",    "NULL",
    "OBJECT IDENTIFIER", "ObjectDescriptor", "EXTERNAL",      "REAL",           "ENUMERATED",      "EMBEDDED PDV",
    "UTF8String",        "RELATIVE-OID",     "TIME",          "[UNIVERSAL 15]", "SEQUENCE",        "SET",
    "NumericString",     "PrintableString",  "TeletexString", "VideotexString", "IA5String",       "UTCTime",
    "GeneralizedTime",   "GraphicString",    "VisibleString", "GeneralString",  "UniversalString", "CHARACTER STRING",
    "BMPString"};

// By the class bits.
constexpr std::string_view kClassWords[] = {"UNIVERSAL ", "APPLICATION ", "", "PRIVATE "};

}  // namespace

std::string_view UniversalTypeName(uint8_t tagClass, uint64_t tagNumber) {
  const bool isKnown = tagClass == TESSEL_CLASS_UNIVERSAL && tagNumber < std::size(kUniversalTypes);
  return isKnown ? kUniversalTypes[tagNumber] : std::string_view();
}

bool IsConstructedType(uint64_t universalTag) {
  constexpr uint64_t kTags[] = {8, 11, 16, 17, 29};
  return std::ranges::count(kTags, universalTag) != 0;
}

std::string TagText(uint8_t tagClass, uint64_t tagNumber) {
  const std::string number = tagNumber == kWideTagNumber ? "number of more than 64 bits" : std::to_string(tagNumber);
  return Concat('[', kClassWords[tagClass >> 6], number, ']');
}

std::string TagPhrase(uint8_t tagClass, uint64_t tagNumber) {
  const std::string_view name = UniversalTypeName(tagClass, tagNumber);
  if (name.empty()) return TagText(tagClass, tagNumber);
  // Names of types begin with a capital letter.
  const bool isType = name.front() >= 'A' && name.front() <= 'Z';
  return isType ? WithArticle(name) : std::string(name);
}

}  // namespace tool
