// Apple's catalog date records and their conversions to absolute time (UTCUtils.h).
#ifndef XPPLATFORM_CORESERVICES_UTCUTILS_H
#define XPPLATFORM_CORESERVICES_UTCUTILS_H

#include <CoreFoundation/CFDate.h>
#include <MacTypes.h>

#ifdef __cplusplus
extern "C" {
#endif

// Seconds since 1904-01-01 00:00:00 in 48 bits (highSeconds:lowSeconds) and 1/65536 s.
// Apple packs them to two bytes, so that they take 8 bytes inside catalog records.
#pragma pack(push, 2)
/// A point in time counted in UTC.
struct UTCDateTime {
  UInt16 highSeconds;
  UInt32 lowSeconds;
  UInt16 fraction;
};
typedef struct UTCDateTime UTCDateTime;
typedef UTCDateTime* UTCDateTimePtr;

/// The same count read on the local wall clock.
struct LocalDateTime {
  UInt16 highSeconds;
  UInt32 lowSeconds;
  UInt16 fraction;
};
typedef struct LocalDateTime LocalDateTime;
typedef LocalDateTime* LocalDateTimePtr;
#pragma pack(pop)

// Mac seconds, the UInt32 of the calls below, count local wall-clock seconds since
// 1904-01-01 00:00:00; they are read and written in the system time zone (CFTimeZone),
// daylight saving time included. A wall time that the zone skips reads as the same time
// after the change; one the zone shows twice, as the later of the two.

/// Absolute time of a UTC date record; paramErr for NULL pointers.
OSStatus UCConvertUTCDateTimeToCFAbsoluteTime(const UTCDateTime* iUTCDate, CFAbsoluteTime* oCFTime);
/// Absolute time of Mac seconds; paramErr for a NULL pointer.
OSStatus UCConvertSecondsToCFAbsoluteTime(UInt32 iSeconds, CFAbsoluteTime* oCFTime);
/// UTC date record of an absolute time, the fraction rounded down; kUTCUnderflowErr before
/// 1904, kUTCOverflowErr beyond 48 bits of seconds (output untouched).
OSStatus UCConvertCFAbsoluteTimeToUTCDateTime(CFAbsoluteTime iCFTime, UTCDateTime* oUTCDate);
/// Mac seconds of an absolute time, rounded down to the second; kUTCUnderflowErr before
/// 1904 and kUTCOverflowErr after 2040-02-06 06:28:15 local time (output untouched).
OSStatus UCConvertCFAbsoluteTimeToSeconds(CFAbsoluteTime iCFTime, UInt32* oSeconds);

#ifdef __cplusplus
}
#endif

#endif
