// Reading a host function's parameters one after another, splitting C strings into
// tokens, and rectangles from text.
//
// The get-next readers share a running index held by the caller: each call reads the
// parameter it names and advances it by one, also past the end of the list, where the
// reader yields its empty value. A host failure leaves as an exception with the index
// unchanged.
#ifndef XPTOOLKIT_PARAMS_PARAMETERS_H
#define XPTOOLKIT_PARAMS_PARAMETERS_H

#include <CoreServices/CoreServices.h>

#include "text/HostValues.h"

/// The parameter as a NUL-terminated byte string in `enc` in `buffer` (bufferSize
/// bytes with the NUL); Native (0) means the toolkit's Mac Roman encoder, whose
/// failure leaves an error message of 42 bytes in the buffer. Empty past the end.
void XP7_GetNextCStringFromVect(const fmx::DataVect& params, char* buffer, unsigned int bufferSize,
                                unsigned int* index, fmx::Text::Encoding enc);
/// The parameter as a 0-terminated UTF-16 string in `buffer` (bufferSize units with
/// the 0). Returns the units copied, 0 past the end.
unsigned int XP7_GetNextUniStrFromVect(const fmx::DataVect& params, unsigned short* buffer,
                                       unsigned int bufferSize, unsigned int* index);
/// Replaces `out` by the parameter's text; clears it past the end. Returns 0.
int XP7_GetNextTxtFromVect(const fmx::DataVect& params, fmx::TextAutoPtr& out, unsigned int* index);
/// Sets the date and then the time of `out` from the parameter's timestamp; leaves
/// `out` alone past the end. Returns 0.
int XP7_GetNextDateTimeFromVect(const fmx::DataVect& params, fmx::DateTimeAutoPtr& out, unsigned int* index);
/// The parameter's number as the host converts it to a whole number; 0 past the end.
long XP7_GetNextlongFromVect(const fmx::DataVect& params, unsigned int* index);
/// Reads the parameter's text as a rectangle "left top right bottom"; missing numbers
/// are 0. `*empty` tells whether the text was empty. Returns 0.
int XP7_GetNextRectFromVect(const fmx::DataVect& params, Rect& out, bool* empty, unsigned int* index);
/// Reads a text as a rectangle "left top right bottom", as XP7_GetNextRectFromVect;
/// `empty` may be null. Returns 0.
int XP7_GetNativeRectFromTxt(fmx::TextAutoPtr& txt, Rect& out, bool* empty);
/// Replaces `out` by a copy of the parameter's container; leaves it alone past the
/// end. Returns 0.
int XP7_GetNextBinaryFromVect(const fmx::DataVect& params, fmx::BinaryDataAutoPtr& out, unsigned int* index);

/// Copies the token of `source` that starts at `*position` and ends before the next
/// `separator` into `token` (at most tokenSize bytes and a NUL), and moves `*position`
/// past the separator, or to -1 after the last token. Adjacent separators give empty tokens.
void XP_GetNextCString(char* source, const char* separator, char* token, long tokenSize, long* position);

#endif  // XPTOOLKIT_PARAMS_PARAMETERS_H
