// The exported flash dialog entry, its run from start to end, and the toolkit's wrappers.
#import "FlashDialog.h"

#include <CoreGraphics/CoreGraphics.h>
#include <libkern/OSAtomic.h>

#import "AppKitCompat.h"
#include "FlashEntryPoints.h"
#import "PlatformStringBridge.h"
#include "text/CFRef.h"
#include "text/PlatformStrings.h"

namespace {

Flash_WindowController_KESTBU* gFlashWindowController = nil;
// Bit 7 in Apple's numbering is the byte's lowest bit.
volatile uint8_t gFlashDialogBusy = 0;
const uint32_t kBusyBit = 7;

// The titled "OK" dialog is asked for by this kind number; every other number with a
// button means "Please wait".
const short kTitledDialogKind = 3;
// The titled dialog floats above the host's palettes, which the normal level would not.
const NSInteger kTitledWindowLevel = 10;

// How one kind of dialog looks and ends.
struct DialogKind {
  NSString* nibName;
  int state;
  const char* buttonText;   // null: no button
  const char* windowTitle;  // null: the nib's title stays
  bool normalLevel;         // false: kTitledWindowLevel
  bool timed;
};

DialogKind ChooseKind(bool withButton, short dialogKind) {
  if (!withButton) return {@"Flash7_FlashDialogNoTitleBar", kFlashStateSplash, nullptr, nullptr, true, true};
  if (dialogKind != kTitledDialogKind) {
    return {@"Flash7_FlashDialogNoTitleBar", kFlashStateWaiting, "Please wait", nullptr, true, true};
  }
  return {@"Flash7_FlashDialog", kFlashStateClosable, "OK", "", false, false};
}

// A retained string, or nil for none; the dialog releases it when it has ended.
NSString* NewUTF8String(const char* text) {
  return text == nullptr ? nil : [[NSString alloc] initWithUTF8String:text];
}

// A CFString made from a C string in `encoding`, or none for a null C string.
CFStringRef NewCFString(const char* text, CFStringEncoding encoding) {
  return text == nullptr ? nullptr : CFStringCreateWithCString(kCFAllocatorDefault, text, encoding);
}

}  // namespace

Flash_WindowController_KESTBU* FlashCocoaIntern_RunningController() {
  return gFlashWindowController;
}

bool FlashCocoaIntern_DoDialog(bool withButton, unsigned int delayTicks, short dialogKind, CFStringRef text2,
                               CFStringRef text3, CFStringRef text1, CFStringRef nibFolderPath,
                               CFStringRef logoImagePath) {
  if (!FlashAppKit_CanShowWindows()) return false;
  const CGWindowLevel normalLevel = CGWindowLevelForKey(kCGNormalWindowLevelKey);
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  // A refusal leaves its pool to the pool around the call, which drains it with its own
  // (or to the thread's end); nothing has gone into it.
  if (OSAtomicTestAndSetBarrier(kBusyBit, &gFlashDialogBusy)) return true;
  if (gFlashWindowController != nil) {
    [gFlashWindowController performSelectorOnMainThread:@selector(release) withObject:nil waitUntilDone:YES];
    gFlashWindowController = nil;
  }

  const DialogKind kind = ChooseKind(withButton, dialogKind);
  NSString* buttonText = NewUTF8String(kind.buttonText);
  NSString* windowTitle = NewUTF8String(kind.windowTitle);
  NSImage* logo = nil;

  NSString* nibPath = [NSString stringWithFormat:@"%@/%@.nib", FlashNSStringFromCFString(nibFolderPath),
                                                 kind.nibName];
  Flash_WindowController_KESTBU* controller = [Flash_WindowController_KESTBU alloc];
  controller = [controller initWithWindowNibPath:nibPath owner:controller];
  gFlashWindowController = controller;
  // AppKit builds, shows, runs and tears down windows on the main thread only, so the nib
  // is loaded there; the caller waits throughout, which makes the dialog modal for the
  // plug-in as well.
  [controller performSelectorOnMainThread:@selector(window) withObject:nil waitUntilDone:YES];

  if ([controller isWindowLoaded] && [controller window] != nil) {
    [controller setLabelTexts:FlashNSStringFromCFString(text1)
                        text2:FlashNSStringFromCFString(text2)
                        text3:FlashNSStringFromCFString(text3)];
    [controller setButtonTextAndState:buttonText enabled:kind.state != kFlashStateWaiting];
    NSString* logoPath = FlashNSStringFromCFString(logoImagePath);
    if (logoPath != nil) logo = [[NSImage alloc] initWithContentsOfFile:logoPath];
    [controller setpluginlogo:logo];
    if (windowTitle != nil) [controller setWindowTitle:windowTitle];
    [controller setWantedWindowLevel:kind.normalLevel ? normalLevel : kTitledWindowLevel];

    [controller performSelectorOnMainThread:@selector(myShowWindow) withObject:nil waitUntilDone:YES];
    [controller setState:kind.state];
    if (kind.timed) {
      [controller performSelectorOnMainThread:@selector(myAddTimerWithDelayTime:)
                                   withObject:[NSNumber numberWithUnsignedInt:delayTicks]
                                waitUntilDone:YES];
    }
    [controller performSelectorOnMainThread:@selector(myRunModalForWindow) withObject:nil waitUntilDone:YES];
    // The result code stays with the controller: the caller is told nothing. The window
    // goes with the controller, while the main thread may still be handling its last
    // events.
    [controller performSelectorOnMainThread:@selector(close) withObject:nil waitUntilDone:YES];
    [controller performSelectorOnMainThread:@selector(release) withObject:nil waitUntilDone:YES];
  } else {
    // Without a window there is nothing of AppKit's to tear down.
    [controller release];
  }

  [buttonText release];
  [logo release];
  [windowTitle release];
  [pool release];
  gFlashWindowController = nil;
  return OSAtomicTestAndClearBarrier(kBusyBit, &gFlashDialogBusy);
}

