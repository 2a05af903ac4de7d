// Host text from and to C strings, Pascal strings and UTF-16 strings; single
// characters and code points; trimming the end of a text; plain UTF-16 buffers.
#include "text/TextCore.h"

#include <algorithm>
#include <cstring>

#include "encoding/LegacyTables.h"
#include "text/ResultCodes.h"

namespace {

constexpr unsigned int kToEnd = 0xFFFFFFFF;
constexpr unsigned int kNoMapping = 0xFFFFFFFF;
constexpr char kGetBytesImprovedFailed[] = "VarnParamErr: XP7_GetBytesImproved failed";

bool IsLowSurrogate(unsigned int u) { return (u & 0xFC00) == 0xDC00; }
bool IsHighSurrogate(unsigned int u) { return (u & 0xFC00) == 0xD800; }

// End of the range (start, length) in a text of `size` units.
unsigned int RangeEnd(unsigned int start, unsigned int length, unsigned int size) {
  if (length == kToEnd) return size;
  return static_cast<unsigned int>(std::min<unsigned long long>(0ULL + start + length, size));
}

// The error character is a signed byte to the readers: 0xFF reads as 0xFFFFFFFF.
unsigned int ErrorChar() { return static_cast<unsigned int>(static_cast<int>(static_cast<signed char>(gMyErrorChar))); }

// Encodes one code point as UTF-16 by the toolkit's rules; returns 1 or 2 units.
// Lone high surrogates pass on purpose; lone low surrogates do not.
unsigned int EncodeUTF16(unsigned int cp, unsigned short* out) {
  if (cp < 0x10000) {
    out[0] = static_cast<unsigned short>(IsLowSurrogate(cp) ? 0xFFFD : cp);
    return 1;
  }
  if (cp <= 0x10FFFF) {
    out[0] = static_cast<unsigned short>(0xD800 + ((cp - 0x10000) >> 10));
    out[1] = static_cast<unsigned short>(0xDC00 + (cp & 0x3FF));
    return 2;
  }
  out[0] = 0xFFFD;
  return 1;
}

// The last min(count, size) units in Native, as XP7_GetTxtFromEnd writes them.
bool LastCharIs(fmx::TextAutoPtr& txt, char c) {
  char buf[10] = {};
  XP7_GetTxtFromEnd(txt, buf, sizeof buf - 1, 1);
  return buf[0] == c;
}

}  // namespace

void XP7_CStrToTxt(const char* s, fmx::TextAutoPtr& txt, fmx::Text::Encoding enc) { txt->Assign(s, enc); }

int XP7_PStrToTxt(const unsigned char* p, fmx::TextAutoPtr& txt, fmx::Text::Encoding enc) {
  txt->AssignWithLength(reinterpret_cast<const char*>(p + 1), p[0], enc);
  return 0;
}

int XP7_UniStrToTxt(unsigned short* s, fmx::TextAutoPtr& txt) {
  txt->AssignUnicode(s);
  return 0;
}

void XP7_AppendCStrToTxt(const char* s, fmx::TextAutoPtr& txt, fmx::Text::Encoding enc) {
  fmx::TextAutoPtr part;
  part->Assign(s, enc);
  txt->AppendText(*part);
}

int XP7_AppendUniStrToTxt(unsigned short* s, fmx::TextAutoPtr& txt) {
  fmx::TextAutoPtr part;
  part->AssignUnicode(s);
  txt->AppendText(*part);
  return 0;
}

int XP7_AppendUnicodeStrToTxt(unsigned short* s, unsigned int count, fmx::TextAutoPtr& txt) {
  // Unit by unit as code points, so the second half of a pair arrives as U+FFFD:
  // callers have always seen it that way.
  for (unsigned int i = 0; i < count; ++i) XP7_AppendUTF32CharToTxt(s[i], txt);
  return 0;
}

