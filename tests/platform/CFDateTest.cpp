// Absolute time, Gregorian dates in time zones, the system zone and locale, date formatting.
#include <gtest/gtest.h>

#include "platform/CFTestSupport.h"
#include "platform/ScopedEnvironment.h"

#include <ctime>
#include <tuple>
#include <vector>

namespace {

CFHolder<CFTimeZoneRef> zoneNamed(const char* name) {
  return own(CFTimeZoneCreateWithName(nullptr, cfstring(name).get(), false));
}

// Seconds since the reference date of a UTC date and time.
CFAbsoluteTime utc(int year, int month, int day, int hour, int minute) {
  std::tm tm{};
  tm.tm_year = year - 1900;
  tm.tm_mon = month - 1;
  tm.tm_mday = day;
  tm.tm_hour = hour;
  tm.tm_min = minute;
  return static_cast<CFAbsoluteTime>(timegm(&tm)) - kCFAbsoluteTimeIntervalSince1970;
}

auto fieldsOf(const CFGregorianDate& d) { return std::make_tuple(d.year, d.month, d.day, d.hour, d.minute, d.second); }

TEST(CFDate, ReferenceDatesAndTheClock) {
  EXPECT_EQ(utc(2001, 1, 1, 0, 0), 0);
  EXPECT_EQ(utc(1904, 1, 1, 0, 0), -kCFAbsoluteTimeIntervalSince1904);
  EXPECT_NEAR(CFAbsoluteTimeGetCurrent(), static_cast<double>(std::time(nullptr)) - kCFAbsoluteTimeIntervalSince1970, 2);
  const auto date = own(CFDateCreate(nullptr, 12.5));
  EXPECT_EQ(CFDateGetAbsoluteTime(date.get()), 12.5);
}

TEST(CFDate, GregorianDatesInBerlinAcrossDaylightSavingChanges) {
  const auto berlin = zoneNamed("Europe/Berlin");
  ASSERT_NE(berlin, nullptr);
  struct Case {
    CFGregorianDate local;
    CFAbsoluteTime expected;
    bool roundTrips;  // false where the wall time is skipped or shown twice
  };
  const std::vector<Case> cases = {
      {{2024, 3, 31, 1, 59, 0}, utc(2024, 3, 31, 0, 59), true},
      {{2024, 3, 31, 3, 0, 0}, utc(2024, 3, 31, 1, 0), true},
      {{2024, 3, 31, 2, 30, 0}, utc(2024, 3, 31, 1, 30), false},    // skipped: 03:30 summer time
      {{2024, 10, 27, 1, 30, 0}, utc(2024, 10, 26, 23, 30), true},
      {{2024, 10, 27, 2, 30, 0}, utc(2024, 10, 27, 1, 30), false},   // shown twice: the later
      {{2024, 10, 27, 3, 30, 0}, utc(2024, 10, 27, 2, 30), true},
      {{1904, 1, 1, 0, 0, 0}, utc(1903, 12, 31, 23, 0), true},
      {{2040, 2, 6, 6, 28, 15.5}, utc(2040, 2, 6, 5, 28) + 15.5, true},
      {{2024, 13, 1, 0, 0, 0}, utc(2024, 12, 31, 23, 0), false},     // month 13 carries
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << c.local.year << "-" << int(c.local.month) << "-" << int(c.local.day) << " "
                                    << int(c.local.hour) << ":" << int(c.local.minute));
    const CFAbsoluteTime at = CFGregorianDateGetAbsoluteTime(c.local, berlin.get());
    EXPECT_EQ(at, c.expected);
    if (!c.roundTrips) continue;
    EXPECT_EQ(fieldsOf(CFAbsoluteTimeGetGregorianDate(at, berlin.get())), fieldsOf(c.local));
  }
  EXPECT_EQ(CFTimeZoneGetSecondsFromGMT(berlin.get(), utc(2024, 7, 1, 0, 0)), 7200);
  EXPECT_TRUE(CFTimeZoneIsDaylightSavingTime(berlin.get(), utc(2024, 7, 1, 0, 0)));
  EXPECT_FALSE(CFTimeZoneIsDaylightSavingTime(berlin.get(), utc(2024, 1, 1, 0, 0)));
}

