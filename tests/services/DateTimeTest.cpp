// Tests of the date and time functions, checked against the C library's calendar and ICU.
//
// Time zones and locales come from the environment, which the C library reads once per
// process, so no test changes TZ or LC_ALL. The DateTimeInZone tests work in whatever zone
// the process has, finding that zone's daylight-saving days themselves; ctest runs them once
// more per zone (services_dates_<zone>, TZ set in tests/CMakeLists.txt). DateStringInLocale
// runs per locale the same way (services_datestring_<locale>) and skips itself when LC_ALL
// names no locale.
#include "services/DateTime.h"

#include <gtest/gtest.h>
#include <unicode/udat.h>
#include <unicode/ustring.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string>
#include <tuple>
#include <vector>

#include "MemHost.h"

namespace {

using Fields = std::array<int, 6>;  // year, month, day, hour, minute, second

std::tm ToTm(const Fields& f) {
  std::tm tm{};
  tm.tm_year = f[0] - 1900;
  tm.tm_mon = f[1] - 1;
  tm.tm_mday = f[2];
  tm.tm_hour = f[3];
  tm.tm_min = f[4];
  tm.tm_sec = f[5];
  return tm;
}

Fields FromTm(const std::tm& tm) { return {tm.tm_year + 1900, tm.tm_mon + 1, tm.tm_mday, tm.tm_hour, tm.tm_min, tm.tm_sec}; }

std::time_t Utc(const Fields& f) {
  std::tm tm = ToTm(f);
  return timegm(&tm);
}

const std::time_t kMacEpoch = Utc({1904, 1, 1, 0, 0, 0});

// Mac seconds count wall-clock time, so their fields are those of UTC seconds.
Fields Wall(unsigned int macSeconds) {
  std::time_t t = kMacEpoch + macSeconds;
  std::tm tm;
  return FromTm(*gmtime_r(&t, &tm));
}

unsigned int Mac(const Fields& f) { return static_cast<unsigned int>(Utc(f) - kMacEpoch); }

// 1904-01-01 is host day 695056; the C library's calendar gives the others.
std::int64_t HostDay(const Fields& f) { return (Utc({f[0], f[1], f[2], 0, 0, 0}) - kMacEpoch) / 86400 + 695056; }

void SetHost(fmx::DateTimeAutoPtr& dt, const Fields& f) {
  dt->SetDaysSinceEpoch(HostDay(f));
  dt->SetSecsSinceMidnight(*fmx::FixPtAutoPtr((f[3] * 60 + f[4]) * 60 + f[5]));
}

Fields HostFields(fmx::DateTimeAutoPtr& dt) {
  return {dt->GetYear(), dt->GetMonth(), dt->GetDay(), dt->GetHour(), dt->GetMinute(), dt->GetSec()};
}

// The instants at which the local clock shows `f`: none in a skipped hour, two in a repeated one.
std::vector<std::time_t> LocalInstants(const Fields& f) {
  std::vector<std::time_t> found;
  for (int dst : {0, 1}) {
    std::tm tm = ToTm(f);
    tm.tm_isdst = dst;
    std::time_t t = std::mktime(&tm);
    if (FromTm(*localtime_r(&t, &tm)) == f && (found.empty() || found[0] != t)) found.push_back(t);
  }
  return found;
}

// Every conversion that reads Mac seconds as local time, at one wall-clock time.
void CheckWallTime(const Fields& f) {
  std::vector<std::time_t> instants = LocalInstants(f);
  if (instants.empty()) return;  // the zone skips this time: nothing to compare with
  SCOPED_TRACE(::testing::Message() << f[0] << "-" << f[1] << "-" << f[2] << " " << f[3] << ":" << f[4]);
  unsigned int mac = Mac(f);
  EXPECT_EQ(XP_DateToFMTime(&mac), (f[3] * 60 + f[4]) * 60 + f[5]);
  fmx::DateTimeAutoPtr dt;
  XP7_DateToFMXDateTime(&mac, dt);
  EXPECT_EQ(HostFields(dt), f);

  DateTimeRec rec;
  XP_InitDateTimeRec(f[0], f[1], f[2], f[3], f[4], f[5], 3, &rec);
  unsigned int fromRec = 0;
  EXPECT_EQ(XP7_DateToSeconds(&rec, &fromRec), 0);
  EXPECT_EQ(fromRec, mac);

  LocalDateTime local{0, mac, 0};
  UTCDateTime utc{};
  int status = XP7_ConvertLocalToUTCDateTime(&local, &utc);
  if (instants.back() < kMacEpoch) return;  // before 1904 in UTC, which the record cannot hold
  EXPECT_EQ(status, 0);
  std::time_t got = kMacEpoch + static_cast<std::time_t>((std::uint64_t(utc.highSeconds) << 32) | utc.lowSeconds);
  EXPECT_TRUE(got == instants.front() || got == instants.back()) << got;
}

}  // namespace

