// File URLs for the other CF sources, as byte paths.
#ifndef XPPLATFORM_SRC_CFURLINTERNAL_H
#define XPPLATFORM_SRC_CFURLINTERNAL_H

#include <CoreFoundation/CFURL.h>

#include <optional>
#include <string>

namespace xpcf {

// A new file URL of a path; relative paths are taken relative to the current directory.
// Null for an empty path.
CFURLRef makeFileURL(std::string path, bool isDirectory);
// The absolute path of a URL (resolved against its base); nothing for a non-URL.
std::optional<std::string> absolutePathOf(CFURLRef url);

}  // namespace xpcf

#endif
