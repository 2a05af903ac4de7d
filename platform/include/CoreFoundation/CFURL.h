// Apple's URLs (CFURL.h), for the file URLs that name files, folders and bundles.
#ifndef XPPLATFORM_COREFOUNDATION_CFURL_H
#define XPPLATFORM_COREFOUNDATION_CFURL_H

#include <CoreFoundation/CFBase.h>
#include <CoreFoundation/CFString.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef const struct __CFURL* CFURLRef;

typedef CFIndex CFURLPathStyle;
enum { kCFURLPOSIXPathStyle = 0, kCFURLHFSPathStyle = 1, kCFURLWindowsPathStyle = 2 };

// Only file URLs with POSIX paths are provided; the other path styles give NULL. A URL
// made from a relative path is relative to the current directory at the time it was made,
// as on Apple systems. Paths are byte strings; CFString paths are their UTF-8 reading.

/// The type of every CFURL.
CFTypeID CFURLGetTypeID(void);
/// A file URL of `filePath`; a directory URL (ending in "/") when `isDirectory`.
CFURLRef CFURLCreateWithFileSystemPath(CFAllocatorRef allocator, CFStringRef filePath, CFURLPathStyle pathStyle,
                                       Boolean isDirectory);
/// A file URL of the `bufLen` path bytes in `buffer`.
CFURLRef CFURLCreateFromFileSystemRepresentation(CFAllocatorRef allocator, const UInt8* buffer, CFIndex bufLen,
                                                 Boolean isDirectory);
/// The URL's string: "file:///..." with reserved bytes percent-encoded, or for a relative
/// URL only its relative part (not retained for the caller).
CFStringRef CFURLGetString(CFURLRef anURL);
/// The URL relative URLs are resolved against, or NULL (not retained for the caller).
CFURLRef CFURLGetBaseURL(CFURLRef anURL);
/// The URL resolved against its base; the same URL, retained, when it has none.
CFURLRef CFURLCopyAbsoluteURL(CFURLRef relativeURL);
/// The URL's path in `pathStyle`, without a trailing "/" except for the root; a relative
/// URL gives its relative path. NULL for a path that is not UTF-8 or another style.
CFStringRef CFURLCopyFileSystemPath(CFURLRef anURL, CFURLPathStyle pathStyle);
/// Writes the zero-terminated path bytes (resolved against the base when
/// `resolveAgainstBase`) to `buffer`; false when they do not fit in `maxBufLen` bytes.
Boolean CFURLGetFileSystemRepresentation(CFURLRef url, Boolean resolveAgainstBase, UInt8* buffer, CFIndex maxBufLen);
/// True when the URL names a directory (its path ends in "/").
Boolean CFURLHasDirectoryPath(CFURLRef anURL);
/// The last path component, without a trailing "/"; "/" for the root.
CFStringRef CFURLCopyLastPathComponent(CFURLRef url);
/// The extension of the last path component, without its dot, or NULL.
CFStringRef CFURLCopyPathExtension(CFURLRef url);
/// A URL with `pathComponent` appended; a directory URL when `isDirectory`.
CFURLRef CFURLCreateCopyAppendingPathComponent(CFAllocatorRef allocator, CFURLRef url, CFStringRef pathComponent,
                                               Boolean isDirectory);
/// A directory URL of the folder that holds the URL's last component.
CFURLRef CFURLCreateCopyDeletingLastPathComponent(CFAllocatorRef allocator, CFURLRef url);

// File Manager references (FSRef, CoreServices' Files.h), provided with the File Manager.
struct FSRef;
/// A file URL of the object `fsRef` names, a directory URL for a folder; NULL when the
/// reference is not valid.
CFURLRef CFURLCreateFromFSRef(CFAllocatorRef allocator, const struct FSRef* fsRef);
/// The reference of the existing object the file URL names; false when there is none.
Boolean CFURLGetFSRef(CFURLRef url, struct FSRef* fsRef);

#ifdef __cplusplus
}
#endif

#endif
