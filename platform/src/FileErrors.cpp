// POSIX error numbers as File Manager results.
#include "FileErrors.h"

#include <CoreServices/MacErrors.h>

#include <cerrno>

namespace xpcs {

OSErr osErrFromErrno(int err) {
  switch (err) {
    case 0:
      return noErr;
    case ENOENT:
      return fnfErr;
    case ENOTDIR:
      return dirNFErr;
    case EEXIST:
      return dupFNErr;
    case ENOTEMPTY:
    case EBUSY:
      return fBsyErr;
    case EISDIR:
      return notAFileErr;
    case EACCES:
    case EPERM:
      return afpAccessDenied;
    case EROFS:
      return wPrErr;
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
      return dskFulErr;
    case ENAMETOOLONG:
      return errFSNameTooLong;
    case EMFILE:
    case ENFILE:
      return tmfoErr;
    case ENOMEM:
      return memFullErr;
    case EINVAL:
      return paramErr;
    default:
      return ioErr;
  }
}

}  // namespace xpcs
