// The File Manager result that stands for a POSIX error number.
#ifndef XPPLATFORM_SRC_FILEERRORS_H
#define XPPLATFORM_SRC_FILEERRORS_H

#include <MacTypes.h>

namespace xpcs {

// `err` is an errno value; 0 gives noErr. Errors without a closer File Manager
// counterpart give ioErr.
OSErr osErrFromErrno(int err);

}  // namespace xpcs

#endif
