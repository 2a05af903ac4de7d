// Apple's CoreServices interfaces that the toolkit calls, for systems without the framework.
#ifndef XPPLATFORM_CORESERVICES_CORESERVICES_H
#define XPPLATFORM_CORESERVICES_CORESERVICES_H

#include <CoreFoundation/CoreFoundation.h>
#include <CoreServices/Files.h>
#include <CoreServices/Finder.h>
#include <CoreServices/Folders.h>
#include <CoreServices/MacErrors.h>
#include <CoreServices/MacMemory.h>
#include <CoreServices/TextCommon.h>
#include <CoreServices/UTCUtils.h>
#include <MacTypes.h>

#ifdef __cplusplus
extern "C" {
#endif

// Date and time utilities (DateTimeUtils.h).

/// A calendar date and wall-clock time; month 1-12, dayOfWeek 1 (Sunday) to 7.
struct DateTimeRec {
  short year;
  short month;
  short day;
  short hour;
  short minute;
  short second;
  short dayOfWeek;
};
typedef struct DateTimeRec DateTimeRec;

// Waiting (OSUtils.h). A tick is 1/60 s; TickCount itself comes with Carbon.

/// Waits at least `numTicks` ticks; stores the tick count at the end in `*finalTicks`
/// when it is not null.
void Delay(unsigned long numTicks, unsigned long* finalTicks);

#ifdef __cplusplus
}
#endif

#endif
