// Localized messages from a bundle's string tables, and CFStrings to and from host
// text, UTF-16 strings and C strings.
#ifndef XPTOOLKIT_TEXT_PLATFORMSTRINGS_H
#define XPTOOLKIT_TEXT_PLATFORMSTRINGS_H

#include <CoreFoundation/CoreFoundation.h>

#include "text/HostValues.h"

// A message is looked up in the strings table `table` of the bundle under the key made by
// formatting `keyFormat`, which holds exactly one integer conversion ("%d"), with the
// message ID. UTF-16 sizes count units. Every CFString handed out is the caller's to release.

/// Copies the message into `out` (outSize units) with its terminating 0 and returns its
/// length. Returns 0 and leaves `out` alone when the table lacks the key, when outSize is
/// under 2, or when the message has outSize - 1 units or more: long messages are refused,
/// not cut.
int VnSub_OSXLoadString(CFBundleRef bundle, const char* table, const char* keyFormat, unsigned int id,
                        unsigned short* out, int outSize);
/// VnSub_OSXLoadString on the bundle whose CFBundleRef is `bundle`, ID 131 being read as
/// ID 1 (the two share one message). `ignored` is not read.
int XP7_Do_GetStringUni(unsigned long bundle, const char* table, const char* keyFormat, unsigned int id,
                        unsigned int ignored, int outSize, unsigned short* out);
/// Replaces `out` by the message (at most 1022 units, empty when missing), ID 131 read as
/// ID 1; with `cutAtParenthesis` the text from its first "(" on is removed. Returns 0.
int XP7_Do_GetString(unsigned long bundle, const char* table, const char* keyFormat, unsigned int id,
                     fmx::TextAutoPtr& out, bool cutAtParenthesis);

/// Sets `out` to a new CFString of the text's units. Returns 0, or -108 (and null) when
/// it cannot be made.
int XP7_TxtToCFStringRef(fmx::TextAutoPtr& text, CFStringRef& out);
/// Replaces `out` by the characters of `s`. Returns 0, or -4176 for a null string.
int XP7_CFStringRefToTxt(CFStringRef s, fmx::TextAutoPtr& out);
/// Sets `out` to a new CFString of the C string read in the CFStringEncoding `encoding`.
/// Returns 0, or -50 (and null) when the bytes do not decode.
int XP7_CStrToCFStringRef(const char* s, CFStringRef& out, unsigned int encoding);
/// Sets `out` to a new CFString of the 0-terminated UTF-16 string. Returns 0, or -108.
int XP7_UniStrToCFStringRef(unsigned short* s, CFStringRef& out);
/// Sets `out` to a new CFString of the first `count` units of `s`. Returns 0, or -108.
int XP7_UniBlockToCFStringRef(unsigned short* s, unsigned int count, CFStringRef& out);
/// Replaces `out` by at most `max` units of `s` and a terminating 0, so `out` holds
/// max + 1 units; a null `s` gives the empty string. Returns 0.
int XP7_CFStringRefToUniStr(CFStringRef s, unsigned short* out, unsigned int max);
/// `s` in UTF-8 (at most 32767 bytes, unconvertible characters as byte 255) in a new array
/// the caller deletes with delete[]; an empty string gives "", a null string or a
/// conversion that yields no bytes gives null.
char* XP7_CFStringRefToCStr(CFStringRef s);

/// Nothing to do here: the cursor is the system's business on this platform.
void XP7_InitCursor();

#endif  // XPTOOLKIT_TEXT_PLATFORMSTRINGS_H
