// Host text from and to C strings, Pascal strings and UTF-16 strings; single
// characters and code points; trimming the end of a text; plain UTF-16 buffers.
//
// Functions ending in ToTxt replace the text, functions starting with XP7_Append
// add to its end. Positions and counts in host text are UTF-16 code units, and a
// length of 0xFFFFFFFF means to the end. Host failures pass through as exceptions.
#ifndef XPTOOLKIT_TEXT_TEXTCORE_H
#define XPTOOLKIT_TEXT_TEXTCORE_H

#include "text/HostValues.h"

/// The toolkit's own encoding: one byte per character, byte value = code point 0-255.
/// The host never sees it.
constexpr fmx::Text::Encoding ByteValues = static_cast<fmx::Text::Encoding>(4200);

// Host text from character data.

/// Replaces `txt` by the NUL-terminated bytes `s` decoded in `enc`.
void XP7_CStrToTxt(const char* s, fmx::TextAutoPtr& txt, fmx::Text::Encoding enc);
/// Replaces `txt` by the Pascal string `p` (count byte first; NUL bytes kept). Returns 0.
int XP7_PStrToTxt(const unsigned char* p, fmx::TextAutoPtr& txt, fmx::Text::Encoding enc);
/// Replaces `txt` by the NUL-terminated UTF-16 string, unit for unit. Returns 0.
int XP7_UniStrToTxt(unsigned short* s, fmx::TextAutoPtr& txt);
/// Appends the NUL-terminated bytes `s` decoded in `enc`.
void XP7_AppendCStrToTxt(const char* s, fmx::TextAutoPtr& txt, fmx::Text::Encoding enc);
/// Appends a NUL-terminated UTF-16 string, units unchanged. Returns 0.
int XP7_AppendUniStrToTxt(unsigned short* s, fmx::TextAutoPtr& txt);
/// Appends `count` units one by one as code points: low surrogates, also the second
/// half of a pair, arrive as U+FFFD. Returns 0.
int XP7_AppendUnicodeStrToTxt(unsigned short* s, unsigned int count, fmx::TextAutoPtr& txt);
/// Appends one byte decoded in `enc`, with the Mac Roman refinements. Returns 0.
int XP7_AppendCharToTxt(char c, fmx::TextAutoPtr& txt, fmx::Text::Encoding enc);
/// Appends one code point as UTF-16; lone low surrogates and values past U+10FFFF
/// become U+FFFD. Returns 0.
int XP7_AppendUTF32CharToTxt(unsigned int cp, fmx::TextAutoPtr& txt);
/// Appends all of `src` to `dst`. Returns 0.
int XP7_AppendTxtToTxt(fmx::TextAutoPtr& src, fmx::TextAutoPtr& dst);
/// Replaces `dst` by all of `src`.
void XP7_TxtToTxt(fmx::TextAutoPtr& src, fmx::TextAutoPtr& dst);
/// Leaves `dst` empty but carrying the style of the first character of `src`;
/// does nothing when `src` is empty. Returns 0.
int XP7_CopyDefaultStyle(const fmx::Text& src, fmx::TextAutoPtr& dst);

// Character data from host text.

/// Writes a range of the text into `buf` in `enc`, NUL-terminated, at most
/// bufSize - 1 bytes before the NUL; bufSize 0 writes nothing. With `improved` and
/// ASCII_Mac the toolkit's own Mac Roman encoder is used.
void XP7_TxtToCStr(fmx::TextAutoPtr& txt, unsigned int start, unsigned int length, unsigned int bufSize,
                   bool improved, char* buf, fmx::Text::Encoding enc);
/// The toolkit's Mac Roman encoder: at most `maxBytes` bytes and a NUL; unmappable
/// characters become "*". Returns 0, or -50 (and an empty `buf`) when `enc` is not 4.
int XP7_GetBytesImproved(fmx::TextAutoPtr& txt, char* buf, unsigned int maxBytes, unsigned int start,
                         unsigned int length, fmx::Text::Encoding enc);
