// Character strings and names as UTF-8 texts.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tessel/known_identifiers.hpp"
#include "tessel/object_identifier.hpp"
#include "tessel/octets.hpp"
#include "tessel/tessel.h"

namespace tessel {

namespace detail {

// The bit that marks an octet which is not (part of) a character. No character has this bit.
inline constexpr char32_t kRawOctet = 0x80000000;
inline constexpr char32_t kLastCharacter = 0x10FFFF;

constexpr bool IsSurrogate(char32_t c) { return c >= 0xD800 && c <= 0xDFFF; }

// The octets that a UTF-8 sequence has by its first one; 0 when none starts so.
constexpr size_t Utf8Length(uint8_t first) {
  if (first < 0x80) return 1;
  if (first < 0xC2) return 0;
  if (first < 0xE0) return 2;
  if (first < 0xF0) return 3;
  return first < 0xF5 ? 4 : 0;
}

// Takes one character from the front, or one raw octet where the encoding is wrong.
inline char32_t TakeUtf8(Octets& octets) {
  constexpr char32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
  const uint8_t first = octets.front();
  const size_t length = Utf8Length(first);
  char32_t c = length == 1 ? first : first & (0x7FU >> length);
  bool valid = length != 0 && length <= octets.size();
  for (size_t i = 1; valid && i < length; ++i) {
    valid = (octets[i] & 0xC0) == 0x80;
    c = c << 6 | (octets[i] & 0x3F);
  }
  valid = valid && c >= kSmallest[length] && c <= kLastCharacter && !IsSurrogate(c);
  octets = octets.subspan(valid ? length : 1);
  return valid ? c : kRawOctet | first;
}

// Takes one octet, which is a character up to and including `last`.
inline char32_t TakeSingleOctet(Octets& octets, char32_t last) {
  const uint8_t octet = octets.front();
  octets = octets.subspan(1);
  return octet <= last ? char32_t{octet} : kRawOctet | octet;
}

inline char32_t UnitAt(Octets octets, size_t start, size_t size) {
  char32_t unit = 0;
  for (const uint8_t octet : octets.subspan(start, size)) unit = unit << 8 | octet;
  return unit;
}

// Takes a big-endian unit of `size` octets. When that is no character, its octets are taken one by one, each as a raw
// octet. A pair of surrogates, which BMPString does not have but some writers put in it, is the character that it means
// in UTF-16.
inline char32_t TakeUnit(Octets& octets, size_t size) {
  const bool isWithinUnit = octets.size() % size != 0;
  const char32_t unit = isWithinUnit ? 0 : UnitAt(octets, 0, size);
  if (isWithinUnit || unit > kLastCharacter) return kRawOctet | TakeSingleOctet(octets, 0xFF);
  const bool mayPair = size == 2 && (unit & 0xFC00) == 0xD800 && octets.size() > size;
  const char32_t next = mayPair ? UnitAt(octets, size, size) : 0;
  const bool isPair = (next & 0xFC00) == 0xDC00;
  octets = octets.subspan(isPair ? 2 * size : size);
  return isPair ? 0x10000 + ((unit & 0x3FF) << 10 | (next & 0x3FF)) : unit;
}

}  // namespace detail

// Whether a value of 32 bits is a character of Unicode.
constexpr bool IsCharacter(char32_t c) { return c <= detail::kLastCharacter && !detail::IsSurrogate(c); }

// Appends a character.
inline void AppendUtf8(std::string& out, char32_t c) {
  const auto put = [&out](char32_t octet) { out += static_cast<char>(static_cast<uint8_t>(octet)); };
  if (c < 0x80) return put(c);
  if (c < 0x800) {
    put(0xC0 | c >> 6);
  } else if (c < 0x10000) {
    put(0xE0 | c >> 12);
    put(0x80 | (c >> 6 & 0x3F));
  } else {
    put(0xF0 | c >> 18);
    put(0x80 | (c >> 12 & 0x3F));
    put(0x80 | (c >> 6 & 0x3F));
  }
  put(0x80 | (c & 0x3F));
}

namespace detail {

inline void AppendHexEscaped(std::string& out, char32_t c) {
  std::string octets;
  if ((c & kRawOctet) != 0) {
    octets += static_cast<char>(static_cast<uint8_t>(c));
  } else {
    AppendUtf8(octets, c);
  }
  for (const char octet : octets) {
    const auto value = static_cast<uint8_t>(octet);
    out += '\\';
    out += Hex({&value, 1});
  }
}

}  // namespace detail

// Whether a character can make a text show other than what is written: controls drive a terminal, line separators and
// the marks of text direction move what stands around them, and what has no width makes two texts look alike.
constexpr bool IsDangerous(char32_t c) {
  if (c < 0x20 || (c >= 0x7F && c <= 0x9F) || detail::IsSurrogate(c)) return true;
  if (c == 0x00AD || c == 0x061C || c == 0xFEFF || c == 0xE0001) return true;
  if ((c >= 0x200B && c <= 0x200F) || (c >= 0x2028 && c <= 0x202E)) return true;
  return (c >= 0x2060 && c <= 0x2064) || (c >= 0x2066 && c <= 0x2069) || (c >= 0xE0020 && c <= 0xE007F);
}

// Whether octets can be the content of a character string of the universal type `tag` (TESSEL_KIND_UTF8_STRING, ...):
// that type is one, and they are a whole number of its units.
constexpr bool IsCharacterString(uint32_t tag, Octets content) {
  switch (tag) {
    case TESSEL_KIND_UTF8_STRING:
    case TESSEL_KIND_TELETEX_STRING:
    case TESSEL_KIND_NUMERIC_STRING:
    case TESSEL_KIND_PRINTABLE_STRING:
    case TESSEL_KIND_IA5_STRING:
    case TESSEL_KIND_VISIBLE_STRING:
    case TESSEL_KIND_UTC_TIME:
    case TESSEL_KIND_GENERALIZED_TIME:
      return true;
    case TESSEL_KIND_BMP_STRING:
      return content.size() % 2 == 0;
    case TESSEL_KIND_UNIVERSAL_STRING:
      return content.size() % 4 == 0;
    default:
      return false;
  }
}

// Takes the first character from the content octets of such a string, which must not be empty. An octet that is no
// character comes by itself, with the top bit of 32 set. TeletexString is read as ISO 8859-1, which is what nearly all
// writers mean by it.
inline char32_t TakeCharacter(uint32_t tag, Octets& content) {
  switch (tag) {
    case TESSEL_KIND_UTF8_STRING:
      return detail::TakeUtf8(content);
    case TESSEL_KIND_TELETEX_STRING:
      return detail::TakeSingleOctet(content, 0xFF);
    case TESSEL_KIND_BMP_STRING:
      return detail::TakeUnit(content, 2);
    case TESSEL_KIND_UNIVERSAL_STRING:
      return detail::TakeUnit(content, 4);
    default:
      return detail::TakeSingleOctet(content, 0x7F);
  }
}

// All characters of a string, for EscapeText. Nothing when the octets cannot be a character string.
inline std::optional<std::u32string> Characters(uint32_t tag, Octets content) {
  if (!IsCharacterString(tag, content)) return std::nullopt;
  std::u32string text;
  while (!content.empty()) text += TakeCharacter(tag, content);
  return text;
}

// The text as UTF-8. Nothing when a part of it is no character.
inline std::optional<std::string> Utf8(std::u32string_view text) {
  std::string out;
  for (const char32_t c : text) {
    if (!IsCharacter(c)) return std::nullopt;
    AppendUtf8(out, c);
  }
  return out;
}

// The text of a character string as UTF-8. Nothing when the octets are no character string, or not a well-formed one.
inline std::optional<std::string> Utf8(uint32_t tag, Octets content) {
  if (!IsCharacterString(tag, content)) return std::nullopt;
  std::string out;
  while (!content.empty()) {
    const char32_t c = TakeCharacter(tag, content);
    if (!IsCharacter(c)) return std::nullopt;
    AppendUtf8(out, c);
  }
  return out;
}

// What is escaped besides dangerous characters and octets that are none, which always are.
enum class Escape {
  kNothing,
  kBackslash,  // so that an escaped octet is told from one that is written like that
  kQuotes,     // what would end or change a text between quotation marks
  kName        // what RFC 4514, 2.4 asks for in an attribute value
};

namespace detail {

constexpr bool NeedsBackslash(char32_t c, bool isFirst, bool isLast, Escape escape) {
  if (escape == Escape::kNothing) return false;
  if (c == '\\' || (c == '"' && escape != Escape::kBackslash)) return true;
  if (escape == Escape::kBackslash || escape == Escape::kQuotes) return false;
  if (c == ' ') return isFirst || isLast;
  if (c == '#') return isFirst;
  return c == '+' || c == ',' || c == ';' || c == '<' || c == '>';
}

}  // namespace detail

// Appends a character of a text so that it is safe to print, as UTF-8. What must not be printed as it is becomes a
// backslash and two hexadecimal digits for each of its octets.
inline void AppendEscaped(std::string& out, char32_t c, bool isFirst, bool isLast, Escape escape) {
  if ((c & detail::kRawOctet) != 0 || IsDangerous(c)) return detail::AppendHexEscaped(out, c);
  if (detail::NeedsBackslash(c, isFirst, isLast, escape)) out += '\\';
  AppendUtf8(out, c);
}

// A whole text, escaped in that way.
inline std::string EscapeText(std::u32string_view text, Escape escape) {
  std::string out;
  for (size_t i = 0; i < text.size(); ++i) AppendEscaped(out, text[i], i == 0, i + 1 == text.size(), escape);
  return out;
}

// Escapes a text that should be UTF-8 already, such as a file name.
inline std::string Printable(std::string_view text) {
  const Octets octets(reinterpret_cast<const uint8_t*>(text.data()), text.size());
  return EscapeText(*Characters(TESSEL_KIND_UTF8_STRING, octets), Escape::kNothing);
}

// An attribute of a name: the content octets of its type and the whole element that is its value. They are lent, and
// live no longer than the name as it is.
struct NameAttribute {
  Octets type;
  Octets value;

