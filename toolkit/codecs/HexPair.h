// The one reader of hex digits in host text: two characters to one byte.
#ifndef XPTOOLKIT_CODECS_HEXPAIR_H
#define XPTOOLKIT_CODECS_HEXPAIR_H

#include "text/HostValues.h"

/// The byte the two characters at `position` and `position + 1` encode. Only
/// "0"-"9" and "A"-"F" are digits (the low 8 bits of each unit are read); any
/// other character counts as the nibble 42 and is folded in without an error.
char XP7_Get1HexTxtChar(fmx::TextAutoPtr& text, unsigned int position);

#endif  // XPTOOLKIT_CODECS_HEXPAIR_H
