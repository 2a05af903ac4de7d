// Apple's absolute time, dates and Gregorian calendar records (CFDate.h).
#ifndef XPPLATFORM_COREFOUNDATION_CFDATE_H
#define XPPLATFORM_COREFOUNDATION_CFDATE_H

#include <CoreFoundation/CFBase.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Seconds, possibly fractional.
typedef double CFTimeInterval;
/// Seconds since 2001-01-01 00:00:00 UTC (the reference date), leap seconds not counted.
typedef CFTimeInterval CFAbsoluteTime;

/// The reference date as seconds since 1970-01-01 00:00:00 UTC.
extern const CFTimeInterval kCFAbsoluteTimeIntervalSince1970;
/// The reference date as seconds since 1904-01-01 00:00:00 UTC.
extern const CFTimeInterval kCFAbsoluteTimeIntervalSince1904;

typedef const struct __CFDate* CFDateRef;
typedef const struct __CFTimeZone* CFTimeZoneRef;

/// A date of the proleptic Gregorian calendar: month 1-12, day 1-31, hour 0-23.
typedef struct {
  SInt32 year;
  SInt8 month;
  SInt8 day;
  SInt8 hour;
  SInt8 minute;
  double second;
} CFGregorianDate;

/// The current time.
CFAbsoluteTime CFAbsoluteTimeGetCurrent(void);
/// The type of every CFDate.
CFTypeID CFDateGetTypeID(void);
/// A date object holding `at`.
CFDateRef CFDateCreate(CFAllocatorRef allocator, CFAbsoluteTime at);
/// The time a date object holds.
CFAbsoluteTime CFDateGetAbsoluteTime(CFDateRef theDate);

/// The wall-clock date and time of `at` in `tz` (NULL: UTC).
CFGregorianDate CFAbsoluteTimeGetGregorianDate(CFAbsoluteTime at, CFTimeZoneRef tz);
/// The time at which the wall clock of `tz` (NULL: UTC) shows `gdate`. Fields out of their
/// range carry into the next larger one. A wall time that the zone skips reads with the
/// offset from before the change (02:30 on the night clocks go from 02:00 to 03:00 is
/// 03:30); one it shows twice, as the later of the two.
CFAbsoluteTime CFGregorianDateGetAbsoluteTime(CFGregorianDate gdate, CFTimeZoneRef tz);

#ifdef __cplusplus
}
#endif

#endif
