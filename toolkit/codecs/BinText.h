// Bin text: a byte block in host text, one character per byte, with 0x00 written
// as "\0" and 0x5C as "\\".
#ifndef XPTOOLKIT_CODECS_BINTEXT_H
#define XPTOOLKIT_CODECS_BINTEXT_H

#include "text/HostValues.h"

/// Replaces `out` by the bin text of `length` bytes, other bytes decoded in `encoding`.
void XP7_BlockToBinTxt(char* bytes, unsigned int length, fmx::TextAutoPtr& out, fmx::Text::Encoding encoding);
/// Reads `count` bytes, one character each, from *position into `out`; past
/// `textLength` the bytes are 0 and not counted in *produced. Escapes are not decoded.
void XP7_BinTxtToBlock(fmx::TextAutoPtr& text, unsigned int textLength, unsigned int* position, unsigned int count,
                       unsigned char* out, unsigned int* produced);
/// Replaces the escapes "\0" and "\\" in `text` by U+0000 and one backslash.
void XP7_RemoveBinTxt(fmx::TextAutoPtr& text);
/// Replaces `text` by the decimal codes of its units, each followed by a blank ("*" above 255).
void XP7_ConvertTxtToByteValues(fmx::TextAutoPtr& text);

#endif  // XPTOOLKIT_CODECS_BINTEXT_H
