// The Mac Roman and Windows code page 1252 character tables, in-place conversion
// between the two sets, and Mac Roman to Unicode and back for single characters.
//
// Every table is indexed by byte value minus 0x80: bytes 0x00-0x7F are the same
// in all three sets and are never looked up. The tables are exported so that other
// modules of the plug-in can index them directly.
#ifndef XPTOOLKIT_ENCODING_LEGACYTABLES_H
#define XPTOOLKIT_ENCODING_LEGACYTABLES_H

#include <cstdint>

#include "text/HostValues.h"

/// Mac Roman byte to code page 1252 byte, for Mac Roman as it was before the euro:
/// Mac 0xDB is the currency sign, and the euro sign is parked on Mac 0xAD.
extern const unsigned char XP7_macToWinChars[128];
/// Code page 1252 byte to Mac Roman byte; the exact inverse of XP7_macToWinChars.
extern const unsigned char XP7_WinToMacChars[128];
/// As XP7_macToWinChars, but with the euro sign on Mac 0xDB as current Mac Roman has it.
extern const unsigned char XP7_macToWinCharsEuro[128];
/// Code page 1252 byte to Mac Roman byte; the exact inverse of XP7_macToWinCharsEuro.
extern const unsigned char XP7_WinToMacCharsEuro[128];
/// Mac Roman byte to Unicode code point, after Apple's current table (0xDB is the
/// euro sign, 0xBD GREEK CAPITAL LETTER OMEGA, 0xF0 the private-use Apple logo).
extern const uint32_t XP7_FMP6MacAsciiToUnicodeChars[128];

/// The character that text readers put in place of a broken UTF-16 sequence; "~" at start.
extern unsigned char gMyErrorChar;
/// Nonzero (the start value) lets XP7_AppendCharToTxt append Mac Roman 0xBD in
/// ASCII_Mac as U+03A9 itself rather than through the host's conversion.
extern unsigned char gBetterEncoding_ASCII_Mac;

/// Converts the NUL-terminated Mac Roman string `s` to code page 1252 in place.
/// Selector 2 uses the euro tables, any other value the plain ones.
void XP_MacToWinStr(char* s, short tableSelector);
/// Converts the NUL-terminated code page 1252 string `s` to Mac Roman in place.
/// Selector 2 uses the euro tables, any other value the plain ones.
void XP_WinToMacStr(char* s, short tableSelector);
/// As XP_MacToWinStr over exactly `length` bytes, NUL bytes included; a length
/// below 1 changes nothing.
void XP_MacToWinStrN(char* s, long length, short tableSelector);
/// As XP_WinToMacStr over exactly `length` bytes, NUL bytes included; a length
/// below 1 changes nothing.
void XP_WinToMacStrN(char* s, long length, short tableSelector);

/// The code point of the Mac Roman byte `c`; 0xFFFFFFFF for a value above 255.
unsigned int XP7_FMP6MacAsciiToUni(unsigned int c);
/// The Mac Roman byte of `codePoint`, or 0xFFFFFFFF when Mac Roman cannot hold it.
/// With `acceptOhmSign` nonzero U+2126 OHM SIGN is taken as the omega at 0xBD.
unsigned int XP7_UniToFMP6MacAscii(unsigned int codePoint, unsigned char acceptOhmSign);
/// Appends the Mac Roman byte `c` to `text` as its Unicode character, by this table
/// alone (never the host's ASCII_Mac conversion). Returns 0.
int XP7_AppendMacASCIICharToTxt(unsigned char c, fmx::TextAutoPtr& text);

#endif  // XPTOOLKIT_ENCODING_LEGACYTABLES_H
