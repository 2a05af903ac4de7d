// CFURLs to and from FSRefs, through the file-system paths both sides understand.
#include "FileNodes.h"

#include <CoreFoundation/CFURL.h>
#include <CoreServices/Files.h>

#include <climits>
#include <vector>

extern "C" CFURLRef CFURLCreateFromFSRef(CFAllocatorRef allocator, const FSRef* fsRef) {
  xpcs::Node node;
  if (xpcs::resolveFSRef(fsRef, node) != noErr) return nullptr;
  return CFURLCreateFromFileSystemRepresentation(allocator, reinterpret_cast<const UInt8*>(node.path.data()),
                                                 static_cast<CFIndex>(node.path.size()), node.isDirectory());
}

extern "C" Boolean CFURLGetFSRef(CFURLRef url, FSRef* fsRef) {
  if (url == nullptr || fsRef == nullptr) return false;
  std::vector<UInt8> path(PATH_MAX);
  if (!CFURLGetFileSystemRepresentation(url, true, path.data(), static_cast<CFIndex>(path.size()))) return false;
  return FSPathMakeRef(path.data(), fsRef, nullptr) == noErr;
}
