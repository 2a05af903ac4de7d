// Apple's date formatters (CFDateFormatter.h), on ICU's date formats.
#ifndef XPPLATFORM_COREFOUNDATION_CFDATEFORMATTER_H
#define XPPLATFORM_COREFOUNDATION_CFDATEFORMATTER_H

#include <CoreFoundation/CFBase.h>
#include <CoreFoundation/CFDate.h>
#include <CoreFoundation/CFLocale.h>
#include <CoreFoundation/CFString.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct __CFDateFormatter* CFDateFormatterRef;

typedef CFIndex CFDateFormatterStyle;
enum {
  kCFDateFormatterNoStyle = 0,
  kCFDateFormatterShortStyle = 1,
  kCFDateFormatterMediumStyle = 2,
  kCFDateFormatterLongStyle = 3,
  kCFDateFormatterFullStyle = 4
};

/// The type of every CFDateFormatter.
CFTypeID CFDateFormatterGetTypeID(void);
/// A formatter of `locale` (NULL: the root locale) showing the date and the time in the
/// given styles (NoStyle leaves that part out), in the system time zone at its creation.
/// NULL for an unknown style.
CFDateFormatterRef CFDateFormatterCreate(CFAllocatorRef allocator, CFLocaleRef locale, CFDateFormatterStyle dateStyle,
                                         CFDateFormatterStyle timeStyle);
/// The formatter's ICU pattern (not retained for the caller).
CFStringRef CFDateFormatterGetFormat(CFDateFormatterRef formatter);
/// The text of `date`; NULL without a formatter or a date.
CFStringRef CFDateFormatterCreateStringWithDate(CFAllocatorRef allocator, CFDateFormatterRef formatter, CFDateRef date);
/// The text of the time `at`.
CFStringRef CFDateFormatterCreateStringWithAbsoluteTime(CFAllocatorRef allocator, CFDateFormatterRef formatter,
                                                        CFAbsoluteTime at);

#ifdef __cplusplus
}
#endif

#endif
