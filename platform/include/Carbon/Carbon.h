// Apple's Carbon umbrella: CoreServices plus the Process Manager and the tick count, which
// Apple declares in ApplicationServices and HIToolbox rather than CoreServices.
#ifndef XPPLATFORM_CARBON_CARBON_H
#define XPPLATFORM_CARBON_CARBON_H

#include <CoreServices/CoreServices.h>
#include <HIServices/Processes.h>
#include <HIToolbox/Events.h>

#endif
