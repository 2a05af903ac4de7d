// The in-memory host's date-times: a proleptic Gregorian day number (0001-01-01
// is day 1) and the seconds since midnight, scaled like fixed-point numbers.
#include "Internal.h"

using fmx::DateTime;
using fmx::FixPt;
using fmx::HostErrorRecord;

namespace memhost {
namespace {

constexpr Fixed kDay = Fixed(86400) * kScale;
// 1970-01-01 is day 719163: the civil-date arithmetic below counts from there.
constexpr int64_t kUnixEpochDay = 719163;

struct Civil {
  int64_t year;
  int32_t month;
  int32_t day;
};

// Gregorian calendar date of a day count since 1970-01-01, in 400-year eras.
Civil CivilFromDays(int64_t z) {
  z += 719468;
  const int64_t era = (z >= 0 ? z : z - 146096) / 146097;
  const int64_t doe = z - era * 146097;
  const int64_t yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
  const int64_t doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
  const int64_t mp = (5 * doy + 2) / 153;
  const int32_t d = static_cast<int32_t>(doy - (153 * mp + 2) / 5 + 1);
  const int32_t m = static_cast<int32_t>(mp < 10 ? mp + 3 : mp - 9);
  return {yoe + era * 400 + (m <= 2), m, d};
}

Fixed FloorDiv(Fixed a, Fixed b, Fixed& rem) {
  Fixed q = a / b;
  rem = a % b;
  if (rem < 0) {
    rem += b;
    --q;
  }
  return q;
}

Civil DateOf(const DateTime* self) { return CivilFromDays(Impl(self).day - kUnixEpochDay); }

int32_t WholeSecs(const DateTime* self) { return static_cast<int32_t>(Impl(self).secs / kScale); }

}  // namespace

void DateTimeImpl::setTotal(Fixed total) {
  Fixed rem;
  day = static_cast<int64_t>(FloorDiv(total, kDay, rem)) + 1;
  secs = rem;
}

}  // namespace memhost

using namespace memhost;

extern "C" {

DateTime* FM_DateTime_Constructor1(HostErrorRecord& err) {
  return Run("FM_DateTime_Constructor1", err, [] { return static_cast<DateTime*>(Born(new DateTimeImpl)); });
}

void FM_DateTime_Delete(DateTime* self, HostErrorRecord& err) {
  Dies("FM_DateTime_Delete", static_cast<DateTimeImpl*>(self), err);
}

int32_t FM_DateTime_GetYear(const DateTime* self, HostErrorRecord& err) {
  return Run("FM_DateTime_GetYear", err, [&] { return static_cast<int32_t>(DateOf(self).year); });
}

int32_t FM_DateTime_GetMonth(const DateTime* self, HostErrorRecord& err) {
  return Run("FM_DateTime_GetMonth", err, [&] { return DateOf(self).month; });
}

int32_t FM_DateTime_GetDay(const DateTime* self, HostErrorRecord& err) {
  return Run("FM_DateTime_GetDay", err, [&] { return DateOf(self).day; });
}

int32_t FM_DateTime_GetHour(const DateTime* self, HostErrorRecord& err) {
  return Run("FM_DateTime_GetHour", err, [&] { return WholeSecs(self) / 3600; });
}

int32_t FM_DateTime_GetMinute(const DateTime* self, HostErrorRecord& err) {
  return Run("FM_DateTime_GetMinute", err, [&] { return WholeSecs(self) / 60 % 60; });
}

int32_t FM_DateTime_GetSec(const DateTime* self, HostErrorRecord& err) {
  return Run("FM_DateTime_GetSec", err, [&] { return WholeSecs(self) % 60; });
}

int64_t FM_DateTime_GetDaysSinceEpoch(const DateTime* self, HostErrorRecord& err) {
  return Run("FM_DateTime_GetDaysSinceEpoch", err, [&] { return Impl(self).day; });
}

void FM_DateTime_GetSecsSinceMidnight(const DateTime* self, FixPt* result, HostErrorRecord& err) {
  Run("FM_DateTime_GetSecsSinceMidnight", err, [&] { Impl(result).set(Impl(self).secs); });
}

void FM_DateTime_SetDate(DateTime* self, const DateTime* other, HostErrorRecord& err) {
  Run("FM_DateTime_SetDate", err, [&] { Impl(self).day = Impl(other).day; });
}

void FM_DateTime_SetTime(DateTime* self, const DateTime* other, HostErrorRecord& err) {
  Run("FM_DateTime_SetTime", err, [&] { Impl(self).secs = Impl(other).secs; });
}

void FM_DateTime_SetDaysSinceEpoch(DateTime* self, int64_t days, HostErrorRecord& err) {
  Run("FM_DateTime_SetDaysSinceEpoch", err, [&] { Impl(self).day = days; });
}

void FM_DateTime_SetSecondsSinceEpoch(DateTime* self, const FixPt* seconds, HostErrorRecord& err) {
  Run("FM_DateTime_SetSecondsSinceEpoch", err, [&] { Impl(self).setTotal(Impl(seconds).value); });
}

void FM_DateTime_SetSecsSinceMidnight(DateTime* self, const FixPt* seconds, HostErrorRecord& err) {
  // Seconds past one day (or below zero) carry over into the date.
  Run("FM_DateTime_SetSecsSinceMidnight", err, [&] {
    DateTimeImpl& dt = Impl(self);
    int64_t day = dt.day;
    dt.setTotal(Impl(seconds).value);
    dt.day += day - 1;
  });
}

}  // extern "C"
