// Repairs text decoded with the wrong character set: back to the bytes it came
// from, then decoded again in the right one, given or declared by the text itself.
// Also the filter that prepares text for an ISO 8859 code page.
#ifndef XPTOOLKIT_ENCODING_REINTERPRET_H
#define XPTOOLKIT_ENCODING_REINTERPRET_H

#include "text/HostValues.h"

/// Re-decodes `text` in place: its bytes in `currentEncoding`, decoded in
/// `newEncoding`. Only as many bytes as the text has units are decoded, which fits
/// single-byte encodings on the export side.
void XP7_ReinterpretTxtUsingNewEncoding(fmx::TextAutoPtr& text, fmx::Text::Encoding currentEncoding,
                                        fmx::Text::Encoding newEncoding);
/// Re-decodes `text` in the charset its first declaring HTML meta tag or XML
/// declaration names, when that is utf-8 or ISO-8859-1 and not `currentEncoding`;
/// otherwise (or for 12 characters or fewer) leaves it unchanged.
void XP7_ReinterpretTxtUsingCharsetMetaTag(fmx::TextAutoPtr& text, fmx::Text::Encoding currentEncoding);
/// Replaces `result` by `source`, without the characters above U+00FF when
/// `encoding` is 5 (ISO_8859_1); any other encoding copies all. `encoding` is only read.
void XP7_TxtToISO_8859_Codepage_Txt(fmx::TextAutoPtr& source, fmx::TextAutoPtr& result,
                                    fmx::Text::Encoding& encoding);

#endif  // XPTOOLKIT_ENCODING_REINTERPRET_H
