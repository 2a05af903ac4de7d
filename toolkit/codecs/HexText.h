// Hex text: a byte block in host text as two upper-case hex digits per byte.
#ifndef XPTOOLKIT_CODECS_HEXTEXT_H
#define XPTOOLKIT_CODECS_HEXTEXT_H

#include "text/HostValues.h"

/// The digits hex text is written with, "0123456789ABCDEF"; writable and shared
/// by the whole process.
extern char pseudo[17];

/// Replaces `out` by the hex text of `length` bytes.
void XP7_BlockToHexTxt(char* bytes, unsigned int length, fmx::TextAutoPtr& out);
/// Decodes `count` bytes of hex text from *position into `out` (zero-filled past
/// the text; *produced counts the bytes decoded). With `unescape`, the byte pairs
/// 5C 30 and 5C 5C read as 0x00 and 0x5C.
void XP7_HexTxtToBlock(fmx::TextAutoPtr& text, unsigned int textLength, unsigned char unescape,
                       unsigned int* position, unsigned int count, unsigned char* out, unsigned int* produced);
/// Replaces a hex text by the text it encodes: one character per byte, or bin
/// text with `asBinText`.
void XP7_RemoveHexTxt(fmx::TextAutoPtr& text, unsigned char asBinText);
/// Appends the hex text of the text's bytes in `encoding` to `out`. Returns 0.
int XP7_TxtToHexTxt(fmx::TextAutoPtr& text, fmx::Text::Encoding encoding, fmx::TextAutoPtr& out);
/// Writes `count` bytes as lower-case "%.2x" pairs with `separator` between them
/// into `destination`, NUL-terminated, within `destinationSize`.
void XP_BufferToHexString(unsigned char* bytes, unsigned int count, const char* separator,
                          unsigned int destinationSize, char* destination);

#endif  // XPTOOLKIT_CODECS_HEXTEXT_H
