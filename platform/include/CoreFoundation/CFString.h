// Apple's immutable Unicode strings (CFString.h): creation, conversion and comparison.
#ifndef XPPLATFORM_COREFOUNDATION_CFSTRING_H
#define XPPLATFORM_COREFOUNDATION_CFSTRING_H

#include <CoreFoundation/CFBase.h>

#include <stdarg.h>

#ifdef __cplusplus
extern "C" {
#endif

// Encodings, with Apple's numbers: they travel through the toolkit as plain integers.
typedef UInt32 CFStringEncoding;
enum {
  kCFStringEncodingMacRoman = 0,
  kCFStringEncodingWindowsLatin1 = 0x0500,
  kCFStringEncodingISOLatin1 = 0x0201,
  kCFStringEncodingASCII = 0x0600,
  kCFStringEncodingUnicode = 0x0100,
  kCFStringEncodingUTF8 = 0x08000100,
  kCFStringEncodingUTF16 = 0x0100,
  kCFStringEncodingUTF16BE = 0x10000100,
  kCFStringEncodingUTF16LE = 0x14000100,
  kCFStringEncodingUTF32 = 0x0c000100,
  kCFStringEncodingUTF32BE = 0x18000100,
  kCFStringEncodingUTF32LE = 0x1c000100
};
#define kCFStringEncodingInvalidId (0xffffffffU)

typedef CFOptionFlags CFStringCompareFlags;
enum {
  kCFCompareCaseInsensitive = 1,
  kCFCompareBackwards = 4,
  kCFCompareAnchored = 8,
  kCFCompareNonliteral = 16,
  kCFCompareLocalized = 32,
  kCFCompareNumerically = 64
};

/// A constant string from a literal: made once per distinct text, never freed, so that it
/// may be used and released like any other string. The literal is read as UTF-8.
#define CFSTR(cStr) XPCFStringMakeConstantString("" cStr "")
/// The support of CFSTR; call CFSTR instead.
CFStringRef XPCFStringMakeConstantString(const char* cStr);

/// The type of every CFString.
CFTypeID CFStringGetTypeID(void);

/// A string from the zero-terminated bytes `cStr` in `encoding`; NULL when `cStr` is NULL,
/// the encoding is not provided, or the bytes are not valid in it.
CFStringRef CFStringCreateWithCString(CFAllocatorRef alloc, const char* cStr, CFStringEncoding encoding);
/// A string from `numBytes` bytes in `encoding`. With `isExternalRepresentation`, UTF-16
/// and UTF-32 without a byte order mark are read big-endian; a mark is always honoured and
/// dropped. NULL for invalid bytes.
CFStringRef CFStringCreateWithBytes(CFAllocatorRef alloc, const UInt8* bytes, CFIndex numBytes,
                                    CFStringEncoding encoding, Boolean isExternalRepresentation);
/// A string of `numChars` UTF-16 units, copied.
CFStringRef CFStringCreateWithCharacters(CFAllocatorRef alloc, const UniChar* chars, CFIndex numChars);
/// A copy of `theString` (immutable strings are shared: the same object, retained).
CFStringRef CFStringCreateCopy(CFAllocatorRef alloc, CFStringRef theString);
/// A string made by formatting the arguments printf-style. Provided conversions: %% and the
/// integer conversions d i u o x X c with flags, width, precision and the length modifiers
/// hh h l ll q j z t; any other conversion gives NULL. `formatOptions` is ignored.
CFStringRef CFStringCreateWithFormat(CFAllocatorRef alloc, CFDictionaryRef formatOptions, CFStringRef format, ...);
/// CFStringCreateWithFormat with the arguments in a va_list.
CFStringRef CFStringCreateWithFormatAndArguments(CFAllocatorRef alloc, CFDictionaryRef formatOptions,
                                                 CFStringRef format, va_list arguments);

/// The number of UTF-16 units.
CFIndex CFStringGetLength(CFStringRef theString);
/// The UTF-16 unit at `idx`; 0 when `idx` is out of range (Apple raises an exception).
UniChar CFStringGetCharacterAtIndex(CFStringRef theString, CFIndex idx);
/// Copies the UTF-16 units of `range` to `buffer`; nothing when the range is out of bounds.
void CFStringGetCharacters(CFStringRef theString, CFRange range, UniChar* buffer);
/// Writes the string as a zero-terminated C string in `encoding`; false when it does not fit
/// in `bufferSize` bytes (terminator included) or has characters the encoding lacks.
Boolean CFStringGetCString(CFStringRef theString, char* buffer, CFIndex bufferSize, CFStringEncoding encoding);
/// The string's own C string in `encoding` when it keeps one, else NULL (as Apple's may):
/// callers fall back to CFStringGetCString.
const char* CFStringGetCStringPtr(CFStringRef theString, CFStringEncoding encoding);
/// Converts the characters of `range` to `encoding`, whole characters only, until `maxBufLen`
/// bytes are used. A character the encoding lacks becomes `lossByte`, or ends the
/// conversion when `lossByte` is 0. With a NULL `buffer` only counts, and `maxBufLen` is
/// ignored, as Apple's header says. Returns the number of
/// UTF-16 units converted and stores the bytes used in `*usedBufLen` when it is not NULL.
/// `isExternalRepresentation` puts a byte order mark before UTF-16 and UTF-32.
CFIndex CFStringGetBytes(CFStringRef theString, CFRange range, CFStringEncoding encoding, UInt8 lossByte,
                         Boolean isExternalRepresentation, UInt8* buffer, CFIndex maxBufLen, CFIndex* usedBufLen);
/// The most bytes `length` UTF-16 units can take in `encoding`, terminator excluded;
/// kCFNotFound when that overflows or the encoding is not provided.
CFIndex CFStringGetMaximumSizeForEncoding(CFIndex length, CFStringEncoding encoding);
/// The encoding of C strings that name no other: Mac Roman, as on Apple systems.
CFStringEncoding CFStringGetSystemEncoding(void);
/// True when the encoding can be converted to and from.
Boolean CFStringIsEncodingAvailable(CFStringEncoding encoding);

/// Orders two strings by their UTF-16 units; kCFCompareCaseInsensitive folds case first.
/// Other flags are accepted and have no effect.
CFComparisonResult CFStringCompare(CFStringRef theString1, CFStringRef theString2, CFStringCompareFlags compareOptions);

#ifdef __cplusplus
}
#endif

#endif
