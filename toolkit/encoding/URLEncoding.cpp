// Percent-encoding for URLs: of host text (through UTF-8) and of plain bytes.
#include "encoding/URLEncoding.h"

#include <cstring>
#include <memory>

#include "encoding/UTF8.h"
#include "text/TextCore.h"

namespace {

constexpr unsigned int kToEnd = 0xFFFFFFFF;

// Writes "%XY" for byte b, upper-case hex digits as "%%%02X" gives them, without
// a formatted print per byte.
void PercentEscape(unsigned char b, char* out) {
  static const char kDigits[] = "0123456789ABCDEF";
  out[0] = '%';
  out[1] = kDigits[b >> 4];
  out[2] = kDigits[b & 0x0F];
}

}  // namespace

bool XP7_CharNeedsURLEncoding(unsigned char c) {
  const bool unreserved = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-' ||
                          c == '.' || c == '_' || c == '~';
  return !unreserved;
}

void XP7_TxtToURLEncodedTxt(fmx::TextAutoPtr& source, fmx::TextAutoPtr& result) {
  result->DeleteText(0, kToEnd);
  fmx::TextAutoPtr utf8;
  XP7_TxtToUTF8Txt(source, utf8);
  const unsigned int n = utf8->GetSize();
  for (unsigned int pos = 0; pos < n; ++pos) {
    unsigned int c = XP7_Get1UTF32Char(utf8, n, &pos);
    if (c >= 255) c = '*';  // UTF-8 has no such byte; whatever else got in is a "*"
    char piece[4] = {static_cast<char>(c), '\0', '\0', '\0'};
    if (XP7_CharNeedsURLEncoding(static_cast<unsigned char>(c))) PercentEscape(static_cast<unsigned char>(c), piece);
    XP7_AppendCStrToTxt(piece, result, fmx::Text::kEncoding_ASCII_Mac);
  }
}

char* XP7_CreateURLEncodedStr(const char*, const char* source) {
  // The first argument has never been read; callers pass anything there.
  const size_t length = std::strlen(source);
  const std::unique_ptr<char[]> work(new char[3 * length + 2]);
  size_t written = 0;
  for (size_t i = 0; i < length; ++i) {
    const unsigned char b = static_cast<unsigned char>(source[i]);
    if (XP7_CharNeedsURLEncoding(b)) {
      PercentEscape(b, work.get() + written);
      written += 3;
    } else {
      work[written++] = static_cast<char>(b);
    }
  }
  work[written] = '\0';
  char* encoded = new char[written + 1];
  std::memcpy(encoded, work.get(), written + 1);
  return encoded;
}
