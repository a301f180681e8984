#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "support/objects.h"
#include "support/octets.h"
#include "tessel/tessel.h"
#include "values/time_text.h"

namespace test {
namespace {

using namespace std::chrono;
using Fields = std::array<uint32_t, 8>;
using Pointers = std::array<uint32_t*, 8>;

Fields Of(const LibraryTime& t) { return {t.year, t.month, t.day, t.hour, t.minute, t.second, 0, 0}; }
Fields Of(const LibraryPreciseTime& t) {
  return {t.year, t.month, t.day, t.hour, t.minute, t.second, t.millisecond, t.microsecond};
}

// The calendar of the standard library, which is right on every platform and in every year of the tests.
sys_seconds Instant(const LibraryTime& t) {
  return sys_days(year(static_cast<int>(t.year)) / month(t.month) / day(t.day)) +
         seconds(t.hour * 3600 + t.minute * 60 + t.second);
}
LibraryTime FromInstant(sys_seconds instant) {
  const year_month_day date(floor<days>(instant));
  const auto y = static_cast<uint32_t>(static_cast<int>(date.year()));
  const auto s = static_cast<uint32_t>((instant - floor<days>(instant)).count());
  return {y, unsigned{date.month()}, unsigned{date.day()}, s / 3600, s / 60 % 60, s % 60};
}

TEST(TimeRecords, SettersKeepWhatPassed) {
  // Day, month, year, hour, minute, second, millisecond, microsecond; how many pass, in the order of the checks.
  const std::pair<Fields, size_t> cases[] = {
      {{1, 1, 1900, 0, 0, 0, 0, 0}, 8},   {{31, 12, 2100, 23, 59, 59, 999, 999}, 8},
      {{29, 2, 2023, 4, 5, 6, 7, 8}, 8},  {{1, 13, 2023, 4, 5, 6, 7, 8}, 0},
      {{0, 1, 2023, 4, 5, 6, 7, 8}, 1},   {{31, 4, 2023, 4, 5, 6, 7, 8}, 1},
      {{1, 1, 1899, 4, 5, 6, 7, 8}, 2},   {{1, 1, 2101, 4, 5, 6, 7, 8}, 2},
      {{1, 1, 2023, 24, 5, 6, 7, 8}, 3},  {{1, 1, 2023, 4, 60, 6, 7, 8}, 4},
      {{1, 1, 2023, 4, 5, 60, 7, 8}, 5},  {{1, 1, 2023, 4, 5, 6, 1000, 8}, 6},
      {{1, 1, 2023, 4, 5, 6, 7, 1000}, 7}};
  for (const auto& [a, passed] : cases) {
    SCOPED_TRACE(testing::PrintToString(a));
    const Fields inOrder = {a[1], a[0], a[2], a[3], a[4], a[5], a[6], a[7]};
    Fields expected = {7, 15, 1999, 1, 2, 3, 4, 5};
    std::copy_n(inOrder.begin(), passed, expected.begin());
    LibraryTime time{1999, 7, 15, 1, 2, 3};
    LibraryPreciseTime precise{1999, 7, 15, 1, 2, 3, 4, 5};
    EXPECT_STATUS(passed < 6 ? TESSEL_INVALID_TIME : TESSEL_OK,
                  SetLibraryTime(&time, a[0], a[1], a[2], a[3], a[4], a[5]));
    EXPECT_STATUS(passed < 8 ? TESSEL_INVALID_TIME : TESSEL_OK,
                  SetLibraryPreciseTime(&precise, a[0], a[1], a[2], a[3], a[4], a[5], a[6], a[7]));
    Fields t = expected;
    Fields p{};
    EXPECT_OK(GetLibraryTime(&time, &t[1], &t[0], &t[2], &t[3], &t[4], &t[5]));
    EXPECT_OK(GetLibraryPreciseTime(&precise, &p[1], &p[0], &p[2], &p[3], &p[4], &p[5], &p[6], &p[7]));
    EXPECT_EQ(expected, t);
    EXPECT_EQ(expected, p);
  }
}

TEST(TimeRecords, AreNullWhenNewAndTimesStayAsTheyAre) {
  Owned<LibraryTime> time;
  Owned<LibraryPreciseTime> precise;
  Owned<Accuracy> accuracy;
  const auto countNull = [&] {
    return IsLibraryTimeNull(time) + IsLibraryPreciseTimeNull(precise) + IsAccuracyNull(accuracy);
  };
  EXPECT_EQ(3U, countNull());
  time = Make(CreateLibraryTime);
  precise = Make(CreateLibraryPreciseTime);
  accuracy = Make(CreateAccuracy);
  EXPECT_EQ(3U, countNull());
  const LibraryTime second{0, 0, 0, 0, 0, 1};
  const LibraryPreciseTime microsecond{0, 0, 0, 0, 0, 0, 0, 1};
  Accuracy read{};
  Call(CopyLibraryTime, time, &second);
  Call(CopyLibraryPreciseTime, precise, &microsecond);
  Call(SetAccuracy, &read, ~0U, 1000, 2);
  Call(CopyAccuracy, accuracy, &read);
  EXPECT_STATUS(TESSEL_INVALID_TIME, SetLibraryTimeToNull(time));
  EXPECT_STATUS(TESSEL_INVALID_TIME, SetLibraryPreciseTimeToNull(precise));
  EXPECT_EQ(0U, countNull());
  EXPECT_OK(GetAccuracy(accuracy, &read.microseconds, &read.seconds, &read.milliseconds));
  EXPECT_TRUE(read.microseconds == ~0U && read.seconds == 1000 && read.milliseconds == 2);
  EXPECT_OK(SetAccuracyToNull(accuracy));
  EXPECT_EQ(1U, countNull());
  EXPECT_OK(FreeLibraryTime(time.Release()));
  EXPECT_OK(FreeLibraryPreciseTime(precise.Release()));
  EXPECT_OK(FreeAccuracy(accuracy.Release()));
  EXPECT_OK(FreeAccuracy(nullptr));
}

TEST(TimeRecords, NullHandlesAreRefused) {
  LibraryTime time{};
  LibraryTime* const held = &time;
  Accuracy accuracy{};
  const uint8_t octets[2] = {};
  uint32_t number = 0;
  ExpectNullsRefused(CopyLibraryTime, held, held);
  ExpectNullsRefused(SetLibraryTime, held, 1U, 1U, 2024U, 0U, 0U, 0U);
  ExpectNullsRefused(SetLibraryTimeToNull, held);
  ExpectNullsRefused(SetAccuracy, &accuracy, 1U, 1U, 1U);
  ExpectNullsRefused(GetCurrentLibTime, held);
  ExpectNullsRefused(AddDaysToLibTime, held, 1U);
  ExpectNullsRefused(DecodeTime, octets, 2U, held);
  ExpectNullsRefused(EncodeTime, held, Maybe<uint8_t*>{nullptr}, &number);
}

TEST(TimeRecords, GettersWriteZerosWhenThereIsNothingToRead) {
  static const LibraryTime noMonth{};
  static const LibraryPreciseTime tooLate{~0U, 12, 31, 0, 0, 0, 0, 0};
  const std::pair<size_t, std::function<uint32_t(Pointers)>> getters[] = {
      {3, [](Pointers o) { return GetAccuracy(nullptr, o[0], o[1], o[2]); }},
      {6, [](Pointers o) { return GetLibraryTime(nullptr, o[0], o[1], o[2], o[3], o[4], o[5]); }},
      {6, [](Pointers o) { return GetLibraryLocalTime(nullptr, o[0], o[1], o[2], o[3], o[4], o[5]); }},
      {6, [](Pointers o) { return GetLibraryLocalTime(&noMonth, o[0], o[1], o[2], o[3], o[4], o[5]); }},
      {8, [](Pointers o) {
         return GetLibraryLocalPreciseTime(&tooLate, o[0], o[1], o[2], o[3], o[4], o[5], o[6], o[7]);
       }}};
  for (const auto& [count, get] : getters) {
    Fields read{};
    read.fill(77);
    Fields expected = read;
    Pointers outputs{};
    for (size_t i = 0; i < 8; ++i) outputs[i] = &read[i];
    // Without one of the outputs none is written.
    outputs[count - 1] = nullptr;
    EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, get(outputs));
    EXPECT_EQ(expected, read);
    outputs[count - 1] = &read[count - 1];
    std::fill_n(expected.begin(), count, 0);
    EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, get(outputs));
    EXPECT_EQ(expected, read);
  }
}

