// Apple's result codes (MacErrors.h) that the provided CoreServices calls return.
#ifndef XPPLATFORM_CORESERVICES_MACERRORS_H
#define XPPLATFORM_CORESERVICES_MACERRORS_H

#include <MacTypes.h>

#ifdef __cplusplus
extern "C" {
#endif

// File Manager.
enum {
  dirFulErr = -33,
  dskFulErr = -34,
  nsvErr = -35,
  ioErr = -36,
  bdNamErr = -37,
  fnOpnErr = -38,
  eofErr = -39,
  posErr = -40,
  tmfoErr = -42,
  fnfErr = -43,
  wPrErr = -44,
  fLckdErr = -45,
  vLckdErr = -46,
  fBsyErr = -47,
  dupFNErr = -48,
  opWrErr = -49,
  paramErr = -50,
  rfNumErr = -51,
  permErr = -54,
  wrPermErr = -61,
  dirNFErr = -120,
  notAFileErr = -1302,
  afpAccessDenied = -5000
};

// FSRef-based File Manager.
enum {
  errFSUnknownCall = -1400,
  errFSBadFSRef = -1401,
  errFSBadForkName = -1402,
  errFSBadBuffer = -1403,
  errFSBadForkRef = -1404,
  errFSBadInfoBitmap = -1405,
  errFSMissingCatInfo = -1406,
  errFSNotAFolder = -1407,
  errFSForkNotFound = -1409,
  errFSNameTooLong = -1410,
  errFSMissingName = -1411,
  errFSBadPosMode = -1412,
  errFSBadAllocFlags = -1413,
  errFSForkExists = -1421
};

// Memory Manager, Process Manager.
enum {
  memFullErr = -108,
  procNotFound = -600
};

// Date conversions (UTCUtils.h).
enum {
  kUTCUnderflowErr = -8850,
  kUTCOverflowErr = -8851,
  kIllegalClockValueErr = -8852
};

#ifdef __cplusplus
}
#endif

#endif
