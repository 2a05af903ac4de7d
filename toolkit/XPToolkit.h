// The toolkit's whole interface in one header: the host's value types and
// holders, every exported toolkit function, the exported tables and settings,
// and the platform records (Rect, DateTimeRec) the functions take.
#ifndef XPTOOLKIT_XPTOOLKIT_H
#define XPTOOLKIT_XPTOOLKIT_H

#include <CoreServices/CoreServices.h>

#include "text/HostValues.h"
#include "text/TextCore.h"
#include "encoding/EncodingSwitch.h"
#include "encoding/LegacyTables.h"
#include "params/Switches.h"
#include "services/PlainStrings.h"

#endif  // XPTOOLKIT_XPTOOLKIT_H
