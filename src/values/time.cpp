// On 32-bit Linux these macros let std::time_t reach beyond 2038. They must stand before the first header of the C
// library.
#if defined(__linux__) && !defined(__LP64__)
#define _FILE_OFFSET_BITS 64
#define _TIME_BITS 64
#endif

#include "values/time.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <ctime>
#include <new>
#include <optional>

#include "engine/memory.h"

namespace tessel {
namespace {

// Records.

template <class Record>
Status CreateRecord(Record** record, Caller at = {}) {
  if (record == nullptr) return Fail(TESSEL_INVALID_ARGUMENT, at);
  void* memory = AllocateOctets(sizeof(Record));
  *record = memory == nullptr ? nullptr : new (memory) Record{};
  return memory == nullptr ? Fail(TESSEL_OUT_OF_MEMORY, at) : Status();
}

Status FreeRecord(void* record) {
  ReleaseOctets(record);
  return Status();
}

template <class Record>
Status CopyRecord(Record* destination, const Record* source, Caller at = {}) {
  if (destination == nullptr || source == nullptr) return Fail(TESSEL_INVALID_ARGUMENT, at);
  *destination = *source;
  return Status();
}

// The fields in the order in which functions take and give them.
using Fields = std::array<uint32_t, 6>;
using PreciseFields = std::array<uint32_t, 8>;
using AccuracyFields = std::array<uint32_t, 3>;

Fields FieldsOf(const LibraryTime& time) {
  return {time.day, time.month, time.year, time.hour, time.minute, time.second};
}
PreciseFields FieldsOf(const LibraryPreciseTime& time) {
  return {time.day, time.month, time.year, time.hour, time.minute, time.second, time.millisecond, time.microsecond};
}
AccuracyFields FieldsOf(const Accuracy& accuracy) {
  return {accuracy.seconds, accuracy.milliseconds, accuracy.microseconds};
}

template <class Record, size_t count>
Status GetFields(const Record* record, uint32_t* const (&outputs)[count], Caller at = {}) {
  for (const uint32_t* output : outputs) {
    if (output == nullptr) return Fail(TESSEL_INVALID_ARGUMENT, at);
  }
  const std::array<uint32_t, count> fields = FieldsOf(record == nullptr ? Record{} : *record);
  for (size_t i = 0; i < count; ++i) *outputs[i] = fields[i];
  return record == nullptr ? Fail(TESSEL_INVALID_ARGUMENT, at) : Status();
}

template <class Record>
uint32_t IsNull(const Record* record) {
  if (record == nullptr) return 1;
  const auto fields = FieldsOf(*record);
  return std::all_of(fields.begin(), fields.end(), [](uint32_t field) { return field == 0; }) ? 1 : 0;
}

LibraryTime WholeSeconds(const LibraryPreciseTime& time) {
  return {time.year, time.month, time.day, time.hour, time.minute, time.second};
}

// The calendar.

constexpr uint32_t kMonths = 12;
constexpr uint32_t kShortFebruary = 28;
constexpr uint32_t kLongFebruary = 29;

// The calendar repeats itself after a cycle of 400 years.
constexpr uint32_t kCycleYears = 400;
constexpr uint32_t kCycleDays = 146097;

constexpr bool IsMonth(uint32_t month) { return month >= 1 && month <= kMonths; }

constexpr bool IsLeap(uint32_t year) { return year % 400 == 0 || (year % 4 == 0 && year % 100 != 0); }

constexpr uint32_t FebruaryOf(uint32_t year) { return IsLeap(year) ? kLongFebruary : kShortFebruary; }

constexpr uint32_t DaysIn(uint32_t month, uint32_t february) {
  constexpr uint8_t kDays[kMonths] = {31, 0, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  return month == 2 ? february : kDays[month - 1];
}

// The number of days in February with which the last call of AddDays ended. The order in which threads see each other's
// number does not matter.
// DEVIATES: a call that begins in a common year goes on with the February of the call before, which may have 29 days:
// programs rely on the dates.
constinit std::atomic<uint32_t> lastFebruary{kShortFebruary};

template <class Record>
Status AddDays(Record* time, uint32_t days, Caller at = {}) {
  if (time == nullptr) return Fail(TESSEL_INVALID_ARGUMENT, at);
  if (!IsMonth(time->month)) return Fail(TESSEL_INVALID_TIME, at);
  uint32_t february = IsLeap(time->year) ? kLongFebruary : lastFebruary.load(std::memory_order_relaxed);
  uint64_t day = uint64_t{time->day} + days;
  while (day > DaysIn(time->month, february)) {
    day -= DaysIn(time->month, february);
    if (++time->month <= kMonths) continue;
    // From this January on every February has the days of its own year, unlike the one that the call began with. So
    // whole cycles can be skipped instead of counted month by month.
    const uint64_t cycles = (day - 1) / kCycleDays;
    day -= cycles * kCycleDays;
    time->month = 1;
    time->year += 1 + static_cast<uint32_t>(cycles) * kCycleYears;
    february = FebruaryOf(time->year);
  }
  time->day = static_cast<uint32_t>(day);
  lastFebruary.store(february, std::memory_order_relaxed);
  return Status();
}

// Seconds since 1 January 1970. The month must be 1 to 12; other fields that are out of range are added as they are.
int64_t SecondsSinceEpoch(const LibraryTime& time) {
  // Days are counted from 1 January of the year -399, which begins a cycle, so that no count is negative.
  constexpr int64_t kDaysTo1970 = kCycleDays + 719162;
  const int64_t yearsBefore = int64_t{time.year} - 1 + kCycleYears;
  int64_t days = yearsBefore * 365 + yearsBefore / 4 - yearsBefore / 100 + yearsBefore / 400;
  for (uint32_t month = 1; month < time.month; ++month) days += DaysIn(month, FebruaryOf(time.year));
  days += int64_t{time.day} - 1 - kDaysTo1970;
  return ((days * 24 + time.hour) * 60 + time.minute) * 60 + time.second;
}

// The platform's clock, and the split of its seconds into fields.

#if defined(_WIN32)

int64_t ReadClock() { return _time64(nullptr); }

bool SplitUtc(int64_t seconds, std::tm& fields) { return _gmtime64_s(&fields, &seconds) == 0; }
bool SplitLocal(int64_t seconds, std::tm& fields) { return _localtime64_s(&fields, &seconds) == 0; }

#else

int64_t ReadClock() { return std::time(nullptr); }

// Converts to std::time_t. It may have 32 bits: false when the seconds do not fit.
bool Narrow(int64_t seconds, std::time_t& narrowed) {
  narrowed = static_cast<std::time_t>(seconds);
  return narrowed == seconds;
}

bool SplitUtc(int64_t seconds, std::tm& fields) {
  std::time_t narrowed = 0;
  return Narrow(seconds, narrowed) && gmtime_r(&narrowed, &fields) != nullptr;
}
bool SplitLocal(int64_t seconds, std::tm& fields) {
  std::time_t narrowed = 0;
  return Narrow(seconds, narrowed) && localtime_r(&narrowed, &fields) != nullptr;
}

#endif

LibraryTime FromCalendar(const std::tm& fields) {
  const auto field = [](int number, uint32_t first) { return static_cast<uint32_t>(number) + first; };
  return {field(fields.tm_year, 1900), field(fields.tm_mon, 1), field(fields.tm_mday, 0),
          field(fields.tm_hour, 0),    field(fields.tm_min, 0), field(fields.tm_sec, 0)};
}

std::optional<LibraryTime> Now() {
  const int64_t seconds = ReadClock();
  std::tm fields{};
  if (seconds == -1 || !SplitUtc(seconds, fields)) return std::nullopt;
  return FromCalendar(fields);
}

std::optional<LibraryTime> ToLocal(const LibraryTime& time) {
  std::tm fields{};
  if (!IsMonth(time.month) || !SplitLocal(SecondsSinceEpoch(time), fields)) return std::nullopt;
  return FromCalendar(fields);
}

// Setters.

bool Store(uint32_t value, uint32_t lowest, uint32_t highest, uint32_t& field) {
  if (value < lowest || value > highest) return false;
  field = value;
  return true;
}

// Stores one field after the other, up to the first that is out of its range.
template <class Record>
bool StoreToSecond(Record& time, const Record& fields) {
  // DEVIATES: every year has a 29 February, none is beyond 2100 (RFC 5280, 4.1.2.5, has 9999), and what passed before a
  // failure stays stored: callers know records so.
  return Store(fields.month, 1, kMonths, time.month) &&
         Store(fields.day, 1, DaysIn(fields.month, kLongFebruary), time.day) &&
         Store(fields.year, 1900, 2100, time.year) && Store(fields.hour, 0, 23, time.hour) &&
         Store(fields.minute, 0, 59, time.minute) && Store(fields.second, 0, 59, time.second);
}

bool StoreAll(LibraryTime& time, const LibraryTime& fields) { return StoreToSecond(time, fields); }
bool StoreAll(LibraryPreciseTime& time, const LibraryPreciseTime& fields) {
  return StoreToSecond(time, fields) && Store(fields.millisecond, 0, 999, time.millisecond) &&
         Store(fields.microsecond, 0, 999, time.microsecond);
}

template <class Record>
Status StoreFields(Record* time, const Record& fields, Caller at) {
  if (time == nullptr) return Fail(TESSEL_INVALID_ARGUMENT, at);
  return StoreAll(*time, fields) ? Status() : Fail(TESSEL_INVALID_TIME, at);
}

// Reads a time for CompareTime. For a null handle it records a failure and returns a null time.
LibraryTime ReadForComparison(const LibraryTime* time) {
  // DEVIATES: a null handle compares as a time before all others, for there is no status that could refuse it.
  LibraryTime read{};
  GetLibraryTime(time, &read.day, &read.month, &read.year, &read.hour, &read.minute, &read.second);
  return read;
}

}  // namespace

Status SetFields(LibraryTime* time, const LibraryTime& fields, Caller at) { return StoreFields(time, fields, at); }

Status SetFields(LibraryPreciseTime* time, const LibraryPreciseTime& fields, Caller at) {
  return StoreFields(time, fields, at);
}

}  // namespace tessel

using namespace tessel;

uint32_t TESSEL_CALL CreateLibraryTime(LibraryTime** time) { return CreateRecord(time); }
uint32_t TESSEL_CALL CreateLibraryPreciseTime(LibraryPreciseTime** time) { return CreateRecord(time); }
uint32_t TESSEL_CALL CreateAccuracy(Accuracy** accuracy) { return CreateRecord(accuracy); }

uint32_t TESSEL_CALL FreeLibraryTime(LibraryTime* time) { return FreeRecord(time); }
uint32_t TESSEL_CALL FreeLibraryPreciseTime(LibraryPreciseTime* time) { return FreeRecord(time); }
uint32_t TESSEL_CALL FreeAccuracy(Accuracy* accuracy) { return FreeRecord(accuracy); }

uint32_t TESSEL_CALL CopyLibraryTime(LibraryTime* destination, const LibraryTime* source) {
  return CopyRecord(destination, source);
}

uint32_t TESSEL_CALL CopyLibraryPreciseTime(LibraryPreciseTime* destination, const LibraryPreciseTime* source) {
  return CopyRecord(destination, source);
}

uint32_t TESSEL_CALL CopyAccuracy(Accuracy* destination, const Accuracy* source) {
  return CopyRecord(destination, source);
}

uint32_t TESSEL_CALL SetLibraryTime(LibraryTime* time, uint32_t day, uint32_t month, uint32_t year, uint32_t hour,
                                    uint32_t minute, uint32_t second) {
  return SetFields(time, {year, month, day, hour, minute, second});
}

uint32_t TESSEL_CALL SetLibraryPreciseTime(LibraryPreciseTime* time, uint32_t day, uint32_t month, uint32_t year,
                                           uint32_t hour, uint32_t minute, uint32_t second, uint32_t millisecond,
                                           uint32_t microsecond) {
  return SetFields(time, {year, month, day, hour, minute, second, millisecond, microsecond});
}

uint32_t TESSEL_CALL SetAccuracy(Accuracy* accuracy, uint32_t seconds, uint32_t milliseconds, uint32_t microseconds) {
  const Accuracy fields{seconds, milliseconds, microseconds};
  return CopyRecord(accuracy, &fields);
}

// DEVIATES: the next two functions refuse zeros as SetLibraryTime does, and the record stays: the reading of absent
// times relies on it.
uint32_t TESSEL_CALL SetLibraryTimeToNull(LibraryTime* time) { return SetFields(time, {}); }

uint32_t TESSEL_CALL SetLibraryPreciseTimeToNull(LibraryPreciseTime* time) { return SetFields(time, {}); }

uint32_t TESSEL_CALL SetAccuracyToNull(Accuracy* accuracy) { return SetAccuracy(accuracy, 0, 0, 0); }

uint32_t TESSEL_CALL GetLibraryTime(const LibraryTime* time, uint32_t* day, uint32_t* month, uint32_t* year,
                                    uint32_t* hour, uint32_t* minute, uint32_t* second) {
  return GetFields(time, {day, month, year, hour, minute, second});
}

uint32_t TESSEL_CALL GetLibraryPreciseTime(const LibraryPreciseTime* time, uint32_t* day, uint32_t* month,
                                           uint32_t* year, uint32_t* hour, uint32_t* minute, uint32_t* second,
                                           uint32_t* millisecond, uint32_t* microsecond) {
  return GetFields(time, {day, month, year, hour, minute, second, millisecond, microsecond});
}

uint32_t TESSEL_CALL GetAccuracy(const Accuracy* accuracy, uint32_t* seconds, uint32_t* milliseconds,
                                 uint32_t* microseconds) {
  return GetFields(accuracy, {seconds, milliseconds, microseconds});
}

uint32_t TESSEL_CALL IsLibraryTimeNull(const LibraryTime* time) { return IsNull(time); }
uint32_t TESSEL_CALL IsLibraryPreciseTimeNull(const LibraryPreciseTime* time) { return IsNull(time); }
uint32_t TESSEL_CALL IsAccuracyNull(const Accuracy* accuracy) { return IsNull(accuracy); }

uint32_t TESSEL_CALL GetCurrentLibTime(LibraryTime* time) {
  const std::optional<LibraryTime> now = Now();
  return now ? SetFields(time, *now) : Fail(TESSEL_INVALID_ARGUMENT);
}

uint32_t TESSEL_CALL GetCurrentLibPreciseTime(LibraryPreciseTime* time) {
  const std::optional<LibraryTime> now = Now();
  return now ? SetFields(time, WithFraction(*now, 0, 0)) : Fail(TESSEL_INVALID_ARGUMENT);
}

uint32_t TESSEL_CALL AddDaysToLibTime(LibraryTime* time, uint32_t days) { return AddDays(time, days); }
uint32_t TESSEL_CALL AddDaysToLibPreciseTime(LibraryPreciseTime* time, uint32_t days) { return AddDays(time, days); }

uint32_t TESSEL_CALL GetLibraryLocalTime(const LibraryTime* time, uint32_t* day, uint32_t* month, uint32_t* year,
                                         uint32_t* hour, uint32_t* minute, uint32_t* second) {
  const std::optional<LibraryTime> local = time == nullptr ? std::nullopt : ToLocal(*time);
  return GetFields(local ? &*local : nullptr, {day, month, year, hour, minute, second});
}

uint32_t TESSEL_CALL GetLibraryLocalPreciseTime(const LibraryPreciseTime* time, uint32_t* day, uint32_t* month,
                                                uint32_t* year, uint32_t* hour, uint32_t* minute, uint32_t* second,
                                                uint32_t* millisecond, uint32_t* microsecond) {
  const std::optional<LibraryTime> local = time == nullptr ? std::nullopt : ToLocal(WholeSeconds(*time));
  // DEVIATES: the fraction of a precise time is lost here, as callers know it.
  const LibraryPreciseTime precise = WithFraction(local.value_or(LibraryTime{}), 0, 0);
  return GetFields(local ? &precise : nullptr, {day, month, year, hour, minute, second, millisecond, microsecond});
}

int32_t TESSEL_CALL CompareTime(const LibraryTime* first, const LibraryTime* second) {
  const auto ordered = [](const LibraryTime& time) {
    return Fields{time.year, time.month, time.day, time.hour, time.minute, time.second};
  };
  const Fields one = ordered(ReadForComparison(first));
  const Fields other = ordered(ReadForComparison(second));
  if (one == other) return 0;
  return one < other ? -1 : 1;
}

uint32_t TESSEL_CALL TestTimeValidity(const LibraryTime* start, const LibraryTime* moment, const LibraryTime* end) {
  // DEVIATES: the answer to yes is 0, though the result is no status: programs test for it.
  return CompareTime(start, moment) > 0 || CompareTime(moment, end) > 0 ? 1 : 0;
}