TEST(DateTimeInZone, WallClockTimesSurviveEveryConversion) {
  for (const Fields& f : {Fields{1904, 1, 1, 0, 0, 0}, Fields{2000, 2, 29, 12, 30, 45}, Wall(0xFFFFFFFF)}) CheckWallTime(f);
  // Every quarter hour of the days on which the zone's offset changes, and the days before.
  for (int year : {1990, 2024, 2039}) {
    for (std::time_t t = Utc({year, 1, 1, 0, 0, 0}); t < Utc({year + 1, 1, 1, 0, 0, 0}); t += 86400) {
      std::tm today, tomorrow;
      std::time_t next = t + 86400;
      localtime_r(&t, &today);
      if (localtime_r(&next, &tomorrow)->tm_gmtoff == today.tm_gmtoff) continue;
      for (const std::tm* day : {&today, &tomorrow}) {
        for (int minute = 0; minute < 24 * 60; minute += 15) {
          CheckWallTime({day->tm_year + 1900, day->tm_mon + 1, day->tm_mday, minute / 60, minute % 60, 0});
        }
      }
    }
  }
}

TEST(DateTimeInZone, CurrentMacSecondsAreTheLocalClock) {
  std::time_t now = std::time(nullptr);
  std::tm tm;
  unsigned int mac = 0;
  EXPECT_EQ(XP7_GetCurrentMDateTimeSecs(&mac), 0);
  EXPECT_NEAR(double(mac), double(Mac(FromTm(*localtime_r(&now, &tm)))), 2);
}

TEST(MacSeconds, HostValuesAreWallClockArithmeticWithinTheBounds) {
  const struct {
    Fields f;
    int status;
  } cases[] = {{{1, 1, 1, 0, 0, 0}, kXP_DateTooEarly},      {{1903, 12, 31, 23, 59, 59}, kXP_DateTooEarly},
               {{1904, 1, 1, 0, 0, 0}, 0},                   {Wall(86399), 0},
               {Wall(86400), 0},                             {Wall(0x7FFFFFFE), 0},
               {Wall(0x7FFFFFFF), 0},                        {Wall(0x80000000), 0},
               {{2040, 2, 4, 23, 59, 59}, 0},                {{2040, 2, 5, 0, 0, 0}, kXP_DateTooLate},
               {{2040, 2, 6, 6, 28, 15}, kXP_DateTooLate},  {{9999, 12, 31, 23, 59, 59}, kXP_DateTooLate}};
  for (const auto& c : cases) {
    SCOPED_TRACE(::testing::Message() << c.f[0] << "-" << c.f[1] << "-" << c.f[2] << " " << c.f[5]);
    fmx::DateTimeAutoPtr dt;
    SetHost(dt, c.f);
    unsigned int mac = 777;
    EXPECT_EQ(XP7_FMXDateTimeToDate(dt, &mac), c.status);
    EXPECT_EQ(mac, c.status == 0 ? Mac(c.f) : 777u);
    if (c.status == kXP_DateTooEarly || c.f[0] > 2040) continue;

    mac = Mac(c.f);
    fmx::DateTimeAutoPtr made;
    XP7_MacSecondsToFMXDateTime(mac, made);
    EXPECT_EQ(HostFields(made), c.f);
    EXPECT_EQ(XP_DateToFMDate(&mac), HostDay(c.f));
    SetHost(dt, {1999, 9, 9, 1, 2, 3});
    XP7_DayPartOfDateToFMXDateTime(&mac, dt);
    EXPECT_EQ(HostFields(dt), (Fields{c.f[0], c.f[1], c.f[2], 1, 2, 3}));
  }
}

