// The flash dialog's run from start to end, and the dialog the process runs now.
#ifndef XPFLASH_FLASHDIALOG_H
#define XPFLASH_FLASHDIALOG_H

#include <CoreFoundation/CoreFoundation.h>

#import "Flash_WindowController_KESTBU.h"

/// Shows one flash dialog and returns when it has ended (the parameters as for
/// KestCocoa_CALLShowPluginFlashDialog). True after a dialog ran and when another one was
/// already running; false when no window can be shown in this process.
bool FlashCocoaIntern_DoDialog(bool withButton, unsigned int delayTicks, short dialogKind, CFStringRef text2,
                               CFStringRef text3, CFStringRef text1, CFStringRef nibFolderPath,
                               CFStringRef logoImagePath);

/// The controller of the dialog running now, or nil. Its timer and its activation
/// handler act on this one, not on themselves.
Flash_WindowController_KESTBU* FlashCocoaIntern_RunningController();

#endif  // XPFLASH_FLASHDIALOG_H
