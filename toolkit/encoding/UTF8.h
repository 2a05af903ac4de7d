// Host text to UTF-8 text and back: UTF-8 text is host text in which every
// character U+0000-U+00FF stands for one byte of a UTF-8 byte string.
#ifndef XPTOOLKIT_ENCODING_UTF8_H
#define XPTOOLKIT_ENCODING_UTF8_H

#include "text/HostValues.h"

/// Replaces `result` by the UTF-8 text of `source`, one character per byte. Lone
/// surrogates become gMyErrorChar; U+0000 becomes one U+0000.
void XP7_TxtToUTF8Txt(fmx::TextAutoPtr& source, fmx::TextAutoPtr& result);
/// Replaces `result` by the characters the UTF-8 text `source` encodes. Lenient:
/// stray continuation bytes read as Latin-1, overlong forms are accepted, values
/// out of range become U+FFFD, and a sequence cut off at the end is dropped.
void XP7_UTF8TxtToTxt(fmx::TextAutoPtr& source, fmx::TextAutoPtr& result);
/// As XP7_UTF8TxtToTxt, with every byte of `source` given as two hex digits
/// ("0"-"9", "A"-"F"); a sequence is cut off only when fewer characters than bytes remain.
void XP7_UTF8HexTxtToTxt(fmx::TextAutoPtr& source, fmx::TextAutoPtr& result);
/// Copies the bytes of the UTF-8 text `source` into `buffer`, at most bufferSize - 1
/// and a NUL; characters of U+0100 and above become "?". bufferSize 0 writes nothing.
void XP7_UTF8TxtToUTF8CStr(fmx::TextAutoPtr& source, char* buffer, unsigned int bufferSize);

#endif  // XPTOOLKIT_ENCODING_UTF8_H
