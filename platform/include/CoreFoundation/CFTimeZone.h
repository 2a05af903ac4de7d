// Apple's time zones (CFTimeZone.h), on the zone data that ICU carries.
#ifndef XPPLATFORM_COREFOUNDATION_CFTIMEZONE_H
#define XPPLATFORM_COREFOUNDATION_CFTIMEZONE_H

#include <CoreFoundation/CFBase.h>
#include <CoreFoundation/CFDate.h>
#include <CoreFoundation/CFString.h>

#ifdef __cplusplus
extern "C" {
#endif

/// The type of every CFTimeZone.
CFTypeID CFTimeZoneGetTypeID(void);
/// The system's time zone: the zone that TZ names (an Olson name, optionally after ":" or
/// as a path into a zoneinfo folder; an empty TZ is UTC), else the zone /etc/localtime
/// links to, else GMT. Read afresh on every call, so a change of TZ shows at once.
CFTimeZoneRef CFTimeZoneCopySystem(void);
/// The zone of an Olson name (e.g. "Europe/Berlin") or another zone ID that ICU knows
/// (e.g. "CET", "GMT+0100"); NULL for an unknown name. `tryAbbrev` adds nothing: ICU's
/// IDs already hold the abbreviations it knows.
CFTimeZoneRef CFTimeZoneCreateWithName(CFAllocatorRef allocator, CFStringRef name, Boolean tryAbbrev);
/// A zone a fixed number of seconds east of GMT, without daylight saving time.
CFTimeZoneRef CFTimeZoneCreateWithTimeIntervalFromGMT(CFAllocatorRef allocator, CFTimeInterval ti);
/// The zone's name (not retained for the caller).
CFStringRef CFTimeZoneGetName(CFTimeZoneRef tz);
/// The zone's offset from GMT at `at`, daylight saving time included.
CFTimeInterval CFTimeZoneGetSecondsFromGMT(CFTimeZoneRef tz, CFAbsoluteTime at);
/// True when daylight saving time is in effect at `at`.
Boolean CFTimeZoneIsDaylightSavingTime(CFTimeZoneRef tz, CFAbsoluteTime at);

#ifdef __cplusplus
}
#endif

#endif