// Month by month, as it is documented.
void Walk(LibraryTime& time, uint64_t days, uint32_t& february) {
  // The years of the standard library end before those of the longest walk.
  const auto isLeap = [&time] { return year(static_cast<int>(time.year % 400)).is_leap(); };
  if (isLeap()) february = 29;
  for (days += time.day;;) {
    const uint32_t length = time.month == 2 ? february : 30 + (time.month + time.month / 8) % 2;
    if (days <= length) break;
    days -= length;
    if (++time.month <= 12) continue;
    time.month = 1;
    ++time.year;
    february = isLeap() ? 29 : 28;
  }
  time.day = static_cast<uint32_t>(days);
}

TEST(AddDays, FollowsTheCalendarButForTheFebruaryThatIsLeft) {
  LibraryPreciseTime precise{2024, 2, 28, 1, 2, 3, 4, 5};
  ASSERT_OK(AddDaysToLibPreciseTime(&precise, 1));
  EXPECT_EQ((Fields{2024, 2, 29, 1, 2, 3, 4, 5}), Of(precise));
  precise = {2023, 2, 28, 1, 2, 3, 4, 5};
  ASSERT_OK(AddDaysToLibPreciseTime(&precise, 1));
  EXPECT_EQ((Fields{2023, 2, 29, 1, 2, 3, 4, 5}), Of(precise));
  ASSERT_OK(AddDaysToLibPreciseTime(&precise, 366));
  EXPECT_EQ((Fields{2024, 2, 29, 1, 2, 3, 4, 5}), Of(precise));

  uint32_t february = 29;
  std::mt19937 random(1);
  for (auto start = Instant({1900, 1, 1, 1, 2, 3}); start < Instant({2101, 1, 1, 0, 0, 0}); start += days(5)) {
    // From few days to many, so that common years find either February; and to cycles of 400 years.
    for (const auto way : {random() % 400, random() >> (8 + random() % 24), 146096 + random() % 3}) {
      const auto n = static_cast<uint32_t>(way);
      LibraryTime time = FromInstant(start);
      LibraryTime walked = time;
      Walk(walked, n, february);
      ASSERT_OK(AddDaysToLibTime(&time, n));
      ASSERT_EQ(Of(walked), Of(time)) << testing::PrintToString(Of(FromInstant(start))) << " + " << n;
    }
  }
  LibraryTime null{};
  EXPECT_STATUS(TESSEL_INVALID_TIME, AddDaysToLibTime(&null, 1));
}

