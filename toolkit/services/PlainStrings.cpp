// Plain character data: C, Pascal and UTF-16 strings, byte blocks, byte order, ticks.
#include "services/PlainStrings.h"

#include <Carbon/Carbon.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <locale>

#include "text/ResultCodes.h"

std::int32_t gXP_StartupCount = 0;

namespace {

constexpr unsigned char kMaxPascalLength = 255;
constexpr char kCR = 13;
constexpr char kLF = 10;

// Formats into a buffer that the caller has sized: the first pass only measures, so no
// bound has to be made up for a buffer whose size we are never told.
__attribute__((format(printf, 2, 3))) void formatInto(char* out, const char* format, ...) {
  std::va_list args;
  std::va_list measuring;
  va_start(args, format);
  va_copy(measuring, args);
  const int length = std::vsnprintf(nullptr, 0, format, measuring);
  va_end(measuring);
  std::vsnprintf(out, static_cast<std::size_t>(length) + 1, format, args);
  va_end(args);
}

// The signed reading of a byte, whatever the signedness of char on this processor.
int signedByte(char c) {
  return static_cast<signed char>(c);
}

template <typename Unit>
short compareResult(Unit a, Unit b) {
  return a == b ? 0 : (a > b ? 1 : -1);
}

template <typename Unit, typename Fold>
short compareUnits(const Unit* a, const Unit* b, unsigned long n, Fold fold) {
  for (unsigned long i = 0; i < n; ++i) {
    const auto x = fold(a[i]);
    const auto y = fold(b[i]);
    if (x != y) {
      return compareResult(x, y);
    }
  }
  return 0;
}

short compareBytes(const char* a, const char* b, unsigned long n, bool caseSensitive) {
  if (caseSensitive) {
    return compareUnits(a, b, n, signedByte);
  }
  return compareUnits(a, b, n, [](char c) { return signedByte(XP_tolower(c)); });
}

bool bytesMatch(const char* a, const char* b, long n, bool caseSensitive) {
  return compareBytes(a, b, static_cast<unsigned long>(n), caseSensitive) == 0;
}

std::size_t unitLength(const unsigned short* s) {
  std::size_t n = 0;
  while (s[n] != 0) {
    ++n;
  }
  return n;
}

bool isCSpace(char c) {
  static const std::ctype<char>& classic = std::use_facet<std::ctype<char>>(std::locale::classic());
  return classic.is(std::ctype_base::space, c);
}

constexpr bool kLittleEndian = __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__;
static_assert(kLittleEndian || __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__, "mixed byte order is not supported");

std::uint16_t swap16(std::uint16_t n) {
  return static_cast<std::uint16_t>((n >> 8) | (n << 8));
}

std::uint32_t swap32(std::uint32_t n) {
  return (n >> 24) | ((n >> 8) & 0x0000FF00u) | ((n << 8) & 0x00FF0000u) | (n << 24);
}

}  // namespace

// C strings.

long XP_Strlen(const char* s) {
  return static_cast<long>(std::strlen(s));
}

unsigned long XP_StrlenU(const char* s) {
  return std::strlen(s);
}

void XP_CToCStrCopy(const char* src, char* dst) {
  std::strcpy(dst, src);
}

void XP_CToCStrConcat(const char* src, char* dst) {
  std::strcat(dst, src);
}

void XP_CToCStrCopyUni(const unsigned short* src, unsigned short* dst) {
  std::memcpy(dst, src, (unitLength(src) + 1) * sizeof(unsigned short));
}

void XP_CToCStrConcatUni(const unsigned short* src, unsigned short* dst) {
  dst += unitLength(dst);
  for (; *src != 0; ++src, ++dst) {
    *dst = static_cast<unsigned short>(static_cast<signed char>(*src & 0xFF));
  }
  *dst = 0;
}

// Pascal strings.

void XP_CToPStr(char* s) {
  const std::size_t length = std::min<std::size_t>(std::strlen(s), kMaxPascalLength);
  std::memmove(s + 1, s, length);
  s[0] = static_cast<char>(length);
}

void XP_PToCStr(unsigned char* s) {
  const unsigned char length = s[0];
  std::memmove(s, s + 1, length);
  s[length] = 0;
}

void XP_CToPStrCopy(const char* src, unsigned char* dst) {
  const std::size_t length = std::min<std::size_t>(std::strlen(src), kMaxPascalLength);
  std::memcpy(dst + 1, src, length);
  dst[0] = static_cast<unsigned char>(length);
}

