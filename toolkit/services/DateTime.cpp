// Timestamps between Mac seconds, host date-times and strings; the current time.
#include "services/DateTime.h"

#include <Carbon/Carbon.h>
#include <CoreFoundation/CoreFoundation.h>

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "text/CFRef.h"
#include "text/Numbers.h"
#include "text/PlatformStrings.h"

// The Gregorian date calls are deprecated on macOS but remain the only ones that take a
// CFTimeZone directly, which is what the conversions below need.
#if defined(__APPLE__) && defined(__clang__)
#pragma clang diagnostic ignored "-Wdeprecated-declarations"
#endif

namespace {

constexpr unsigned int kSecondsPerDay = 86400;
// Day 744764 is 2040-02-04. Mac seconds could still hold the next day, but callers have
// always been given one day of margin before the end of the range.
constexpr std::int64_t kLastHostDay = 744764;
// 1904-01-01 00:00:00 in host seconds: 695055 days of 86400 seconds, beyond 32 bits, so
// the host builds it from two factors that fit.
constexpr std::int32_t kMacEpochSecondsHigh = 60052752;
constexpr std::int32_t kMacEpochSecondsLow = 1000;
// The host's increment takes a signed 32-bit amount.
constexpr unsigned int kMaxIncrement = 0x7FFFFFFF;

constexpr unsigned char kMaxPascalLength = 255;
constexpr char kInvalidDateString[] = "invalid datestring";

// Local wall-clock seconds since midnight, read through the system time zone.
std::int64_t SecondsSinceLocalMidnight(unsigned int macSeconds) {
  CFAbsoluteTime at = 0;
  UCConvertSecondsToCFAbsoluteTime(macSeconds, &at);
  CFRef<CFTimeZoneRef> zone(CFTimeZoneCopySystem());
  CFGregorianDate date = CFAbsoluteTimeGetGregorianDate(at, zone.get());
  return static_cast<std::int64_t>((date.hour * 60 + date.minute) * 60 + date.second);
}

CFDateFormatterStyle DateStyle(signed char longFlag) {
  if (longFlag == 0) return kCFDateFormatterShortStyle;
  if (longFlag == 1) return kCFDateFormatterLongStyle;
  return kCFDateFormatterMediumStyle;
}

}  // namespace

void XP_InitDateTimeRec(short year, short month, short day, short hour, short minute, short second,
                        short /*dayOfWeek*/, DateTimeRec* rec) {
  rec->year = year;
  rec->month = month;
  rec->day = day;
  rec->hour = hour;
  rec->minute = minute;
  rec->second = second;
  rec->dayOfWeek = 0;
}

std::int64_t XP_DateToFMDate(unsigned int* macSeconds) { return *macSeconds / kSecondsPerDay + kXP_MacEpochHostDay; }

std::int64_t XP_DateToFMTime(unsigned int* macSeconds) { return SecondsSinceLocalMidnight(*macSeconds); }

int XP7_DayPartOfDateToFMXDateTime(unsigned int* macSeconds, fmx::DateTimeAutoPtr& dateTime) {
  // Plain division: Mac seconds already count local wall-clock time, so the day needs no
  // time zone, while the time of day goes through one (see below) and both agree.
  dateTime->SetDaysSinceEpoch(XP_DateToFMDate(macSeconds));
  return 0;
}

int XP7_TimePartOfDateToFMXDateTime(unsigned int* macSeconds, fmx::DateTimeAutoPtr& dateTime) {
  fmx::FixPtAutoPtr seconds;
  seconds->AssignInt(static_cast<std::int32_t>(SecondsSinceLocalMidnight(*macSeconds)));
  dateTime->SetSecsSinceMidnight(*seconds);
  return 0;
}

int XP7_DateToFMXDateTime(unsigned int* macSeconds, fmx::DateTimeAutoPtr& dateTime) {
  XP7_DayPartOfDateToFMXDateTime(macSeconds, dateTime);
  XP7_TimePartOfDateToFMXDateTime(macSeconds, dateTime);
  return 0;
}

void XP7_MacSecondsToFMXDateTime(unsigned int macSeconds, fmx::DateTimeAutoPtr& dateTime) {
  fmx::FixPtAutoPtr high(kMacEpochSecondsHigh);
  fmx::FixPtAutoPtr low(kMacEpochSecondsLow);
  fmx::FixPtAutoPtr total;
  high->Multiply(*low, *total);
  // Past 0x7FFFFFFF the rest can still be 0x80000000, one more than an increment takes.
  unsigned int remaining = macSeconds;
  while (remaining > kMaxIncrement) {
    total->Increment(static_cast<std::int32_t>(kMaxIncrement));
    remaining -= kMaxIncrement;
  }
  total->Increment(static_cast<std::int32_t>(remaining));
  dateTime->SetSecondsSinceEpoch(*total);
}

