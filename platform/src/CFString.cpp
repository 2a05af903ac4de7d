// CFString: immutable UTF-16 strings, their creation, contents and comparison.
#include "CFStringInternal.h"

#include <unicode/uchar.h>
#include <unicode/ustring.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <mutex>
#include <unordered_map>

namespace {

bool isAscii(const std::u16string& text) {
  for (const char16_t c : text) {
    if (c >= 0x80) return false;
  }
  return true;
}

std::optional<std::string> asciiCopy(const std::u16string& text) {
  if (!isAscii(text)) return std::nullopt;
  return std::string(text.begin(), text.end());
}

bool validRange(CFRange range, size_t size) {
  return range.location >= 0 && range.length >= 0 &&
         static_cast<size_t>(range.location) <= size &&
         static_cast<size_t>(range.length) <= size - static_cast<size_t>(range.location);
}

// Encodings whose bytes below 0x80 are ASCII, so that an ASCII string is already in them.
bool isAsciiCompatible(CFStringEncoding encoding) {
  switch (encoding) {
    case kCFStringEncodingMacRoman:
    case kCFStringEncodingWindowsLatin1:
    case kCFStringEncodingISOLatin1:
    case kCFStringEncodingASCII:
    case kCFStringEncodingUTF8: return true;
    default: return false;
  }
}

__CFString* stringOf(CFStringRef string) {
  return xpcf::cast<__CFString>(string, xpcf::kStringType);
}

}  // namespace

__CFString::__CFString(std::u16string text)
    : Object(xpcf::kStringType), chars(std::move(text)), ascii(asciiCopy(chars)) {}

bool __CFString::equals(const Object& other) const {
  return chars == static_cast<const __CFString&>(other).chars;
}

CFHashCode __CFString::hash() const {
  CFHashCode hash = 14695981039346656037UL;  // FNV-1a
  for (const char16_t c : chars) {
    hash = (hash ^ c) * 1099511628211UL;
  }
  return hash;
}

namespace xpcf {

CFStringRef makeString(std::u16string text) {
  return new __CFString(std::move(text));
}

CFStringRef makeStringFromUTF8(std::string_view utf8) {
  auto text = decode(utf8, kCFStringEncodingUTF8, false);
  return text ? makeString(std::move(*text)) : nullptr;
}

const std::u16string* charsOf(CFStringRef string) {
  const __CFString* object = stringOf(string);
  return object != nullptr ? &object->chars : nullptr;
}

std::optional<std::string> utf8Of(CFStringRef string) {
  const std::u16string* chars = charsOf(string);
  if (chars == nullptr) return std::nullopt;
  const CFIndex length = static_cast<CFIndex>(chars->size());
  std::string bytes(static_cast<size_t>(length * maxBytesPerUnit(kCFStringEncodingUTF8)), '\0');
  const EncodeResult result = encode(*chars, kCFStringEncodingUTF8, 0, false,
                                     reinterpret_cast<UInt8*>(bytes.data()), static_cast<CFIndex>(bytes.size()));
  if (result.unitsConverted != length) return std::nullopt;
  bytes.resize(static_cast<size_t>(result.bytesUsed));
  return bytes;
}

}  // namespace xpcf

extern "C" CFStringRef XPCFStringMakeConstantString(const char* cStr) {
  // One immortal object per text, as Apple's compiler-made constants are unique per text.
  // The table is never destroyed, so that constants stay valid while the process exits.
  struct Constants {
    std::mutex mutex;
    std::unordered_map<std::string, CFStringRef> strings;
  };
  static Constants* const constants = new Constants;
  if (cStr == nullptr) return nullptr;
  const std::lock_guard<std::mutex> lock(constants->mutex);
  auto found = constants->strings.find(cStr);
  if (found != constants->strings.end()) return found->second;
  auto text = xpcf::decode(cStr, kCFStringEncodingUTF8, false);
  if (!text) return nullptr;
  auto* string = new __CFString(std::move(*text));
  string->makeImmortal();
  constants->strings.emplace(cStr, string);
  return string;
}

extern "C" CFTypeID CFStringGetTypeID(void) {
  return xpcf::kStringType;
}

extern "C" CFStringRef CFStringCreateWithCString(CFAllocatorRef, const char* cStr, CFStringEncoding encoding) {
  if (cStr == nullptr) return nullptr;
  auto text = xpcf::decode(std::string_view(cStr, std::strlen(cStr)), encoding, false);
  return text ? xpcf::makeString(std::move(*text)) : nullptr;
}

extern "C" CFStringRef CFStringCreateWithBytes(CFAllocatorRef, const UInt8* bytes, CFIndex numBytes,
                                               CFStringEncoding encoding, Boolean isExternalRepresentation) {
  if (numBytes < 0 || (bytes == nullptr && numBytes > 0)) return nullptr;
  const std::string_view view(reinterpret_cast<const char*>(bytes), static_cast<size_t>(numBytes));
  auto text = xpcf::decode(view, encoding, isExternalRepresentation != 0);
  return text ? xpcf::makeString(std::move(*text)) : nullptr;
}

