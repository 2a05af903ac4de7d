// What the two-button message alert answers.
#ifndef XPFLASH_MESSAGEALERTS_H
#define XPFLASH_MESSAGEALERTS_H

// CX_DisplayMessageAlert2Button folds AppKit's responses into these three numbers, which
// the plug-in's callers compare against.
enum {
  kAlertOtherResult = 0,  // the alert ended without a button, or could not be shown
  kAlertFirstButton = 1,
  kAlertSecondButton = 2
};

#endif  // XPFLASH_MESSAGEALERTS_H
