// Repairs text decoded with the wrong character set, and the ISO 8859 filter.
#include "encoding/Reinterpret.h"

#include <memory>

#include "text/ByteBlocks.h"
#include "text/TextCore.h"

namespace {

constexpr unsigned int kToEnd = 0xFFFFFFFF;

// Texts this short cannot hold a declaration worth the search.
constexpr unsigned int kShortestDeclaringText = 13;

// A literal searched for, ignoring case, from start positions that never move
// back. The first hit at or after a start stays the answer for every later start
// up to that hit, so the host searches again only once a start passes it: a page
// of many tags without the keyword stays linear instead of rescanning its tail.
class Pattern {
 public:
  explicit Pattern(const char* literal) { text_->Assign(literal, fmx::Text::kEncoding_ASCII_Mac); }

  /// Position of the first occurrence at or after `from`, 0xFFFFFFFF when none.
  unsigned int FindFrom(const fmx::Text& in, unsigned int from) {
    if (!searched_ || from < from_ || from > hit_) {
      hit_ = in.FindIgnoringCase(*text_, from);
      from_ = from;
      searched_ = true;
    }
    return hit_;
  }

 private:
  fmx::TextAutoPtr text_;
  bool searched_ = false;
  unsigned int from_ = 0;
  unsigned int hit_ = 0;
};

// Exports the n units as bytes in `current` and decodes exactly n bytes in `next`.
// n is the unit count, not the bytes written: the export side is meant to be a
// single-byte encoding. The buffer starts zeroed, so a text exported shorter than
// n (a pair written as one "?") decodes NULs rather than stale memory.
void Redecode(fmx::TextAutoPtr& text, unsigned int n, fmx::Text::Encoding current, fmx::Text::Encoding next) {
  const std::unique_ptr<char[]> bytes(new char[n + 2ULL]());
  text->GetBytes(bytes.get(), n + 1, 0, n, current);
  text->DeleteText(0, kToEnd);
  XP7_BlockToTxt(bytes.get(), n, text, next, 0);
}

// The encoding the first fitting declaration names: `tag` opens it, the first ">"
// after it closes it, and `keyword` and "=" must stand before that ">". A
// declaration naming `current` (or nothing known) lets the search go on.
fmx::Text::Encoding DeclaredEncoding(const fmx::Text& text, Pattern& tag, Pattern& keyword,
                                     fmx::Text::Encoding current) {
  Pattern close(">"), equals("="), utf8("utf-8"), latin1("ISO-8859-1");
  // Failed searches give 0xFFFFFFFF, which ranks after every position.
  for (unsigned int s = 0;;) {
    const unsigned int t = tag.FindFrom(text, s);
    if (t == kToEnd) return current;
    const unsigned int e = close.FindFrom(text, t);
    if (e == kToEnd) return current;
    s = e;
    const unsigned int k = keyword.FindFrom(text, t);
    if (k >= e) continue;
    const unsigned int q = equals.FindFrom(text, k);
    if (q >= e) continue;
    // "utf-8" first: a tag naming both charsets selects UTF-8.
    fmx::Text::Encoding declared = current;
    if (utf8.FindFrom(text, q) < e) {
      declared = fmx::Text::kEncoding_UTF8;
    } else if (latin1.FindFrom(text, q) < e) {
      declared = fmx::Text::kEncoding_ISO_8859_1;
    }
    if (declared != current) return declared;
  }
}

}  // namespace

void XP7_ReinterpretTxtUsingNewEncoding(fmx::TextAutoPtr& text, fmx::Text::Encoding currentEncoding,
                                        fmx::Text::Encoding newEncoding) {
  const unsigned int n = text->GetSize();
  if (n == 0) return;
  Redecode(text, n, currentEncoding, newEncoding);
}

void XP7_ReinterpretTxtUsingCharsetMetaTag(fmx::TextAutoPtr& text, fmx::Text::Encoding currentEncoding) {
  const unsigned int n = text->GetSize();
  if (n < kShortestDeclaringText) return;
  // Whichever kind comes first is the only kind examined, even if it declares
  // nothing usable: an XML file is not searched for meta tags, nor a page for XML.
  Pattern meta("<meta"), xml("<?xml version=");
  const bool isXML = xml.FindFrom(*text, 0) < meta.FindFrom(*text, 0);
  Pattern keyword(isXML ? "encoding" : "charset");
  const fmx::Text::Encoding declared = DeclaredEncoding(*text, isXML ? xml : meta, keyword, currentEncoding);
  if (declared != currentEncoding) Redecode(text, n, currentEncoding, declared);
}

void XP7_TxtToISO_8859_Codepage_Txt(fmx::TextAutoPtr& source, fmx::TextAutoPtr& result,
                                    fmx::Text::Encoding& encoding) {
  result->DeleteText(0, kToEnd);
  const unsigned int n = source->GetSize();
  const bool latin1 = encoding == fmx::Text::kEncoding_ISO_8859_1;
  for (unsigned int pos = 0; pos < n; ++pos) {
    const unsigned int c = XP7_Get1UTF32Char(source, n, &pos);
    if (c == 0) {
      XP7_AppendCharToTxt(0, result, fmx::Text::kEncoding_ASCII_Mac);
    } else if (c < 128 || !latin1 || c <= 0xFF) {
      XP7_AppendUTF32CharToTxt(c, result);
    }
    // Anything else ISO 8859-1 cannot hold is dropped, with no replacement character.
  }
}
