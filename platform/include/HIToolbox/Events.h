// Apple's Event Manager tick count (HIToolbox's Events.h, reached through Carbon).
#ifndef XPPLATFORM_HITOOLBOX_EVENTS_H
#define XPPLATFORM_HITOOLBOX_EVENTS_H

#include <MacTypes.h>

#ifdef __cplusplus
extern "C" {
#endif

/// Ticks (1/60 s) since the system started; wraps to 0 after 2^32 ticks (about 828 days).
UInt32 TickCount(void);

#ifdef __cplusplus
}
#endif

#endif