extern "C" int KestCocoa_CALLShowPluginFlashDialog(bool withButton, unsigned int delayTicks, short dialogKind,
                                                   CFStringRef text2, CFStringRef text3, CFStringRef text1,
                                                   CFStringRef nibFolderPath, CFStringRef logoImagePath) {
  FlashCocoaIntern_DoDialog(withButton, delayTicks, dialogKind, text2, text3, text1, nibFolderPath,
                            logoImagePath);
  return 0;
}

extern "C" unsigned int Vn7BundleFlash_VersionFunc(void) {
  return kVn7BundleFlashVersion;
}

void XP64_DisplayFlashDialog(CFBundleRef pluginBundle, bool withButton, unsigned int delayTicks,
                             short dialogKind, const char* text2, const char* text3, const char* text1,
                             const char* logoResourceName) {
  // The first line comes as Mac Roman, the other two as UTF-8: that is how the plug-in's
  // callers hand them over.
  CFRef<CFStringRef> second(NewCFString(text2, kCFStringEncodingUTF8));
  CFRef<CFStringRef> third(NewCFString(text3, kCFStringEncodingUTF8));
  CFRef<CFStringRef> first(NewCFString(text1, kCFStringEncodingMacRoman));
  CFRef<CFStringRef> logoName(NewCFString(logoResourceName, kCFStringEncodingUTF8));

  CFRef<CFURLRef> resources(CFBundleCopyResourcesDirectoryURL(pluginBundle));
  CFRef<CFURLRef> absoluteResources(resources ? CFURLCopyAbsoluteURL(resources.get()) : nullptr);
  CFRef<CFStringRef> nibFolder(
      absoluteResources ? CFURLCopyFileSystemPath(absoluteResources.get(), kCFURLPOSIXPathStyle) : nullptr);
  CFRef<CFURLRef> logoURL(logoName ? CFBundleCopyResourceURL(pluginBundle, logoName.get(), nullptr, nullptr)
                                   : nullptr);
  CFRef<CFStringRef> logoPath(logoURL ? CFURLCopyFileSystemPath(logoURL.get(), kCFURLPOSIXPathStyle) : nullptr);

  PluginCocoa_DisplayFlashDialog(withButton, delayTicks, dialogKind, second.get(), third.get(), first.get(),
                                 nibFolder.get(), logoPath.get());
}

void XP64_DisplayFlashTxt(fmx::TextAutoPtr& text) {
  CFStringRef message = nullptr;
  XP7_TxtToCFStringRef(text, message);
  CFRef<CFStringRef> owned(message);
  CX_DisplayFlashDialogSimple(message);
}
