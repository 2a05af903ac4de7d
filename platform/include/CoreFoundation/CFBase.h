// Apple's CoreFoundation base types and the calls every CF object answers (CFBase.h).
#ifndef XPPLATFORM_COREFOUNDATION_CFBASE_H
#define XPPLATFORM_COREFOUNDATION_CFBASE_H

#include <MacTypes.h>

#ifdef __cplusplus
extern "C" {
#endif

#ifndef TRUE
#define TRUE 1
#endif
#ifndef FALSE
#define FALSE 0
#endif

// Counts and positions are signed long, as in Apple's 64-bit ABI.
typedef signed long CFIndex;
typedef unsigned long CFOptionFlags;
typedef unsigned long CFTypeID;
typedef unsigned long CFHashCode;

/// A position and a count of elements; used for substrings.
typedef struct {
  CFIndex location;
  CFIndex length;
} CFRange;

/// Builds a CFRange.
static inline CFRange CFRangeMake(CFIndex location, CFIndex length) {
  CFRange range;
  range.location = location;
  range.length = length;
  return range;
}

enum { kCFNotFound = -1 };

typedef CFIndex CFComparisonResult;
enum { kCFCompareLessThan = -1, kCFCompareEqualTo = 0, kCFCompareGreaterThan = 1 };

// Any CF object, and the object types that several headers name.
typedef const void* CFTypeRef;
typedef const struct __CFString* CFStringRef;
typedef struct __CFString* CFMutableStringRef;
typedef const struct __CFAllocator* CFAllocatorRef;
// Dictionaries appear only as optional arguments (format options, error user info), which
// callers pass as NULL; no dictionary calls are provided.
typedef const struct __CFDictionary* CFDictionaryRef;

// Allocators are accepted and ignored: every object lives on the C++ heap. kCFAllocatorNull
// still means "do not free" where a call takes a deallocator.
/// The default allocator; the same as passing NULL.
extern const CFAllocatorRef kCFAllocatorDefault;
extern const CFAllocatorRef kCFAllocatorSystemDefault;
extern const CFAllocatorRef kCFAllocatorMalloc;
/// An allocator that never allocates nor frees.
extern const CFAllocatorRef kCFAllocatorNull;

/// Adds one reference to `cf` and returns it. Apple requires a non-NULL object; NULL is
/// returned unchanged here instead of crashing.
CFTypeRef CFRetain(CFTypeRef cf);
/// Drops one reference; the object is freed with its last one. Apple requires a non-NULL
/// object; NULL is ignored here.
void CFRelease(CFTypeRef cf);
/// The number of references; constant objects (CFSTR) report a very large count.
CFIndex CFGetRetainCount(CFTypeRef cf);
/// True for the same object, or for two objects of one type with equal contents.
Boolean CFEqual(CFTypeRef cf1, CFTypeRef cf2);
/// A hash that is equal for objects that are CFEqual.
CFHashCode CFHash(CFTypeRef cf);
/// The type of `cf`, to compare with the type's CF...GetTypeID().
CFTypeID CFGetTypeID(CFTypeRef cf);

#ifdef __cplusplus
}
#endif

#endif
