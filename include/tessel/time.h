/* Times: records that hold a calendar time in UTC, their arithmetic, and their forms in ASN.1. */
#ifndef TESSEL_TIME_H
#define TESSEL_TIME_H

#include <stdint.h>

#include "tessel/platform.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Records are made by the Create functions, and their fields are set and read by functions; the fields stand here to
 * tell what a record holds. A record whose fields are all 0 is null: a null time, a null accuracy. That is what a new
 * one holds, and what a handle that is null itself counts for where a function says so. */

/* A time to the second, in UTC. */
typedef struct LibraryTime {
  /* 1900 to 2100 */
  uint32_t year;
  /* 1 to 12 */
  uint32_t month;
  /* 1 to 29, 30 or 31, by the month: 29 February is accepted in every year. */
  uint32_t day;
  /* 0 to 23 */
  uint32_t hour;
  /* 0 to 59 */
  uint32_t minute;
  /* 0 to 59 */
  uint32_t second;
} LibraryTime;

/* A time to the microsecond, in UTC. */
typedef struct LibraryPreciseTime {
  /* As in LibraryTime. */
  uint32_t year;
  uint32_t month;
  uint32_t day;
  uint32_t hour;
  uint32_t minute;
  uint32_t second;
  /* 0 to 999 */
  uint32_t millisecond;
  /* 0 to 999 */
  uint32_t microsecond;
} LibraryPreciseTime;

/* How far a time stamp may be off (RFC 3161, 2.4.2). The numbers have no limits. */
typedef struct Accuracy {
  uint32_t seconds;
  uint32_t milliseconds;
  uint32_t microseconds;
} Accuracy;

/* CreateLibraryTime, CreateLibraryPreciseTime, CreateAccuracy: make a null record, which the caller frees. Without
 * memory the handle is null. */
TESSEL_API uint32_t TESSEL_CALL CreateLibraryTime(LibraryTime** time);
TESSEL_API uint32_t TESSEL_CALL CreateLibraryPreciseTime(LibraryPreciseTime** time);
TESSEL_API uint32_t TESSEL_CALL CreateAccuracy(Accuracy** accuracy);

/* FreeLibraryTime, FreeLibraryPreciseTime, FreeAccuracy: release a record; null is allowed. Always return 0. */
TESSEL_API uint32_t TESSEL_CALL FreeLibraryTime(LibraryTime* time);
TESSEL_API uint32_t TESSEL_CALL FreeLibraryPreciseTime(LibraryPreciseTime* time);
TESSEL_API uint32_t TESSEL_CALL FreeAccuracy(Accuracy* accuracy);

/* CopyLibraryTime, CopyLibraryPreciseTime, CopyAccuracy: copy all fields from one record into another. */
TESSEL_API uint32_t TESSEL_CALL CopyLibraryTime(LibraryTime* destination, const LibraryTime* source);
TESSEL_API uint32_t TESSEL_CALL CopyLibraryPreciseTime(LibraryPreciseTime* destination,
                                                       const LibraryPreciseTime* source);
TESSEL_API uint32_t TESSEL_CALL CopyAccuracy(Accuracy* destination, const Accuracy* source);

/* SetLibraryTime, SetLibraryPreciseTime: check the fields and store them, one at a time in the order month, day, year,
 * hour, minute, second, millisecond, microsecond. TESSEL_INVALID_TIME: a field is out of its range; those before it in
 * that order have been stored, the others are as they were.
 * SetAccuracy: stores the three numbers as they are. */
TESSEL_API uint32_t TESSEL_CALL SetLibraryTime(LibraryTime* time, uint32_t day, uint32_t month, uint32_t year,
                                               uint32_t hour, uint32_t minute, uint32_t second);
TESSEL_API uint32_t TESSEL_CALL SetLibraryPreciseTime(LibraryPreciseTime* time, uint32_t day, uint32_t month,
                                                      uint32_t year, uint32_t hour, uint32_t minute, uint32_t second,
                                                      uint32_t millisecond, uint32_t microsecond);
TESSEL_API uint32_t TESSEL_CALL SetAccuracy(Accuracy* accuracy, uint32_t seconds, uint32_t milliseconds,
                                            uint32_t microseconds);

/* SetLibraryTimeToNull, SetLibraryPreciseTimeToNull: set all fields to 0 by the rules of SetLibraryTime, which is never
 * accepted: the status is TESSEL_INVALID_TIME, and the record stays as it is. To have a null time, make a new record.
 * SetAccuracyToNull: sets the three numbers to 0. */
TESSEL_API uint32_t TESSEL_CALL SetLibraryTimeToNull(LibraryTime* time);
TESSEL_API uint32_t TESSEL_CALL SetLibraryPreciseTimeToNull(LibraryPreciseTime* time);
TESSEL_API uint32_t TESSEL_CALL SetAccuracyToNull(Accuracy* accuracy);

/* GetLibraryTime, GetLibraryPreciseTime, GetAccuracy: read all fields. TESSEL_INVALID_ARGUMENT: an output is null, and
 * none is written; or the record is null, and every output is 0. */
TESSEL_API uint32_t TESSEL_CALL GetLibraryTime(const LibraryTime* time, uint32_t* day, uint32_t* month, uint32_t* year,
                                               uint32_t* hour, uint32_t* minute, uint32_t* second);
TESSEL_API uint32_t TESSEL_CALL GetLibraryPreciseTime(const LibraryPreciseTime* time, uint32_t* day, uint32_t* month,
                                                      uint32_t* year, uint32_t* hour, uint32_t* minute,
                                                      uint32_t* second, uint32_t* millisecond, uint32_t* microsecond);
