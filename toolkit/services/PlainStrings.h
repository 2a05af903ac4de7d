// Plain character data: C, Pascal and UTF-16 strings, byte blocks, byte order, ticks.
#ifndef XPTOOLKIT_SERVICES_PLAINSTRINGS_H
#define XPTOOLKIT_SERVICES_PLAINSTRINGS_H

#include <cstdint>

// Nothing here allocates: the caller supplies every output buffer and sizes it, unless a
// limit is named. Copies take the source first and the destination second. Pascal strings
// are a count byte followed by at most 255 bytes; whatever is made into one is cut at 255
// without an error. Comparisons and case folding are ASCII only: "A"-"Z" fold to "a"-"z".

/// The process-wide start-up counter, 0 at load. Not synchronised.
extern std::int32_t gXP_StartupCount;

// C strings.

/// Length of the NUL-terminated string in bytes.
long XP_Strlen(const char* s);
/// Length of the NUL-terminated string in bytes.
unsigned long XP_StrlenU(const char* s);
/// Replaces `dst` by `src`, NUL included.
void XP_CToCStrCopy(const char* src, char* dst);
/// Appends `src` to the end of `dst`.
void XP_CToCStrConcat(const char* src, char* dst);
/// Replaces `dst` by `src`, unit for unit; both are 0-terminated UTF-16.
void XP_CToCStrCopyUni(const unsigned short* src, unsigned short* dst);
/// Appends `src` to `dst`, but as bytes: each unit is cut to its low byte and sign-extended,
/// so 0x00E9 arrives as 0xFFE9. Callers rely on this 8-bit append as it is.
void XP_CToCStrConcatUni(const unsigned short* src, unsigned short* dst);

// Pascal strings.

/// Turns the C string in `s` into a Pascal string in the same buffer, cut at 255 bytes.
void XP_CToPStr(char* s);
/// Turns the Pascal string in `s` into a C string in the same buffer (count + 1 bytes).
void XP_PToCStr(unsigned char* s);
/// Replaces `dst` by the C string `src` as a Pascal string, cut at 255 bytes.
void XP_CToPStrCopy(const char* src, unsigned char* dst);
/// Replaces `dst` by the Pascal string `src` as a C string.
void XP_PToCStrCopy(const unsigned char* src, char* dst);
/// Appends the bytes of the Pascal string `src` to the C string `dst`.
void XP_PToCStrConcat(const unsigned char* src, char* dst);
/// Replaces `dst` by the Pascal string `src` (count + 1 bytes).
void XP_PStrCopy(const unsigned char* src, unsigned char* dst);
/// Appends the Pascal string `src` to `dst`, cutting what is appended so that `dst`
/// holds at most 255 bytes.
void XP_PStrConcat(const unsigned char* src, unsigned char* dst);
/// True when the Pascal strings DIFFER (in length or any byte), false when equal. The
/// inverted sense is deliberate: callers rely on it.
bool XP_EqualPString(const unsigned char* a, const unsigned char* b);

// Comparing, cutting and editing C strings.

/// True when the strings are equal; false at once when their lengths differ.
bool XP_EqualCString(const char* a, const char* b, bool caseSensitive);
/// Whether the file name of `path` (after its last "\\") is `name`, ignoring case. Cuts
/// `path` in place at its last "." first, as XP_RemoveExtension does.
bool XP_IsSameName(char* path, const char* name);
/// Ends `s` at its last "."; the first byte is never examined, so ".cfg" stays whole.
void XP_RemoveExtension(char* s);
/// Replaces `ext` by the units of the UTF-16 `path` after its last "."; empty without one.
void XP_GetExtensionFromFullPathUNI(const unsigned short* path, unsigned short* ext);
/// Replaces every byte `from` in `s` by `to`.
void XP_ReplaceChars(char* s, char from, char to);
/// Removes the leading blanks (byte 32 only) of `s` in place.
void XP_TrimLeftSpaces(char* s);
/// Removes leading and trailing white space of `s` in place, white space being what
/// isspace reports in the "C" locale whatever locale the process has set.
void XP_TrimWhiteSpaces(char* s);

// Byte blocks.

/// Compares `n` bytes as signed values: 0 when equal, 1 when the first differing byte of
/// `a` is greater, else -1. Nothing is compared for n under 1.
short XP_Memcmp(const char* a, const char* b, long n, bool caseSensitive);
/// As XP_Memcmp, with an unsigned count.
short XP_MemcmpU(const char* a, const char* b, unsigned long n, bool caseSensitive);
/// Compares `n` UTF-16 units as XP_Memcmp compares bytes, units being unsigned.
short XP_MemcmpUniU(const unsigned short* a, const unsigned short* b, unsigned long n, bool caseSensitive);
/// The byte with "A"-"Z" folded to "a"-"z".
char XP_tolower(char c);
/// The UTF-16 unit with "A"-"Z" folded to "a"-"z"; every other unit is left alone.
unsigned short XP_tolowerUniSimple(unsigned short c);
/// Byte offset in `text` of the `occurrence`-th (from 1) match of `pattern` at or after
/// `start`; matches may overlap. -1 when not found, when `start` is at or past the end,
/// when the pattern is empty or when occurrence is under 1. A negative start reads as 0.
long XP_Position(const char* text, long textLen, const char* pattern, long patternLen, long start,
                 long occurrence, bool caseSensitive);