int XP7_AppendCharToTxt(char c, fmx::TextAutoPtr& txt, fmx::Text::Encoding enc) {
  const unsigned char b = static_cast<unsigned char>(c);
  // The host's Mac Roman conversion is older than ours: it knows neither the
  // Apple logo at 0xF0 nor (without the flag) the omega at 0xBD.
  if (enc == fmx::Text::kEncoding_ASCII_Mac) {
    if (gBetterEncoding_ASCII_Mac && b == 0xBD) return XP7_AppendUTF32CharToTxt(0x03A9, txt);
    if (b == 0xF0) return XP7_AppendUTF32CharToTxt(0xF8FF, txt);
  } else if (enc == fmx::Text::kEncoding_UTF8 && b >= 0x80) {
    return XP7_AppendUTF32CharToTxt(0xFFFD, txt);  // a lone high byte is never UTF-8
  }
  const char bytes[2] = {c, 0};
  fmx::TextAutoPtr part;
  if (b != 0) {
    part->Assign(bytes, enc);
  } else {
    part->AssignWithLength(bytes, 1, enc);  // keeps U+0000
  }
  txt->AppendText(*part);
  return 0;
}

int XP7_AppendUTF32CharToTxt(unsigned int cp, fmx::TextAutoPtr& txt) {
  if (cp == 0) return XP7_AppendCharToTxt(0, txt, fmx::Text::kEncoding_ASCII_Mac);
  unsigned short units[3] = {};
  EncodeUTF16(cp, units);
  fmx::TextAutoPtr part;
  part->AssignUnicode(units);
  txt->AppendText(*part);
  return 0;
}

int XP7_AppendTxtToTxt(fmx::TextAutoPtr& src, fmx::TextAutoPtr& dst) {
  dst->AppendText(*src, 0, kToEnd);
  return 0;
}

void XP7_TxtToTxt(fmx::TextAutoPtr& src, fmx::TextAutoPtr& dst) {
  dst->DeleteText(0, kToEnd);
  dst->AppendText(*src, 0, kToEnd);
}

int XP7_CopyDefaultStyle(const fmx::Text& src, fmx::TextAutoPtr& dst) {
  if (src.GetSize() == 0) return 0;
  // The host has no call for "style only": take one styled unit, then drop it.
  dst->SetText(src, 0, 1);
  dst->DeleteText(0, 1);
  return 0;
}

void XP7_TxtToCStr(fmx::TextAutoPtr& txt, unsigned int start, unsigned int length, unsigned int bufSize,
                   bool improved, char* buf, fmx::Text::Encoding enc) {
  if (bufSize == 0) return;
  if (enc == ByteValues) {
    const unsigned int size = txt->GetSize();
    const unsigned int end = RangeEnd(start, length, size);
    unsigned int written = 0;
    for (unsigned int pos = start; pos < end && written < bufSize - 1; ++pos) {
      unsigned char b;
      if (XP7_GetOneByte_Checked(txt, size, pos, &b)) buf[written++] = static_cast<char>(b);
    }
    buf[written] = '\0';
  } else if (enc == fmx::Text::kEncoding_ASCII_Mac && improved) {
    if (XP7_GetBytesImproved(txt, buf, bufSize - 1, start, length, enc) != 0) {
      // Callers pass buffers of at least this size; the text goes in whole.
      std::memcpy(buf, kGetBytesImprovedFailed, sizeof kGetBytesImprovedFailed);
    }
  } else {
    txt->GetBytes(buf, bufSize - 1, start, length, enc);
  }
}

int XP7_GetBytesImproved(fmx::TextAutoPtr& txt, char* buf, unsigned int maxBytes, unsigned int start,
                         unsigned int length, fmx::Text::Encoding enc) {
  buf[0] = '\0';
  if (enc != fmx::Text::kEncoding_ASCII_Mac) return kXP_ParamErr;
  const unsigned int size = txt->GetSize();
  const unsigned int end = RangeEnd(start, length, size);
  unsigned int count = 0;
  for (unsigned int pos = start; pos < end && count < maxBytes; ++pos, ++count) {
    const unsigned int b = XP7_UniToFMP6MacAscii(XP7_Get1UTF32Char(txt, size, &pos), 1);
    buf[count] = b == kNoMapping ? '*' : static_cast<char>(b);
  }
  buf[count] = '\0';
  return 0;
}

