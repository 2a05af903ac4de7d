// Percent-encoding for URLs: of host text (through UTF-8) and of plain bytes.
// Only the unreserved characters of RFC 3986 stay as they are.
#ifndef XPTOOLKIT_ENCODING_URLENCODING_H
#define XPTOOLKIT_ENCODING_URLENCODING_H

#include "text/HostValues.h"

/// Replaces `result` by the percent-encoded UTF-8 of `source` ("%C3%A9" for U+00E9;
/// a space is "%20", never "+").
void XP7_TxtToURLEncodedTxt(fmx::TextAutoPtr& source, fmx::TextAutoPtr& result);
/// A new NUL-terminated string (delete[]): the bytes of `source` percent-encoded as
/// they stand, without a UTF-8 step. The first argument is never read.
char* XP7_CreateURLEncodedStr(const char* ignored, const char* source);
/// False for "A"-"Z", "a"-"z", "0"-"9", "-", ".", "_" and "~"; true for every other byte.
bool XP7_CharNeedsURLEncoding(unsigned char c);

#endif  // XPTOOLKIT_ENCODING_URLENCODING_H
