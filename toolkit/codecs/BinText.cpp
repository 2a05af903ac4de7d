// Bin text: byte blocks in host text with the escapes "\0" and "\\", and the
// byte-value listing of a text.
#include "codecs/BinText.h"

#include <string>

#include "text/TextCore.h"

namespace {

constexpr unsigned int kToEnd = 0xFFFFFFFF;

}  // namespace

void XP7_BlockToBinTxt(char* bytes, unsigned int length, fmx::TextAutoPtr& out, fmx::Text::Encoding encoding) {
  out->DeleteText(0, kToEnd);
  fmx::TextAutoPtr part;
  for (unsigned int i = 0; i < length; ++i) {
    // The escapes go in as ASCII_Mac so that they read as backslash, "0" and
    // backslash whatever `encoding` makes of byte 0x5C (the yen sign in ShiftJIS).
    if (bytes[i] == '\0') {
      part->AssignWithLength("\\0", 2, fmx::Text::kEncoding_ASCII_Mac);
    } else if (bytes[i] == '\\') {
      part->AssignWithLength("\\\\", 2, fmx::Text::kEncoding_ASCII_Mac);
    } else {
      part->AssignWithLength(bytes + i, 1, encoding);
    }
    out->AppendText(*part);
  }
}

void XP7_BinTxtToBlock(fmx::TextAutoPtr& text, unsigned int textLength, unsigned int* position, unsigned int count,
                       unsigned char* out, unsigned int* produced) {
  *produced = 0;
  for (unsigned int i = 0; i < count; ++i) {
    if (*position < textLength) {
      out[i] = XP7_GetOneByte(text, textLength, *position);
      ++*position;
      ++*produced;
    } else {
      out[i] = 0;
    }
  }
}

void XP7_RemoveBinTxt(fmx::TextAutoPtr& text) {
  const unsigned int n = text->GetSize();
  if (n == 0) return;
  // Characters that stay as they are go over in runs, straight from the input, so
  // that every unit (a broken surrogate too) arrives unchanged.
  fmx::TextAutoPtr result;
  unsigned int removed = 0;
  unsigned int runStart = 0;
  for (unsigned int pos = 0; pos < n; ++pos) {
    if (XP7_Get1UTF32Char(text, n, &pos) != '\\' || pos >= n - 1) continue;
    const unsigned int backslash = pos;
    ++pos;
    const unsigned int next = XP7_Get1UTF32Char(text, n, &pos);
    if (next == '0') {
      result->AppendText(*text, runStart, backslash - runStart);
      XP7_AppendCharToTxt(0, result, fmx::Text::kEncoding_ASCII_Mac);
    } else if (next == '\\') {
      result->AppendText(*text, runStart, backslash + 1 - runStart);  // keeps the first backslash
    } else {
      continue;  // no escape: both characters stay in the run
    }
    ++removed;
    runStart = pos + 1;
  }
  result->AppendText(*text, runStart, n - runStart);
  text->DeleteText(0, kToEnd);
  text->AppendText(*result, 0, n - removed);
}

void XP7_ConvertTxtToByteValues(fmx::TextAutoPtr& text) {
  const unsigned int n = text->GetSize();
  if (n == 0) return;
  std::string list;
  list.reserve(n * 4ULL);
  for (unsigned int pos = 0; pos < n; ++pos) {
    const unsigned short unit = XP7_Get1UTF16Char(text, pos);
    list += unit > 255 ? "*" : std::to_string(unit);
    list += ' ';
  }
  fmx::TextAutoPtr result;
  XP7_CStrToTxt(list.c_str(), result, fmx::Text::kEncoding_ASCII_Mac);
  XP7_TxtToTxt(result, text);
}
