// The flash dialog in real windows: its kinds, texts, time-outs, clicks and refusals.
#import <AppKit/AppKit.h>

#include <gtest/gtest.h>
#include <stdlib.h>

#include <chrono>
#include <cmath>
#include <string>
#include <thread>

#import "DialogProbe.h"
#include "FlashEntryPoints.h"
#import "FlashDialog.h"
#import "UIHarness.h"

using flashui::DialogArgs;
using flashui::DialogCall;
using flashui::DialogView;

namespace {

// The result code of the dialog's button: the tag both nibs give it.
constexpr NSInteger kButtonTag = 1;
// How late a time-out may end the dialog on a loaded machine, in seconds.
constexpr double kTimerSlack = 1.5;

void Pause(double seconds) {
  std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
}

// Where the flash dialog must sit: centred across, and at or somewhat above the middle.
void ExpectCentred(const DialogView& view) {
  const double across = NSMidX(view.frame) - NSMidX(view.screen);
  const double up = NSMidY(view.frame) - NSMidY(view.screen);
  EXPECT_LE(std::fabs(across), 1.0) << "window " << NSMidX(view.frame) << " screen " << NSMidX(view.screen);
  EXPECT_GE(up, -1.0);
  EXPECT_LE(up, view.screen.size.height / 6);
}

// Ends the dialog with a real click on its button and checks that the entry then returns 0.
void ClickButtonAndExpectEnd(DialogCall& call, const DialogView& view) {
  flashui::ClickAt(view.buttonFrame);
  ASSERT_TRUE(call.WaitReturned(flashui::kPatience)) << "the click did not end the dialog";
  EXPECT_EQ(call.Result(), 0);
}

NSInteger KeptResultCode(const DialogCall& call) {
  NSInteger code = 0;
  Flash_WindowController_KESTBU* kept = call.Kept();
  flashui::OnMain([&] { code = [kept getResultCode]; });
  return code;
}

// ---------------------------------------------------------------------------------------
// The three kinds, and the buttonless kind asked for with kind number 3.

struct KindCase {
  const char* name;
  const char* shot;
  DialogArgs args;
  const char* nib;
  int state;
  const char* buttonTitle;  // null: the button is hidden
  bool buttonEnabled;
  bool titled;
  long level;
};

DialogArgs SplashOfKind3() {
  DialogArgs args = DialogArgs::Splash(300);
  args.kind = 3;
  return args;
}

const KindCase kKinds[] = {
    {"Splash", "dialog-splash", DialogArgs::Splash(300), "Flash7_FlashDialogNoTitleBar.nib", kFlashStateSplash, nullptr, true,
     false, NSNormalWindowLevel},
    {"SplashAskedAsKind3", "dialog-splash-kind-3", SplashOfKind3(), "Flash7_FlashDialogNoTitleBar.nib", kFlashStateSplash, nullptr,
     true, false, NSNormalWindowLevel},
    {"PleaseWait", "dialog-please-wait", DialogArgs::PleaseWait(59), "Flash7_FlashDialogNoTitleBar.nib", kFlashStateWaiting,
     "Please wait", false, false, NSNormalWindowLevel},
    {"TitledOK", "dialog-titled-ok", DialogArgs::Titled(), "Flash7_FlashDialog.nib", kFlashStateClosable, "OK", true, true, 10},
};

void PrintTo(const KindCase& kind, std::ostream* out) {
  *out << kind.name;
}

class DialogKinds : public testing::TestWithParam<KindCase> {};

TEST_P(DialogKinds, ShowTheirNibButtonTitleAndLevel) {
  const KindCase& kind = GetParam();
  DialogCall call(kind.args);
  const DialogView view = flashui::WaitForModalDialog();
  ASSERT_TRUE(view.modal);

  EXPECT_EQ(view.nibName, kind.nib);
  EXPECT_EQ(view.state, kind.state);
  EXPECT_EQ(view.buttonHidden, kind.buttonTitle == nullptr);
  if (kind.buttonTitle != nullptr) {
    EXPECT_EQ(view.buttonTitle, kind.buttonTitle);
  }
  EXPECT_EQ(view.buttonEnabled, kind.buttonEnabled);
  EXPECT_EQ(view.titled, kind.titled);
  if (kind.titled) {
    EXPECT_EQ(view.title, "");
  }
  EXPECT_EQ(view.level, kind.level);
  ExpectCentred(view);

  // The first text parameter fills label 2, the second label 3, the third label 1.
  EXPECT_EQ(view.labels[0], "Text parameter 3");
  EXPECT_EQ(view.labels[1], "Text parameter 1");
  EXPECT_EQ(view.labels[2], "Text parameter 2");

  // The logo is drawn: a flat background would have one colour.
  EXPECT_TRUE(view.logoImage);
  const std::string shot = flashui::Shot(kind.shot, view.frame, 12);
  EXPECT_GT(flashui::ColorsIn(shot, NSInsetRect(view.frame, -12, -12), view.logoFrame), 16)
      << "logo " << flashui::Utf8(NSStringFromRect(view.logoFrame)) << " in window "
      << flashui::Utf8(NSStringFromRect(view.frame));

  EXPECT_FALSE(call.Returned());
  if (kind.titled) {
    ClickButtonAndExpectEnd(call, view);
  } else {
    flashui::AbortModalSession();
    ASSERT_TRUE(call.WaitReturned(flashui::kPatience));
    EXPECT_EQ(call.Result(), 0);
  }
}

INSTANTIATE_TEST_SUITE_P(Flash, DialogKinds, testing::ValuesIn(kKinds),
                         [](const testing::TestParamInfo<KindCase>& info) { return std::string(info.param.name); });

// ---------------------------------------------------------------------------------------
// Texts

TEST(DialogTexts, NullTextsLeaveTheNibsLabels) {
  const auto nibLabels = flashui::NibLabels("Flash7_FlashDialog.nib");
  ASSERT_NE(nibLabels[0], "only label 3");
  DialogArgs args = DialogArgs::Titled();
  args.text1 = nullptr;
  args.text2 = nullptr;
  args.text3 = "only label 3";
  DialogCall call(args);
  const DialogView view = flashui::WaitForModalDialog();
  EXPECT_EQ(view.labels[0], nibLabels[0]);
  EXPECT_EQ(view.labels[1], nibLabels[1]);
  EXPECT_EQ(view.labels[2], "only label 3");
  flashui::Shot("dialog-nib-texts", view.frame, 12);
  ClickButtonAndExpectEnd(call, view);
}

TEST(DialogTexts, NonAsciiTextsReachTheLabels) {
  DialogArgs args = DialogArgs::Titled();
  args.text2 = "Bitte warten: Größe wird berechnet …";
  args.text3 = "Ελληνικά, кириллица, čeština";
  DialogCall call(args);
  const DialogView view = flashui::WaitForModalDialog();
  EXPECT_EQ(view.labels[1], args.text2);
  EXPECT_EQ(view.labels[2], args.text3);
  flashui::Shot("dialog-non-ascii", view.frame, 12);
  ClickButtonAndExpectEnd(call, view);
}

// ---------------------------------------------------------------------------------------
// Time-outs

struct TimeOutCase {
  unsigned int ticks;
  double seconds;
};

class SplashTimeOut : public testing::TestWithParam<TimeOutCase> {};

TEST_P(SplashTimeOut, EndsTheSplashAfterWholeSeconds) {
  const TimeOutCase timeOut = GetParam();
  DialogCall call(DialogArgs::Splash(timeOut.ticks));
  const DialogView view = flashui::WaitForModalDialog();
  const double upAt = flashui::Now();
  call.KeepController();
  EXPECT_TRUE(view.timerValid);
  EXPECT_EQ(view.timerInterval, timeOut.seconds);

  ASSERT_TRUE(call.WaitReturned(timeOut.seconds + flashui::kPatience));
  EXPECT_EQ(call.Result(), 0);
  EXPECT_GE(call.Elapsed(), timeOut.seconds - 0.05);
  EXPECT_LE(call.CalledAt() + call.Elapsed() - upAt, timeOut.seconds + kTimerSlack);
  EXPECT_EQ(KeptResultCode(call), NSModalResponseAbort);
  int state = -1;
  bool timer = true;
  Flash_WindowController_KESTBU* kept = call.Kept();
  flashui::OnMain([&, kept] {
    state = [[kept valueForKey:@"state"] intValue];
    timer = [kept myTimer] != nil;
  });
  EXPECT_EQ(state, kFlashStateClosable);
  EXPECT_FALSE(timer);
}

INSTANTIATE_TEST_SUITE_P(Flash, SplashTimeOut, testing::Values(TimeOutCase{150, 2.0}, TimeOutCase{60, 1.0},
                                                               TimeOutCase{119, 1.0}),
                         [](const testing::TestParamInfo<TimeOutCase>& info) {
                           return std::to_string(info.param.ticks) + "Ticks";
                         });

TEST(DialogTimeOut, FiftyNineTicksGiveNoTimer) {
  for (const DialogArgs& args : {DialogArgs::PleaseWait(59), DialogArgs::Splash(59)}) {
    DialogCall call(args);
    const DialogView view = flashui::WaitForModalDialog();
    EXPECT_FALSE(view.timer);
    Pause(1.5);
    const DialogView later = flashui::ReadDialog();
    EXPECT_TRUE(later.modal);
    EXPECT_EQ(later.state, view.state);
    EXPECT_EQ(later.buttonTitle, view.buttonTitle);
    EXPECT_EQ(later.buttonEnabled, view.buttonEnabled);
    EXPECT_FALSE(call.Returned());
    flashui::AbortModalSession();
    ASSERT_TRUE(call.WaitReturned(flashui::kPatience));
  }
}

TEST(DialogTimeOut, PleaseWaitTurnsIntoAnEnabledOKAndWaitsForTheClick) {
  DialogCall call(DialogArgs::PleaseWait(60));
  const DialogView waiting = flashui::WaitForModalDialog();
  const double upAt = flashui::Now();
  EXPECT_EQ(waiting.buttonTitle, "Please wait");
  EXPECT_FALSE(waiting.buttonEnabled);
  EXPECT_EQ(waiting.timerInterval, 1.0);
  flashui::Shot("dialog-please-wait-60-ticks", waiting.frame, 12);

  DialogView ready;
  ASSERT_TRUE(flashui::WaitUntil([&ready] {
    ready = flashui::ReadDialog();
    return ready.buttonTitle == "OK";
  }));
  EXPECT_GE(flashui::Now() - call.CalledAt(), 0.95);
  EXPECT_LE(flashui::Now() - upAt, 1.0 + kTimerSlack);
  EXPECT_TRUE(ready.buttonEnabled);
  EXPECT_FALSE(ready.buttonHidden);
  EXPECT_EQ(ready.state, kFlashStateClosable);
  EXPECT_FALSE(ready.timer);

  // It stays up until the click.
  Pause(1.2);
  EXPECT_TRUE(flashui::ReadDialog().modal);
  EXPECT_FALSE(call.Returned());
  flashui::Shot("dialog-please-wait-turned-ok", ready.frame, 12);
  call.KeepController();
  ClickButtonAndExpectEnd(call, ready);
  EXPECT_EQ(KeptResultCode(call), kButtonTag);
}

TEST(DialogTimeOut, ATimerFiringInTheClosableStateChangesNothing) {
  DialogCall call(DialogArgs::Titled());
  const DialogView view = flashui::WaitForModalDialog();
  NSTimer* timer = nil;
  flashui::OnMain([&timer] {
    Flash_WindowController_KESTBU* running = FlashCocoaIntern_RunningController();
    [running myAddTimerWithDelayTime:[NSNumber numberWithUnsignedInt:60]];
    timer = [running myTimer];
  });
  ASSERT_NE(timer, nil);
  Pause(2.5);  // two firings
  const DialogView later = flashui::ReadDialog();
  EXPECT_TRUE(later.modal);
  EXPECT_EQ(later.state, kFlashStateClosable);
  EXPECT_EQ(later.buttonTitle, "OK");
  EXPECT_TRUE(later.buttonEnabled);
  EXPECT_TRUE(later.timerValid);
  bool same = false;
  flashui::OnMain([&] {
    same = [FlashCocoaIntern_RunningController() myTimer] == timer;
    [timer invalidate];
  });
  EXPECT_TRUE(same);
  EXPECT_FALSE(call.Returned());
  ClickButtonAndExpectEnd(call, view);
}

// ---------------------------------------------------------------------------------------
// Clicks

TEST(DialogClick, ARealClickEndsTheTitledDialogWithTheButtonsTag) {
  DialogCall call(DialogArgs::Titled());
  const DialogView view = flashui::WaitForModalDialog();
  call.KeepController();
  // The entry waits for the dialog, however long it takes.
  for (int i = 0; i < 5; ++i) {
    Pause(0.1);
    EXPECT_FALSE(call.Returned());
  }
  ClickButtonAndExpectEnd(call, view);
  EXPECT_EQ(KeptResultCode(call), kButtonTag);
  bool visible = true;
  Flash_WindowController_KESTBU* kept = call.Kept();
  flashui::OnMain([&] { visible = [[kept window] isVisible]; });
  EXPECT_FALSE(visible);
  EXPECT_FALSE(flashui::ReadDialog().registered);
}

}  // namespace

