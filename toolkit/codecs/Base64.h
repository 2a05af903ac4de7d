// Base64 (RFC 4648 alphabet and padding) of byte blocks, host texts and host
// container streams, and its decoding back to host text.
#ifndef XPTOOLKIT_CODECS_BASE64_H
#define XPTOOLKIT_CODECS_BASE64_H

#include "text/HostValues.h"

/// The 64 characters of the alphabet, "A"-"Z", "a"-"z", "0"-"9", "+", "/".
extern const char XP7_Base64Alphabet[65];
/// Decode table indexed by byte - 43 ("+" to "z"): "$" for no base64 character,
/// else the sextet value + 62.
extern const char XP7_Base64DecodeTable[80];

/// Encodes `inLength` bytes into `out` (no NUL), CR LF after every line of
/// (lineLength / 4) groups and after the last when lineLength > 0.
/// Returns 0, or -416 (and *outLength 0) when `outSize` is too small.
int XP7_Base64_EncodeBlock(unsigned char* in, unsigned long inLength, unsigned char* out, unsigned long outSize,
                           unsigned long* outLength, int lineLength);
/// Appends the base64 of the text's bytes (mode 2: hex text, 4: bin text, other:
/// plain) to `out`, lines broken by a single CR. Returns 0, -50 when `encoding`
/// is not 4, -416 past 0x7FFFFFFA characters.
int XP7_TxtToBase64Txt(fmx::TextAutoPtr& text, short inputMode, fmx::Text::Encoding encoding,
                       unsigned int lineLength, fmx::TextAutoPtr& out, bool breakAfterLastLine);
/// As XP7_TxtToBase64Txt, but appends to `out` only when the whole encoding succeeds.
int XP7_AppendTxtToBase64Txt(fmx::TextAutoPtr& text, short inputMode, fmx::Text::Encoding encoding,
                             unsigned int lineLength, fmx::TextAutoPtr& out, bool breakAfterLastLine);
/// Replaces `out` by the base64 of one container stream, every line ended by
/// CR LF; *outLength is the characters written. Returns 0 or the host's read error.
int XP7_FMBinaryDataToBase64Txt(fmx::BinaryData& data, int streamIndex, unsigned int streamSize, int lineLength,
                                fmx::TextAutoPtr& out, unsigned int* outLength);
/// Appends the bytes of a base64 text to `out` (mode 2: as hex text, 4: as bin
/// text unless `plain`, other: one character per byte); skips what is no base64
/// character. Returns 0, or -50 when `encoding` is not 4.
int XP7_Base64TxtToTxt(fmx::TextAutoPtr& text, unsigned char plain, fmx::Text::Encoding encoding,
                       unsigned short outputMode, fmx::TextAutoPtr& out);

#endif  // XPTOOLKIT_CODECS_BASE64_H
