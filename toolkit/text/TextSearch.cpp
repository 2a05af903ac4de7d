// Searching and editing host text: positions, substitution, line ends, items.
#include "text/TextSearch.h"

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <initializer_list>

#include "params/Switches.h"
#include "text/TextCore.h"

namespace {

constexpr unsigned int kNotFound = 0xFFFFFFFF;
constexpr unsigned int kToEnd = 0xFFFFFFFF;
constexpr fmx::Text::Encoding kFragments = fmx::Text::kEncoding_ASCII_Mac;
// The version reader looks at no more than this many characters of the version string.
constexpr unsigned int kVersionChars = 999;

template <class Unit>
Unit FoldASCII(Unit u) {
  return u >= 'A' && u <= 'Z' ? static_cast<Unit>(u + ('a' - 'A')) : u;
}

// The byte and the UTF-16 buffer searches. Every start position is tried, so
// occurrences may overlap here, unlike XP7_Position: callers count on it.
template <class Unit>
bool PositionInBuffer(const Unit* hay, unsigned int hayLen, const Unit* needle, unsigned int needleLen,
                      unsigned int start, unsigned int occurrence, bool caseSensitive, unsigned int* pos) {
  *pos = 0;
  if (uint64_t{start} + needleLen > hayLen) return false;
  const unsigned int wanted = occurrence == 0 ? 1 : occurrence;
  unsigned int found = 0;
  for (unsigned int p = start;; ++p) {
    unsigned int k = 0;
    if (caseSensitive) {
      while (k < needleLen && hay[p + k] == needle[k]) ++k;
    } else {
      while (k < needleLen && FoldASCII(hay[p + k]) == FoldASCII(needle[k])) ++k;
    }
    if (k == needleLen && ++found == wanted) {
      *pos = p;
      return true;
    }
    if (uint64_t{p} + needleLen + 1 > hayLen) return false;
  }
}

enum class LineEndEdit { kDropUnitAfterHit, kReplaceHit, kInsertAfterHit };

// One pass of the line-end converter over the whole text. Every find starts just
// after the previous edit, where the host keeps its edit point, so a pass costs
// time in proportion to the text however many line ends it holds.
void LineEndPass(fmx::Text& txt, const fmx::Text& search, LineEndEdit edit, const fmx::Text* insert) {
  const uint64_t s = search.GetSize();
  uint64_t size = txt.GetSize();
  if (s > size) return;
  const uint32_t inserted = insert != nullptr ? insert->GetSize() : 0;
  for (uint32_t p = 0;;) {
    uint64_t q = txt.FindIgnoringCase(search, p);
    if (q == kNotFound) return;
    switch (edit) {
      case LineEndEdit::kDropUnitAfterHit:
        txt.DeleteText(static_cast<uint32_t>(q + 1), 1);
        size -= 1;
        break;
      case LineEndEdit::kReplaceHit:
        txt.DeleteText(static_cast<uint32_t>(q), static_cast<uint32_t>(s));
        txt.InsertText(*insert, static_cast<uint32_t>(q));
        size = size - s + inserted;
        q += s - 1;
        break;
      case LineEndEdit::kInsertAfterHit:
        txt.InsertText(*insert, static_cast<uint32_t>(q + s));
        size += inserted;
        q += s - 1;
        break;
    }
    if (q + s + 1 > size) return;
    p = static_cast<uint32_t>(q + 1);
  }
}

}  // namespace

unsigned int XP7_Position(fmx::TextAutoPtr& txt, fmx::TextAutoPtr& search, unsigned int start,
                          unsigned int occurrence, bool caseSensitive) {
  const uint32_t t = txt->GetSize();
  const uint32_t s = search->GetSize();
  if (s == 0 || s > t || t - s < start) return kNotFound;
  const unsigned int wanted = occurrence == 0 ? 1 : occurrence;
  unsigned int found = 0;
  for (uint32_t p = start;;) {
    const uint32_t q = caseSensitive ? txt->Find(*search, p) : txt->FindIgnoringCase(*search, p);
    if (q == kNotFound) return kNotFound;
    if (++found == wanted) return q;
    // Occurrences never overlap here, unlike the buffer searches: "aa" is found
    // twice in "aaaa", not three times.
    p = q + s;
    if (p > t - s) return kNotFound;
  }
}

