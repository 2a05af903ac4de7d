// Timestamps between Mac seconds, host date-times and strings; the current time.
#ifndef XPTOOLKIT_SERVICES_DATETIME_H
#define XPTOOLKIT_SERVICES_DATETIME_H

#include <CoreServices/CoreServices.h>

#include <cstdint>
#include <ctime>

#include "text/HostValues.h"
#include "text/ResultCodes.h"

// Mac seconds count the seconds of local wall-clock time since 1904-01-01 00:00:00 in an
// unsigned 32-bit number, so they end at 2040-02-06 06:28:15. Host day numbers make
// 0001-01-01 day 1, which puts 1904-01-01 on day 695056. Result codes are 0 for success.

/// The host day number of 1904-01-01, the first day of Mac seconds.
constexpr std::int64_t kXP_MacEpochHostDay = 695056;

/// Fills `rec` with the fields given. dayOfWeek is stored as 0 whatever is passed:
/// callers rely on the platform ignoring it.
void XP_InitDateTimeRec(short year, short month, short day, short hour, short minute, short second,
                        short dayOfWeek, DateTimeRec* rec);

/// The host day number of the Mac seconds, by plain division without any time zone.
std::int64_t XP_DateToFMDate(unsigned int* macSeconds);
/// Seconds since local midnight of the Mac seconds, through the system time zone.
std::int64_t XP_DateToFMTime(unsigned int* macSeconds);

/// Sets only the day of `dateTime` from the Mac seconds. Returns 0.
int XP7_DayPartOfDateToFMXDateTime(unsigned int* macSeconds, fmx::DateTimeAutoPtr& dateTime);
/// Sets only the time of day of `dateTime` from the Mac seconds, as XP_DateToFMTime. Returns 0.
int XP7_TimePartOfDateToFMXDateTime(unsigned int* macSeconds, fmx::DateTimeAutoPtr& dateTime);
/// Sets the day and then the time of day of `dateTime` from the Mac seconds. Returns 0.
int XP7_DateToFMXDateTime(unsigned int* macSeconds, fmx::DateTimeAutoPtr& dateTime);
/// Sets the whole of `dateTime` from the Mac seconds by host arithmetic alone, no time zone.
void XP7_MacSecondsToFMXDateTime(unsigned int macSeconds, fmx::DateTimeAutoPtr& dateTime);
/// Stores the Mac seconds of `dateTime` and returns 0; returns kXP_DateTooEarly before
/// 1904-01-01 and kXP_DateTooLate after 2040-02-04, leaving `*macSeconds` alone.
int XP7_FMXDateTimeToDate(fmx::DateTimeAutoPtr& dateTime, unsigned int* macSeconds);

/// Stores the Mac seconds of the date record, read in the system time zone; dayOfWeek is
/// not read. Returns the platform status; on failure `*macSeconds` is left alone.
int XP7_DateToSeconds(const DateTimeRec* rec, unsigned int* macSeconds);
/// Converts the low seconds of `local` (Mac seconds) to a UTC record. Returns the platform
/// status; on failure `utc` is left alone.
int XP7_ConvertLocalToUTCDateTime(const LocalDateTime* local, UTCDateTime* utc);

/// Stores the current time as Mac seconds. Returns the platform status; on failure
/// `*macSeconds` is left alone.
int XP7_GetCurrentMDateTimeSecs(unsigned int* macSeconds);
/// The current time in seconds since 1970-01-01 00:00:00 UTC.
std::time_t XP7_GetUnixTime();
/// Ticks (1/60 s) since the system started.
std::uint32_t XP_CurrentTicksTime();

/// Replaces the Pascal string `result` (256 bytes) by the date of the Mac seconds in the
/// user's locale: longFlag 0 short style, 1 long, anything else medium; no time. Never
/// fails: "invalid datestring" when formatting does. The last argument is not read.
void XP7_DateString(unsigned int macSeconds, signed char longFlag, unsigned char* result, char** ignored);
/// Writes `dateTime` as "YYYY-MM-DD hh:mm:ss" (a blank, not "T") with its NUL; writes
/// nothing when bufferSize is below 21.
void XP7_FMXDateTimeToISODateCStr(fmx::DateTimeAutoPtr& dateTime, char* buffer, unsigned int bufferSize);

#endif  // XPTOOLKIT_SERVICES_DATETIME_H
