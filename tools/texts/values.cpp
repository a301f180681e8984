#include "texts/values.h"

#include <bit>
#include <chrono>
#include <string_view>

#include "tessel/known_identifiers.hpp"
#include "texts/concat.h"

namespace tool {
namespace {

constexpr size_t kShownOctets = 32;
// A multiple of the octets that a character takes in any type.
constexpr size_t kShownTextOctets = 4096;

// Whether the text is all digits up to a Z, to the second: the only form that certificates may have, and of which the
// library reads everything.
bool IsPlainTime(uint32_t tag, std::string_view text) {
  const size_t digits = tag == TESSEL_KIND_UTC_TIME ? 12 : 14;
  return text.size() == digits + 1 && text.back() == 'Z' && text.find_first_not_of("0123456789") == digits;
}

std::string_view AsText(Octets content) { return {reinterpret_cast<const char*>(content.data()), content.size()}; }

// Month, day, hour, minute, second and Z of a plain time.
std::string_view AfterYear(std::string_view text) { return text.substr(text.size() - 11); }

// A plain time with another year in front, and `between` before the hour.
std::string DashedText(std::string_view year, std::string_view text, std::string_view between) {
  const std::string_view rest = AfterYear(text);
  return Concat(year, '-', rest.substr(0, 2), '-', rest.substr(2, 2), between, rest.substr(4, 2), ':',
                rest.substr(6, 2), ':', rest.substr(8, 2));
}

std::string_view YearOf(std::string_view text) { return text.substr(0, text.size() - AfterYear(text).size()); }

// The number that digits stand for.
unsigned NumberOf(std::string_view digits) {
  unsigned number = 0;
  for (const char digit : digits) number = number * 10 + static_cast<unsigned>(digit - '0');
  return number;
}

}  // namespace

std::string ShortHex(Octets octets) {
  if (octets.size() <= kShownOctets) return tessel::Hex(octets);
  return Concat(tessel::Hex(octets.first(kShownOctets)), "... (", OctetCount(octets.size()), ')');
}

std::string ShortText(uint32_t tag, Octets content, tessel::Escape escape) {
  const std::string_view quote = escape == tessel::Escape::kQuotes ? "\"" : "";
  const bool isShort = content.size() <= kShownTextOctets;
  std::u32string characters = *tessel::Characters(tag, isShort ? content : content.first(kShownTextOctets));
  // The cut may go through a character, of which up to three octets are left then.
  for (int i = 0; i < 3 && !isShort && !tessel::IsCharacter(characters.back()); ++i) characters.pop_back();
  const std::string rest = isShort ? "" : Concat("... (", OctetCount(content.size()), ')');
  return Concat(quote, tessel::EscapeText(characters, escape), quote, rest);
}

std::optional<int64_t> SmallInteger(Octets content) {
  if (content.empty() || content.size() > sizeof(int64_t)) return std::nullopt;
  uint64_t number = (content.front() & 0x80) != 0 ? ~uint64_t{0} : 0;
  for (const uint8_t octet : content) number = number << 8 | octet;
  return static_cast<int64_t>(number);
}

std::string IntegerText(Octets content) {
  if (content.empty()) return "(empty)";
  const std::optional<int64_t> number = SmallInteger(content);
  return number ? std::to_string(*number) : Concat("0x", ShortHex(content));
}

tessel::Bytes Negated(Octets content) {
  tessel::Bytes octets(content.begin(), content.end());
  uint32_t carry = 1;
  for (size_t i = octets.size(); i > 0; --i) {
    carry += static_cast<uint8_t>(~octets[i - 1]);
    octets[i - 1] = static_cast<uint8_t>(carry);
    carry >>= 8;
  }
  return octets;
}

Octets WithoutLeadingZeros(Octets content) {
  while (content.size() > 1 && content.front() == 0) content = content.subspan(1);
  return content;
}

int64_t BitCount(Octets content) {
  content = WithoutLeadingZeros(content);
  if (content.empty()) return 0;
  return static_cast<int64_t>(content.size() - 1) * 8 + std::bit_width(content.front());
}

std::string OidText(Octets content) {
  const auto identifier = tessel::ObjectIdentifier::OfContent(content);
  return identifier ? identifier->Text() : std::string();
}

std::string OidName(Octets content) {
  if (content.empty()) return "(empty)";
  const std::string dotted = OidText(content);
  if (dotted.empty()) return Concat(ShortHex(content), " (not an identifier, or too large a one)");
  const std::string_view name = tessel::KnownName(dotted);
  return name.empty() ? dotted : std::string(name);
}

std::string TimeText(uint32_t tag, Octets content) {
  const std::string_view text = AsText(content);
  if (text.empty()) return "(empty)";
  if (!IsPlainTime(tag, text)) {
    return Concat(ShortText(tag, content, tessel::Escape::kNothing), " (not a time as certificates have it)");
  }
  const std::optional<std::string> iso = IsoTime(tag, content);
  // Of the years that the library takes (time.h).
  const bool isTaken = iso && *iso >= "1900" && *iso < "2101";
  const std::string_view year = isTaken ? std::string_view(*iso).substr(0, 4) : YearOf(text);
  return Concat(DashedText(year, text, " "), " UTC", isTaken ? "" : " (out of range)");
}

std::optional<std::string> IsoTime(uint32_t tag, Octets content) {
  const std::string_view text = AsText(content);
  if (!IsPlainTime(tag, text)) return std::nullopt;
  const std::string_view rest = AfterYear(text);
  const std::string_view century = tag == TESSEL_KIND_GENERALIZED_TIME ? "" : YearOf(text) < "50" ? "20" : "19";
  const std::string year = Concat(century, YearOf(text));
  const auto field = [rest](size_t place) { return NumberOf(rest.substr(place, 2)); };
  const std::chrono::year_month_day day(std::chrono::year(static_cast<int>(NumberOf(year))),
                                        std::chrono::month(field(0)), std::chrono::day(field(2)));
  if (!day.ok() || field(4) > 23 || field(6) > 59 || field(8) > 59) return std::nullopt;
  return Concat(DashedText(year, text, "T"), 'Z');
}

}  // namespace tool
