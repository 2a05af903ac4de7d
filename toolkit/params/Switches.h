// Switches and tagged values inside host function parameters, and the debug text switches.
//
// Switches match anywhere, also inside a longer word, with only A-Z folded to
// a-z; the first match from the left counts.
#ifndef XPTOOLKIT_PARAMS_SWITCHES_H
#define XPTOOLKIT_PARAMS_SWITCHES_H

#include "text/HostValues.h"

/// Whether debug texts are written; set by the "-DebugTxtsON" and "-DebugTxtsOFF"
/// switches, off at load.
extern bool gXP7_Debug_GoDebugTxt;

// Switches.

/// True when `sw` (ASCII_DOS) occurs in `text`, case ignored by the host's search;
/// an empty switch is never found.
bool XP7_HasSwitch(fmx::TextAutoPtr& text, const char* sw);
/// True when `sw` occurs in the NUL-terminated `text`; an empty switch gives true.
bool XP_HasSwitch(const char* text, const char* sw);
/// As XP_HasSwitch, and overwrites the switch found in `text` with blanks.
bool XP_HasSwitch_AndBlank(char* text, const char* sw);

// Tagged values.

/// Finds the occurrence-th (0 and 1: the first) match of the tag at or after
/// `start`, matches overlapping, and copies what follows into `value` up to
/// `endChar`, valueSize - 1 bytes or the byte at textLen; always NUL-terminates
/// (value holds at least one byte). Returns the tag's position, or -1 with an
/// empty value. A negative start counts as 0.
long XP_GetTaggedStr(const char* text, long textLen, const char* tag, long tagLen, char endChar, long start,
                     long occurrence, bool caseSensitive, char* value, long valueSize);
/// Reads the first run of decimal digits in the value after the tag, which ends at
/// the next "-", at the end or after 1999 bytes; a minus sign is never read.
/// True when a number was read; *value is 0 otherwise.
bool XP_GetTaggedLong(const char* text, const char* tag, long* value);
/// As XP_GetTaggedLong, clamped to 16 bits (40000 gives 32767).
bool XP_GetTaggedSInt16(const char* text, const char* tag, short* value);
/// As XP_GetTaggedLong, clamped to 0-65535.
bool XP_GetTaggedUInt16(const char* text, const char* tag, unsigned short* value);
/// As XP_GetTaggedLong, converted as unsigned; no range check.
bool XP_GetTaggedUInt32(const char* text, const char* tag, unsigned int* value);
/// As XP_GetTaggedLong, reading digits and "." from the first digit on ("1.25").
bool XP_GetTaggedFloat(const char* text, const char* tag, float* value);
/// Replaces `out` by the text after the first `tag` (UTF-8, case ignored), after
/// `afterTag` when given and found, up to `endTag` or the end. Tags count as many
/// units as they have bytes. Returns 0, or 0xFFFFFFFF (out empty) without the tag.
unsigned int XP7_GetTaggedTxt(fmx::TextAutoPtr& text, const char* tag, const char* afterTag, const char* endTag,
                              fmx::TextAutoPtr& out);

// Debug texts.

/// Turns debug texts on for "-DebugTxtsON" and off for "-DebugTxtsOFF" (which wins
/// when both occur), setting `result` to "0". Returns 1 when either was found, else 0.
int XP7_Debug_CheckSwitches(char* command, fmx::TextAutoPtr& result);
/// Prepares the first 1000 units for the debug output, as hex pairs in mode 2 and
/// as ASCII_Mac bytes otherwise; this build writes them nowhere.
void XP7_DebugStringTxt_Intern(fmx::TextAutoPtr& text, short mode);

#endif  // XPTOOLKIT_PARAMS_SWITCHES_H