void SetZone(const char* name) {
#ifdef _WIN32
  _putenv_s("TZ", name);
  _tzset();
#else
  setenv("TZ", name, 1);
  tzset();
#endif
}

// By both forms, which must agree. The fraction of the precise one is lost.
Fields Local(const LibraryTime& t) {
  const LibraryPreciseTime precise{t.year, t.month, t.day, t.hour, t.minute, t.second, 120, 7};
  Fields f{};
  Fields p{};
  EXPECT_OK(GetLibraryLocalTime(&t, &f[2], &f[1], &f[0], &f[3], &f[4], &f[5]));
  EXPECT_OK(GetLibraryLocalPreciseTime(&precise, &p[2], &p[1], &p[0], &p[3], &p[4], &p[5], &p[6], &p[7]));
  EXPECT_EQ(f, p);
  return f;
}

#ifdef _WIN32
constexpr uint32_t kFirstLocalYear = 1970;

TEST(LocalTime, BeginsIn1970) {
  SetZone("UTC0");
  const LibraryTime before{1969, 12, 31, 23, 59, 59};
  Fields f = {1, 1, 1, 1, 1, 1};
  EXPECT_STATUS(TESSEL_INVALID_ARGUMENT, GetLibraryLocalTime(&before, &f[2], &f[1], &f[0], &f[3], &f[4], &f[5]));
  EXPECT_EQ(Fields{}, f);
}
#else
constexpr uint32_t kFirstLocalYear = 1900;

