// CGWindowLevelForKey with the levels Apple's systems report for each key.
#include <CoreGraphics/CoreGraphics.h>

#include <cstdint>

namespace {

constexpr CGWindowLevel kBaseLevel = INT32_MIN;
constexpr CGWindowLevel kMinimumLevel = kBaseLevel + 5;  // five levels kept for the system
constexpr CGWindowLevel kMaximumLevel = INT32_MAX - 16;  // sixteen kept at the top
constexpr CGWindowLevel kDesktopLevel = kMinimumLevel + 20;
constexpr CGWindowLevel kUnknownKeyLevel = 999;

constexpr CGWindowLevel kLevels[kCGNumberOfWindowLevelKeys] = {
    kBaseLevel,         // kCGBaseWindowLevelKey
    kMinimumLevel,      // kCGMinimumWindowLevelKey
    kDesktopLevel,      // kCGDesktopWindowLevelKey
    -20,                // kCGBackstopMenuLevelKey
    0,                  // kCGNormalWindowLevelKey
    3,                  // kCGFloatingWindowLevelKey
    3,                  // kCGTornOffMenuWindowLevelKey
    20,                 // kCGDockWindowLevelKey
    24,                 // kCGMainMenuWindowLevelKey
    25,                 // kCGStatusWindowLevelKey
    8,                  // kCGModalPanelWindowLevelKey
    101,                // kCGPopUpMenuWindowLevelKey
    500,                // kCGDraggingWindowLevelKey
    1000,               // kCGScreenSaverWindowLevelKey
    kMaximumLevel,      // kCGMaximumWindowLevelKey
    102,                // kCGOverlayWindowLevelKey
    200,                // kCGHelpWindowLevelKey
    19,                 // kCGUtilityWindowLevelKey
    kDesktopLevel + 20, // kCGDesktopIconWindowLevelKey
    kMaximumLevel - 1,  // kCGCursorWindowLevelKey
    1500,               // kCGAssistiveTechHighWindowLevelKey
};

}  // namespace

extern "C" CGWindowLevel CGWindowLevelForKey(CGWindowLevelKey key) {
  return key >= 0 && key < kCGNumberOfWindowLevelKeys ? kLevels[key] : kUnknownKeyLevel;
}
