// Localized messages from a bundle's string tables, and CFStrings to and from host
// text, UTF-16 strings and C strings.
#include "text/PlatformStrings.h"

#include <algorithm>
#include <vector>

#include "text/CFRef.h"
#include "text/ResultCodes.h"

namespace {

// Message 131 is an alias of message 1 in every strings table the plug-in ships.
constexpr unsigned int kAliasMessageID = 131;
constexpr unsigned int kAliasedMessageID = 1;
constexpr int kMessageBufferUnits = 1024;

constexpr CFIndex kMaxCStrBytes = 32767;
constexpr UInt8 kLossByte = 255;

unsigned int ResolveMessageID(unsigned int id) { return id == kAliasMessageID ? kAliasedMessageID : id; }

}  // namespace

int VnSub_OSXLoadString(CFBundleRef bundle, const char* table, const char* keyFormat, unsigned int id,
                        unsigned short* out, int outSize) {
  if (out == nullptr || outSize < 2) return 0;
  CFRef<CFStringRef> format(CFStringCreateWithCString(kCFAllocatorDefault, keyFormat, kCFStringEncodingMacRoman));
  CFRef<CFStringRef> tableName(CFStringCreateWithCString(kCFAllocatorDefault, table, kCFStringEncodingMacRoman));
  CFRef<CFStringRef> key(CFStringCreateWithFormat(kCFAllocatorDefault, nullptr, format.get(), id));
  // With the key as the fallback value, a missing entry comes back as that very object;
  // comparing texts instead would take a message that equals its key for a missing one.
  CFRef<CFStringRef> message(CFBundleCopyLocalizedString(bundle, key.get(), key.get(), tableName.get()));
  if (!message || message.get() == key.get()) return 0;
  CFIndex length = CFStringGetLength(message.get());
  // A message that would fill the buffer to its last unit is refused rather than cut:
  // callers size their buffers for the longest message they expect.
  if (length >= outSize - 1) return 0;
  CFStringGetCharacters(message.get(), CFRangeMake(0, length), reinterpret_cast<UniChar*>(out));
  out[length] = 0;
  return static_cast<int>(length);
}

int XP7_Do_GetStringUni(unsigned long bundle, const char* table, const char* keyFormat, unsigned int id,
                        unsigned int /*ignored*/, int outSize, unsigned short* out) {
  return VnSub_OSXLoadString(reinterpret_cast<CFBundleRef>(bundle), table, keyFormat, ResolveMessageID(id), out,
                             outSize);
}

int XP7_Do_GetString(unsigned long bundle, const char* table, const char* keyFormat, unsigned int id,
                     fmx::TextAutoPtr& out, bool cutAtParenthesis) {
  unsigned short buffer[kMessageBufferUnits] = {0};
  VnSub_OSXLoadString(reinterpret_cast<CFBundleRef>(bundle), table, keyFormat, ResolveMessageID(id), buffer,
                      kMessageBufferUnits);
  out->AssignUnicode(buffer);
  if (cutAtParenthesis) {
    fmx::TextAutoPtr parenthesis;
    parenthesis->Assign("(", fmx::Text::kEncoding_ASCII_Mac);
    uint32_t at = out->Find(*parenthesis, 0);
    if (at != 0xFFFFFFFF) out->DeleteText(at);
  }
  return 0;
}

int XP7_TxtToCFStringRef(fmx::TextAutoPtr& text, CFStringRef& out) {
  out = nullptr;
  uint32_t size = text->GetSize();
  std::vector<unsigned short> units(size + 1);
  text->GetUnicode(units.data(), 0, size);
  out = CFStringCreateWithCharacters(kCFAllocatorDefault, reinterpret_cast<const UniChar*>(units.data()), size);
  return out == nullptr ? kXP_MemFull : 0;
}

int XP7_CFStringRefToTxt(CFStringRef s, fmx::TextAutoPtr& out) {
  if (s == nullptr) return kXP_NullString;
  CFIndex length = CFStringGetLength(s);
  std::vector<unsigned short> units(length + 2);
  CFStringGetCharacters(s, CFRangeMake(0, length), reinterpret_cast<UniChar*>(units.data()));
  out->AssignUnicodeWithLength(units.data(), static_cast<uint32_t>(length));
  return 0;
}

int XP7_CStrToCFStringRef(const char* s, CFStringRef& out, unsigned int encoding) {
  out = CFStringCreateWithCString(kCFAllocatorDefault, s, static_cast<CFStringEncoding>(encoding));
  return out == nullptr ? kXP_ParamErr : 0;
}

int XP7_UniStrToCFStringRef(unsigned short* s, CFStringRef& out) {
  unsigned int count = 0;
  while (s[count] != 0) ++count;
  return XP7_UniBlockToCFStringRef(s, count, out);
}

int XP7_UniBlockToCFStringRef(unsigned short* s, unsigned int count, CFStringRef& out) {
  out = CFStringCreateWithCharacters(kCFAllocatorDefault, reinterpret_cast<const UniChar*>(s), count);
  return out == nullptr ? kXP_MemFull : 0;
}

int XP7_CFStringRefToUniStr(CFStringRef s, unsigned short* out, unsigned int max) {
  out[0] = 0;
  if (s == nullptr) return 0;
  CFIndex count = std::min<CFIndex>(CFStringGetLength(s), max);
  CFStringGetCharacters(s, CFRangeMake(0, count), reinterpret_cast<UniChar*>(out));
  out[count] = 0;
  return 0;
}

char* XP7_CFStringRefToCStr(CFStringRef s) {
  if (s == nullptr) return nullptr;
  CFIndex length = CFStringGetLength(s);
  if (length == 0) return new char[2]{0, 0};
  CFRange whole = CFRangeMake(0, length);
  CFIndex needed = 0;
  CFStringGetBytes(s, whole, kCFStringEncodingUTF8, kLossByte, false, nullptr, kMaxCStrBytes, &needed);
  if (needed == 0) return nullptr;
  char* bytes = new char[needed + 2];
  CFIndex written = 0;
  CFStringGetBytes(s, whole, kCFStringEncodingUTF8, kLossByte, false, reinterpret_cast<UInt8*>(bytes), needed,
                   &written);
  bytes[written] = 0;
  return bytes;
}

void XP7_InitCursor() {}