/// Whether the C string `s` lies wholly inside the block at or after `offset`; never for
/// an empty string.
bool XP_BlockHasString(const char* block, long blockLen, long offset, const char* s, bool caseSensitive);
/// Replaces `dst` (`dstSize` bytes) by the `len` bytes of the block and a NUL. Returns 0,
/// or -207 and an empty `dst` when len is not less than dstSize.
short XP_BlockToCString(const void* block, long len, char* dst, long dstSize);
/// Copies `n` bytes, the two ranges may overlap; nothing for n under 1.
void XP_BlockMoveData(const void* src, void* dst, long n);
/// Copies `n` bytes, the two ranges may overlap; nothing for n of 0.
void XP_BlockMoveDataU(const void* src, void* dst, unsigned long n);

// Line ends.

/// Turns every CR LF of the `*length` bytes of `buffer` into one CR, in place. Sets and
/// returns the new length; 0 for a length under 1.
long XP_CRLFToCR(char* buffer, long* length);
/// Copies `*length` bytes, each CR as CR LF while there is room for both, into at most
/// `destinationSize` bytes (no NUL); sets `*length` to the bytes written. An LF already
/// after a CR is copied too: CR LF becomes CR LF LF.
void XP_CRToCRLF(const char* source, char* destination, long* length, long destinationSize);

// Numbers and text.

/// Replaces the Pascal string `out` by `n` in decimal ("%ld").
void XP_NumToStr(long n, unsigned char* out);
/// Replaces the C string `out` by `n` in decimal ("%ld").
void XP_NumToCString(long n, char* out);
/// Replaces the C string `out` by `n` in decimal ("%d").
void XP_SInt32ToCString(std::int32_t n, char* out);
/// Replaces the C string `out` by `n` in decimal ("%u").
void XP_UInt32ToCString(std::uint32_t n, char* out);
/// Replaces the C string `out` by `n` in decimal ("%llu").
void XP_UInt64ToCString(std::uint64_t n, char* out);
/// Replaces the C string `out` by `d` with six decimals ("%f"); up to 317 bytes and a NUL.
void XP_doubleToCString(double d, char* out);
/// Replaces the C string `out` by `d` with six decimals ("%Lf").
void XP_longdoubleToCString(long double d, char* out);
/// The decimal number at the start of `s` (strtol); 0 when there is none.
long XP_CStringToNum(const char* s);
/// The decimal number at the start of `s` (strtol), cut to 32 bits.
std::int32_t XP_CStringToSInt32(const char* s);
/// The decimal number at the start of `s` (strtoul), cut to 32 bits.
std::uint32_t XP_CStringToUInt32(const char* s);
/// The number at the start of `s` (strtod).
double XP_CStringToDouble(const char* s);
/// The number at the start of `s` (strtof).
float XP_CStringToFloat(const char* s);
/// Stores the decimal number in `s`, cut to 8 bits, in `*out`. Returns 0, or -1 (and
/// leaves `*out` alone) when `s` is empty.
short XP_ASCIINumStrToChar(const char* s, unsigned char* out);

// Byte order.

/// `n` in big-endian byte order: swapped on little-endian processors.
short XP7_ShortToBigEndian(short n);
/// `n` in big-endian byte order: swapped on little-endian processors.
std::uint32_t XP7_UInt32ToBigEndian(std::uint32_t n);
/// `n` in little-endian byte order: unchanged on little-endian processors.
std::uint32_t XP7_UInt32ToLittleEndian(std::uint32_t n);
/// `n` in little-endian byte order: unchanged on little-endian processors.
std::int32_t XP7_SInt32ToLittleEndian(std::int32_t n);
/// `n` in little-endian byte order: unchanged on little-endian processors.
std::uint16_t XP7_UInt16ToLittleEndian(std::uint16_t n);

// Ticks and the start-up counter.

/// Ticks (1/60 s) since the system started, the platform's TickCount.
std::uint32_t XP_TickCount();
/// Waits at least `ticks` ticks with the platform's Delay; returns at once for under 1.
void XP_Delay(long ticks);
/// Adds 1 to gXP_StartupCount.
void XP_IncrStartupCount();
/// The value of gXP_StartupCount.
std::int32_t XP_GetStartupCount();

#endif