unsigned char XP7_GetOneByte(fmx::TextAutoPtr& txt, unsigned int size, unsigned int pos) {
  unsigned char b = '?';
  XP7_GetOneByte_Checked(txt, size, pos, &b);
  return b;
}

bool XP7_GetOneByte_Checked(fmx::TextAutoPtr& txt, unsigned int size, unsigned int pos, unsigned char* out) {
  if (pos >= size) return false;
  const unsigned short u = XP7_Get1UTF16Char(txt, pos);
  if (u >= 256) return false;
  *out = static_cast<unsigned char>(u);
  return true;
}

void XP7_GetTxtFromEnd(fmx::TextAutoPtr& txt, char* buf, unsigned int bufSize, unsigned int count) {
  const unsigned int size = txt->GetSize();
  const unsigned int n = std::min(count, size);
  txt->GetBytes(buf, bufSize, size - n, n, fmx::Text::kEncoding_Native);
}

char XP7_TxtCharToAscii(fmx::TextAutoPtr& txt, unsigned char escapes, unsigned int size, unsigned int* pos,
                        short mode) {
  unsigned int c = XP7_Get1UTF32Char(txt, size, pos);
  if (escapes && c == '\\' && *pos < size - 1) {
    ++*pos;
    const unsigned int next = XP7_Get1UTF32Char(txt, size, pos);
    if (next == '0') return 0;
    if (next != '\\') --*pos;  // not an escape: the next character is read again later
  }
  // Mode 20 (ISO_8859_2) is the one that accepts the ohm sign; callers rely on it.
  return static_cast<char>(XP7_UniToFMP6MacAscii(c, mode == 20));
}

char* XP7_BlockToNewCString(void* block, unsigned int size) {
  char* s = new char[size + 1ULL];
  if (size > 0) std::memcpy(s, block, size);
  s[size] = '\0';
  return s;
}

unsigned short XP7_Get1UTF16Char(fmx::TextAutoPtr& txt, unsigned int pos) {
  unsigned short u = 0;
  txt->GetUnicode(&u, pos, 1);
  return u;
}

unsigned int XP7_Get1UTF32Char(fmx::TextAutoPtr& txt, unsigned int size, unsigned int* pos) {
  const unsigned int u = XP7_Get1UTF16Char(txt, *pos);
  if (IsLowSurrogate(u)) return ErrorChar();
  // A high surrogate in the last position reads as itself: nothing past the end
  // is read. Otherwise the unit after it is consumed, whatever it is.
  if (IsHighSurrogate(u) && *pos + 1 < size) {
    ++*pos;
    const unsigned int v = XP7_Get1UTF16Char(txt, *pos);
    if (IsLowSurrogate(v)) return (u << 10) + v - 0x35FDC00;
    return ErrorChar();
  }
  return u;
}

unsigned int XP7_UTF32CharToUniStr(unsigned int cp, unsigned short* out) {
  if (cp == 0) {
    out[0] = 0;
    out[1] = 0;
    return 1;
  }
  const unsigned int n = EncodeUTF16(cp, out);
  out[n] = 0;
  return n;
}

bool XP7_HasOnlyLowerASCIIinTxt(fmx::TextAutoPtr& txt) {
  const unsigned int size = txt->GetSize();
  for (unsigned int pos = 0; pos < size; ++pos) {
    if (XP7_Get1UTF32Char(txt, size, &pos) > 127) return false;
  }
  return true;
}

