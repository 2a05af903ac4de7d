// CFDate and absolute time: the clock, date objects and proleptic Gregorian wall-clock dates.
#include <CoreFoundation/CFDate.h>
#include <CoreFoundation/CFTimeZone.h>

#include "CFObject.h"

#include <cmath>
#include <cstdint>
#include <ctime>
#include <functional>

struct __CFDate : xpcf::Object {
  explicit __CFDate(CFAbsoluteTime at) : Object(xpcf::kDateType), at(at) {}
  bool equals(const Object& other) const override { return at == static_cast<const __CFDate&>(other).at; }
  CFHashCode hash() const override { return std::hash<double>()(at); }

  const CFAbsoluteTime at;
};

const CFTimeInterval kCFAbsoluteTimeIntervalSince1970 = 978307200.0;
const CFTimeInterval kCFAbsoluteTimeIntervalSince1904 = 3061152000.0;

namespace {

constexpr double kSecondsPerDay = 86400;
// About the span of the 32-bit years of CFGregorianDate.
constexpr double kLargestTime = 6.7e16;

// Days since 1970-01-01 of a proleptic Gregorian date, and back (H. Hinnant's algorithms:
// exact over the whole range of a 32-bit year).
std::int64_t daysFromCivil(std::int64_t year, std::int64_t month, std::int64_t day) {
  year -= month <= 2 ? 1 : 0;
  const std::int64_t era = (year >= 0 ? year : year - 399) / 400;
  const std::int64_t yearOfEra = year - era * 400;
  const std::int64_t dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
  const std::int64_t dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
  return era * 146097 + dayOfEra - 719468;
}

void civilFromDays(std::int64_t days, std::int64_t& year, int& month, int& day) {
  days += 719468;
  const std::int64_t era = (days >= 0 ? days : days - 146096) / 146097;
  const std::int64_t dayOfEra = days - era * 146097;
  const std::int64_t yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
  const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  const std::int64_t monthIndex = (5 * dayOfYear + 2) / 153;
  day = static_cast<int>(dayOfYear - (153 * monthIndex + 2) / 5 + 1);
  month = static_cast<int>(monthIndex < 10 ? monthIndex + 3 : monthIndex - 9);
  year = yearOfEra + era * 400 + (month <= 2 ? 1 : 0);
}

const std::int64_t kReferenceDay = daysFromCivil(2001, 1, 1);

// A NULL zone is GMT, as Apple's calendar calls read it.
double offsetAt(CFTimeZoneRef tz, CFAbsoluteTime at) {
  return tz != nullptr ? CFTimeZoneGetSecondsFromGMT(tz, at) : 0;
}

}  // namespace

extern "C" CFAbsoluteTime CFAbsoluteTimeGetCurrent(void) {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  return static_cast<double>(now.tv_sec) - kCFAbsoluteTimeIntervalSince1970 + now.tv_nsec / 1e9;
}

extern "C" CFTypeID CFDateGetTypeID(void) {
  return xpcf::kDateType;
}

extern "C" CFDateRef CFDateCreate(CFAllocatorRef, CFAbsoluteTime at) {
  return new __CFDate(at);
}

extern "C" CFAbsoluteTime CFDateGetAbsoluteTime(CFDateRef theDate) {
  const __CFDate* date = xpcf::cast<__CFDate>(theDate, xpcf::kDateType);
  return date != nullptr ? date->at : 0;
}

extern "C" CFGregorianDate CFAbsoluteTimeGetGregorianDate(CFAbsoluteTime at, CFTimeZoneRef tz) {
  const double local = at + offsetAt(tz, at);
  // Beyond the years a CFGregorianDate holds there is no date to give.
  if (!(std::fabs(local) < kLargestTime)) return CFGregorianDate{};
  const double days = std::floor(local / kSecondsPerDay);
  double seconds = local - days * kSecondsPerDay;
  std::int64_t year = 0;
  int month = 0;
  int day = 0;
  civilFromDays(static_cast<std::int64_t>(days) + kReferenceDay, year, month, day);
  CFGregorianDate date{};
  date.year = static_cast<SInt32>(year);
  date.month = static_cast<SInt8>(month);
  date.day = static_cast<SInt8>(day);
  const int hour = static_cast<int>(seconds / 3600);
  seconds -= hour * 3600;
  const int minute = static_cast<int>(seconds / 60);
  date.hour = static_cast<SInt8>(hour);
  date.minute = static_cast<SInt8>(minute);
  date.second = seconds - minute * 60;
  return date;
}

extern "C" CFAbsoluteTime CFGregorianDateGetAbsoluteTime(CFGregorianDate gdate, CFTimeZoneRef tz) {
  // Months outside 1-12 carry into the year; the other fields carry by plain addition.
  const std::int64_t monthIndex = static_cast<std::int64_t>(gdate.month) - 1;
  const std::int64_t yearCarry = monthIndex >= 0 ? monthIndex / 12 : (monthIndex - 11) / 12;
  const std::int64_t days = daysFromCivil(gdate.year + yearCarry, monthIndex - yearCarry * 12 + 1, 1) -
                            kReferenceDay + gdate.day - 1;
  const double local = static_cast<double>(days) * kSecondsPerDay + gdate.hour * 3600.0 + gdate.minute * 60.0 +
                       gdate.second;
  // The offsets a day before and after are the only candidates (zones change at most once
  // a day); one fits when the zone really has it at the time it gives. A repeated wall time
  // fits both and takes the later time; a skipped one fits neither and keeps the offset
  // from before the change, so that 02:30 on the night clocks go from 02:00 to 03:00 is 03:30.
  const double before = offsetAt(tz, local - kSecondsPerDay);
  const double after = offsetAt(tz, local + kSecondsPerDay);
  const bool afterFits = offsetAt(tz, local - after) == after;
  const bool beforeFits = offsetAt(tz, local - before) == before;
  if (afterFits && (!beforeFits || local - after > local - before)) return local - after;
  return local - before;
}