TESSEL_API uint32_t TESSEL_CALL GetAccuracy(const Accuracy* accuracy, uint32_t* seconds, uint32_t* milliseconds,
                                            uint32_t* microseconds);

/* IsLibraryTimeNull, IsLibraryPreciseTimeNull, IsAccuracyNull: return 1 when the handle is null or all fields are 0,
 * otherwise 0. These are no statuses. */
TESSEL_API uint32_t TESSEL_CALL IsLibraryTimeNull(const LibraryTime* time);
TESSEL_API uint32_t TESSEL_CALL IsLibraryPreciseTimeNull(const LibraryPreciseTime* time);
TESSEL_API uint32_t TESSEL_CALL IsAccuracyNull(const Accuracy* accuracy);

/* GetCurrentLibTime, GetCurrentLibPreciseTime: store the current time; a precise time gets no fraction.
 * TESSEL_INVALID_ARGUMENT also when the clock cannot be read. TESSEL_INVALID_TIME: it is outside the years of a time,
 * of which some fields are stored then, as by the setters. */
TESSEL_API uint32_t TESSEL_CALL GetCurrentLibTime(LibraryTime* time);
TESSEL_API uint32_t TESSEL_CALL GetCurrentLibPreciseTime(LibraryPreciseTime* time);

/* AddDaysToLibTime, AddDaysToLibPreciseTime: move the date forward; the time of day stays, and the result may lie
 * beyond the years that can be set.
 *
 * The length of February is one number for the whole process. A call that starts in a leap year sets it by the
 * calendar, and so does every January that a call passes; a call that starts in another year finds what the last call
 * left (at first 28), so one day after 28 February 2023 is either 1 March or 29 February. Two threads that add days at
 * a time can see each other's February.
 *
 * TESSEL_INVALID_TIME: the record's month is not 1 to 12, as in a null time; the record stays as it is. */
TESSEL_API uint32_t TESSEL_CALL AddDaysToLibTime(LibraryTime* time, uint32_t days);
TESSEL_API uint32_t TESSEL_CALL AddDaysToLibPreciseTime(LibraryPreciseTime* time, uint32_t days);

/* GetLibraryLocalTime, GetLibraryLocalPreciseTime: the same instant in the time zone of the process, by the rules of
 * the C library. Both fractions of a precise time are given as 0. 29 February of a common year is read as 1 March.
 * TESSEL_INVALID_ARGUMENT: an output is null, and none is written; or the record is null, its month is not 1 to 12 (as
 * in a null time) or the platform cannot convert it (Windows: before 1970), and every output is 0. */
TESSEL_API uint32_t TESSEL_CALL GetLibraryLocalTime(const LibraryTime* time, uint32_t* day, uint32_t* month,
                                                    uint32_t* year, uint32_t* hour, uint32_t* minute, uint32_t* second);
TESSEL_API uint32_t TESSEL_CALL GetLibraryLocalPreciseTime(const LibraryPreciseTime* time, uint32_t* day,
                                                           uint32_t* month, uint32_t* year, uint32_t* hour,
                                                           uint32_t* minute, uint32_t* second, uint32_t* millisecond,
                                                           uint32_t* microsecond);

/* Returns -1, 0 or 1 when the first time is earlier than the second, the same, or later. A null handle counts as a null
 * time, which is earlier than any that was set, and leaves its place as a failure does. */
TESSEL_API int32_t TESSEL_CALL CompareTime(const LibraryTime* first, const LibraryTime* second);

/* Returns 0 when the moment lies between start and end, both included, otherwise 1; compared as by CompareTime. This is
 * no status. */
TESSEL_API uint32_t TESSEL_CALL TestTimeValidity(const LibraryTime* start, const LibraryTime* moment,
                                                 const LibraryTime* end);

/* DecodeTime: reads an element Time ::= CHOICE { utcTime UTCTime, generalTime GeneralizedTime } (RFC 5280, 4.1.2.5).
 * DecodeAsn1GeneralizedTime: reads an element GeneralizedTime.
 *
 * A UTCTime is YYMMDDHHMMSS and at least one octet more, of the years 1950 to 2049; a GeneralizedTime is YYYYMMDDHHMMSS
 * and at least one more. What follows the seconds (Z, a fraction, an offset) is not looked at, and neither is whether
 * the digits are digits: an octet counts as far as it lies from '0'. The fields are then stored as by SetLibraryTime.
 *
 * Statuses as for Asn1DecodeItem, and TESSEL_MALFORMED: no content; TESSEL_INVALID_CONTENT: the text is too short;
 * TESSEL_INVALID_TIME: a field is out of its range. */
TESSEL_API uint32_t TESSEL_CALL DecodeTime(const uint8_t* data, uint32_t size, LibraryTime* time);
TESSEL_API uint32_t TESSEL_CALL DecodeAsn1GeneralizedTime(const uint8_t* data, uint32_t size, LibraryTime* time);

/* EncodeTime: writes DER of a Time into the caller's buffer (tessel.h, "Buffers"): a UTCTime when the year is below
 * 2050, otherwise a GeneralizedTime.
 * EncodeAsn1GeneralizedTime: writes a GeneralizedTime, whatever the year.
 * TESSEL_INVALID_TIME: a null time, or a field that has more digits than its place in the text, such as a year above
 * 9999. */
TESSEL_API uint32_t TESSEL_CALL EncodeTime(const LibraryTime* time, uint8_t* buffer, uint32_t* length);
TESSEL_API uint32_t TESSEL_CALL EncodeAsn1GeneralizedTime(const LibraryTime* time, uint8_t* buffer, uint32_t* length);

#ifdef __cplusplus
}
#endif

#endif
