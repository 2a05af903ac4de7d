// Host text to UTF-8 text and back, also from UTF-8 given as hex text.
#include "encoding/UTF8.h"

#include <algorithm>
#include <cstdint>

#include "codecs/HexPair.h"
#include "text/TextCore.h"

namespace {

constexpr unsigned int kToEnd = 0xFFFFFFFF;

// The lead byte marks by sequence length 1 to 4.
constexpr unsigned char kFirstByteMark[4] = {0x00, 0xC0, 0xE0, 0xF0};

// What accumulating value * 64 + byte over a whole sequence adds on top of the
// code point, by number of continuation bytes: the lead and continuation marks.
// Unsigned 32-bit arithmetic that wraps, as in the usual UTF-8 tables.
constexpr uint32_t kOffsetsFromUTF8[6] = {0x00000000, 0x00003080, 0x000E2080, 0x03C82080, 0xFA082080, 0x82082080};

// Continuation bytes announced by a lead byte. 0x80-0xBF announce none, which is
// what lets a stray continuation byte through as the Latin-1 character of its
// value; 0xF8-0xFF announce the old five- and six-byte forms.
unsigned int TrailingBytes(unsigned char b) {
  if (b < 0xC0) return 0;
  if (b < 0xE0) return 1;
  if (b < 0xF0) return 2;
  if (b < 0xF8) return 3;
  if (b < 0xFC) return 4;
  return 5;
}

// The decoder of both forms: `step` of the `n` characters of the source make one
// byte, which `read` takes from a position. The end test compares characters with bytes on
// purpose, so for hex text a cut sequence is noticed only when fewer than k
// characters remain; the missing bytes then come from reads past the end.
template <class ReadByte>
void DecodeUTF8(unsigned long long n, unsigned int step, ReadByte read, fmx::TextAutoPtr& result) {
  result->DeleteText(0, kToEnd);
  for (unsigned long long p = 0; p < n;) {
    const unsigned char b = read(static_cast<unsigned int>(p));
    p += step;
    if (b == 0) {
      XP7_AppendCharToTxt(0, result, fmx::Text::kEncoding_ASCII_Mac);
      continue;
    }
    const unsigned int k = TrailingBytes(b);
    if (p + k > n) break;  // a cut final sequence is dropped, and nothing after it read
    // The continuation bytes' top bits are not checked: whatever follows is taken.
    uint32_t value = b;
    for (unsigned int i = 0; i < k; ++i, p += step) value = value * 64 + read(static_cast<unsigned int>(p));
    value -= kOffsetsFromUTF8[k];
    if (value >= 0x110000 || (value >= 0xD800 && value <= 0xDFFF)) value = 0xFFFD;
    XP7_AppendUTF32CharToTxt(value, result);
  }
}

}  // namespace

void XP7_TxtToUTF8Txt(fmx::TextAutoPtr& source, fmx::TextAutoPtr& result) {
  result->DeleteText(0, kToEnd);
  const unsigned int n = source->GetSize();
  for (unsigned int pos = 0; pos < n; ++pos) {
    unsigned int cp = XP7_Get1UTF32Char(source, n, &pos);
    if (cp == 0) {
      XP7_AppendCharToTxt(0, result, fmx::Text::kEncoding_ASCII_Mac);
      continue;
    }
    // The reader never yields values past U+10FFFF other than an error character
    // of 0xFF (read as 0xFFFFFFFF); those get three bytes and no substitute.
    const unsigned int length = cp < 0x80 ? 1 : cp < 0x800 ? 2 : cp < 0x10000 ? 3 : cp < 0x110000 ? 4 : 3;
    unsigned short bytes[4];
    for (unsigned int i = length - 1; i > 0; --i, cp >>= 6) bytes[i] = static_cast<unsigned short>((cp & 0x3F) | 0x80);
    bytes[0] = static_cast<unsigned char>(kFirstByteMark[length - 1] | cp);
    XP7_AppendUnicodeStrToTxt(bytes, length, result);
  }
}

void XP7_UTF8TxtToTxt(fmx::TextAutoPtr& source, fmx::TextAutoPtr& result) {
  const unsigned int n = source->GetSize();
  DecodeUTF8(n, 1, [&](unsigned int p) { return XP7_GetOneByte(source, n, p); }, result);
}

void XP7_UTF8HexTxtToTxt(fmx::TextAutoPtr& source, fmx::TextAutoPtr& result) {
  const unsigned int n = source->GetSize();
  DecodeUTF8(n, 2, [&](unsigned int p) { return static_cast<unsigned char>(XP7_Get1HexTxtChar(source, p)); }, result);
}

void XP7_UTF8TxtToUTF8CStr(fmx::TextAutoPtr& source, char* buffer, unsigned int bufferSize) {
  if (bufferSize == 0) return;
  buffer[0] = '\0';
  const unsigned int size = source->GetSize();
  const unsigned int count = std::min(size, bufferSize - 1);
  // No UTF-8 check: a sequence may be cut at the buffer's end.
  for (unsigned int pos = 0; pos < count; ++pos) buffer[pos] = static_cast<char>(XP7_GetOneByte(source, size, pos));
  buffer[count] = '\0';
}
