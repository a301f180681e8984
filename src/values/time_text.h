// The texts of UTCTime and GeneralizedTime.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "engine/memory.h"
#include "tessel/time.h"

namespace tessel {

// Reading. The fields are not checked here, but by the setter of the record. Nothing is read of a text that is too
// short.

inline constexpr size_t kShortestUtcTime = 13;
inline constexpr size_t kShortestGeneralizedTime = 15;

constexpr uint32_t ReadDigits(Octets digits) {
  uint32_t number = 0;
  // DEVIATES: an octet that is no digit counts as far as it lies from '0': the setter of the record refuses what comes
  // out of its range.
  for (const uint8_t digit : digits) number = number * 10 + (digit - uint32_t{'0'});
  return number;
}

// Reads MMDDHHMMSS.
constexpr LibraryTime ReadMonthToSecond(uint32_t year, Octets text) {
  const auto pair = [text](size_t at) { return ReadDigits(text.subspan(at, 2)); };
  return {year, pair(0), pair(2), pair(4), pair(6), pair(8)};
}

constexpr std::optional<LibraryTime> ParseUtcTime(Octets text) {
  if (text.size() < kShortestUtcTime) return std::nullopt;
  // DEVIATES: what follows the seconds is not looked at, an offset neither, where RFC 5280 (4.1.2.5.1) has Z, so that
  // times with offsets stay readable.
  const uint32_t year = ReadDigits(text.first(2));
  return ReadMonthToSecond(year < 50 ? year + 2000 : year + 1900, text.subspan(2));
}

// Reads the crlIssuedTime of a CrlValidatedId: a UTCTime that must be as long as a GeneralizedTime.
constexpr std::optional<LibraryTime> ParseCrlIssuedTime(Octets text) {
  // DEVIATES: a UTCTime of 13 octets, as all valid ones are, is refused: programs that read these identifiers rely on
  // it.
  if (text.size() < kShortestGeneralizedTime) return std::nullopt;
  return ParseUtcTime(text);
}

constexpr std::optional<LibraryTime> ParseGeneralizedTime(Octets text) {
  if (text.size() < kShortestGeneralizedTime) return std::nullopt;
  return ReadMonthToSecond(ReadDigits(text.first(4)), text.subspan(4));
}

// Reads the first three digits. Digits that are missing count as zeros.
constexpr uint32_t ReadThousandths(Octets digits) {
  const size_t given = std::min<size_t>(digits.size(), 3);
  uint32_t number = ReadDigits(digits.first(given));
  for (size_t i = given; i < 3; ++i) number *= 10;
  return number;
}

constexpr LibraryPreciseTime WithFraction(const LibraryTime& time, uint32_t millisecond, uint32_t microsecond) {
  return {time.year, time.month, time.day, time.hour, time.minute, time.second, millisecond, microsecond};
}

// Reads YYYYMMDDHHMMSS[.f...]Z.
constexpr std::optional<LibraryPreciseTime> ParsePreciseTime(Octets text) {
  constexpr size_t kPoint = 14;
  const auto time = ParseGeneralizedTime(text);
  if (!time || text.back() != 'Z') return std::nullopt;
  // DEVIATES: one octet between the seconds and the Z is passed over, whatever it is, so that what could be read so far
  // stays readable.
  if (text.size() <= kPoint + 2) return WithFraction(*time, 0, 0);
  if (text[kPoint] != '.') return std::nullopt;
  const Octets fraction = text.subspan(kPoint + 1, text.size() - kPoint - 2);
  const Octets behindMilliseconds = fraction.subspan(std::min<size_t>(fraction.size(), 3));
  return WithFraction(*time, ReadThousandths(fraction), ReadThousandths(behindMilliseconds));
}

// Writing. Fits() is false when a number has more digits than its place in the text.

class TimeText {
 public:
  // The text, once it is complete.
  [[nodiscard]] constexpr uint8_t* Data() { return octets_.data(); }
  [[nodiscard]] constexpr uint32_t Length() const { return length_; }
  [[nodiscard]] constexpr bool Fits() const { return fits_; }

  constexpr TimeText& Octet(char octet) {
    octets_[length_++] = static_cast<uint8_t>(octet);
    return *this;
  }

  constexpr TimeText& Number(uint32_t number, uint32_t digits) {
    for (uint32_t i = digits; i > 0; --i, number /= 10) {
      octets_[length_ + i - 1] = static_cast<uint8_t>('0' + number % 10);
    }
    length_ += digits;
    fits_ = fits_ && number == 0;
    return *this;
  }

  template <class Record>
  constexpr TimeText& MonthToSecond(const Record& time) {
    for (const uint32_t field : {time.month, time.day, time.hour, time.minute, time.second}) Number(field, 2);
    return *this;
  }

  // What DER leaves out of a fraction: zeros at its end, and the point when no digit is left.
  constexpr TimeText& TrimFraction() {
    while (octets_[length_ - 1] == '0') --length_;
    if (octets_[length_ - 1] == '.') --length_;
    return *this;
  }

 private:
  // YYYYMMDDHHMMSS.mmmuuuZ
  std::array<uint8_t, 22> octets_{};
  uint32_t length_ = 0;
  bool fits_ = true;
};

constexpr TimeText FormatUtcTime(const LibraryTime& time) {
  return TimeText().Number(time.year % 100, 2).MonthToSecond(time).Octet('Z');
}

constexpr TimeText FormatGeneralizedTime(const LibraryTime& time) {
  return TimeText().Number(time.year, 4).MonthToSecond(time).Octet('Z');
}

constexpr TimeText FormatPreciseTime(const LibraryPreciseTime& time) {
  return TimeText()
      .Number(time.year, 4)
      .MonthToSecond(time)
      .Octet('.')
      .Number(time.millisecond, 3)
      .Number(time.microsecond, 3)
      .TrimFraction()
      .Octet('Z');
}

}  // namespace tessel