/// The unit at `pos` when pos < size and the unit is below 256, else "?".
unsigned char XP7_GetOneByte(fmx::TextAutoPtr& txt, unsigned int size, unsigned int pos);
/// As XP7_GetOneByte, but reports false (and leaves *out alone) instead of "?".
bool XP7_GetOneByte_Checked(fmx::TextAutoPtr& txt, unsigned int size, unsigned int pos, unsigned char* out);
/// The last min(count, size) units encoded in Native into `buf` (bufSize bytes plus a NUL).
void XP7_GetTxtFromEnd(fmx::TextAutoPtr& txt, char* buf, unsigned int bufSize, unsigned int count);
/// The code point at *pos as one Mac Roman byte; with `escapes`, "\0" reads as the
/// byte 0 and "\\" as one backslash.
char XP7_TxtCharToAscii(fmx::TextAutoPtr& txt, unsigned char escapes, unsigned int size, unsigned int* pos,
                        short mode);
/// A new array (delete[]) of size + 1 bytes: the block and a NUL.
char* XP7_BlockToNewCString(void* block, unsigned int size);

// Reading characters.

/// The code unit at `pos`; the caller guarantees pos < size.
unsigned short XP7_Get1UTF16Char(fmx::TextAutoPtr& txt, unsigned int pos);
/// The code point at *pos, joining a surrogate pair; leaves *pos on the last unit
/// read. Broken surrogates read as gMyErrorChar.
unsigned int XP7_Get1UTF32Char(fmx::TextAutoPtr& txt, unsigned int size, unsigned int* pos);
/// Writes cp as one or two UTF-16 units and a 0 unit; returns the units before the 0.
unsigned int XP7_UTF32CharToUniStr(unsigned int cp, unsigned short* out);
/// True when the text is empty or holds only code points up to 127.
bool XP7_HasOnlyLowerASCIIinTxt(fmx::TextAutoPtr& txt);

// Trimming the end.

/// Deletes the last `n` units; n larger than the size deletes nothing (no clamp).
void XP7_RemoveCharsAtEnd(fmx::TextAutoPtr& txt, unsigned int n);
/// Removes the last unit when its first Native byte is `c`.
void XP7_RemoveCharFromEndOfTxt(fmx::TextAutoPtr& txt, char c);
/// Replaces the last unit by `newChar` (ASCII_Mac) when its first Native byte is `oldChar`.
void XP7_ReplaceCharAtEndOfTxt(fmx::TextAutoPtr& txt, char oldChar, char newChar);

// Plain UTF-16 buffers.

/// Units before the first 0 unit.
unsigned int XP7_StrlenUni(const unsigned short* s);
/// Copies min(size, bufCount - 1) units and a 0 unit into `buf`; returns the count copied.
unsigned int XP7_TxtToUniStr(fmx::TextAutoPtr& txt, unsigned short* buf, unsigned int bufCount);
/// Copies at most `max` units as bytes ("*" for 128 and up) and a NUL (max + 1 bytes).
void XP7_UniStrToCStrSimple(const unsigned short* s, char* out, unsigned int max);
/// Copies at most `max` bytes as units ("*" for 128 and up) and a 0 unit; returns the count.
unsigned int XP7_CStrToUniStrSimple(const char* s, unsigned short* out, unsigned int max);
/// Appends bytes ("*" for 128 and up) while out stays within `max` units; 0 unit after.
void XP7_AppendCStrToUniStrSimple(const char* s, unsigned short* out, unsigned int max);
/// Appends bytes sign-extended to 16 bits while out stays within `max`; returns the new length.
unsigned int XP7_CStrToUniStrConcatSimple(const char* s, unsigned short* out, unsigned int max);
/// Copies at most `max` units and a 0 unit; returns `max` itself.
unsigned int XP7_UniStrToUniStrCopy(const unsigned short* src, unsigned short* dst, unsigned int max);
/// Appends `src` while dst stays within `max` units; 0 unit after; returns the new length.
unsigned int XP7_UniStrToUniStrConcat(const unsigned short* src, unsigned short* dst, unsigned int max);
/// Replaces every `from` unit by `to` (strings below 65,536 units).
void XP7_ReplaceCharsUni(unsigned short* s, unsigned short from, unsigned short to);

#endif  // XPTOOLKIT_TEXT_TEXTCORE_H
