// CFLocale: locale identifiers, the current one taken from the POSIX locale environment.
#include <CoreFoundation/CFLocale.h>

#include "CFObject.h"
#include "CFStringInternal.h"

#include <unicode/uloc.h>

#include <cstdlib>

struct __CFLocale : xpcf::Object {
  explicit __CFLocale(CFStringRef identifier) : Object(xpcf::kLocaleType), identifier(identifier) {}
  bool equals(const Object& other) const override {
    return CFEqual(identifier.get(), static_cast<const __CFLocale&>(other).identifier.get());
  }
  CFHashCode hash() const override { return CFHash(identifier.get()); }

  const xpcf::Owned<CFStringRef> identifier;
};

namespace {

// ICU's canonical form of an identifier in either notation: "en-US" and "en_US" give "en_US".
std::string canonicalIdentifier(const std::string& identifier) {
  char canonical[ULOC_FULLNAME_CAPACITY];
  UErrorCode status = U_ZERO_ERROR;
  if (identifier.find('-') != std::string::npos) {
    uloc_forLanguageTag(identifier.c_str(), canonical, sizeof canonical, nullptr, &status);
  } else {
    uloc_canonicalize(identifier.c_str(), canonical, sizeof canonical, &status);
  }
  return U_SUCCESS(status) && status != U_STRING_NOT_TERMINATED_WARNING ? canonical : identifier;
}

// "de_DE.UTF-8@euro" names the locale "de_DE"; the C locale is ICU's "en_US_POSIX".
std::string identifierOfPosixLocale(std::string name) {
  name = name.substr(0, name.find_first_of(".@"));
  if (name.empty() || name == "C" || name == "POSIX") return "en_US_POSIX";
  return name;
}

std::string environmentLocale() {
  for (const char* variable : {"LC_ALL", "LC_TIME", "LANG"}) {
    const char* value = std::getenv(variable);
    if (value != nullptr && *value != '\0') return identifierOfPosixLocale(value);
  }
  return identifierOfPosixLocale("C");
}

CFLocaleRef makeLocale(const std::string& identifier) {
  CFStringRef string = xpcf::makeStringFromUTF8(canonicalIdentifier(identifier));
  return string != nullptr ? new __CFLocale(string) : nullptr;
}

}  // namespace

extern "C" CFTypeID CFLocaleGetTypeID(void) {
  return xpcf::kLocaleType;
}

extern "C" CFLocaleRef CFLocaleCopyCurrent(void) {
  return makeLocale(environmentLocale());
}

extern "C" CFLocaleRef CFLocaleCreate(CFAllocatorRef, CFStringRef localeIdentifier) {
  const auto identifier = xpcf::utf8Of(localeIdentifier);
  return identifier ? makeLocale(*identifier) : nullptr;
}

extern "C" CFStringRef CFLocaleGetIdentifier(CFLocaleRef locale) {
  const __CFLocale* object = xpcf::cast<__CFLocale>(locale, xpcf::kLocaleType);
  return object != nullptr ? object->identifier.get() : nullptr;
}
