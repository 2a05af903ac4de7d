// The flash dialog seen from a test.
#import "DialogProbe.h"

#include <gtest/gtest.h>

#import "FlashDialog.h"
#include "FlashEntryPoints.h"
#import "UIHarness.h"
#include "text/CFRef.h"

namespace flashui {
namespace {

// The control that shows `cell` (GNUstep's -controlView answers whichever view drew last).
NSView* ViewOfCell(NSView* view, NSCell* cell) {
  if ([view isKindOfClass:[NSControl class]] && [(NSControl*)view cell] == cell) return view;
  for (NSUInteger i = 0; i < [[view subviews] count]; ++i) {
    NSView* found = ViewOfCell([[view subviews] objectAtIndex:i], cell);
    if (found != nil) return found;
  }
  return nil;
}

NSRect ScreenFrameOf(NSView* view) {
  return [[view window] convertRectToScreen:[view convertRect:[view bounds] toView:nil]];
}

CFStringRef NewCFString(const std::string& text) {
  return CFStringCreateWithCString(nullptr, text.c_str(), kCFStringEncodingUTF8);
}

}  // namespace

DialogView ReadDialog() {
  DialogView view;
  OnMain([&view] {
    Flash_WindowController_KESTBU* controller = FlashCocoaIntern_RunningController();
    // Until the window runs, the dialog belongs to the calling thread.
    if (controller == nil || ![controller isWindowLoaded] || [NSApp modalWindow] != [controller window]) return;
    NSWindow* window = [controller window];
    view.modal = true;
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
    view.timer = [controller myTimer];
    view.timerValid = [view.timer isValid];
    view.timerInterval = [view.timer timeInterval];
  });
  return view;
}

DialogView WaitForModalDialog() {
  DialogView view;
  EXPECT_TRUE(WaitUntil([&view] { return (view = ReadDialog()).modal; })) << "no flash dialog came up";
  return view;
}

int VisibleWindows() {
  int count = 0;
  OnMain([&count] {
    for (NSUInteger i = 0; i < [[NSApp windows] count]; ++i) count += [[[NSApp windows] objectAtIndex:i] isVisible];
  });
  return count;
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

DialogCall::DialogCall(const DialogArgs& args) : calledAt_(Now()) {
  // Every string is made on the calling thread, as the plug-in makes them.
  thread_ = std::thread([=] {
    auto text = [](const char* s) { return CFRef<CFStringRef>(s == nullptr ? nullptr : NewCFString(s)); };
    auto path = [&](const char* s, const std::string& dflt) { return text(s != nullptr && !*s ? dflt.c_str() : s); };
    CFRef<CFStringRef> text2 = text(args.text2), text3 = text(args.text3), text1 = text(args.text1);
    CFRef<CFStringRef> folder = path(args.nibFolder, ResourcesDir());
    CFRef<CFStringRef> logo = path(args.logoPath, ResourcesDir() + "/PluginLogo.png");
    result_ = KestCocoa_CALLShowPluginFlashDialog(args.withButton, args.delayTicks, args.kind, text2.get(),
                                                  text3.get(), text1.get(), folder.get(), logo.get());
    returnedAt_ = Now();
    returned_ = true;
  });
}

DialogCall::~DialogCall() {
  // A test that failed half-way leaves its dialog up; the next test needs the screen.
  while (!WaitReturned(1.0)) AbortModalSession();
  thread_.join();
  Flash_WindowController_KESTBU* kept = kept_;
  if (kept != nil) OnMain([kept] { [kept release]; });
}

bool DialogCall::WaitReturned(double seconds) {
  return WaitUntil([this] { return Returned(); }, seconds);
}

double DialogCall::Elapsed() const {
  return (Returned() ? returnedAt_.load() : Now()) - calledAt_;
}

void DialogCall::KeepController() {
  OnMain([this] { kept_ = [FlashCocoaIntern_RunningController() retain]; });
}

NSInteger DialogCall::KeptResultCode() const {
  NSInteger code = 0;
  OnMain([&] { code = [kept_ getResultCode]; });
  return code;
}

int DialogCall::KeptState() const {
  int state = -1;
  OnMain([&] { state = [[kept_ valueForKey:@"state"] intValue]; });
  return state;
}

}  // namespace flashui
