// Apple's CoreGraphics window levels (CGWindowLevel.h), the one part of CoreGraphics that
// the Cocoa side calls.
#ifndef XPPLATFORM_COREGRAPHICS_COREGRAPHICS_H
#define XPPLATFORM_COREGRAPHICS_COREGRAPHICS_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/// A window level: windows of a higher level stay in front of those of a lower one.
typedef int32_t CGWindowLevel;
/// A name of one of the standard levels.
typedef int32_t CGWindowLevelKey;

enum {
  kCGBaseWindowLevelKey = 0,
  kCGMinimumWindowLevelKey = 1,
  kCGDesktopWindowLevelKey = 2,
  kCGBackstopMenuLevelKey = 3,
  kCGNormalWindowLevelKey = 4,
  kCGFloatingWindowLevelKey = 5,
  kCGTornOffMenuWindowLevelKey = 6,
  kCGDockWindowLevelKey = 7,
  kCGMainMenuWindowLevelKey = 8,
  kCGStatusWindowLevelKey = 9,
  kCGModalPanelWindowLevelKey = 10,
  kCGPopUpMenuWindowLevelKey = 11,
  kCGDraggingWindowLevelKey = 12,
  kCGScreenSaverWindowLevelKey = 13,
  kCGMaximumWindowLevelKey = 14,
  kCGOverlayWindowLevelKey = 15,
  kCGHelpWindowLevelKey = 16,
  kCGUtilityWindowLevelKey = 17,
  kCGDesktopIconWindowLevelKey = 18,
  kCGCursorWindowLevelKey = 19,
  kCGAssistiveTechHighWindowLevelKey = 20,
  kCGNumberOfWindowLevelKeys
};

/// The level of a key, with Apple's values (normal 0, floating 3, modal panel 8, status
/// 25, ...). A key outside the table gives 999, the value Apple's systems give.
CGWindowLevel CGWindowLevelForKey(CGWindowLevelKey key);

#ifdef __cplusplus
}
#endif

#endif