unsigned int XP7_PositionOfCStr(fmx::TextAutoPtr& txt, const char* search, fmx::Text::Encoding enc,
                                unsigned int start, unsigned int occurrence, bool caseSensitive) {
  fmx::TextAutoPtr needle;
  needle->Assign(search, enc);
  return XP7_Position(txt, needle, start, occurrence, caseSensitive);
}

bool XP7_PositionUInt32(const char* hay, unsigned int hayLen, const char* needle, unsigned int needleLen,
                        unsigned int start, unsigned int occurrence, bool caseSensitive, unsigned int* pos) {
  return PositionInBuffer(hay, hayLen, needle, needleLen, start, occurrence, caseSensitive, pos);
}

bool XP7_PositionUniUInt32(unsigned short* hay, unsigned int hayLen, unsigned short* needle,
                           unsigned int needleLen, unsigned int start, unsigned int occurrence, bool caseSensitive,
                           unsigned int* pos) {
  return PositionInBuffer<unsigned short>(hay, hayLen, needle, needleLen, start, occurrence, caseSensitive, pos);
}

unsigned int XP7_Txt_GetLastColonPos(fmx::TextAutoPtr& txt) {
  fmx::TextAutoPtr colon;
  colon->Assign(":", kFragments);
  return txt->FindPrev(*colon, txt->GetSize());
}

void XP7_SubstituteTxt(fmx::TextAutoPtr& txt, fmx::TextAutoPtr& search, fmx::TextAutoPtr& replacement) {
  uint32_t t = txt->GetSize();
  const uint32_t s = search->GetSize();
  if (t == 0 || s == 0) return;
  const uint32_t r = replacement->GetSize();
  // Always ignoring case, unlike XP7_Position: existing callers rely on it.
  // Each find starts right after the last insertion, so the replacement is never
  // searched again ("a" by "aa" ends) and the host's edit point only moves forward.
  for (uint32_t p = 0; p < t;) {
    const uint32_t q = txt->FindIgnoringCase(*search, p);
    if (q == kNotFound) return;
    txt->DeleteText(q, s);
    if (r > 0) txt->InsertText(*replacement, q);
    p = q + r;
    t = t + r - s;
  }
}

void XP7_ChangeLineEndsTxt(fmx::TextAutoPtr& txt, short mode) {
  fmx::TextAutoPtr crlf, lf, cr;
  crlf->Assign("\r\n", kFragments);
  lf->Assign("\n", kFragments);
  cr->Assign("\r", kFragments);
  if (mode == 2 || mode == 9 || mode == 10) LineEndPass(*txt, *crlf, LineEndEdit::kDropUnitAfterHit, nullptr);
  if (mode == 3 || mode == 9 || mode == 10) LineEndPass(*txt, *lf, LineEndEdit::kReplaceHit, cr.get());
  // Mode 10 and every unknown mode add an LF after each CR. Only mode 10 reduces
  // CR LF and LF to CR first; elsewhere CR LF becomes CR LF LF, which old callers
  // depend on.
  if (mode != 2 && mode != 3 && mode != 9) LineEndPass(*txt, *cr, LineEndEdit::kInsertAfterHit, lf.get());
}

void XP7_TEST_SubstituteTxt() {
  gXP7_Debug_GoDebugTxt = true;
  fmx::TextAutoPtr txt, search, replacement;
  search->Assign("BC", kFragments);
  for (const char* r : {"12", "", "123456789_", "1"}) {
    txt->Assign("ABCDEFABCDEFBC", kFragments);
    replacement->Assign(r, kFragments);
    XP7_SubstituteTxt(txt, search, replacement);
    XP7_DebugStringTxt_Intern(txt, 0);
  }
}

