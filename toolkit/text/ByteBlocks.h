// Host text from and to counted byte blocks, NUL bytes included, in any host
// encoding and the toolkit's ByteValues.
#ifndef XPTOOLKIT_TEXT_BYTEBLOCKS_H
#define XPTOOLKIT_TEXT_BYTEBLOCKS_H

#include "text/HostValues.h"

/// Decodes a block in `enc` into `txt`: replaces it, or appends with `append`.
/// Size 0 changes nothing; ByteValues always appends.
void XP7_BlockToTxt(const char* block, unsigned int size, fmx::TextAutoPtr& txt, fmx::Text::Encoding enc,
                    unsigned char append);
/// Appends a block decoded in `enc`, checking UTF-8 first. Returns 0, -4280
/// (malformed UTF-8, nothing appended) or -302 (decoded to nothing).
int XP7_AppendBlockToTxt(const char* block, unsigned int size, fmx::TextAutoPtr& txt, fmx::Text::Encoding enc,
                         unsigned char ignored);
/// Appends each byte as the code point of its value.
void XP7_AppendBlockToUnicodeTxt(const char* block, unsigned int size, fmx::TextAutoPtr& txt);
/// Encodes the whole text into a new array (delete[]) and reports its byte count.
/// Returns 0, or -50 when `buf` or `len` is null.
int XP7_TxtToBuf(fmx::TextAutoPtr& txt, fmx::Text::Encoding enc, bool improved, char** buf, unsigned int* len);
/// Copies at most `max` bytes of the text's encoding into `block` (no terminator).
void XP7_TxtToBlockN(fmx::TextAutoPtr& txt, fmx::Text::Encoding& enc, unsigned int max, unsigned char* block,
                     unsigned int* len);
/// The older form: the host's bytes into `block`, and *len = the text's size in units.
void XP7_TxtToBlocPrevious(fmx::TextAutoPtr& txt, fmx::Text::Encoding& enc, unsigned int bufSize,
                           unsigned char* block, unsigned int* len);
/// One byte per unit for the first `max` units, "?" for units of 256 and up.
void XP7_TxtToBlock_ASCII(fmx::TextAutoPtr& txt, unsigned int max, unsigned char* block, unsigned int* len);
/// The units of a range that are below 256, as bytes; wider units are skipped.
void XP7_TxtToBlock_Varn_BytesOnly(fmx::TextAutoPtr& txt, unsigned int start, unsigned int length,
                                   unsigned char* block, unsigned int* len);

#endif  // XPTOOLKIT_TEXT_BYTEBLOCKS_H
