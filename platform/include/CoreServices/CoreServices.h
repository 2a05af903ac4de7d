// Apple's CoreServices interfaces that the toolkit calls, for systems without the framework.
#ifndef XPPLATFORM_CORESERVICES_CORESERVICES_H
#define XPPLATFORM_CORESERVICES_CORESERVICES_H

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

// Ticks (Events.h, OSUtils.h). A tick is 1/60 s.

/// Ticks since the system started; wraps to 0 after 2^32 ticks (about 828 days).
UInt32 TickCount(void);
/// Waits at least `numTicks` ticks; stores the tick count at the end in `*finalTicks`
/// when it is not null.
void Delay(unsigned long numTicks, unsigned long* finalTicks);

#ifdef __cplusplus
}
#endif

#endif