// Windows has no rules for summer time in TZ.
TEST(LocalTime, HasSummerTime) {
  SetZone("EST5EDT,M3.2.0,M11.1.0");
  EXPECT_EQ((Fields{2024, 3, 10, 1, 59, 59}), Local({2024, 3, 10, 6, 59, 59}));
  EXPECT_EQ((Fields{2024, 3, 10, 3, 0, 0}), Local({2024, 3, 10, 7, 0, 0}));
  EXPECT_EQ((Fields{2060, 6, 30, 22, 0, 0}), Local({2060, 7, 1, 2, 0, 0}));
  EXPECT_EQ((Fields{2023, 3, 1, 7, 0, 0}), Local({2023, 2, 29, 12, 0, 0}));
}
#endif

TEST(LocalTime, IsTheSameInstant) {
  const std::pair<const char*, int> zones[] = {{"UTC0", 0}, {"MSK-3", 180}, {"NPT-5:45", 345}, {"HST10", -600}};
  for (const auto& [name, offset] : zones) {
    SetZone(name);
    for (auto at = Instant({kFirstLocalYear, 1, 1, 0, 0, 0}); at < Instant({2101, 1, 1, 0, 0, 0});
         at += seconds(12345677)) {
      ASSERT_EQ(Of(FromInstant(at + minutes(offset))), Local(FromInstant(at))) << name;
    }
  }
}

TEST(CurrentTime, IsThatOfTheClockInUtc) {
  SetZone("MSK-3");
  LibraryTime time{};
  LibraryPreciseTime p{1, 1, 1, 1, 1, 1, 1, 1};
  ASSERT_OK(GetCurrentLibTime(&time));
  ASSERT_OK(GetCurrentLibPreciseTime(&p));
  EXPECT_LE(abs(system_clock::now() - Instant(time)), seconds(5));
  EXPECT_LE(abs(system_clock::now() - Instant({p.year, p.month, p.day, p.hour, p.minute, p.second})), seconds(5));
  EXPECT_EQ(0U, p.millisecond + p.microsecond);
}

TEST(CompareTime, OrdersByTheFirstFieldThatDiffers) {
  // The null time, and times of which each is later by a field more to the left.
  const LibraryTime t[] = {{0, 0, 0, 0, 0, 0}, {2, 2, 2, 2, 2, 2}, {2, 2, 2, 2, 2, 3}, {2, 2, 2, 2, 3, 1},
                           {2, 2, 2, 3, 1, 1}, {2, 2, 3, 1, 1, 1}, {2, 3, 1, 1, 1, 1}, {3, 1, 1, 1, 1, 1}};
  for (int i = 0; i < 8; ++i) {
    EXPECT_EQ(i == 0 ? 0 : -1, CompareTime(nullptr, &t[i]));
    for (int j = 0; j < 8; ++j) {
      EXPECT_EQ((i > j) - (i < j), CompareTime(&t[i], &t[j])) << i << ' ' << j;
      EXPECT_EQ(i <= j && j <= 4 ? 0U : 1U, TestTimeValidity(&t[i], &t[j], &t[4]));
    }
  }
}

constexpr uint8_t kUtc = 0x17;
constexpr uint8_t kGeneralized = 0x18;

