// The names of the result codes, as test messages print them.
#include <gtest/gtest.h>

#include "text/ResultCodes.h"

TEST(ResultCodes, NamesCarryTheirNumber) {
  EXPECT_STREQ("kXP_NoErr (0)", XP_ResultCodeName(kXP_NoErr));
  EXPECT_STREQ("kXP_ParamErr (-50)", XP_ResultCodeName(-50));
  EXPECT_STREQ("kXP_MalformedUTF8 (-4280)", XP_ResultCodeName(kXP_MalformedUTF8));
  EXPECT_STREQ("kXP_BundleTooOld (-4260)", XP_ResultCodeName(-4260));
  EXPECT_STREQ("unknown (-1)", XP_ResultCodeName(-1));
  EXPECT_STREQ("unknown (-2147483648)", XP_ResultCodeName(-2147483647 - 1));
}
