// The toolkit's whole interface in one header: the host's value types and
// holders, every exported toolkit function, the exported tables and settings,
// and the platform records (Rect, DateTimeRec) the functions take.
#ifndef XPTOOLKIT_XPTOOLKIT_H
#define XPTOOLKIT_XPTOOLKIT_H

#include <CoreServices/CoreServices.h>

#include "text/ResultCodes.h"
#include "text/HostValues.h"
#include "text/TextCore.h"
#include "text/ByteBlocks.h"
#include "text/Numbers.h"
#include "text/TextSearch.h"
#include "text/CFRef.h"
#include "text/PlatformStrings.h"
#include "encoding/EncodingSwitch.h"
#include "encoding/LegacyTables.h"
#include "encoding/UTF8.h"
#include "encoding/URLEncoding.h"
#include "encoding/Reinterpret.h"
#include "params/Switches.h"
#include "params/Parameters.h"
#include "services/PlainStrings.h"
#include "services/DateTime.h"
#include "services/Files.h"
#include "services/Logging.h"

#endif  // XPTOOLKIT_XPTOOLKIT_H