TEST(CFDate, ANullZoneIsGMTAndDatesBeforeTheReferenceFloor) {
  EXPECT_EQ(fieldsOf(CFAbsoluteTimeGetGregorianDate(-0.5, nullptr)), fieldsOf({2000, 12, 31, 23, 59, 59.5}));
}

TEST(CFTimeZone, TheSystemZoneComesFromTZ) {
  struct Case {
    const char* tz;
    const char* expectedName;
  };
  const std::vector<Case> cases = {
      {"Europe/Berlin", "Europe/Berlin"},
      {":America/New_York", "America/New_York"},
      {"/usr/share/zoneinfo/Australia/Lord_Howe", "Australia/Lord_Howe"},
      {"", "UTC"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.tz);
    ScopedEnvironment environment;
    environment.set("TZ", c.tz);
    const auto zone = own(CFTimeZoneCopySystem());
    EXPECT_EQ(utf8(CFTimeZoneGetName(zone.get())), c.expectedName);
  }
  EXPECT_EQ(zoneNamed("Not/AZone"), nullptr);
  const auto fixed = own(CFTimeZoneCreateWithTimeIntervalFromGMT(nullptr, -5400));
  EXPECT_EQ(utf8(CFTimeZoneGetName(fixed.get())), "GMT-0130");
  EXPECT_EQ(CFTimeZoneGetSecondsFromGMT(fixed.get(), 0), -5400);
}

TEST(CFLocale, TheCurrentLocaleComesFromTheEnvironment) {
  struct Case {
    const char* lcAll;
    const char* lcTime;
    const char* lang;
    const char* expected;
  };
  const std::vector<Case> cases = {
      {nullptr, nullptr, "de_DE.UTF-8", "de_DE"},
      {nullptr, "fr_CH.UTF-8@euro", "de_DE.UTF-8", "fr_CH"},
      {"en_GB", "fr_CH", "de_DE", "en_GB"},
      {nullptr, nullptr, "C.UTF-8", "en_US_POSIX"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.expected);
    ScopedEnvironment environment;
    environment.set("LC_ALL", c.lcAll);
    environment.set("LC_TIME", c.lcTime);
    environment.set("LANG", c.lang);
    EXPECT_EQ(utf8(CFLocaleGetIdentifier(own(CFLocaleCopyCurrent()).get())), c.expected);
  }
  EXPECT_EQ(utf8(CFLocaleGetIdentifier(own(CFLocaleCreate(nullptr, CFSTR("en-US"))).get())), "en_US");
}

TEST(CFDateFormatter, FormatsDatesInTheLocaleStylesAndSystemZone) {
  ScopedEnvironment environment;
  environment.set("TZ", "America/New_York");
  // 2024-03-06 03:00 UTC is still March 5 in New York.
  const auto date = own(CFDateCreate(nullptr, utc(2024, 3, 6, 3, 0)));
  struct Case {
    const char* locale;
    CFDateFormatterStyle style;
    const char* expected;
  };
  const std::vector<Case> cases = {
      {"en_US", kCFDateFormatterShortStyle, "3/5/24"},
      {"en_US", kCFDateFormatterMediumStyle, "Mar 5, 2024"},
      {"en_US", kCFDateFormatterLongStyle, "March 5, 2024"},
      {"de_DE", kCFDateFormatterShortStyle, "05.03.24"},
      {"de_DE", kCFDateFormatterMediumStyle, "05.03.2024"},
      {"de_DE", kCFDateFormatterLongStyle, "5. M\u00E4rz 2024"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << c.locale << " style " << c.style);
    const auto locale = own(CFLocaleCreate(nullptr, cfstring(c.locale).get()));
    const auto formatter = own(CFDateFormatterCreate(nullptr, locale.get(), c.style, kCFDateFormatterNoStyle));
    ASSERT_NE(formatter, nullptr);
    EXPECT_EQ(utf8(own(CFDateFormatterCreateStringWithDate(nullptr, formatter.get(), date.get())).get()), c.expected);
  }
  EXPECT_EQ(CFDateFormatterCreate(nullptr, nullptr, 9, kCFDateFormatterNoStyle), nullptr);
}

}  // namespace
