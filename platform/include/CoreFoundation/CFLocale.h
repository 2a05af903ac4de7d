// Apple's locales (CFLocale.h), named by ICU locale identifiers.
#ifndef XPPLATFORM_COREFOUNDATION_CFLOCALE_H
#define XPPLATFORM_COREFOUNDATION_CFLOCALE_H

#include <CoreFoundation/CFBase.h>
#include <CoreFoundation/CFString.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef const struct __CFLocale* CFLocaleRef;

/// The type of every CFLocale.
CFTypeID CFLocaleGetTypeID(void);
/// The user's locale, from the first of LC_ALL, LC_TIME and LANG that is set: "de_DE.UTF-8"
/// gives "de_DE"; "C" and "POSIX" give "en_US_POSIX". Read afresh on every call.
CFLocaleRef CFLocaleCopyCurrent(void);
/// The locale of `localeIdentifier` (e.g. "de_DE", "en-US"); NULL without an identifier.
CFLocaleRef CFLocaleCreate(CFAllocatorRef allocator, CFStringRef localeIdentifier);
/// The locale's canonical identifier (not retained for the caller).
CFStringRef CFLocaleGetIdentifier(CFLocaleRef locale);

#ifdef __cplusplus
}
#endif

#endif