// Counts the clicks on a button before they reach the controller.
@interface FlashUIClickCounter : NSObject {
 @public
  int clicks;
  Flash_WindowController_KESTBU* controller;
}
- (void)buttonClickedAction:(id)sender;
@end

@implementation FlashUIClickCounter
- (void)buttonClickedAction:(id)sender {
  ++clicks;
  [controller buttonClickedAction:sender];
}
@end

namespace {

TEST(DialogClick, AClickWhileNoDialogIsRegisteredDoesNotEndTheSession) {
  // A controller of the flash dialog's class running its window with no dialog registered.
  Flash_WindowController_KESTBU* controller = nil;
  FlashUIClickCounter* counter = [[FlashUIClickCounter alloc] init];
  flashui::OnMain([&] {
    NSString* path = [NSString stringWithFormat:@"%s/Flash7_FlashDialog.nib", flashui::ResourcesDir().c_str()];
    controller = [Flash_WindowController_KESTBU alloc];
    controller = [controller initWithWindowNibPath:path owner:controller];
    [controller window];
    counter->controller = controller;
    [[controller getButtonID:0] setTarget:counter];
  });
  ASSERT_FALSE(flashui::ReadDialog().registered);
  flashui::OnMainLater([=] {
    [controller myShowWindow];
    [controller myRunModalForWindow];
  });
  NSRect buttonFrame = NSZeroRect;
  ASSERT_TRUE(flashui::WaitUntil([&] {
    bool modal = false;
    flashui::OnMain([&] {
      modal = [NSApp modalWindow] == [controller window];
      NSButton* button = [controller getButtonID:0];
      buttonFrame = [[button window] convertRectToScreen:[button convertRect:[button bounds] toView:nil]];
    });
    return modal;
  }));
  flashui::ClickAt(buttonFrame);
  EXPECT_TRUE(flashui::WaitUntil([&] {
    int clicks = 0;
    flashui::OnMain([&] { clicks = counter->clicks; });
    return clicks > 0;
  }, 5.0)) << "the click got lost";
  Pause(0.5);
  bool modal = false;
  flashui::OnMain([&] { modal = [NSApp modalWindow] == [controller window]; });
  EXPECT_TRUE(modal);

  flashui::AbortModalSession();
  EXPECT_TRUE(flashui::WaitUntil([&] {
    bool visible = true;
    flashui::OnMain([&] { visible = [[controller window] isVisible]; });
    return !visible;
  }));
  flashui::OnMain([&] {
    [controller close];
    [controller release];
    [counter release];
  });
}

// ---------------------------------------------------------------------------------------
// One dialog at a time

TEST(DialogBusy, ASecondCallReturnsAtOnceAndShowsNothing) {
  DialogCall first(DialogArgs::Titled());
  const DialogView view = flashui::WaitForModalDialog();
  const int windows = flashui::VisibleWindows();

  DialogCall second(DialogArgs::PleaseWait(60));
  ASSERT_TRUE(second.WaitReturned(flashui::kPatience));
  EXPECT_LT(second.Elapsed(), 1.0);
  EXPECT_EQ(second.Result(), 0);

  // Again from the main thread, inside the running dialog's modal session.
  int result = -1;
  const double start = flashui::Now();
  flashui::OnMain([&result] {
    result = KestCocoa_CALLShowPluginFlashDialog(true, 60, 0, nullptr, nullptr, nullptr, nullptr, nullptr);
  });
  EXPECT_LT(flashui::Now() - start, 1.0);
  EXPECT_EQ(result, 0);

  EXPECT_EQ(flashui::VisibleWindows(), windows);
  const DialogView still = flashui::ReadDialog();
  EXPECT_TRUE(still.modal);
  EXPECT_EQ(still.nibName, "Flash7_FlashDialog.nib");
  EXPECT_FALSE(first.Returned());
  ClickButtonAndExpectEnd(first, view);
}

// ---------------------------------------------------------------------------------------
// Missing resources

std::string EmptyFolder() {
  char folder[] = "/tmp/flash-ui-XXXXXX";
  return mkdtemp(folder) != nullptr ? folder : "";
}

TEST(DialogResources, AMissingNibShowsNothingAndLetsTheNextDialogRun) {
  const std::string empty = EmptyFolder();
  ASSERT_FALSE(empty.empty());
  const int windows = flashui::VisibleWindows();
  for (const bool nullFolder : {false, true}) {
    DialogArgs args = DialogArgs::Titled();
    args.nibFolder = empty.c_str();
    args.noNibFolder = nullFolder;
    DialogCall call(args);
    ASSERT_TRUE(call.WaitReturned(flashui::kPatience));
    EXPECT_EQ(call.Result(), 0);
    EXPECT_EQ(flashui::VisibleWindows(), windows);
  }
  rmdir(empty.c_str());

  // The busy bit is clear again: the next dialog comes up and ends by itself.
  DialogCall next(DialogArgs::Splash(60));
  EXPECT_TRUE(flashui::WaitForModalDialog().modal);
  EXPECT_TRUE(next.WaitReturned(flashui::kPatience));
}

TEST(DialogResources, AMissingLogoLeavesTheLogoEmpty) {
  for (const bool nullPath : {false, true}) {
    DialogArgs args = DialogArgs::Titled();
    args.logoPath = "/nonexistent/PluginLogo.png";
    args.noLogo = nullPath;
    DialogCall call(args);
    const DialogView view = flashui::WaitForModalDialog();
    EXPECT_FALSE(view.logoImage);
    const std::string shot = flashui::Shot(nullPath ? "dialog-null-logo" : "dialog-missing-logo", view.frame, 12);
    EXPECT_EQ(flashui::ColorsIn(shot, NSInsetRect(view.frame, -12, -12), view.logoFrame), 1);
    ClickButtonAndExpectEnd(call, view);
  }
}

// ---------------------------------------------------------------------------------------
// Activation

TEST(DialogActivation, BecomingActiveBringsTheDialogToTheFront) {
  NSWindow* cover = nil;
  flashui::OnMain([&cover] {
    cover = [[NSWindow alloc] initWithContentRect:[[NSScreen mainScreen] visibleFrame]
                                        styleMask:NSBorderlessWindowMask
                                          backing:NSBackingStoreBuffered
                                            defer:NO];
    [cover setBackgroundColor:[NSColor colorWithCalibratedRed:1 green:0 blue:0 alpha:1]];
    [cover orderFront:nil];
  });
  const unsigned red = 0xFF0000;
  {
    DialogCall call(DialogArgs::PleaseWait(59));
    const DialogView view = flashui::WaitForModalDialog();
    const NSPoint middle = NSMakePoint(NSMidX(view.frame), NSMidY(view.frame));
    EXPECT_TRUE(flashui::WaitUntil([middle] { return flashui::ScreenColorAt(middle) != red; }));

    // The application goes to the background and the dialog behind another window, as
    // when the user works in another application. (GNUstep keeps a modal window above
    // whatever is ordered front, so the dialog is sent back instead.)
    flashui::OnMain([] {
      [NSApp deactivate];
      [[FlashCocoaIntern_RunningController() window] orderBack:nil];
    });
    ASSERT_TRUE(flashui::WaitUntil([middle] { return flashui::ScreenColorAt(middle) == red; }));
    flashui::Shot("dialog-covered", NSInsetRect(view.frame, -40, -40));

    flashui::OnMain([] { [NSApp activateIgnoringOtherApps:YES]; });
    EXPECT_TRUE(flashui::WaitUntil([middle] { return flashui::ScreenColorAt(middle) != red; }))
        << "the dialog stayed behind";
    flashui::Shot("dialog-back-in-front", NSInsetRect(view.frame, -40, -40));
    flashui::AbortModalSession();
    ASSERT_TRUE(call.WaitReturned(flashui::kPatience));
  }
  flashui::OnMain([cover] {
    [cover orderOut:nil];
    [cover release];
  });
}

}  // namespace
