// Apple's error objects (CFError.h): a domain, a code and a description.
#ifndef XPPLATFORM_COREFOUNDATION_CFERROR_H
#define XPPLATFORM_COREFOUNDATION_CFERROR_H

#include <CoreFoundation/CFBase.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct __CFError* CFErrorRef;
typedef CFStringRef CFErrorDomain;

/// Codes are errno values.
extern const CFErrorDomain kCFErrorDomainPOSIX;
/// Codes are OSStatus values.
extern const CFErrorDomain kCFErrorDomainOSStatus;
/// Codes are Mach kernel results.
extern const CFErrorDomain kCFErrorDomainMach;
/// Codes are Cocoa error numbers, among them the bundle loading errors of CFBundle.h.
extern const CFErrorDomain kCFErrorDomainCocoa;

/// The type of every CFError.
CFTypeID CFErrorGetTypeID(void);
/// An error of `domain` and `code`; NULL without a domain. `userInfo` is not read.
CFErrorRef CFErrorCreate(CFAllocatorRef allocator, CFErrorDomain domain, CFIndex code, CFDictionaryRef userInfo);
/// The error's domain (not retained for the caller).
CFErrorDomain CFErrorGetDomain(CFErrorRef err);
/// The error's code.
CFIndex CFErrorGetCode(CFErrorRef err);
/// A sentence for the user: the description the error was made with, else Apple's generic
/// "The operation couldn’t be completed. (<domain> error <code>.)".
CFStringRef CFErrorCopyDescription(CFErrorRef err);

#ifdef __cplusplus
}
#endif

#endif