void XP_PToCStrCopy(const unsigned char* src, char* dst) {
  std::memcpy(dst, src + 1, src[0]);
  dst[src[0]] = 0;
}

void XP_PToCStrConcat(const unsigned char* src, char* dst) {
  XP_PToCStrCopy(src, dst + std::strlen(dst));
}

void XP_PStrCopy(const unsigned char* src, unsigned char* dst) {
  std::memcpy(dst, src, src[0] + 1u);
}

void XP_PStrConcat(const unsigned char* src, unsigned char* dst) {
  const unsigned room = kMaxPascalLength - dst[0];
  const unsigned added = src[0] < room ? src[0] : room;
  std::memcpy(dst + 1 + dst[0], src + 1, added);
  dst[0] = static_cast<unsigned char>(dst[0] + added);
}

bool XP_EqualPString(const unsigned char* a, const unsigned char* b) {
  return std::memcmp(a, b, a[0] + 1u) != 0;
}

// Comparing, cutting and editing C strings.

bool XP_EqualCString(const char* a, const char* b, bool caseSensitive) {
  const std::size_t length = std::strlen(a);
  if (length != std::strlen(b)) {
    return false;
  }
  return compareBytes(a, b, length, caseSensitive) == 0;
}

bool XP_IsSameName(char* path, const char* name) {
  XP_RemoveExtension(path);
  const char* lastSeparator = std::strrchr(path, '\\');
  const char* fileName = lastSeparator != nullptr ? lastSeparator + 1 : path;
  return XP_EqualCString(fileName, name, false);
}

void XP_RemoveExtension(char* s) {
  for (std::size_t i = std::strlen(s); i > 1; --i) {
    if (s[i - 1] == '.') {
      s[i - 1] = 0;
      return;
    }
  }
}

void XP_GetExtensionFromFullPathUNI(const unsigned short* path, unsigned short* ext) {
  const unsigned short* afterDot = nullptr;
  for (const unsigned short* p = path; *p != 0; ++p) {
    if (*p == '.') {
      afterDot = p + 1;
    }
  }
  if (afterDot == nullptr) {
    ext[0] = 0;
    return;
  }
  XP_CToCStrCopyUni(afterDot, ext);
}

void XP_ReplaceChars(char* s, char from, char to) {
  for (; *s != 0; ++s) {
    if (*s == from) {
      *s = to;
    }
  }
}

void XP_TrimLeftSpaces(char* s) {
  const std::size_t blanks = std::strspn(s, " ");
  std::memmove(s, s + blanks, std::strlen(s + blanks) + 1);
}

void XP_TrimWhiteSpaces(char* s) {
  std::size_t start = 0;
  while (s[start] != 0 && isCSpace(s[start])) {
    ++start;
  }
  std::size_t end = std::strlen(s);
  while (end > start && isCSpace(s[end - 1])) {
    --end;
  }
  std::memmove(s, s + start, end - start);
  s[end - start] = 0;
}

// Byte blocks.

short XP_Memcmp(const char* a, const char* b, long n, bool caseSensitive) {
  return n < 1 ? 0 : compareBytes(a, b, static_cast<unsigned long>(n), caseSensitive);
}

short XP_MemcmpU(const char* a, const char* b, unsigned long n, bool caseSensitive) {
  return compareBytes(a, b, n, caseSensitive);
}

short XP_MemcmpUniU(const unsigned short* a, const unsigned short* b, unsigned long n, bool caseSensitive) {
  if (caseSensitive) {
    return compareUnits(a, b, n, [](unsigned short u) { return u; });
  }
  return compareUnits(a, b, n, XP_tolowerUniSimple);
}

char XP_tolower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}

unsigned short XP_tolowerUniSimple(unsigned short c) {
  return c >= 'A' && c <= 'Z' ? static_cast<unsigned short>(c + ('a' - 'A')) : c;
}

long XP_Position(const char* text, long textLen, const char* pattern, long patternLen, long start,
                 long occurrence, bool caseSensitive) {
  if (patternLen < 1 || occurrence < 1) {
    return -1;
  }
  long found = 0;
  for (long i = start < 0 ? 0 : start; i <= textLen - patternLen; ++i) {
    if (bytesMatch(text + i, pattern, patternLen, caseSensitive) && ++found == occurrence) {
      return i;
    }
  }
  return -1;
}

bool XP_BlockHasString(const char* block, long blockLen, long offset, const char* s, bool caseSensitive) {
  return XP_Position(block, blockLen, s, XP_Strlen(s), offset, 1, caseSensitive) >= 0;
}