int XP7_FMXDateTimeToDate(fmx::DateTimeAutoPtr& dateTime, unsigned int* macSeconds) {
  std::int64_t day = dateTime->GetDaysSinceEpoch();
  fmx::FixPtAutoPtr secondsOfDay;
  dateTime->GetSecsSinceMidnight(*secondsOfDay);
  unsigned int seconds = XP7_FixPtToUInt32(secondsOfDay);
  if (day > kLastHostDay) return kXP_DateTooLate;
  if (day < kXP_MacEpochHostDay) return kXP_DateTooEarly;
  *macSeconds = static_cast<unsigned int>(day - kXP_MacEpochHostDay) * kSecondsPerDay + seconds;
  return 0;
}

int XP7_DateToSeconds(const DateTimeRec* rec, unsigned int* macSeconds) {
  CFGregorianDate date;
  date.year = rec->year;
  date.month = static_cast<SInt8>(rec->month);
  date.day = static_cast<SInt8>(rec->day);
  date.hour = static_cast<SInt8>(rec->hour);
  date.minute = static_cast<SInt8>(rec->minute);
  date.second = rec->second;
  CFRef<CFTimeZoneRef> zone(CFTimeZoneCopySystem());
  UInt32 seconds = 0;
  OSStatus status = UCConvertCFAbsoluteTimeToSeconds(CFGregorianDateGetAbsoluteTime(date, zone.get()), &seconds);
  if (status == noErr) *macSeconds = seconds;
  return status;
}

int XP7_ConvertLocalToUTCDateTime(const LocalDateTime* local, UTCDateTime* utc) {
  CFAbsoluteTime at = 0;
  OSStatus status = UCConvertSecondsToCFAbsoluteTime(local->lowSeconds, &at);
  if (status != noErr) return status;
  return UCConvertCFAbsoluteTimeToUTCDateTime(at, utc);
}

int XP7_GetCurrentMDateTimeSecs(unsigned int* macSeconds) {
  UInt32 seconds = 0;
  OSStatus status = UCConvertCFAbsoluteTimeToSeconds(CFAbsoluteTimeGetCurrent(), &seconds);
  if (status == noErr) *macSeconds = seconds;
  return status;
}

std::time_t XP7_GetUnixTime() { return std::time(nullptr); }

std::uint32_t XP_CurrentTicksTime() { return TickCount(); }

void XP7_DateString(unsigned int macSeconds, signed char longFlag, unsigned char* result, char** /*ignored*/) {
  CFAbsoluteTime at = 0;
  UCConvertSecondsToCFAbsoluteTime(macSeconds, &at);
  CFRef<CFDateRef> date(CFDateCreate(kCFAllocatorDefault, at));
  CFRef<CFLocaleRef> locale(CFLocaleCopyCurrent());
  CFRef<CFDateFormatterRef> formatter(
      CFDateFormatterCreate(kCFAllocatorDefault, locale.get(), DateStyle(longFlag), kCFDateFormatterNoStyle));
  CFRef<CFStringRef> text(formatter && date ? CFDateFormatterCreateStringWithDate(kCFAllocatorDefault,
                                                                                   formatter.get(), date.get())
                                            : nullptr);
  char* bytes = XP7_CFStringRefToCStr(text.get());
  const char* shown = bytes != nullptr ? bytes : kInvalidDateString;
  std::size_t length = std::min<std::size_t>(std::strlen(shown), kMaxPascalLength);
  std::memcpy(result + 1, shown, length);
  result[0] = static_cast<unsigned char>(length);
  delete[] bytes;
}

void XP7_FMXDateTimeToISODateCStr(fmx::DateTimeAutoPtr& dateTime, char* buffer, unsigned int bufferSize) {
  if (bufferSize < 21) return;
  unsigned long year = static_cast<unsigned long>(dateTime->GetYear());
  unsigned long month = static_cast<unsigned long>(dateTime->GetMonth());
  unsigned long day = static_cast<unsigned long>(dateTime->GetDay());
  unsigned long hour = static_cast<unsigned long>(dateTime->GetHour());
  unsigned long minute = static_cast<unsigned long>(dateTime->GetMinute());
  unsigned long second = static_cast<unsigned long>(dateTime->GetSec());
  std::snprintf(buffer, bufferSize, "%04lu-%02lu-%02lu %02lu:%02lu:%02lu", year, month, day, hour, minute, second);
}
