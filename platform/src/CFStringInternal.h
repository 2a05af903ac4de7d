// The string object and its encoding conversions, shared by the CF sources.
#ifndef XPPLATFORM_SRC_CFSTRINGINTERNAL_H
#define XPPLATFORM_SRC_CFSTRINGINTERNAL_H

#include <CoreFoundation/CFString.h>

#include "CFObject.h"

#include <optional>
#include <string>
#include <string_view>

struct __CFString : xpcf::Object {
  explicit __CFString(std::u16string text);
  bool equals(const Object& other) const override;
  CFHashCode hash() const override;

  const std::u16string chars;
  // The ASCII bytes of an all-ASCII string, so that CFStringGetCStringPtr has one to give.
  const std::optional<std::string> ascii;
};

namespace xpcf {

// A new string of `text`.
CFStringRef makeString(std::u16string text);
// A new string of UTF-8 bytes; null when they are not UTF-8.
CFStringRef makeStringFromUTF8(std::string_view utf8);
// The characters of a string; null for anything that is not one.
const std::u16string* charsOf(CFStringRef string);
// The UTF-8 form of a string; nothing for a non-string or one with an unpaired surrogate.
std::optional<std::string> utf8Of(CFStringRef string);

// Decodes bytes in an encoding; nothing when the encoding is not provided or the bytes are
// not valid in it. `external` reads UTF-16 and UTF-32 without a byte order mark as
// big-endian instead of in this machine's order.
std::optional<std::u16string> decode(std::string_view bytes, CFStringEncoding encoding, bool external);

struct EncodeResult {
  CFIndex unitsConverted = 0;
  CFIndex bytesUsed = 0;
};
// Encodes UTF-16 units, whole characters only, as CFStringGetBytes describes; a null
// `buffer` only counts.
EncodeResult encode(std::u16string_view text, CFStringEncoding encoding, UInt8 lossByte, bool external,
                    UInt8* buffer, CFIndex maxBufLen);
bool isEncodingAvailable(CFStringEncoding encoding);
// The most bytes one UTF-16 unit takes; 0 for an encoding that is not provided.
CFIndex maxBytesPerUnit(CFStringEncoding encoding);

}  // namespace xpcf

#endif
