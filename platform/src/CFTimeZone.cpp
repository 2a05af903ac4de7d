// CFTimeZone: zones from ICU's own zone data, and the system zone from TZ or /etc/localtime.
#include <CoreFoundation/CFTimeZone.h>

#include "CFObject.h"
#include "CFStringInternal.h"

#include <unicode/simpletz.h>
#include <unicode/timezone.h>

#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>

struct __CFTimeZone : xpcf::Object {
  explicit __CFTimeZone(std::unique_ptr<icu::TimeZone> zone) : Object(xpcf::kTimeZoneType), zone(std::move(zone)) {
    icu::UnicodeString id;
    this->zone->getID(id);
    name = xpcf::Owned<CFStringRef>(
        xpcf::makeString(std::u16string(reinterpret_cast<const char16_t*>(id.getBuffer()), id.length())));
  }
  bool equals(const Object& other) const override {
    return CFEqual(name.get(), static_cast<const __CFTimeZone&>(other).name.get());
  }
  CFHashCode hash() const override { return CFHash(name.get()); }

  // ICU's zones answer const calls from any thread.
  const std::unique_ptr<const icu::TimeZone> zone;
  xpcf::Owned<CFStringRef> name;
};

namespace {

constexpr double kMillisPerSecond = 1000.0;
// Apple's limit for zones at a fixed offset.
constexpr double kMaxOffsetSeconds = 18 * 3600;

// The zone of an ICU or Olson ID, or null when ICU does not know it.
std::unique_ptr<icu::TimeZone> knownZone(const std::string& id) {
  if (id.empty()) return nullptr;
  std::unique_ptr<icu::TimeZone> zone(icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(id)));
  if (!zone || *zone == icu::TimeZone::getUnknown()) return nullptr;
  return zone;
}

// "/usr/share/zoneinfo/Europe/Berlin" names "Europe/Berlin"; other strings stay as they are.
std::string zoneNameOfPath(const std::string& path) {
  const std::string folder = "zoneinfo/";
  const size_t at = path.rfind(folder);
  return at == std::string::npos ? path : path.substr(at + folder.size());
}

std::unique_ptr<icu::TimeZone> systemZone() {
  if (const char* tz = std::getenv("TZ")) {
    std::string name = tz;
    // POSIX reads an empty TZ as UTC, and a leading ":" as "what follows is a file".
    if (name.empty()) return knownZone("UTC");
    if (name.front() == ':') name.erase(0, 1);
    if (auto zone = knownZone(zoneNameOfPath(name))) return zone;
  } else {
    char link[4096];
    const ssize_t length = readlink("/etc/localtime", link, sizeof link - 1);
    if (length > 0) {
      if (auto zone = knownZone(zoneNameOfPath(std::string(link, static_cast<size_t>(length))))) return zone;
    }
    std::ifstream file("/etc/timezone");
    std::string name;
    if (std::getline(file, name)) {
      if (auto zone = knownZone(name)) return zone;
    }
  }
  // A POSIX rule such as "CET-1CEST,M3.5.0,M10.5.0/3" has no Olson name; ICU reads what it
  // can of it.
  std::unique_ptr<icu::TimeZone> host(icu::TimeZone::detectHostTimeZone());
  if (host && *host != icu::TimeZone::getUnknown()) return host;
  return knownZone("GMT");
}

__CFTimeZone* zoneOf(CFTimeZoneRef tz) {
  return xpcf::cast<__CFTimeZone>(tz, xpcf::kTimeZoneType);
}

UDate icuDate(CFAbsoluteTime at) {
  return (at + kCFAbsoluteTimeIntervalSince1970) * kMillisPerSecond;
}

}  // namespace

extern "C" CFTypeID CFTimeZoneGetTypeID(void) {
  return xpcf::kTimeZoneType;
}

extern "C" CFTimeZoneRef CFTimeZoneCopySystem(void) {
  auto zone = systemZone();
  return zone ? new __CFTimeZone(std::move(zone)) : nullptr;
}

extern "C" CFTimeZoneRef CFTimeZoneCreateWithName(CFAllocatorRef, CFStringRef name, Boolean) {
  const auto id = xpcf::utf8Of(name);
  if (!id) return nullptr;
  auto zone = knownZone(*id);
  return zone ? new __CFTimeZone(std::move(zone)) : nullptr;
}

extern "C" CFTimeZoneRef CFTimeZoneCreateWithTimeIntervalFromGMT(CFAllocatorRef, CFTimeInterval ti) {
  if (!(std::fabs(ti) <= kMaxOffsetSeconds)) return nullptr;
  // Whole minutes, named as Apple names them: "GMT+0130".
  const int minutes = static_cast<int>(std::lround(ti / 60));
  const int magnitude = std::abs(minutes) % (24 * 60);
  char id[16];
  std::snprintf(id, sizeof id, "GMT%c%02d%02d", minutes < 0 ? '-' : '+', magnitude / 60, magnitude % 60);
  auto zone = std::make_unique<icu::SimpleTimeZone>(static_cast<int32_t>(minutes * 60 * 1000),
                                                    icu::UnicodeString(id, -1, US_INV));
  return new __CFTimeZone(std::move(zone));
}

extern "C" CFStringRef CFTimeZoneGetName(CFTimeZoneRef tz) {
  const __CFTimeZone* zone = zoneOf(tz);
  return zone != nullptr ? zone->name.get() : nullptr;
}

extern "C" CFTimeInterval CFTimeZoneGetSecondsFromGMT(CFTimeZoneRef tz, CFAbsoluteTime at) {
  const __CFTimeZone* zone = zoneOf(tz);
  if (zone == nullptr) return 0;
  int32_t raw = 0;
  int32_t dst = 0;
  UErrorCode status = U_ZERO_ERROR;
  zone->zone->getOffset(icuDate(at), false, raw, dst, status);
  return U_SUCCESS(status) ? (raw + dst) / kMillisPerSecond : 0;
}

extern "C" Boolean CFTimeZoneIsDaylightSavingTime(CFTimeZoneRef tz, CFAbsoluteTime at) {
  const __CFTimeZone* zone = zoneOf(tz);
  if (zone == nullptr) return false;
  int32_t raw = 0;
  int32_t dst = 0;
  UErrorCode status = U_ZERO_ERROR;
  zone->zone->getOffset(icuDate(at), false, raw, dst, status);
  return U_SUCCESS(status) && dst != 0;
}