void XP7_GetNthLineOfTxt(fmx::TextAutoPtr& txt, unsigned int n, const char* sep, fmx::TextAutoPtr& result) {
  result->DeleteText(0, kToEnd);
  unsigned int start = 0;
  if (n > 0) {
    const unsigned int p = XP7_PositionOfCStr(txt, sep, fmx::Text::kEncoding_UTF8, 0, n, false);
    if (p == kNotFound) return;
    start = p + static_cast<unsigned int>(std::strlen(sep));
  }
  const unsigned int end = XP7_PositionOfCStr(txt, sep, fmx::Text::kEncoding_UTF8, start, 1, false);
  result->SetText(*txt, start, end == kNotFound ? kToEnd : end - start);
}

unsigned int XP7_GetIndexOfFirstEqualLineOfTxt(fmx::TextAutoPtr& txt, fmx::TextAutoPtr& line) {
  const uint32_t wanted = line->GetSize();
  if (wanted == 0) return kNotFound;
  fmx::TextAutoPtr cr, piece;
  cr->Assign("\r", kFragments);
  const uint32_t size = txt->GetSize();
  for (unsigned int index = 0, start = 0;; ++index) {
    uint32_t end = txt->Find(*cr, start);
    if (end == kNotFound) end = size;
    // Only a line of the same length can be equal: the others are not copied out.
    if (end - start == wanted) {
      piece->SetText(*txt, start, wanted);
      if (*piece == *line) return index;
    }
    if (end == size) return kNotFound;
    start = end + 1;
  }
}

bool XP7_HasExactSeparatedTxt(fmx::TextAutoPtr& txt, fmx::TextAutoPtr& sep, fmx::TextAutoPtr& item) {
  fmx::TextAutoPtr wrapped;
  wrapped->AppendText(*sep);
  wrapped->AppendText(*item);
  wrapped->AppendText(*sep);
  return txt->FindIgnoringCase(*wrapped, 0) != kNotFound;
}

void XP7_GetNextTxtFromTxt(fmx::TextAutoPtr& txt, fmx::TextAutoPtr& sep, fmx::TextAutoPtr& out, unsigned int* pos) {
  out->DeleteText(0, kToEnd);
  if (*pos == kNotFound) return;
  if (*pos == txt->GetSize()) {
    *pos = kNotFound;
    return;
  }
  const uint32_t s = sep->GetSize();
  if (s > 0) {
    const uint32_t q = txt->Find(*sep, *pos);
    if (q != kNotFound) {
      out->SetText(*txt, *pos, q - *pos);
      *pos = q + s;
      return;
    }
  }
  out->SetText(*txt, *pos, kToEnd);
  *pos = kNotFound;
}

unsigned int XP7_ExtractAppVersionNrFromAppVersionUniStr(unsigned short* s) {
  if (s == nullptr || s[0] == 0) return 0;
  // The number follows the last blank: "Pro 12.0v4", "Advanced 19.6v3".
  const unsigned short* from = s;
  for (const unsigned short* u = s; *u != 0; ++u) {
    if (*u == 0x20) from = u;
  }
  char bytes[kVersionChars + 1];
  XP7_UniStrToCStrSimple(from, bytes, kVersionChars);
  unsigned int major = 0, minor = 0, revision = 0;
  std::sscanf(bytes, " %u.%uv%u", &major, &minor, &revision);
  if (major == 0) return 0;
  return major * 1000 + minor * 100 + revision * 10;
}

fmx::errcode XP7_EvaluateCStrToTxt(const fmx::ExprEnv& env, char* expr, fmx::TextAutoPtr& result) {
  DataHolder data;
  data->Clear();
  fmx::TextAutoPtr expression;
  expression->Assign(expr, fmx::Text::kEncoding_ASCII_Mac);
  const fmx::errcode err = env.Evaluate(*expression, *data);
  if (err == 0) result->SetText(data->GetAsText(), 0, kToEnd);
  return err;
}