  // The content octets of a value that is a primitive element of a universal type, and its tag number.
  struct Primitive {
    uint32_t tag;
    Octets content;
  };
  [[nodiscard]] std::optional<Primitive> PrimitiveValue() const {
    uint8_t tagClass = 0;
    uint8_t constructed = 0;
    uint32_t tag = 0;
    uint32_t length = 0;
    uint32_t headerLength = 0;
    uint32_t isIndefinite = 0;
    const uint32_t status = GetAsn1ObjectInfo(value.data(), static_cast<uint32_t>(value.size()), &tagClass,
                                              &constructed, &tag, &length, &isIndefinite, &headerLength);
    const bool isPrimitive = status == TESSEL_OK && constructed == 0 && isIndefinite == 0;
    const bool isWhole = isPrimitive && length <= value.size() - headerLength;
    if (!isWhole || tagClass != TESSEL_CLASS_UNIVERSAL) return std::nullopt;
    return Primitive{tag, value.subspan(headerLength, length)};
  }
};
using RelativeName = std::vector<NameAttribute>;

namespace detail {

// The elements of a list node, which may be null.
inline std::span<void* const> ItemsOf(const void* list) {
  const auto* node = static_cast<const Asn1List*>(list);
  return node == nullptr ? std::span<void* const>() : std::span<void* const>(node->items, node->count);
}

inline Octets ContentOf(const Asn1Value* value) {
  return value == nullptr || value->data == nullptr ? Octets() : Octets(value->data, value->length);
}

}  // namespace detail

// What a name is made of, in its order. A null name has nothing.
inline std::vector<RelativeName> RelativeNamesOf(const X509Name* name) {
  std::vector<RelativeName> names;
  for (const void* rdn : detail::ItemsOf(name)) {
    RelativeName attributes;
    for (const void* item : detail::ItemsOf(rdn)) {
      // SEQUENCE { type OBJECT IDENTIFIER, value ANY }
      const auto* const* members = static_cast<const Asn1Value* const*>(item);
      if (members != nullptr) attributes.push_back({detail::ContentOf(members[0]), detail::ContentOf(members[1])});
    }
    names.push_back(std::move(attributes));
  }
  return names;
}

// An attribute by RFC 4514: "CN=Example". The value is the hexadecimal digits of its element, after "#", when the type
// has no known name or the value is no well-formed character string. So is a type that is no identifier, which that RFC
// has no form for.
inline std::string AttributeText(const NameAttribute& attribute) {
  const std::optional<ObjectIdentifier> type = ObjectIdentifier::OfContent(attribute.type);
  std::string text = type ? type->Text() : std::string();
  const std::string_view name = detail::NameIn(detail::kKnownAttributeTypes, text);
  if (text.empty()) text.append("#").append(Hex(attribute.type));
  if (!name.empty()) text = name;
  text += '=';
  const auto value = name.empty() ? std::nullopt : attribute.PrimitiveValue();
  const bool isText = value && Utf8(value->tag, value->content);
  if (!isText) return text.append("#").append(Hex(attribute.value));
  return text += EscapeText(*Characters(value->tag, value->content), Escape::kName);
}

inline std::string RelativeNameText(const RelativeName& attributes) {
  std::string text;
  for (const NameAttribute& attribute : attributes) {
    if (!text.empty()) text += '+';
    text += AttributeText(attribute);
  }
  return text;
}

// A name by RFC 4514, which begins with the last of its RDNs: "CN=Example,O=Company,C=RU".
inline std::string NameText(const X509Name* name) {
  const std::vector<RelativeName> names = RelativeNamesOf(name);
  std::string text;
  for (auto it = names.rbegin(); it != names.rend(); ++it) {
    if (it != names.rbegin()) text += ',';
    text += RelativeNameText(*it);
  }
  return text;
}

}  // namespace tessel
