// Switches and tagged values inside host function parameters, and the debug text switches.
#include "params/Switches.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "codecs/HexPair.h"
#include "text/TextSearch.h"

bool gXP7_Debug_GoDebugTxt = false;

namespace {

constexpr unsigned int kNotFound = 0xFFFFFFFF;
constexpr unsigned int kToEnd = 0xFFFFFFFF;
// The value of a numeric switch ends after this many bytes at the latest.
constexpr size_t kMaxNumberBytes = 1999;
// The debug output looks at no more than this many units of a text.
constexpr uint32_t kDebugUnits = 1000;

char FoldASCII(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; }

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// Finds a non-empty pattern by feeding the text one byte at a time
// (Knuth-Morris-Pratt): each byte is looked at once, so a long tag in a megabyte
// of switches never costs the product of their lengths. Matches may overlap.
class Matcher {
 public:
  Matcher(const char* pattern, size_t length, bool fold) : pattern_(pattern, length), fold_(fold), border_(length) {
    if (fold_) std::transform(pattern_.begin(), pattern_.end(), pattern_.begin(), FoldASCII);
    for (size_t i = 1, k = 0; i < length; ++i) {
      while (k > 0 && pattern_[i] != pattern_[k]) k = border_[k - 1];
      if (pattern_[i] == pattern_[k]) ++k;
      border_[i] = k;
    }
  }

  /// Takes the next byte of the text; true when a match ends with it.
  bool Step(char c) {
    if (fold_) c = FoldASCII(c);
    while (matched_ > 0 && c != pattern_[matched_]) matched_ = border_[matched_ - 1];
    if (c == pattern_[matched_]) ++matched_;
    if (matched_ < pattern_.size()) return false;
    matched_ = border_[matched_ - 1];
    return true;
  }

 private:
  std::string pattern_;
  bool fold_;
  std::vector<size_t> border_;  // border_[i]: longest proper prefix of pattern_[0..i] that is also its suffix
  size_t matched_ = 0;
};

// Position of the first match of `sw` in the NUL-terminated `text`, A-Z folded;
// -1 when there is none. An empty switch matches at 0.
long FindSwitch(const char* text, const char* sw) {
  const size_t s = std::strlen(sw);
  if (s == 0) return 0;
  Matcher matcher(sw, s, true);
  for (size_t i = 0; text[i] != '\0'; ++i) {
    if (matcher.Step(text[i])) return static_cast<long>(i + 1 - s);
  }
  return -1;
}

// The run of characters a numeric reader converts, NUL-terminated in `run`: the
// digits (and with `point` the dots) from the first digit of the tag's value on.
// The value ends at the first "-", so a minus sign never reaches the conversion.
bool NumberAfterTag(const char* text, const char* tag, bool point, char (&run)[kMaxNumberBytes + 1]) {
  const long at = FindSwitch(text, tag);
  if (at < 0) return false;
  const char* value = text + at + std::strlen(tag);
  size_t length = 0;
  while (length < kMaxNumberBytes && value[length] != '\0' && value[length] != '-') ++length;
  size_t i = 0;
  while (i < length && !IsDigit(value[i])) ++i;
  if (i == length) return false;
  size_t n = 0;
  while (i < length && (IsDigit(value[i]) || (point && value[i] == '.'))) run[n++] = value[i++];
  run[n] = '\0';
  return true;
}

// The hex pairs among the first `units` units into `bytes` (kDebugUnits of them),
// zero after the last whole pair.
void DecodeHexPairs(fmx::TextAutoPtr& text, uint32_t units, char* bytes) {
  std::memset(bytes, 0, kDebugUnits);
  for (uint32_t i = 0; i + 1 < units; i += 2) bytes[i / 2] = XP7_Get1HexTxtChar(text, i);
}

}  // namespace

bool XP7_HasSwitch(fmx::TextAutoPtr& text, const char* sw) {
  fmx::TextAutoPtr needle;
  needle->Assign(sw, fmx::Text::kEncoding_ASCII_DOS);
  return text->FindIgnoringCase(*needle, 0) != kNotFound;
}

bool XP_HasSwitch(const char* text, const char* sw) { return FindSwitch(text, sw) >= 0; }

bool XP_HasSwitch_AndBlank(char* text, const char* sw) {
  const long at = FindSwitch(text, sw);
  if (at < 0) return false;
  std::memset(text + at, ' ', std::strlen(sw));
  return true;
}

