// Catalog dates and Mac seconds against absolute time, and Mac seconds against the C
// library's reading of the same zone.
#include "FileManagerSupport.h"
#include "ScopedEnvironment.h"

#include <CoreServices/CoreServices.h>

#include <ctime>

#include <gtest/gtest.h>

namespace {

constexpr double k1904 = 3061152000.0;            // 1904-01-01 to 2001-01-01, in seconds
constexpr std::time_t kUnixAt2001 = 978307200;    // 1970-01-01 to 2001-01-01
constexpr std::time_t kUnixIn1904 = 2082844800;   // 1904-01-01 to 1970-01-01

struct Wall {
  int year, month, day, hour, minute;
};

std::tm tmOf(const Wall& w) {
  std::tm tm{};
  tm.tm_year = w.year - 1900;
  tm.tm_mon = w.month - 1;
  tm.tm_mday = w.day;
  tm.tm_hour = w.hour;
  tm.tm_min = w.minute;
  tm.tm_isdst = -1;
  return tm;
}

UInt32 macSecondsOf(std::tm tm) { return static_cast<UInt32>(timegm(&tm) + kUnixIn1904); }

// The tests of a zone set TZ for themselves; CFTimeZone reads it on every call, the C
// library after tzset().
class InZone : public testing::Test {
 protected:
  void use(const char* zone) {
    environment_.set("TZ", zone);
    tzset();
  }

 private:
  // Destroyed after the environment is restored, so that the C library reads it again.
  struct ResetOnExit {
    ~ResetOnExit() { tzset(); }
  } reset_;
  ScopedEnvironment environment_;
};

TEST(UTCDateTime, ConvertsExactlyBothWays) {
  const struct {
    UTCDateTime date;
    CFAbsoluteTime at;
  } cases[] = {
      {{0, 0, 0}, -k1904},
      {{0, 3061152000u, 0}, 0.0},
      {{0, 3061152000u, 0x8000}, 0.5},
      {{1, 5, 1}, 4294967296.0 + 5.0 + 1.0 / 65536.0 - k1904},
  };
  for (const auto& c : cases) {
    CFAbsoluteTime at = 0;
    ASSERT_EQ(UCConvertUTCDateTimeToCFAbsoluteTime(&c.date, &at), noErr);
    EXPECT_EQ(at, c.at);
    UTCDateTime back{};
    ASSERT_EQ(UCConvertCFAbsoluteTimeToUTCDateTime(c.at, &back), noErr);
    EXPECT_EQ(fractionsOf(back), fractionsOf(c.date));
  }
  UTCDateTime untouched{7, 7, 7};
  EXPECT_EQ(UCConvertCFAbsoluteTimeToUTCDateTime(-k1904 - 0.5, &untouched), kUTCUnderflowErr);
  EXPECT_EQ(fractionsOf(untouched), fractionsOf(UTCDateTime{7, 7, 7}));
}

TEST_F(InZone, MacSecondsSpanFrom1904To2040) {
  use("UTC");
  UInt32 seconds = 7;
  EXPECT_EQ(UCConvertCFAbsoluteTimeToSeconds(-k1904, &seconds), noErr);
  EXPECT_EQ(seconds, 0u);
  EXPECT_EQ(UCConvertCFAbsoluteTimeToSeconds(4294967295.0 - k1904, &seconds), noErr);
  EXPECT_EQ(seconds, 0xFFFFFFFFu);
  EXPECT_EQ(UCConvertCFAbsoluteTimeToSeconds(-k1904 - 1, &seconds), kUTCUnderflowErr);
  EXPECT_EQ(UCConvertCFAbsoluteTimeToSeconds(4294967296.0 - k1904, &seconds), kUTCOverflowErr);
  EXPECT_EQ(seconds, 0xFFFFFFFFu);
  CFAbsoluteTime at = 0;
  ASSERT_EQ(UCConvertSecondsToCFAbsoluteTime(0xFFFFFFFFu, &at), noErr);
  EXPECT_EQ(at, 4294967295.0 - k1904);
}

// Wall times on both sides of Berlin's changes in 2024 (31 March 02:00 -> 03:00, 27
// October 03:00 -> 02:00), the skipped 02:30 in spring, and ordinary days.
TEST_F(InZone, MacSecondsAgreeWithTheCLibraryAcrossDaylightSavingChanges) {
  use("Europe/Berlin");
  const Wall walls[] = {{2024, 3, 31, 1, 59},  {2024, 3, 31, 2, 30}, {2024, 3, 31, 3, 0},  {2024, 10, 27, 1, 59},
                        {2024, 10, 27, 3, 0}, {2024, 7, 1, 12, 0},  {2024, 1, 15, 12, 0}};
  for (const Wall& wall : walls) {
    std::tm tm = tmOf(wall);
    const std::time_t unix = mktime(&tm);
    CFAbsoluteTime at = 0;
    ASSERT_EQ(UCConvertSecondsToCFAbsoluteTime(macSecondsOf(tmOf(wall)), &at), noErr);
    EXPECT_EQ(at, static_cast<double>(unix - kUnixAt2001)) << wall.month << "-" << wall.day << " " << wall.hour;
    std::tm local{};
    localtime_r(&unix, &local);
    UInt32 seconds = 0;
    ASSERT_EQ(UCConvertCFAbsoluteTimeToSeconds(at, &seconds), noErr);
    EXPECT_EQ(seconds, macSecondsOf(local)) << wall.month << "-" << wall.day << " " << wall.hour;
  }
}

// In the autumn hour the clock shows twice, both instants read as the same wall time, and
// that wall time reads back as the later instant.
TEST_F(InZone, RepeatedWallTimeReadsAsTheLaterInstant) {
  use("Europe/Berlin");
  const UInt32 twoThirty = macSecondsOf(tmOf({2024, 10, 27, 2, 30}));
  std::tm firstUTC = tmOf({2024, 10, 27, 0, 30});
  const std::time_t first = timegm(&firstUTC);
  for (const std::time_t instant : {first, first + 3600}) {
    UInt32 seconds = 0;
    ASSERT_EQ(UCConvertCFAbsoluteTimeToSeconds(static_cast<double>(instant - kUnixAt2001), &seconds), noErr);
    EXPECT_EQ(seconds, twoThirty);
  }
  CFAbsoluteTime at = 0;
  ASSERT_EQ(UCConvertSecondsToCFAbsoluteTime(twoThirty, &at), noErr);
  EXPECT_EQ(at, static_cast<double>(first + 3600 - kUnixAt2001));
}

}  // namespace