void XP7_RemoveCharsAtEnd(fmx::TextAutoPtr& txt, unsigned int n) {
  const unsigned int size = txt->GetSize();
  if (size == 0) return;
  // No clamp on purpose: for n > size the position wraps past the end and the
  // host deletes nothing.
  txt->DeleteText(size - n, n);
}

void XP7_RemoveCharFromEndOfTxt(fmx::TextAutoPtr& txt, char c) {
  if (LastCharIs(txt, c)) XP7_RemoveCharsAtEnd(txt, 1);
}

void XP7_ReplaceCharAtEndOfTxt(fmx::TextAutoPtr& txt, char oldChar, char newChar) {
  if (!LastCharIs(txt, oldChar)) return;
  XP7_RemoveCharsAtEnd(txt, 1);
  XP7_AppendCharToTxt(newChar, txt, fmx::Text::kEncoding_ASCII_Mac);
}

unsigned int XP7_StrlenUni(const unsigned short* s) {
  unsigned int n = 0;
  while (s[n] != 0) ++n;
  return n;
}

unsigned int XP7_TxtToUniStr(fmx::TextAutoPtr& txt, unsigned short* buf, unsigned int bufCount) {
  if (bufCount == 0) return 0;  // no room even for the terminator
  const unsigned int size = txt->GetSize();
  const unsigned int n = size < bufCount ? size : bufCount - 1;
  txt->GetUnicode(buf, 0, n);
  buf[n] = 0;
  return n;
}

void XP7_UniStrToCStrSimple(const unsigned short* s, char* out, unsigned int max) {
  unsigned int i = 0;
  for (; i < max && s[i] != 0; ++i) out[i] = s[i] >= 128 ? '*' : static_cast<char>(s[i]);
  out[i] = '\0';
}

unsigned int XP7_CStrToUniStrSimple(const char* s, unsigned short* out, unsigned int max) {
  unsigned int i = 0;
  for (; i < max && s[i] != '\0'; ++i) {
    const unsigned char b = static_cast<unsigned char>(s[i]);
    out[i] = b >= 128 ? '*' : b;
  }
  out[i] = 0;
  return i;
}

void XP7_AppendCStrToUniStrSimple(const char* s, unsigned short* out, unsigned int max) {
  const unsigned int len = XP7_StrlenUni(out);
  if (len >= max) return;
  unsigned int i = 0;
  for (; i < max - len && s[i] != '\0'; ++i) {
    const unsigned char b = static_cast<unsigned char>(s[i]);
    out[len + i] = b >= 128 ? '*' : b;
  }
  out[len + i] = 0;
}

unsigned int XP7_CStrToUniStrConcatSimple(const char* s, unsigned short* out, unsigned int max) {
  unsigned int len = XP7_StrlenUni(out);
  // Each byte is sign-extended, so 0xE9 becomes 0xFFE9: unlike the other Simple
  // functions, and kept that way for the callers that expect it.
  for (; len < max && *s != '\0'; ++s) out[len++] = static_cast<unsigned short>(static_cast<signed char>(*s));
  out[len] = 0;
  return len;
}

unsigned int XP7_UniStrToUniStrCopy(const unsigned short* src, unsigned short* dst, unsigned int max) {
  unsigned int i = 0;
  for (; i < max && src[i] != 0; ++i) dst[i] = src[i];
  dst[i] = 0;
  return max;  // callers have always received max, not the count copied
}

unsigned int XP7_UniStrToUniStrConcat(const unsigned short* src, unsigned short* dst, unsigned int max) {
  unsigned int len = XP7_StrlenUni(dst);
  for (; len < max && *src != 0; ++src) dst[len++] = *src;
  dst[len] = 0;
  return len;
}

void XP7_ReplaceCharsUni(unsigned short* s, unsigned short from, unsigned short to) {
  // A 16-bit index, as it has always been: only the first 65,535 units are seen.
  for (unsigned short i = 0; s[i] != 0; ++i) {
    if (s[i] == from) s[i] = to;
    if (i == 0xFFFF) break;
  }
}
