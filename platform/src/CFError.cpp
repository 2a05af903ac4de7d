// CFError: a domain, a code and, for the errors made here, a description.
#include <CoreFoundation/CFError.h>

#include "CFErrorInternal.h"
#include "CFStringInternal.h"

struct __CFError : xpcf::Object {
  __CFError(CFErrorDomain domain, CFIndex code, CFStringRef description)
      : Object(xpcf::kErrorType), domain(xpcf::retained(domain)), code(code), description(xpcf::retained(description)) {}
  bool equals(const Object& other) const override {
    const auto& error = static_cast<const __CFError&>(other);
    return code == error.code && CFEqual(domain.get(), error.domain.get());
  }
  CFHashCode hash() const override { return static_cast<CFHashCode>(code); }

  const xpcf::Owned<CFErrorDomain> domain;
  const CFIndex code;
  const xpcf::Owned<CFStringRef> description;
};

const CFErrorDomain kCFErrorDomainPOSIX = CFSTR("NSPOSIXErrorDomain");
const CFErrorDomain kCFErrorDomainOSStatus = CFSTR("NSOSStatusErrorDomain");
const CFErrorDomain kCFErrorDomainMach = CFSTR("NSMachErrorDomain");
const CFErrorDomain kCFErrorDomainCocoa = CFSTR("NSCocoaErrorDomain");

namespace {

__CFError* errorOf(CFErrorRef err) {
  return xpcf::cast<__CFError>(err, xpcf::kErrorType);
}

}  // namespace

namespace xpcf {

CFErrorRef makeError(CFErrorDomain domain, CFIndex code, CFStringRef description) {
  return charsOf(domain) != nullptr ? new __CFError(domain, code, description) : nullptr;
}

}  // namespace xpcf

extern "C" CFTypeID CFErrorGetTypeID(void) {
  return xpcf::kErrorType;
}

extern "C" CFErrorRef CFErrorCreate(CFAllocatorRef, CFErrorDomain domain, CFIndex code, CFDictionaryRef) {
  return xpcf::makeError(domain, code, nullptr);
}

extern "C" CFErrorDomain CFErrorGetDomain(CFErrorRef err) {
  const __CFError* error = errorOf(err);
  return error != nullptr ? error->domain.get() : nullptr;
}

extern "C" CFIndex CFErrorGetCode(CFErrorRef err) {
  const __CFError* error = errorOf(err);
  return error != nullptr ? error->code : 0;
}

extern "C" CFStringRef CFErrorCopyDescription(CFErrorRef err) {
  const __CFError* error = errorOf(err);
  if (error == nullptr) return nullptr;
  if (error->description) return xpcf::retained(error->description.get());
  const std::string domain = xpcf::utf8Of(error->domain.get()).value_or("");
  return xpcf::makeStringFromUTF8("The operation couldn\u2019t be completed. (" + domain + " error " +
                                  std::to_string(error->code) + ".)");
}
