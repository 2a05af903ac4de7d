// Critical message alerts: platform strings in, the button clicked out.
#import <AppKit/AppKit.h>
#include <AudioToolbox/AudioToolbox.h>

#import "AppKitCompat.h"
#include "FlashEntryPoints.h"
#import "PlatformStringBridge.h"
#include "text/CFRef.h"
#include "text/PlatformStrings.h"

namespace {

// Runs a critical alert with the default button, or with the two buttons given, and
// returns its modal response. A process that cannot show windows gets the response of an
// aborted alert: no one was there to click.
NSInteger RunCriticalAlert(CFStringRef message, bool twoButtons, CFStringRef first, CFStringRef second) {
  if (!FlashAppKit_CanShowWindows()) return NSModalResponseAbort;
  NSAlert* alert = [[[NSAlert alloc] init] autorelease];
  // An unconvertible text arrives as null; AppKit wants strings, so it shows as empty.
  NSString* text = FlashNSStringFromCFString(message);
  [alert setMessageText:text != nil ? text : @""];
  // Apple's default informative text is empty, GNUstep's says "No information": stated
  // outright, both show the message alone.
  [alert setInformativeText:@""];
  if (twoButtons) {
    NSString* firstTitle = FlashNSStringFromCFString(first);
    NSString* secondTitle = FlashNSStringFromCFString(second);
    [alert addButtonWithTitle:firstTitle != nil ? firstTitle : @""];
    [alert addButtonWithTitle:secondTitle != nil ? secondTitle : @""];
  }
  [alert setAlertStyle:NSCriticalAlertStyle];
  return [alert runModal];
}

}  // namespace

extern "C" long CX_DisplayMessageAlert(CFStringRef message) {
  return RunCriticalAlert(message, false, nullptr, nullptr);
}

extern "C" int CX_DisplayMessageAlert2Button(CFStringRef message, CFStringRef firstButtonTitle,
                                             CFStringRef secondButtonTitle) {
  switch (RunCriticalAlert(message, true, firstButtonTitle, secondButtonTitle)) {
    case NSAlertFirstButtonReturn:
      return kAlertFirstButton;
    case NSAlertSecondButtonReturn:
      return kAlertSecondButton;
    default:
      return kAlertOtherResult;
  }
}

extern "C" long CX_DisplayFlashDialogSimple(CFStringRef message) {
  return CX_DisplayMessageAlert(message);
}

void XP64_DisplayMessageTxt(fmx::TextAutoPtr& message) {
  CFStringRef text = nullptr;
  XP7_TxtToCFStringRef(message, text);
  CFRef<CFStringRef> owned(text);
  CX_DisplayMessageAlert(text);
}

int XP64_DisplayMessage2Button(fmx::TextAutoPtr& message, fmx::TextAutoPtr& firstButton,
                               fmx::TextAutoPtr& secondButton) {
  CFStringRef text = nullptr;
  CFStringRef firstTitle = nullptr;
  CFStringRef secondTitle = nullptr;
  XP7_TxtToCFStringRef(message, text);
  CFRef<CFStringRef> ownedText(text);
  XP7_TxtToCFStringRef(firstButton, firstTitle);
  CFRef<CFStringRef> ownedFirst(firstTitle);
  XP7_TxtToCFStringRef(secondButton, secondTitle);
  CFRef<CFStringRef> ownedSecond(secondTitle);
  return CX_DisplayMessageAlert2Button(text, firstTitle, secondTitle);
}

void XP64_DisplayMessageCStr(const char* message) {
  fmx::TextAutoPtr text;
  text->Assign(message, fmx::Text::kEncoding_UTF8);
  XP64_DisplayMessageTxt(text);
}

void XP_SysBeep() {
  AudioServicesPlayAlertSound(kSystemSoundID_UserPreferredAlert);
}