TEST(DateTimeRecord, DayOfWeekIsAlwaysStoredAsZero) {
  DateTimeRec rec{};
  XP_InitDateTimeRec(2024, 3, 5, 7, 8, 9, 5, &rec);
  EXPECT_EQ(std::tie(rec.year, rec.month, rec.day, rec.hour, rec.minute, rec.second, rec.dayOfWeek),
            std::make_tuple(2024, 3, 5, 7, 8, 9, 0));
}

TEST(ISODate, WritesOnlyIntoBuffersOf21AndMoreAndOnlyAfterReadingAllFields) {
  fmx::DateTimeAutoPtr dt;
  SetHost(dt, {2024, 3, 5, 7, 8, 9});
  char buffer[32];
  for (unsigned int size : {20u, 21u, 32u}) {
    std::memset(buffer, 'x', sizeof buffer);
    XP7_FMXDateTimeToISODateCStr(dt, buffer, size);
    EXPECT_EQ(std::string(buffer, 20), size < 21 ? std::string(20, 'x') : std::string("2024-03-05 07:08:09", 20));
  }
  std::memset(buffer, 'x', sizeof buffer);
  memhost::InjectFault("FM_DateTime_GetSec", 2);
  EXPECT_THROW(XP7_FMXDateTimeToISODateCStr(dt, buffer, sizeof buffer), std::exception);
  EXPECT_EQ(buffer[0], 'x');
}

TEST(DateStringInLocale, StylesFollowTheUsersLocale) {
  const char* env = std::getenv("LC_ALL");
  if (env == nullptr || std::strchr(env, '_') == nullptr) GTEST_SKIP() << "LC_ALL names no locale";
  const std::string locale(env, std::strcspn(env, "."));
  const struct {
    signed char flag;
    UDateFormatStyle style;
  } styles[] = {{0, UDAT_SHORT}, {1, UDAT_LONG}, {2, UDAT_MEDIUM}, {3, UDAT_MEDIUM}, {-1, UDAT_MEDIUM}};
  for (unsigned int mac : {43200u, Mac({2024, 12, 24, 12, 0, 0}), 0xFFFFFFFFu}) {
    for (const auto& s : styles) {
      SCOPED_TRACE(::testing::Message() << locale << " " << mac << " flag " << int(s.flag));
      // ICU formats the wall-clock fields in UTC, where they are the same.
      UErrorCode error = U_ZERO_ERROR;
      UDateFormat* format = udat_open(UDAT_NONE, s.style, locale.c_str(), u"UTC", -1, nullptr, 0, &error);
      UChar units[128];
      int32_t length = udat_format(format, Utc(Wall(mac)) * 1000.0, units, 128, nullptr, &error);
      char expected[512];
      u_strToUTF8(expected, sizeof expected, nullptr, units, length, &error);
      udat_close(format);
      ASSERT_TRUE(U_SUCCESS(error));
      unsigned char result[256];
      XP7_DateString(mac, s.flag, result, nullptr);
      EXPECT_EQ(std::string(reinterpret_cast<char*>(result + 1), result[0]), expected);
    }
  }
}
