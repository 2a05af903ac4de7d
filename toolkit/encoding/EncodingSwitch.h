// Reading the host text encoding that a caller names in a switches string.
#ifndef XPTOOLKIT_ENCODING_ENCODINGSWITCH_H
#define XPTOOLKIT_ENCODING_ENCODINGSWITCH_H

#include "text/HostValues.h"

/// The encoding named by a switch such as "-Encoding=UTF8" anywhere in the
/// NUL-terminated `switches` (ASCII letters compared without case), or
/// `defaultEncoding` when none of the known names occurs. Allocates nothing.
fmx::Text::Encoding XP7_GetEncodingSwitch(char* switches, fmx::Text::Encoding defaultEncoding);

#endif  // XPTOOLKIT_ENCODING_ENCODINGSWITCH_H
