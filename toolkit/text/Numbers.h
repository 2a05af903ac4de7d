// Whole numbers to host text and back, and machine integers to and from host fixed-point numbers.
#ifndef XPTOOLKIT_TEXT_NUMBERS_H
#define XPTOOLKIT_TEXT_NUMBERS_H

#include "text/HostValues.h"

// Numbers to text, written in ASCII_Mac.

/// Replaces `txt` by `n` in decimal.
void XP7_ulongToTxt(unsigned int n, fmx::TextAutoPtr& txt);
/// Replaces `txt` by `n` in decimal, sign first when negative (long is the platform's).
void XP7_longToTxt(long n, fmx::TextAutoPtr& txt);
/// Appends `n` in decimal. Returns 0.
int XP7_AppendUInt32ToTxt(unsigned int n, fmx::TextAutoPtr& txt);
/// Appends `n` in decimal to the text itself (not its holder). Returns 0.
int XP7_AppendUInt64ToTxt(unsigned long long n, fmx::Text& txt);
/// Appends `n` as its unsigned 32-bit value: -1 appends 4294967295. Returns 0.
int XP7_AppendSInt32ToTxt(int n, fmx::TextAutoPtr& txt);
/// Replaces `txt` by "1" or "0".
void XP7_boolToTxt(bool b, fmx::TextAutoPtr& txt);

// Text to numbers: the first 1999 bytes in ASCII_Mac, read in base 10 as the C
// library reads them (leading blanks and a sign, up to the first non-digit, 0 without
// digits, saturating out of range).

/// The text read as a long.
long XP7_TxtTolong(fmx::TextAutoPtr& txt);
/// The text read as an unsigned long, keeping its low 32 bits.
unsigned int XP7_TxtToUInt32(fmx::TextAutoPtr& txt);

// Fixed point.

/// 0 for numbers not above 0, else the integer part, wrapping from 2^32 up. Numbers
/// of 0x7FFFFFFF and more are left reduced by 0x7FFFFFFF in `fx` itself.
unsigned int XP7_FixPtToUInt32(fmx::FixPtAutoPtr& fx);
/// Sets `fx` to exactly `n`, -2^63 included.
void XP7_SInt64ToFixPt(long long n, fmx::FixPtAutoPtr& fx);

#endif  // XPTOOLKIT_TEXT_NUMBERS_H
