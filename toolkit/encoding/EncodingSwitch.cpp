// Reading the host text encoding that a caller names in a switches string.
#include "encoding/EncodingSwitch.h"

#include <cstddef>
#include <cstring>

namespace {

using Encoding = fmx::Text::Encoding;

struct EncodingSwitch {
  const char* text;
  Encoding encoding;
};

constexpr char kPrefix[] = "-Encoding=";

// Searched in this order, and the first that occurs anywhere wins, whatever its
// place in the string: so "-Encoding=ISO_8859_15" must come before its prefix
// "-Encoding=ISO_8859_1", and Native beats any other switch given with it, on purpose.
constexpr EncodingSwitch kSwitches[] = {
    {"-Encoding=Native", fmx::Text::kEncoding_Native},
    {"-Encoding=UTF8", fmx::Text::kEncoding_UTF8},
    {"-Encoding=UTF-8", fmx::Text::kEncoding_UTF8},
    {"-Encoding=ASCII_DOS", fmx::Text::kEncoding_ASCII_DOS},
    {"-Encoding=ASCII_Windows", fmx::Text::kEncoding_ASCII_Windows},
    {"-Encoding=ASCII_Mac", fmx::Text::kEncoding_ASCII_Mac},
    {"-Encoding=ISO_8859_15", fmx::Text::kEncoding_ISO_8859_15},
    {"-Encoding=ISO_8859_1", fmx::Text::kEncoding_ISO_8859_1},
    {"-Encoding=ShiftJIS_Mac", fmx::Text::kEncoding_ShiftJIS_Mac},
    {"-Encoding=ShiftJIS_Win", fmx::Text::kEncoding_ShiftJIS_Win},
    {"-Encoding=Korean_Mac", fmx::Text::kEncoding_Korean_Mac},
    {"-Encoding=Korean_Win", fmx::Text::kEncoding_Korean_Win},
    {"-Encoding=Korean_Johab", fmx::Text::kEncoding_Korean_Johab},
    {"-Encoding=ChineseTrad_Mac", fmx::Text::kEncoding_ChineseTrad_Mac},
    {"-Encoding=ChineseTrad_Win", fmx::Text::kEncoding_ChineseTrad_Win},
    {"-Encoding=ChineseSimp_Mac", fmx::Text::kEncoding_ChineseSimp_Mac},
    {"-Encoding=ChineseSimp_Win", fmx::Text::kEncoding_ChineseSimp_Win},
    {"-Encoding=Cyrillic_Mac", fmx::Text::kEncoding_Cyrillic_Mac},
    {"-Encoding=Cyrillic_Win", fmx::Text::kEncoding_Cyrillic_Win},
    {"-Encoding=ISO_8859_5", fmx::Text::kEncoding_ISO_8859_5},
    {"-Encoding=CentralEurope_Mac", fmx::Text::kEncoding_CentralEurope_Mac},
    {"-Encoding=EasternEurope_Win", fmx::Text::kEncoding_EasternEurope_Win},
    {"-Encoding=ISO_8859_2", fmx::Text::kEncoding_ISO_8859_2},
    {"-Encoding=Turkish_Mac", fmx::Text::kEncoding_Turkish_Mac},
    {"-Encoding=Turkish_Win", fmx::Text::kEncoding_Turkish_Win},
    {"-Encoding=ISO_8859_3", fmx::Text::kEncoding_ISO_8859_3},
    {"-Encoding=ISO_8859_9", fmx::Text::kEncoding_ISO_8859_9},
    {"-Encoding=Baltic_Win", fmx::Text::kEncoding_Baltic_Win},
    {"-Encoding=ISO_8859_4", fmx::Text::kEncoding_ISO_8859_4},
    {"-Encoding=Arabic_Mac", fmx::Text::kEncoding_Arabic_Mac},
    {"-Encoding=Arabic_Win", fmx::Text::kEncoding_Arabic_Win},
    {"-Encoding=ISO_8859_6", fmx::Text::kEncoding_ISO_8859_6},
    {"-Encoding=Greek_Mac", fmx::Text::kEncoding_Greek_Mac},
    {"-Encoding=Greek_Win", fmx::Text::kEncoding_Greek_Win},
    {"-Encoding=ISO_8859_7", fmx::Text::kEncoding_ISO_8859_7},
    {"-Encoding=Hebrew_Mac", fmx::Text::kEncoding_Hebrew_Mac},
    {"-Encoding=Hebrew_Win", fmx::Text::kEncoding_Hebrew_Win},
    {"-Encoding=ISO_8859_8", fmx::Text::kEncoding_ISO_8859_8},
};

// Folds only A-Z: bytes 128-255 must match exactly, whatever the locale says.
unsigned char FoldAscii(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte >= 'A' && byte <= 'Z' ? static_cast<unsigned char>(byte - 'A' + 'a') : byte;
}

bool EqualFolded(const char* a, const char* b, std::size_t length) {
  for (std::size_t i = 0; i < length; ++i) {
    if (FoldAscii(a[i]) != FoldAscii(b[i])) return false;
  }
  return true;
}

// True when `pattern` occurs anywhere in the first `length` bytes of `text`.
bool ContainsFolded(const char* text, std::size_t length, const char* pattern) {
  const std::size_t patternLength = std::strlen(pattern);
  if (length < patternLength) return false;
  for (std::size_t start = 0; start + patternLength <= length; ++start) {
    if (EqualFolded(text + start, pattern, patternLength)) return true;
  }
  return false;
}

}  // namespace

fmx::Text::Encoding XP7_GetEncodingSwitch(char* switches, fmx::Text::Encoding defaultEncoding) {
  const std::size_t length = std::strlen(switches);
  if (!ContainsFolded(switches, length, kPrefix)) return defaultEncoding;
  for (const EncodingSwitch& candidate : kSwitches) {
    if (ContainsFolded(switches, length, candidate.text)) return candidate.encoding;
  }
  return defaultEncoding;
}
