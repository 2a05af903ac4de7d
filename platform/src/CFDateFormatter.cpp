// CFDateFormatter: ICU date formats in a locale's styles and the system time zone.
#include <CoreFoundation/CFDateFormatter.h>
#include <CoreFoundation/CFTimeZone.h>

#include "CFObject.h"
#include "CFStringInternal.h"
#include "ICUHandles.h"

#include <mutex>
#include <optional>

struct __CFDateFormatter : xpcf::Object {
  __CFDateFormatter(xpcf::DateFormatHandle format, CFStringRef pattern)
      : Object(xpcf::kDateFormatterType), format(std::move(format)), pattern(pattern) {}

  // ICU's formats keep state while formatting, so one format serves one thread at a time.
  std::mutex mutex;
  const xpcf::DateFormatHandle format;
  const xpcf::Owned<CFStringRef> pattern;
};

namespace {

std::optional<UDateFormatStyle> icuStyle(CFDateFormatterStyle style) {
  switch (style) {
    case kCFDateFormatterNoStyle: return UDAT_NONE;
    case kCFDateFormatterShortStyle: return UDAT_SHORT;
    case kCFDateFormatterMediumStyle: return UDAT_MEDIUM;
    case kCFDateFormatterLongStyle: return UDAT_LONG;
    case kCFDateFormatterFullStyle: return UDAT_FULL;
    default: return std::nullopt;
  }
}

const UChar* icuChars(const std::u16string& text) {
  return reinterpret_cast<const UChar*>(text.c_str());
}

// Runs an ICU call that fills a UChar buffer, sizing the buffer with a first call.
template <class Fill>
std::optional<std::u16string> icuText(Fill fill) {
  UErrorCode status = U_ZERO_ERROR;
  const int32_t length = fill(nullptr, 0, &status);
  if (status != U_BUFFER_OVERFLOW_ERROR && U_FAILURE(status)) return std::nullopt;
  std::u16string text(static_cast<size_t>(length), u'\0');
  status = U_ZERO_ERROR;
  fill(reinterpret_cast<UChar*>(text.data()), length, &status);
  if (U_FAILURE(status)) return std::nullopt;
  return text;
}

}  // namespace

extern "C" CFTypeID CFDateFormatterGetTypeID(void) {
  return xpcf::kDateFormatterType;
}

extern "C" CFDateFormatterRef CFDateFormatterCreate(CFAllocatorRef, CFLocaleRef locale, CFDateFormatterStyle dateStyle,
                                                    CFDateFormatterStyle timeStyle) {
  const auto dateFormat = icuStyle(dateStyle);
  const auto timeFormat = icuStyle(timeStyle);
  if (!dateFormat || !timeFormat) return nullptr;
  // Apple's NULL locale is the system locale, which formats as ICU's root locale does.
  const std::string localeID = locale != nullptr ? xpcf::utf8Of(CFLocaleGetIdentifier(locale)).value_or("") : "root";
  if (localeID.empty()) return nullptr;
  const xpcf::Owned<CFTimeZoneRef> zone(CFTimeZoneCopySystem());
  const std::u16string* zoneID = xpcf::charsOf(CFTimeZoneGetName(zone.get()));
  if (zoneID == nullptr) return nullptr;

  UErrorCode status = U_ZERO_ERROR;
  xpcf::DateFormatHandle format;
  if (*dateFormat == UDAT_NONE && *timeFormat == UDAT_NONE) {
    // ICU has no format without both parts; Apple's gives empty text, as an empty pattern does.
    format.reset(udat_open(UDAT_PATTERN, UDAT_PATTERN, localeID.c_str(), icuChars(*zoneID),
                           static_cast<int32_t>(zoneID->size()), u"", 0, &status));
  } else {
    format.reset(udat_open(*timeFormat, *dateFormat, localeID.c_str(), icuChars(*zoneID),
                           static_cast<int32_t>(zoneID->size()), nullptr, 0, &status));
  }
  if (U_FAILURE(status) || !format) return nullptr;
  const auto pattern = icuText([&](UChar* buffer, int32_t capacity, UErrorCode* error) {
    return udat_toPattern(format.get(), false, buffer, capacity, error);
  });
  if (!pattern) return nullptr;
  return new __CFDateFormatter(std::move(format), xpcf::makeString(*pattern));
}

extern "C" CFStringRef CFDateFormatterGetFormat(CFDateFormatterRef formatter) {
  const __CFDateFormatter* object = xpcf::cast<__CFDateFormatter>(formatter, xpcf::kDateFormatterType);
  return object != nullptr ? object->pattern.get() : nullptr;
}

extern "C" CFStringRef CFDateFormatterCreateStringWithAbsoluteTime(CFAllocatorRef, CFDateFormatterRef formatter,
                                                                   CFAbsoluteTime at) {
  __CFDateFormatter* object = xpcf::cast<__CFDateFormatter>(formatter, xpcf::kDateFormatterType);
  if (object == nullptr) return nullptr;
  const UDate date = (at + kCFAbsoluteTimeIntervalSince1970) * 1000.0;
  const std::lock_guard<std::mutex> lock(object->mutex);
  const auto text = icuText([&](UChar* buffer, int32_t capacity, UErrorCode* error) {
    return udat_format(object->format.get(), date, buffer, capacity, nullptr, error);
  });
  return text ? xpcf::makeString(*text) : nullptr;
}

extern "C" CFStringRef CFDateFormatterCreateStringWithDate(CFAllocatorRef allocator, CFDateFormatterRef formatter,
                                                           CFDateRef date) {
  if (xpcf::cast<xpcf::Object>(date, CFDateGetTypeID()) == nullptr) return nullptr;
  return CFDateFormatterCreateStringWithAbsoluteTime(allocator, formatter, CFDateGetAbsoluteTime(date));
}
