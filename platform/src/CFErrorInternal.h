// Errors with a description, as the CF calls that report errors make them.
#ifndef XPPLATFORM_SRC_CFERRORINTERNAL_H
#define XPPLATFORM_SRC_CFERRORINTERNAL_H

#include <CoreFoundation/CFError.h>

namespace xpcf {

// A new error; `description` (retained, may be null) is what CFErrorCopyDescription gives.
CFErrorRef makeError(CFErrorDomain domain, CFIndex code, CFStringRef description);

}  // namespace xpcf

#endif