TEST(TimeCodec, ReadsBothTypesAndWritesTheSameOctets) {
  struct Case {
    uint8_t tag;
    uint32_t status;
    std::string_view text;
    // The record afterwards, which was 1990-09-09 09:09:09.
    Fields fields = {1990, 9, 9, 9, 9, 9};
  };
  const Case cases[] = {
      {kUtc, TESSEL_OK, "491231235959Z", {2049, 12, 31, 23, 59, 59}},
      {kUtc, TESSEL_OK, "500102030405Z", {1950, 1, 2, 3, 4, 5}},
      {kUtc, TESSEL_OK, "230229010203+0300", {2023, 2, 29, 1, 2, 3}},
      // Octets that are no digits count by their distance from '0'.
      {kUtc, TESSEL_OK, ":00:0>0000000", {2000, 10, 14, 0, 0, 0}},
      {kUtc, TESSEL_INVALID_TIME, "/90101000000Z", {1990, 1, 1, 9, 9, 9}},
      {kUtc, TESSEL_INVALID_CONTENT, "240101000000"},
      {kUtc, TESSEL_MALFORMED, ""},
      {kGeneralized, TESSEL_OK, "20491231235959Z", {2049, 12, 31, 23, 59, 59}},
      {kGeneralized, TESSEL_OK, "20500101000000Z", {2050, 1, 1, 0, 0, 0}},
      {kGeneralized, TESSEL_OK, "19000102030405.678", {1900, 1, 2, 3, 4, 5}},
      {kGeneralized, TESSEL_INVALID_TIME, "21010203040506Z", {1990, 2, 3, 9, 9, 9}},
      {kGeneralized, TESSEL_INVALID_CONTENT, "20240101000000"},
      {kGeneralized, TESSEL_MALFORMED, ""},
      {0x16, TESSEL_MALFORMED, "20240101000000Z"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    const Bytes octets = Der(c.tag, ToBytes(c.text));
    const Guarded input(octets);
    LibraryTime time{1990, 9, 9, 9, 9, 9};
    EXPECT_STATUS(c.status, Try(DecodeTime, input, &time));
    EXPECT_EQ(c.fields, Of(time));
    EXPECT_STATUS(c.tag == kGeneralized ? c.status : uint32_t{TESSEL_MALFORMED},
                  Try(DecodeAsn1GeneralizedTime, input, &time));
    if (c.status != TESSEL_OK || c.text.back() != 'Z') continue;
    if (c.tag == kGeneralized) {
      EXPECT_EQ(ToHex(octets), ToHex(FetchChecked(EncodeAsn1GeneralizedTime, &time)));
    }
    if (c.tag == kUtc || time.year >= 2050) {
      EXPECT_EQ(ToHex(octets), ToHex(FetchChecked(EncodeTime, &time)));
    }
  }
}

TEST(TimeCodec, RefusesToWriteWhatHasNoText) {
  for (const LibraryTime& time :
       {LibraryTime{}, LibraryTime{2024, 1, 100, 0, 0, 0}, LibraryTime{10000, 1, 1, 0, 0, 0}}) {
    EXPECT_STATUS(TESSEL_INVALID_TIME, AskSize(EncodeTime, &time));
    EXPECT_STATUS(TESSEL_INVALID_TIME, AskSize(EncodeAsn1GeneralizedTime, &time));
  }
}

TEST(TimeText, OfAPreciseTimeHasAFraction) {
  struct Case {
    std::string fraction;
    uint32_t millisecond, microsecond;
    std::string written;
  };
  const Case cases[] = {{"Z", 0, 0, "Z"},
                        {"5Z", 0, 0, "Z"},
                        {".0Z", 0, 0, "Z"},
                        {".12Z", 120, 0, ".12Z"},
                        {".123456Z", 123, 456, ".123456Z"},
                        {".10002099Z", 100, 20, ".10002Z"}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.fraction);
    const auto time = tessel::ParsePreciseTime(ToBytes("20000910112000" + c.fraction));
    ASSERT_TRUE(time);
    EXPECT_EQ((Fields{2000, 9, 10, 11, 20, 0, c.millisecond, c.microsecond}), Of(*time));
    tessel::TimeText text = tessel::FormatPreciseTime(*time);
    EXPECT_TRUE(text.Fits());
    EXPECT_EQ("20000910112000" + c.written, std::string(text.Data(), text.Data() + text.Length()));
  }
  for (const char* fraction : {"", "+", ".12", ",12Z", "12Z"}) {
    EXPECT_FALSE(tessel::ParsePreciseTime(ToBytes(std::string("20000910112000") + fraction))) << fraction;
  }
  EXPECT_FALSE(tessel::FormatPreciseTime({2000, 1, 1, 0, 0, 0, 1000, 0}).Fits());
}

TEST(TimeText, OfACrlIssuedTimeIsLongerThanAUtcTime) {
  EXPECT_FALSE(tessel::ParseCrlIssuedTime(ToBytes("240102030405Z")));
  const auto time = tessel::ParseCrlIssuedTime(ToBytes("240102030405+00"));
  ASSERT_TRUE(time);
  EXPECT_EQ((Fields{2024, 1, 2, 3, 4, 5}), Of(*time));
}

TEST(TimeCodec, WritesYearsBefore1950AsUtcTimeToo) {
  LibraryTime time{1949, 12, 31, 23, 59, 59};
  const Bytes written = FetchChecked(EncodeTime, &time);
  EXPECT_EQ(Der(kUtc, ToBytes("491231235959Z")), written);
  EXPECT_OK(Try(DecodeTime, written, &time));
  EXPECT_EQ(2049U, time.year);
}

}  // namespace
}  // namespace test
