// Searching and editing host text: positions, substitution, line ends, items.
//
// Positions are zero-based UTF-16 code units (bytes for the byte-buffer search);
// 0xFFFFFFFF or false stands for not found. Host failures pass through as exceptions.
#ifndef XPTOOLKIT_TEXT_TEXTSEARCH_H
#define XPTOOLKIT_TEXT_TEXTSEARCH_H

#include "text/HostValues.h"

// Finding.

/// Position of the occurrence-th (0 counts as 1) non-overlapping occurrence of
/// `search` at or after `start`; 0xFFFFFFFF when there is none or `search` is empty.
unsigned int XP7_Position(fmx::TextAutoPtr& txt, fmx::TextAutoPtr& search, unsigned int start,
                          unsigned int occurrence, bool caseSensitive);
/// As XP7_Position, with `search` given as NUL-terminated bytes in `enc`.
unsigned int XP7_PositionOfCStr(fmx::TextAutoPtr& txt, const char* search, fmx::Text::Encoding enc,
                                unsigned int start, unsigned int occurrence, bool caseSensitive);
/// Byte search in which occurrences may overlap; only A-Z fold when not `caseSensitive`.
/// True with *pos = the byte position of the occurrence-th match (0 counts as 1);
/// false with *pos = 0 when there is none. An empty needle matches everywhere.
bool XP7_PositionUInt32(const char* hay, unsigned int hayLen, const char* needle, unsigned int needleLen,
                        unsigned int start, unsigned int occurrence, bool caseSensitive, unsigned int* pos);
/// XP7_PositionUInt32 over UTF-16 units; positions count units.
bool XP7_PositionUniUInt32(unsigned short* hay, unsigned int hayLen, unsigned short* needle,
                           unsigned int needleLen, unsigned int start, unsigned int occurrence, bool caseSensitive,
                           unsigned int* pos);
/// Position of the last ":" in the text, 0xFFFFFFFF when there is none.
unsigned int XP7_Txt_GetLastColonPos(fmx::TextAutoPtr& txt);

// Editing in place.

/// Replaces, in place and always ignoring case, every occurrence of `search` by
/// `replacement`, left to right; inserted text is never searched again. An empty
/// `txt` or `search` changes nothing.
void XP7_SubstituteTxt(fmx::TextAutoPtr& txt, fmx::TextAutoPtr& search, fmx::TextAutoPtr& replacement);
/// Converts line ends in place: 2 CR LF to CR, 3 LF to CR, 9 every line end to CR,
/// 10 every line end to CR LF; any other mode puts an LF after every CR, so an
/// existing CR LF becomes CR LF LF.
void XP7_ChangeLineEndsTxt(fmx::TextAutoPtr& txt, short mode);
/// Runs XP7_SubstituteTxt on "ABCDEFABCDEFBC" with the search "BC" and four
/// replacements, passing each result to the debug output; turns debug texts on.
void XP7_TEST_SubstituteTxt();

// Lines and separated items.

/// Replaces `result` by item `n` (zero-based) of `txt` split at the UTF-8 separator
/// `sep`, found ignoring case and taken to be as many units long as it has bytes;
/// empty when there is no such item.
void XP7_GetNthLineOfTxt(fmx::TextAutoPtr& txt, unsigned int n, const char* sep, fmx::TextAutoPtr& result);
/// Zero-based index of the first CR-separated line exactly equal to `line`;
/// 0xFFFFFFFF when none is, or when `line` is empty.
unsigned int XP7_GetIndexOfFirstEqualLineOfTxt(fmx::TextAutoPtr& txt, fmx::TextAutoPtr& line);
/// True when `txt` holds sep + item + sep, ignoring case; an item at either end
/// counts only when the separator stands there too.
bool XP7_HasExactSeparatedTxt(fmx::TextAutoPtr& txt, fmx::TextAutoPtr& sep, fmx::TextAutoPtr& item);
/// Replaces `out` by the item that starts at *pos (split at `sep`, case-sensitive)
/// and moves *pos past its separator; *pos becomes 0xFFFFFFFF after the last item.
void XP7_GetNextTxtFromTxt(fmx::TextAutoPtr& txt, fmx::TextAutoPtr& sep, fmx::TextAutoPtr& out, unsigned int* pos);

// The host.

/// The number in a host version string such as "Pro 12.0v4": major x 1000 +
/// minor x 100 + revision x 10 (12040); 0 when empty or the major number is 0.
unsigned int XP7_ExtractAppVersionNrFromAppVersionUniStr(unsigned short* s);
/// Evaluates the ASCII_Mac expression `expr` with the host. Returns 0 and replaces
/// `result` by the value's text, or returns the host's error number, `result` untouched.
fmx::errcode XP7_EvaluateCStrToTxt(const fmx::ExprEnv& env, char* expr, fmx::TextAutoPtr& result);

#endif  // XPTOOLKIT_TEXT_TEXTSEARCH_H