long XP_GetTaggedStr(const char* text, long textLen, const char* tag, long tagLen, char endChar, long start,
                     long occurrence, bool caseSensitive, char* value, long valueSize) {
  value[0] = '\0';
  start = std::max(start, 0L);
  const long last = textLen - tagLen;
  if (last < start) return -1;
  const long wanted = std::max(occurrence, 1L);
  long p = -1;
  if (tagLen == 0) {
    // An empty tag matches at every position.
    if (wanted - 1 <= last - start) p = start + wanted - 1;
  } else {
    Matcher matcher(tag, static_cast<size_t>(tagLen), !caseSensitive);
    long found = 0;
    for (long i = start; i < textLen; ++i) {
      if (matcher.Step(text[i]) && ++found == wanted) {
        p = i + 1 - tagLen;
        break;
      }
    }
  }
  if (p < 0) return -1;
  // The byte at textLen is copied too: for a C string that is its NUL, which ends
  // the value the same way the end character does.
  long copied = 0;
  for (long i = p + tagLen; i <= textLen && copied < valueSize - 1 && text[i] != endChar; ++i) {
    value[copied++] = text[i];
  }
  value[copied] = '\0';
  return p;
}

bool XP_GetTaggedLong(const char* text, const char* tag, long* value) {
  *value = 0;
  char run[kMaxNumberBytes + 1];
  if (!NumberAfterTag(text, tag, false, run)) return false;
  *value = std::strtol(run, nullptr, 10);
  return true;
}

bool XP_GetTaggedSInt16(const char* text, const char* tag, short* value) {
  *value = 0;
  long n;
  if (!XP_GetTaggedLong(text, tag, &n)) return false;
  *value = static_cast<short>(std::clamp(n, -32768L, 32767L));
  return true;
}

bool XP_GetTaggedUInt16(const char* text, const char* tag, unsigned short* value) {
  *value = 0;
  long n;
  if (!XP_GetTaggedLong(text, tag, &n)) return false;
  *value = static_cast<unsigned short>(std::clamp(n, 0L, 65535L));
  return true;
}

bool XP_GetTaggedUInt32(const char* text, const char* tag, unsigned int* value) {
  *value = 0;
  char run[kMaxNumberBytes + 1];
  if (!NumberAfterTag(text, tag, false, run)) return false;
  *value = static_cast<unsigned int>(std::strtoul(run, nullptr, 10));
  return true;
}

bool XP_GetTaggedFloat(const char* text, const char* tag, float* value) {
  *value = 0;
  char run[kMaxNumberBytes + 1];
  if (!NumberAfterTag(text, tag, true, run)) return false;
  *value = std::strtof(run, nullptr);
  return true;
}

unsigned int XP7_GetTaggedTxt(fmx::TextAutoPtr& text, const char* tag, const char* afterTag, const char* endTag,
                              fmx::TextAutoPtr& out) {
  out->DeleteText(0, kToEnd);
  const unsigned int at = XP7_PositionOfCStr(text, tag, fmx::Text::kEncoding_UTF8, 0, 1, false);
  if (at == kNotFound) return kNotFound;
  // Tag lengths are byte counts: right for the ASCII tags callers use.
  unsigned int start = at + static_cast<unsigned int>(std::strlen(tag));
  if (afterTag != nullptr && afterTag[0] != '\0') {
    const unsigned int after = XP7_PositionOfCStr(text, afterTag, fmx::Text::kEncoding_UTF8, start, 1, false);
    if (after != kNotFound) start = after + static_cast<unsigned int>(std::strlen(afterTag));
  }
  const unsigned int end =
      endTag == nullptr ? kNotFound : XP7_PositionOfCStr(text, endTag, fmx::Text::kEncoding_UTF8, start, 1, false);
  out->SetText(*text, start, end == kNotFound ? kToEnd : end - start);
  return 0;
}

int XP7_Debug_CheckSwitches(char* command, fmx::TextAutoPtr& result) {
  if (command == nullptr || command[0] == '\0') return 0;
  int found = 0;
  if (XP_HasSwitch(command, "-DebugTxtsON")) {
    gXP7_Debug_GoDebugTxt = true;
    result->Assign("0", fmx::Text::kEncoding_ASCII_Mac);
    found = 1;
  }
  // Tested second, so that a command holding both leaves debug texts off.
  if (XP_HasSwitch(command, "-DebugTxtsOFF")) {
    gXP7_Debug_GoDebugTxt = false;
    result->Assign("0", fmx::Text::kEncoding_ASCII_Mac);
    return 1;
  }
  return found;
}

void XP7_DebugStringTxt_Intern(fmx::TextAutoPtr& text, short mode) {
  // This build sends debug texts nowhere. The decoding stays so that a host
  // failure surfaces from the same calls as in a build that writes them.
  const uint32_t units = std::min(text->GetSize(), kDebugUnits);
  if (mode == 2) {
    char bytes[kDebugUnits];
    DecodeHexPairs(text, units, bytes);
  } else {
    char bytes[kDebugUnits + 1];
    text->GetBytes(bytes, kDebugUnits, 0, units, fmx::Text::kEncoding_ASCII_Mac);
  }
}