extern "C" CFStringRef CFStringCreateWithCharacters(CFAllocatorRef, const UniChar* chars, CFIndex numChars) {
  if (numChars < 0 || (chars == nullptr && numChars > 0)) return nullptr;
  if (numChars == 0) return xpcf::makeString(std::u16string());
  return xpcf::makeString(std::u16string(reinterpret_cast<const char16_t*>(chars), static_cast<size_t>(numChars)));
}

extern "C" CFStringRef CFStringCreateCopy(CFAllocatorRef, CFStringRef theString) {
  return stringOf(theString) != nullptr ? xpcf::retained(theString) : nullptr;
}

extern "C" CFIndex CFStringGetLength(CFStringRef theString) {
  const std::u16string* chars = xpcf::charsOf(theString);
  return chars != nullptr ? static_cast<CFIndex>(chars->size()) : 0;
}

extern "C" UniChar CFStringGetCharacterAtIndex(CFStringRef theString, CFIndex idx) {
  const std::u16string* chars = xpcf::charsOf(theString);
  if (chars == nullptr || idx < 0 || static_cast<size_t>(idx) >= chars->size()) return 0;
  return (*chars)[static_cast<size_t>(idx)];
}

extern "C" void CFStringGetCharacters(CFStringRef theString, CFRange range, UniChar* buffer) {
  const std::u16string* chars = xpcf::charsOf(theString);
  if (chars == nullptr || buffer == nullptr || !validRange(range, chars->size())) return;
  std::copy_n(chars->begin() + range.location, range.length, buffer);
}

extern "C" Boolean CFStringGetCString(CFStringRef theString, char* buffer, CFIndex bufferSize,
                                      CFStringEncoding encoding) {
  const std::u16string* chars = xpcf::charsOf(theString);
  if (chars == nullptr || buffer == nullptr || bufferSize <= 0) return false;
  const xpcf::EncodeResult result =
      xpcf::encode(*chars, encoding, 0, false, reinterpret_cast<UInt8*>(buffer), bufferSize - 1);
  if (result.unitsConverted != static_cast<CFIndex>(chars->size())) return false;
  buffer[result.bytesUsed] = '\0';
  return true;
}

extern "C" const char* CFStringGetCStringPtr(CFStringRef theString, CFStringEncoding encoding) {
  const __CFString* string = stringOf(theString);
  if (string == nullptr || !string->ascii || !isAsciiCompatible(encoding)) return nullptr;
  return string->ascii->c_str();
}

extern "C" CFIndex CFStringGetBytes(CFStringRef theString, CFRange range, CFStringEncoding encoding, UInt8 lossByte,
                                    Boolean isExternalRepresentation, UInt8* buffer, CFIndex maxBufLen,
                                    CFIndex* usedBufLen) {
  const std::u16string* chars = xpcf::charsOf(theString);
  xpcf::EncodeResult result;
  if (chars != nullptr && validRange(range, chars->size())) {
    const std::u16string_view part =
        std::u16string_view(*chars).substr(static_cast<size_t>(range.location), static_cast<size_t>(range.length));
    result = xpcf::encode(part, encoding, lossByte, isExternalRepresentation != 0, buffer, maxBufLen);
  }
  if (usedBufLen != nullptr) *usedBufLen = result.bytesUsed;
  return result.unitsConverted;
}

extern "C" CFIndex CFStringGetMaximumSizeForEncoding(CFIndex length, CFStringEncoding encoding) {
  const CFIndex perUnit = xpcf::maxBytesPerUnit(encoding);
  if (perUnit == 0 || length < 0 || length > LONG_MAX / perUnit) return kCFNotFound;
  return length * perUnit;
}

extern "C" CFStringEncoding CFStringGetSystemEncoding(void) {
  return kCFStringEncodingMacRoman;
}

extern "C" Boolean CFStringIsEncodingAvailable(CFStringEncoding encoding) {
  return xpcf::isEncodingAvailable(encoding);
}

extern "C" CFComparisonResult CFStringCompare(CFStringRef theString1, CFStringRef theString2,
                                              CFStringCompareFlags compareOptions) {
  const std::u16string* a = xpcf::charsOf(theString1);
  const std::u16string* b = xpcf::charsOf(theString2);
  // Apple requires two strings; a missing one sorts first rather than crashing.
  if (a == nullptr || b == nullptr) {
    return a == b ? kCFCompareEqualTo : (a == nullptr ? kCFCompareLessThan : kCFCompareGreaterThan);
  }
  int order = 0;
  if ((compareOptions & kCFCompareCaseInsensitive) != 0) {
    UErrorCode status = U_ZERO_ERROR;
    order = u_strCaseCompare(a->data(), static_cast<int32_t>(a->size()), b->data(), static_cast<int32_t>(b->size()),
                             U_FOLD_CASE_DEFAULT, &status);
  } else {
    order = a->compare(*b);
  }
  return order < 0 ? kCFCompareLessThan : (order > 0 ? kCFCompareGreaterThan : kCFCompareEqualTo);
}
