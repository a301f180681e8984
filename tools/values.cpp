#include "values.h"

#include <algorithm>
#include <bit>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "concat.h"
#include "tessel/known_identifiers.hpp"
#include "tessel/tessel.h"
#include "text.h"

namespace tool {
namespace {

Octets WithoutLeadingZeros(Octets content) {
  while (content.size() > 1 && content.front() == 0) content = content.subspan(1);
  return content;
}

std::vector<uint8_t> Negated(Octets content) {
  std::vector<uint8_t> octets(content.begin(), content.end());
  uint32_t carry = 1;
  for (size_t i = octets.size(); i > 0; --i) {
    carry += static_cast<uint8_t>(~octets[i - 1]);
    octets[i - 1] = static_cast<uint8_t>(carry);
    carry >>= 8;
  }
  return octets;
}

// Whether no arc begins with needless zero bits or has more than 32 bits: either could make one identifier pass for
// another.
bool HasPlainArcs(Octets content) {
  constexpr uint8_t kLeadingZeroBits = 0x80;
  while (!content.empty()) {
    if (content.front() == kLeadingZeroBits) return false;
    const std::optional<Base128> arc = TakeBase128(content);
    if (!arc || arc->value > UINT32_MAX || arc->wide) return false;
  }
  return true;
}

std::string Padded(uint32_t number, size_t width) {
  std::string text = std::to_string(number);
  return text.insert(0, width - std::min(width, text.size()), '0');
}

// Whether the text is all digits up to a Z, to the second: the only form that certificates may have, and of which the
// library reads everything.
bool IsPlainTime(uint32_t tag, std::string_view text) {
  const size_t digits = tag == TESSEL_KIND_UTC_TIME ? 12 : 14;
  return text.size() == digits + 1 && text.back() == 'Z' && text.find_first_not_of("0123456789") == digits;
}

struct FreeTime {
  void operator()(LibraryTime* time) const { FreeLibraryTime(time); }
};
using OwnedTime = std::unique_ptr<LibraryTime, FreeTime>;

// Nothing when the library does not take the time: its years end with 2100.
OwnedTime ReadTime(uint32_t tag, Octets content) {
  std::vector<uint8_t> element(content.size() + 2);
  auto length = static_cast<uint32_t>(element.size());
  LibraryTime* time = nullptr;
  if (EncodeAsn1PrimitiveValue(tag, content.data(), static_cast<uint32_t>(content.size()), element.data(), &length) !=
          TESSEL_OK ||
      CreateLibraryTime(&time) != TESSEL_OK) {
    return nullptr;
  }
  OwnedTime owned(time);
  return DecodeTime(element.data(), length, time) == TESSEL_OK ? std::move(owned) : nullptr;
}

std::string_view AsText(Octets content) { return {reinterpret_cast<const char*>(content.data()), content.size()}; }

// Month, day, hour, minute, second and Z of a plain time.
std::string_view AfterYear(std::string_view text) { return text.substr(text.size() - 11); }

}  // namespace

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

std::string SerialNumberText(Octets content) {
  if (content.empty()) return "(empty)";
  if ((content.front() & 0x80) == 0) return Hex(WithoutLeadingZeros(content));
  return Concat('-', Hex(WithoutLeadingZeros(Negated(content))));
}

uint32_t BitCount(Octets content) {
  content = WithoutLeadingZeros(content);
  if (content.empty()) return 0;
  return static_cast<uint32_t>(content.size() - 1) * 8 + static_cast<uint32_t>(std::bit_width(content.front()));
}

std::optional<std::string> DottedText(Octets content) {
  if (content.empty() || content.size() > UINT8_MAX || !HasPlainArcs(content)) return std::nullopt;
  std::vector<uint8_t> counted{static_cast<uint8_t>(content.size())};
  counted.insert(counted.end(), content.begin(), content.end());
  uint32_t length = 0;
  if (ConvertOidToString(counted.data(), nullptr, &length) != TESSEL_OK) return std::nullopt;
  std::string dotted(length, '\0');
  if (ConvertOidToString(counted.data(), dotted.data(), &length) != TESSEL_OK) return std::nullopt;
  dotted.pop_back();
  return dotted;
}

std::string OidName(Octets content) {
  const std::optional<std::string> dotted = DottedText(content);
  if (content.empty()) return "(empty)";
  if (!dotted) return Concat(ShortHex(content), " (not an identifier with arcs of 32 bits)");
  const std::string_view name = tessel::KnownName(*dotted);
  return name.empty() ? *dotted : std::string(name);
}

std::string TimeText(uint32_t tag, Octets content) {
  const std::string_view text = AsText(content);
  if (text.empty()) return "(empty)";
  if (!IsPlainTime(tag, text)) return Concat(Printable(text), " (not a time as certificates have it)");
  const OwnedTime time = ReadTime(tag, content);
  const std::string_view rest = AfterYear(text);
  const std::string year =
      time != nullptr ? Padded(time->year, 4) : std::string(text.substr(0, text.size() - rest.size()));
  return Concat(year, '-', rest.substr(0, 2), '-', rest.substr(2, 2), ' ', rest.substr(4, 2), ':', rest.substr(6, 2),
                ':', rest.substr(8, 2), " UTC", time != nullptr ? "" : " (out of range)");
}

std::optional<std::string> IsoTime(uint32_t tag, Octets content) {
  const std::string_view text = AsText(content);
  if (!IsPlainTime(tag, text)) return std::nullopt;
  const std::string_view rest = AfterYear(text);
  // The library judges all but the year.
  const std::string inSomeYear = Concat("2000", rest);
  const Octets probe(reinterpret_cast<const uint8_t*>(inSomeYear.data()), inSomeYear.size());
  if (ReadTime(TESSEL_KIND_GENERALIZED_TIME, probe) == nullptr) return std::nullopt;
  const std::string_view year = text.substr(0, text.size() - rest.size());
  const std::string_view century = tag == TESSEL_KIND_GENERALIZED_TIME ? "" : year < "50" ? "20" : "19";
  return Concat(century, year, '-', rest.substr(0, 2), '-', rest.substr(2, 2), 'T', rest.substr(4, 2), ':',
                rest.substr(6, 2), ':', rest.substr(8, 2), 'Z');
}

}  // namespace tool
