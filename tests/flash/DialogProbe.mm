// The flash dialog seen from a test.
#import "DialogProbe.h"

#include <gtest/gtest.h>

#import "FlashDialog.h"
#include "FlashEntryPoints.h"
#import "UIHarness.h"
#include "text/CFRef.h"

namespace flashui {
namespace {

NSRect ScreenFrameOf(NSView* view) {
  const NSRect inWindow = [view convertRect:[view bounds] toView:nil];
  return [[view window] convertRectToScreen:inWindow];
}

// The control that shows `cell` (GNUstep's -controlView names whichever view drew last).
NSView* ViewOfCell(NSView* view, NSCell* cell) {
  if ([view isKindOfClass:[NSControl class]] && [(NSControl*)view cell] == cell) return view;
  NSArray* subviews = [view subviews];
  for (NSUInteger i = 0; i < [subviews count]; ++i) {
    NSView* found = ViewOfCell([subviews objectAtIndex:i], cell);
    if (found != nil) return found;
  }
  return nil;
}

CFStringRef NewCFString(const char* text) {
  return text == nullptr ? nullptr : CFStringCreateWithCString(nullptr, text, kCFStringEncodingUTF8);
}

}  // namespace

DialogView ReadDialog() {
  DialogView view;
  OnMain([&view] {
    Flash_WindowController_KESTBU* controller = FlashCocoaIntern_RunningController();
    // Until its window is loaded the dialog belongs to the calling thread alone.
    if (controller == nil || ![controller isWindowLoaded]) return;
    view.registered = true;
    NSWindow* window = [controller window];
    view.visible = [window isVisible];
    view.modal = [NSApp modalWindow] == window;
    view.key = [window isKeyWindow];
    view.nibName = Utf8([[controller windowNibPath] lastPathComponent]);
    view.frame = [window frame];
    view.screen = [[window screen] visibleFrame];
    view.level = [window level];
    view.titled = ([window styleMask] & NSTitledWindowMask) != 0;
    view.title = Utf8([window title]);
    NSString* const labelKeys[3] = {@"labelTextField1", @"labelTextField2", @"labelTextField3"};
    for (int i = 0; i < 3; ++i) view.labels[i] = Utf8([[controller valueForKey:labelKeys[i]] stringValue]);
    NSButton* button = [controller getButtonID:0];
    view.buttonTitle = Utf8([button title]);
    view.buttonEnabled = [button isEnabled];
    view.buttonHidden = [button isHidden];
    view.buttonFrame = ScreenFrameOf(button);
    NSImageCell* logoCell = [controller valueForKey:@"pluginlogoNSImageCell"];
    view.logoImage = [logoCell image] != nil;
    view.logoFrame = ScreenFrameOf(ViewOfCell([window contentView], logoCell));
    view.state = [[controller valueForKey:@"state"] intValue];
    NSTimer* timer = [controller myTimer];
    view.timer = timer != nil;
    view.timerValid = [timer isValid];
    view.timerInterval = [timer timeInterval];
  });
  return view;
}

std::array<std::string, 3> NibLabels(const std::string& nibName) {
  std::array<std::string, 3> labels;
  OnMain([&] {
    NSString* path = [NSString stringWithFormat:@"%s/%s", ResourcesDir().c_str(), nibName.c_str()];
    Flash_WindowController_KESTBU* controller = [Flash_WindowController_KESTBU alloc];
    controller = [controller initWithWindowNibPath:path owner:controller];
    if ([controller window] != nil) {
      NSString* const labelKeys[3] = {@"labelTextField1", @"labelTextField2", @"labelTextField3"};
      for (int i = 0; i < 3; ++i) labels[i] = Utf8([[controller valueForKey:labelKeys[i]] stringValue]);
    } else {
      ADD_FAILURE() << "no window in " << Utf8(path);
    }
    [controller close];
    [controller release];
  });
  return labels;
}

int VisibleWindows() {
  int count = 0;
  OnMain([&count] {
    NSArray* windows = [NSApp windows];
    for (NSUInteger i = 0; i < [windows count]; ++i) {
      if ([[windows objectAtIndex:i] isVisible]) ++count;
    }
  });
  return count;
}

DialogArgs DialogArgs::Titled() {
  return DialogArgs();
}

DialogArgs DialogArgs::PleaseWait(unsigned int delayTicks) {
  DialogArgs args;
  args.kind = 0;
  args.delayTicks = delayTicks;
  return args;
}

DialogArgs DialogArgs::Splash(unsigned int delayTicks) {
  DialogArgs args;
  args.withButton = false;
  args.delayTicks = delayTicks;
  return args;
}

DialogCall::DialogCall(const DialogArgs& args) {
  const std::string nibFolder = args.nibFolder != nullptr ? args.nibFolder : ResourcesDir();
  const std::string logo = args.logoPath != nullptr ? args.logoPath : ResourcesDir() + "/PluginLogo.png";
  calledAt_ = Now();
  thread_ = std::thread([=] {
    CFRef<CFStringRef> text2(NewCFString(args.text2));
    CFRef<CFStringRef> text3(NewCFString(args.text3));
    CFRef<CFStringRef> text1(NewCFString(args.text1));
    CFRef<CFStringRef> folder(args.noNibFolder ? nullptr : NewCFString(nibFolder.c_str()));
    CFRef<CFStringRef> logoPath(args.noLogo ? nullptr : NewCFString(logo.c_str()));
    result_ = KestCocoa_CALLShowPluginFlashDialog(args.withButton, args.delayTicks, args.kind, text2.get(),
                                                  text3.get(), text1.get(), folder.get(), logoPath.get());
    returnedAt_ = Now();
    returned_ = true;
  });
}

DialogCall::~DialogCall() {
  // A test that failed half-way leaves its dialog up; the next test needs the screen.
  while (!Returned()) {
    AbortModalSession();
    WaitReturned(1.0);
  }
  thread_.join();
  if (kept_ != nil) {
    Flash_WindowController_KESTBU* kept = kept_;
    OnMain([kept] { [kept release]; });
  }
}

bool DialogCall::WaitReturned(double seconds) {
  return WaitUntil([this] { return Returned(); }, seconds);
}

void DialogCall::KeepController() {
  OnMain([this] { kept_ = [FlashCocoaIntern_RunningController() retain]; });
}

DialogView WaitForModalDialog() {
  DialogView view;
  const bool up = WaitUntil([&view] {
    view = ReadDialog();
    return view.modal;
  });
  EXPECT_TRUE(up) << "no flash dialog came up within " << kPatience << " s";
  return view;
}

}  // namespace flashui