short XP_BlockToCString(const void* block, long len, char* dst, long dstSize) {
  if (len >= dstSize) {
    if (dstSize > 0) {
      dst[0] = 0;
    }
    return kXP_BufferTooSmall;
  }
  XP_BlockMoveData(block, dst, len);
  dst[len < 1 ? 0 : len] = 0;
  return 0;
}

void XP_BlockMoveData(const void* src, void* dst, long n) {
  if (n > 0) {
    std::memmove(dst, src, static_cast<std::size_t>(n));
  }
}

void XP_BlockMoveDataU(const void* src, void* dst, unsigned long n) {
  std::memmove(dst, src, n);
}

// Line ends.

long XP_CRLFToCR(char* buffer, long* length) {
  long write = 0;
  for (long read = 0; read < *length; ++read) {
    const char c = buffer[read];
    buffer[write++] = c;
    if (c == kCR && read + 1 < *length && buffer[read + 1] == kLF) {
      ++read;
    }
  }
  *length = write;
  return write;
}

void XP_CRToCRLF(const char* source, char* destination, long* length, long destinationSize) {
  if (destinationSize < 1 || *length < 1) {
    *length = 0;
    return;
  }
  long write = 0;
  for (long read = 0; read < *length && write < destinationSize; ++read) {
    destination[write++] = source[read];
    // A CR that lands on the last byte of room is written alone rather than dropped.
    if (source[read] == kCR && write < destinationSize) {
      destination[write++] = kLF;
    }
  }
  *length = write;
}

// Numbers and text.

void XP_NumToStr(long n, unsigned char* out) {
  char digits[24];
  formatInto(digits, "%ld", n);
  XP_CToPStrCopy(digits, out);
}

void XP_NumToCString(long n, char* out) {
  formatInto(out, "%ld", n);
}

void XP_SInt32ToCString(std::int32_t n, char* out) {
  formatInto(out, "%d", static_cast<int>(n));
}

void XP_UInt32ToCString(std::uint32_t n, char* out) {
  formatInto(out, "%u", static_cast<unsigned>(n));
}

void XP_UInt64ToCString(std::uint64_t n, char* out) {
  formatInto(out, "%llu", static_cast<unsigned long long>(n));
}

void XP_doubleToCString(double d, char* out) {
  formatInto(out, "%f", d);
}

void XP_longdoubleToCString(long double d, char* out) {
  formatInto(out, "%Lf", d);
}

long XP_CStringToNum(const char* s) {
  return std::strtol(s, nullptr, 10);
}

std::int32_t XP_CStringToSInt32(const char* s) {
  return static_cast<std::int32_t>(std::strtol(s, nullptr, 10));
}

std::uint32_t XP_CStringToUInt32(const char* s) {
  return static_cast<std::uint32_t>(std::strtoul(s, nullptr, 10));
}

double XP_CStringToDouble(const char* s) {
  return std::strtod(s, nullptr);
}

float XP_CStringToFloat(const char* s) {
  return std::strtof(s, nullptr);
}

short XP_ASCIINumStrToChar(const char* s, unsigned char* out) {
  if (s[0] == 0) {
    return -1;
  }
  *out = static_cast<unsigned char>(std::strtol(s, nullptr, 10));
  return 0;
}

// Byte order.

short XP7_ShortToBigEndian(short n) {
  return kLittleEndian ? static_cast<short>(swap16(static_cast<std::uint16_t>(n))) : n;
}

std::uint32_t XP7_UInt32ToBigEndian(std::uint32_t n) {
  return kLittleEndian ? swap32(n) : n;
}

std::uint32_t XP7_UInt32ToLittleEndian(std::uint32_t n) {
  return kLittleEndian ? n : swap32(n);
}

std::int32_t XP7_SInt32ToLittleEndian(std::int32_t n) {
  return static_cast<std::int32_t>(XP7_UInt32ToLittleEndian(static_cast<std::uint32_t>(n)));
}

std::uint16_t XP7_UInt16ToLittleEndian(std::uint16_t n) {
  return kLittleEndian ? n : swap16(n);
}

// Ticks and the start-up counter.

std::uint32_t XP_TickCount() {
  return TickCount();
}

void XP_Delay(long ticks) {
  // A negative count would read as billions of ticks through Delay's unsigned parameter.
  if (ticks < 1) {
    return;
  }
  unsigned long finalTicks = 0;
  Delay(static_cast<unsigned long>(ticks), &finalTicks);
}

void XP_IncrStartupCount() {
  ++gXP_StartupCount;
}

std::int32_t XP_GetStartupCount() {
  return gXP_StartupCount;
}
