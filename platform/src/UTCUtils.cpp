// Catalog dates (UTCDateTime, 1/65536 s since 1904 UTC) and Mac seconds (local wall-clock
// seconds since 1904) to and from absolute time. Wall-clock readings go through the
// system time zone of CFTimeZone, so that they agree with the Gregorian dates CoreFoundation
// gives for the same zone.
#include "CFObject.h"

#include <CoreFoundation/CFDate.h>
#include <CoreFoundation/CFTimeZone.h>
#include <CoreServices/MacErrors.h>
#include <CoreServices/UTCUtils.h>

#include <cmath>
#include <cstdint>

namespace {

constexpr double kFractionsPerSecond = 65536.0;
// 2^48 seconds of 2^16 fractions: what highSeconds, lowSeconds and fraction hold.
constexpr double kFractionsLimit = 18446744073709551616.0;
constexpr double kMacSecondsLimit = 4294967296.0;

}  // namespace

extern "C" {

OSStatus UCConvertUTCDateTimeToCFAbsoluteTime(const UTCDateTime* iUTCDate, CFAbsoluteTime* oCFTime) {
  if (iUTCDate == nullptr || oCFTime == nullptr) return paramErr;
  const std::uint64_t seconds = static_cast<std::uint64_t>(iUTCDate->highSeconds) << 32 | iUTCDate->lowSeconds;
  // Exact: 48 bits of seconds and 16 of fraction fit a double's mantissa.
  *oCFTime = static_cast<double>(seconds) + iUTCDate->fraction / kFractionsPerSecond - kCFAbsoluteTimeIntervalSince1904;
  return noErr;
}

OSStatus UCConvertCFAbsoluteTimeToUTCDateTime(CFAbsoluteTime iCFTime, UTCDateTime* oUTCDate) {
  if (oUTCDate == nullptr || std::isnan(iCFTime)) return paramErr;
  const double fractions = std::floor((iCFTime + kCFAbsoluteTimeIntervalSince1904) * kFractionsPerSecond);
  if (fractions < 0) return kUTCUnderflowErr;
  if (fractions >= kFractionsLimit) return kUTCOverflowErr;
  const auto all = static_cast<std::uint64_t>(fractions);
  oUTCDate->highSeconds = static_cast<UInt16>(all >> 48);
  oUTCDate->lowSeconds = static_cast<UInt32>(all >> 16);
  oUTCDate->fraction = static_cast<UInt16>(all);
  return noErr;
}

OSStatus UCConvertSecondsToCFAbsoluteTime(UInt32 iSeconds, CFAbsoluteTime* oCFTime) {
  if (oCFTime == nullptr) return paramErr;
  // The wall-clock fields the seconds count up to, read as if in UTC, then placed in the
  // system zone.
  const CFGregorianDate wallClock =
      CFAbsoluteTimeGetGregorianDate(iSeconds - kCFAbsoluteTimeIntervalSince1904, nullptr);
  const xpcf::Owned<CFTimeZoneRef> zone(CFTimeZoneCopySystem());
  *oCFTime = CFGregorianDateGetAbsoluteTime(wallClock, zone.get());
  return noErr;
}

OSStatus UCConvertCFAbsoluteTimeToSeconds(CFAbsoluteTime iCFTime, UInt32* oSeconds) {
  if (oSeconds == nullptr || std::isnan(iCFTime)) return paramErr;
  const xpcf::Owned<CFTimeZoneRef> zone(CFTimeZoneCopySystem());
  const double seconds =
      std::floor(iCFTime + CFTimeZoneGetSecondsFromGMT(zone.get(), iCFTime) + kCFAbsoluteTimeIntervalSince1904);
  if (seconds < 0) return kUTCUnderflowErr;
  if (seconds >= kMacSecondsLimit) return kUTCOverflowErr;
  *oSeconds = static_cast<UInt32>(seconds);
  return noErr;
}

}  // extern "C"
