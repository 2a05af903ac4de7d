// Apple's text encoding specifications (TextCommon.h), as far as File Manager names need them.
#ifndef XPPLATFORM_CORESERVICES_TEXTCOMMON_H
#define XPPLATFORM_CORESERVICES_TEXTCOMMON_H

#include <MacTypes.h>

#ifdef __cplusplus
extern "C" {
#endif

/// A text encoding: base encoding, variant and format packed into 32 bits.
typedef UInt32 TextEncoding;

enum {
  kTextEncodingMacRoman = 0,
  /// "No hint": the File Manager chooses the encoding of a name itself.
  kTextEncodingUnknown = 0xFFFF
};

#ifdef __cplusplus
}
#endif

#endif
