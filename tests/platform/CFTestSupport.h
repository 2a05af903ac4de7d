// Helpers of the CoreFoundation tests: owning references and reading strings as UTF-8.
#ifndef XPTESTS_PLATFORM_CFTESTSUPPORT_H
#define XPTESTS_PLATFORM_CFTESTSUPPORT_H

#include <CoreFoundation/CoreFoundation.h>

#include <memory>
#include <string>
#include <type_traits>

struct CFReleaser {
  void operator()(CFTypeRef ref) const { CFRelease(ref); }
};
template <class Ref>
using CFHolder = std::unique_ptr<std::remove_pointer_t<Ref>, CFReleaser>;

template <class Ref>
CFHolder<Ref> own(Ref ref) {
  return CFHolder<Ref>(ref);
}

// The string's UTF-8 text; "<null>" for a null reference, so that a failure shows as text.
inline std::string utf8(CFStringRef string) {
  if (string == nullptr) return "<null>";
  std::string out(static_cast<size_t>(CFStringGetLength(string)) * 3 + 1, '\0');
  if (!CFStringGetCString(string, out.data(), static_cast<CFIndex>(out.size()), kCFStringEncodingUTF8)) {
    return "<unconvertible>";
  }
  out.resize(out.find('\0'));
  return out;
}

inline CFHolder<CFStringRef> cfstring(const std::string& text) {
  return own(CFStringCreateWithCString(nullptr, text.c_str(), kCFStringEncodingUTF8));
}

#endif
