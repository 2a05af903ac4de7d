// The window levels Apple's systems give for the standard keys.
#include <CoreGraphics/CoreGraphics.h>

#include <gtest/gtest.h>

namespace {

TEST(CGWindowLevel, KeysGiveApplesLevels) {
  const struct {
    CGWindowLevelKey key;
    CGWindowLevel level;
  } cases[] = {
      {kCGBaseWindowLevelKey, -2147483647 - 1}, {kCGDesktopWindowLevelKey, -2147483623},
      {kCGNormalWindowLevelKey, 0},             {kCGFloatingWindowLevelKey, 3},
      {kCGModalPanelWindowLevelKey, 8},         {kCGUtilityWindowLevelKey, 19},
      {kCGMainMenuWindowLevelKey, 24},          {kCGStatusWindowLevelKey, 25},
      {kCGPopUpMenuWindowLevelKey, 101},        {kCGScreenSaverWindowLevelKey, 1000},
      {kCGCursorWindowLevelKey, 2147483630},    {kCGMaximumWindowLevelKey, 2147483631},
      {kCGNumberOfWindowLevelKeys, 999},        {-1, 999},
  };
  for (const auto& c : cases) EXPECT_EQ(CGWindowLevelForKey(c.key), c.level) << c.key;
}

}  // namespace
