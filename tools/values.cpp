#include "values.h"

#include <algorithm>
#include <bit>
#include <chrono>
#include <string_view>
#include <vector>

#include "concat.h"
#include "known_oids.h"
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

// Reads the fields of a time from the front of its text.
class TimeReader {
 public:
  explicit TimeReader(std::string_view text) : rest_(text) {}

  // A number of so many digits, or nothing at all.
  std::optional<int> TakeNumber(size_t digits) {
    if (rest_.size() < digits || rest_.substr(0, digits).find_first_not_of(kDigits) != std::string_view::npos)
      return {};
    int number = 0;
    for (const char digit : Take(digits)) number = number * 10 + (digit - '0');
    return number;
  }

  // A decimal mark and digits.
  std::string_view TakeFraction() {
    if (rest_.empty() || (rest_.front() != '.' && rest_.front() != ',')) return {};
    return Take(std::min(rest_.find_first_not_of(kDigits, 1), rest_.size()));
  }

  // The zone that ends the text: how many minutes it is ahead of UTC.
  std::optional<int> TakeZone() {
    if (rest_ == "Z") return 0;
    if (rest_.size() != 5 || (rest_.front() != '+' && rest_.front() != '-')) return {};
    const int sign = Take(1) == "-" ? -1 : 1;
    const std::optional<int> hours = TakeNumber(2);
    const std::optional<int> minutes = TakeNumber(2);
    if (!hours || !minutes) return {};
    return sign * (*hours * 60 + *minutes);
  }

  [[nodiscard]] bool AtEnd() const { return rest_.empty(); }

 private:
  static constexpr std::string_view kDigits = "0123456789";

  std::string_view Take(size_t count) {
    const std::string_view taken = rest_.substr(0, count);
    rest_.remove_prefix(count);
    return taken;
  }

  std::string_view rest_;
};

// The two digits of a UTCTime's year are 1950 to 2049 (RFC 5280, 4.1.2.5.1).
std::optional<int> TakeYear(uint32_t tag, TimeReader& reader) {
  if (tag == TESSEL_KIND_GENERALIZED_TIME) return reader.TakeNumber(4);
  const std::optional<int> year = reader.TakeNumber(2);
  if (!year) return {};
  return *year + (*year < 50 ? 2000 : 1900);
}

std::optional<std::chrono::sys_days> TakeDate(uint32_t tag, TimeReader& reader) {
  const std::optional<int> year = TakeYear(tag, reader);
  const std::optional<int> month = reader.TakeNumber(2);
  const std::optional<int> day = reader.TakeNumber(2);
  if (!year || !month || !day) return {};
  const std::chrono::year_month_day date{std::chrono::year(*year), std::chrono::month(static_cast<unsigned>(*month)),
                                         std::chrono::day(static_cast<unsigned>(*day))};
  if (!date.ok()) return {};
  return std::chrono::sys_days(date);
}

// Minutes and seconds may be left out.
std::optional<std::chrono::seconds> TakeTimeOfDay(TimeReader& reader) {
  const std::optional<int> hour = reader.TakeNumber(2);
  const int minute = reader.TakeNumber(2).value_or(0);
  const int second = reader.TakeNumber(2).value_or(0);
  if (!hour || *hour > 23 || minute > 59 || second > 59) return {};
  return std::chrono::hours(*hour) + std::chrono::minutes(minute) + std::chrono::seconds(second);
}

std::string Padded(int64_t number, size_t width) {
  std::string text = std::to_string(number);
  return text.insert(0, width - std::min(width, text.size()), '0');
}

std::string FormatTime(std::chrono::sys_seconds time) {
  const auto days = std::chrono::floor<std::chrono::days>(time);
  const std::chrono::year_month_day date(days);
  const std::chrono::hh_mm_ss clock(time - days);
  return Concat(Padded(int{date.year()}, 4), '-', Padded(unsigned{date.month()}, 2), '-',
                Padded(unsigned{date.day()}, 2), ' ', Padded(clock.hours().count(), 2), ':',
                Padded(clock.minutes().count(), 2), ':', Padded(clock.seconds().count(), 2));
}

std::optional<std::string> ReadableTime(uint32_t tag, std::string_view text) {
  TimeReader reader(text);
  const std::optional<std::chrono::sys_days> date = TakeDate(tag, reader);
  if (!date) return {};
  const std::optional<std::chrono::seconds> timeOfDay = TakeTimeOfDay(reader);
  if (!timeOfDay) return {};
  const std::string_view fraction = reader.TakeFraction();
  if (reader.AtEnd()) return Concat(FormatTime(*date + *timeOfDay), fraction, " (local time)");
  const std::optional<int> zone = reader.TakeZone();
  if (!zone) return {};
  return Concat(FormatTime(*date + *timeOfDay - std::chrono::minutes(*zone)), fraction, " UTC");
}

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
  const std::string_view name = KnownName(*dotted);
  return name.empty() ? *dotted : std::string(name);
}

std::string TimeText(uint32_t tag, Octets content) {
  const std::string_view text(reinterpret_cast<const char*>(content.data()), content.size());
  if (const auto time = ReadableTime(tag, text)) return *time;
  return Concat(Printable(text), " (not a valid time)");
}

}  // namespace tool
