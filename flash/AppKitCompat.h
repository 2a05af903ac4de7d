// What the flash dialog and the alerts need from AppKit beyond its interface.
#ifndef XPFLASH_APPKITCOMPAT_H
#define XPFLASH_APPKITCOMPAT_H

/// Whether windows can be shown at all. False in a process without a window server (a
/// server host): the dialog and the alerts then give up before they touch NSApp.
bool FlashAppKit_CanShowWindows();

/// Main thread, after stopModal, stopModalWithCode: or abortModal that no user input led
/// to (a timer, a performClick:): makes sure the modal loop notices.
void FlashAppKit_WakeModalLoop();

#endif  // XPFLASH_APPKITCOMPAT_H
