// The flash bundle's entry points: the flash dialog, the message alerts and the version.
#ifndef XPFLASH_FLASHENTRYPOINTS_H
#define XPFLASH_FLASHENTRYPOINTS_H

#include <CoreFoundation/CoreFoundation.h>

#include "MessageAlerts.h"
#include "text/HostValues.h"

// The main plug-in loads the bundle and finds these by name, so they must stay visible
// whatever visibility the bundle is built with.
#define XP_FLASH_EXPORT __attribute__((visibility("default")))

/// The version of the dialog interface; a loader accepts a bundle only above 1227.
enum { kVn7BundleFlashVersion = 1228 };

// Looked up with dlsym-style calls by their plain names, hence C linkage.
extern "C" {

/// Shows the flash dialog and returns once it has ended. The text parameters fill the
/// labels in a fixed shuffle: `text2` label 2, `text3` label 3, `text1` label 1; null
/// leaves a label as the nib has it. `delayTicks` (1/60 s) under 60 means no time-out.
/// With `withButton`, `dialogKind` 3 is the titled "OK" dialog and any other kind the
/// "Please wait" one; without it a buttonless splash. Any thread. Always returns 0: a
/// refused second dialog, a failed nib, a process without a display and a dialog that ran
/// all look alike to the caller.
XP_FLASH_EXPORT int KestCocoa_CALLShowPluginFlashDialog(bool withButton, unsigned int delayTicks,
                                                        short dialogKind, CFStringRef text2,
                                                        CFStringRef text3, CFStringRef text1,
                                                        CFStringRef nibFolderPath,
                                                        CFStringRef logoImagePath);
/// kVn7BundleFlashVersion.
XP_FLASH_EXPORT unsigned int Vn7BundleFlash_VersionFunc(void);

/// Runs a critical alert with `message` and the system's one default button; returns the
/// modal result (1000 for that button; -1001, an aborted session, without a display). Main
/// thread only.
XP_FLASH_EXPORT long CX_DisplayMessageAlert(CFStringRef message);
/// Runs a critical alert with two buttons, the first being the default one; returns
/// kAlertFirstButton or kAlertSecondButton for the button clicked, kAlertOtherResult when
/// the alert ended otherwise. Main thread only.
XP_FLASH_EXPORT int CX_DisplayMessageAlert2Button(CFStringRef message, CFStringRef firstButtonTitle,
                                                  CFStringRef secondButtonTitle);
/// The one-text flash message: the same alert as CX_DisplayMessageAlert. Main thread only.
XP_FLASH_EXPORT long CX_DisplayFlashDialogSimple(CFStringRef message);

}  // extern "C"

// The toolkit's side, with typed C++ signatures.

/// Does nothing and returns 0: inside this bundle the toolkit never shows the flash
/// dialog; a toolkit built into the main plug-in routes this to the loaded bundle's entry.
XP_FLASH_EXPORT int PluginCocoa_DisplayFlashDialog(bool withButton, unsigned int delayTicks,
                                                   short dialogKind, CFStringRef text2,
                                                   CFStringRef text3, CFStringRef text1,
                                                   CFStringRef nibFolderPath,
                                                   CFStringRef logoImagePath);
/// PluginCocoa_DisplayFlashDialog with C-string texts (text2 and text3 UTF-8, text1 Mac
/// Roman), the nibs from `pluginBundle`'s resources folder and the logo resource
/// `logoResourceName` there (no logo when the bundle lacks it).
XP_FLASH_EXPORT void XP64_DisplayFlashDialog(CFBundleRef pluginBundle, bool withButton,
                                             unsigned int delayTicks, short dialogKind,
                                             const char* text2, const char* text3,
                                             const char* text1, const char* logoResourceName);
/// CX_DisplayFlashDialogSimple with a host text. Main thread only.
XP_FLASH_EXPORT void XP64_DisplayFlashTxt(fmx::TextAutoPtr& text);

/// CX_DisplayMessageAlert with a host text. Main thread only.
XP_FLASH_EXPORT void XP64_DisplayMessageTxt(fmx::TextAutoPtr& message);
/// CX_DisplayMessageAlert2Button with host texts: 1, 2 or 0. Main thread only.
XP_FLASH_EXPORT int XP64_DisplayMessage2Button(fmx::TextAutoPtr& message, fmx::TextAutoPtr& firstButton,
                                               fmx::TextAutoPtr& secondButton);
/// CX_DisplayMessageAlert with a UTF-8 C string. Main thread only.
XP_FLASH_EXPORT void XP64_DisplayMessageCStr(const char* message);
/// Plays the user's alert sound.
XP_FLASH_EXPORT void XP_SysBeep();

#endif  // XPFLASH_FLASHENTRYPOINTS_H
