// The flash dialog in real windows: its kinds, texts, time-outs, clicks and refusals.
#import <AppKit/AppKit.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <string>
#include <thread>

#import "DialogProbe.h"
#import "FlashDialog.h"
#include "FlashEntryPoints.h"
#include "helpers/TempFolder.h"
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

// Ends the dialog with a real click on its button; the entry then returns 0.
void Click(DialogCall& call, const DialogView& view) {
  flashui::ClickAt(view.buttonFrame);
  ASSERT_TRUE(call.WaitReturned()) << "the click did not end the dialog";
  EXPECT_EQ(call.Result(), 0);
}

void Abort(DialogCall& call) {
  flashui::AbortModalSession();
  ASSERT_TRUE(call.WaitReturned());
  EXPECT_EQ(call.Result(), 0);
}

struct KindCase {
  const char* name;
  DialogArgs args;
  const char* nib;
  int state;
  const char* buttonTitle;  // null: the button is hidden
  bool buttonEnabled;
  long level;  // the titled kind alone has a title bar
};

void PrintTo(const KindCase& kind, std::ostream* out) {
  *out << kind.name;
}

DialogArgs SplashAskedAsKind3() {
  DialogArgs args = DialogArgs::Splash(300);
  args.kind = 3;
  return args;
}

const KindCase kKinds[] = {
    {"splash", DialogArgs::Splash(300), "Flash7_FlashDialogNoTitleBar.nib", kFlashStateSplash, nullptr, true,
     NSNormalWindowLevel},
    {"splash_kind_3", SplashAskedAsKind3(), "Flash7_FlashDialogNoTitleBar.nib", kFlashStateSplash, nullptr, true,
     NSNormalWindowLevel},
    {"please_wait", DialogArgs::PleaseWait(59), "Flash7_FlashDialogNoTitleBar.nib", kFlashStateWaiting,
     "Please wait", false, NSNormalWindowLevel},
    {"titled_ok", DialogArgs(), "Flash7_FlashDialog.nib", kFlashStateClosable, "OK", true, 10},
};

class DialogKinds : public testing::TestWithParam<KindCase> {};

TEST_P(DialogKinds, ShowTheirNibButtonLevelTextsAndLogo) {
  const KindCase& kind = GetParam();
  const bool titled = kind.level == 10;
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
  EXPECT_EQ(view.titled, titled);
  if (titled) {
    EXPECT_EQ(view.title, "");
  }
  EXPECT_EQ(view.level, kind.level);
  // Centred across, and at or somewhat above the middle.
  EXPECT_LE(std::fabs(NSMidX(view.frame) - NSMidX(view.screen)), 1.0);
  EXPECT_GE(NSMidY(view.frame) - NSMidY(view.screen), -1.0);
  EXPECT_LE(NSMidY(view.frame) - NSMidY(view.screen), view.screen.size.height / 6);
  // The first text parameter fills label 2, the second label 3, the third label 1.
  EXPECT_EQ(view.labels[0], "Text parameter 3");
  EXPECT_EQ(view.labels[1], "Text parameter 1");
  EXPECT_EQ(view.labels[2], "Text parameter 2");
  // The logo is drawn: an empty image view is one flat colour.
  EXPECT_TRUE(view.logoImage);
  std::string name = std::string("dialog-") + kind.name;
  std::replace(name.begin(), name.end(), '_', '-');
  const std::string shot = flashui::Shot(name, view.frame, 12);
  EXPECT_GT(flashui::ColorsIn(shot, NSInsetRect(view.frame, -12, -12), view.logoFrame), 16);
  EXPECT_FALSE(call.Returned());
  if (titled) {
    Click(call, view);
  } else {
    Abort(call);
  }
}

INSTANTIATE_TEST_SUITE_P(Flash, DialogKinds, testing::ValuesIn(kKinds),
                         [](const testing::TestParamInfo<KindCase>& info) { return std::string(info.param.name); });

TEST(DialogTexts, NullTextsKeepTheNibsLabelsAndOthersArriveWhole) {
  DialogArgs args;
  args.text1 = nullptr;
  args.text2 = nullptr;
  args.text3 = "Größe, Ελληνικά, кириллица, čeština …";
  DialogCall call(args);
  const DialogView view = flashui::WaitForModalDialog();
  EXPECT_EQ(view.labels[0], "Plug-in");  // as resources/Flash7_FlashDialog.xib has them
  EXPECT_EQ(view.labels[1], "One moment, please.");
  EXPECT_EQ(view.labels[2], args.text3);
  flashui::Shot("dialog-nib-texts", view.frame, 12);
  Click(call, view);
}

struct TimeOutCase {
  unsigned int ticks;
  double seconds;
};

class SplashTimeOut : public testing::TestWithParam<TimeOutCase> {};

TEST_P(SplashTimeOut, EndsTheSplashAfterWholeSeconds) {
  const TimeOutCase timeOut = GetParam();
  DialogCall call(DialogArgs::Splash(timeOut.ticks));
  const DialogView view = flashui::WaitForModalDialog();
  const double upAfter = call.Elapsed();
  call.KeepController();
  EXPECT_TRUE(view.timerValid);
  EXPECT_EQ(view.timerInterval, timeOut.seconds);
  ASSERT_TRUE(call.WaitReturned(timeOut.seconds + flashui::kPatience));
  EXPECT_EQ(call.Result(), 0);
  EXPECT_GE(call.Elapsed(), timeOut.seconds - 0.05);
  EXPECT_LE(call.Elapsed() - upAfter, timeOut.seconds + kTimerSlack);
  EXPECT_EQ(call.KeptResultCode(), NSModalResponseAbort);
  EXPECT_EQ(call.KeptState(), kFlashStateClosable);
}

INSTANTIATE_TEST_SUITE_P(Flash, SplashTimeOut,
                         testing::Values(TimeOutCase{150, 2.0}, TimeOutCase{60, 1.0}, TimeOutCase{119, 1.0}),
                         [](const testing::TestParamInfo<TimeOutCase>& info) {
                           return std::to_string(info.param.ticks) + "Ticks";
                         });

TEST(DialogTimeOut, FiftyNineTicksGiveNoTimer) {
  for (const DialogArgs& args : {DialogArgs::PleaseWait(59), DialogArgs::Splash(59)}) {
    DialogCall call(args);
    const DialogView view = flashui::WaitForModalDialog();
    EXPECT_EQ(view.timer, nil);
    Pause(1.5);
    const DialogView later = flashui::ReadDialog();
    EXPECT_TRUE(later.modal);
    EXPECT_EQ(later.state, view.state);
    EXPECT_EQ(later.buttonTitle, view.buttonTitle);
    EXPECT_EQ(later.buttonEnabled, view.buttonEnabled);
    Abort(call);
  }
}

TEST(DialogTimeOut, PleaseWaitTurnsIntoAnEnabledOKThatWaitsForTheClick) {
  DialogCall call(DialogArgs::PleaseWait(60));
  const DialogView waiting = flashui::WaitForModalDialog();
  const double upAfter = call.Elapsed();
  EXPECT_EQ(waiting.buttonTitle, "Please wait");
  EXPECT_FALSE(waiting.buttonEnabled);
  EXPECT_EQ(waiting.timerInterval, 1.0);
  flashui::Shot("dialog-please-wait-60-ticks", waiting.frame, 12);

  DialogView ready;
  ASSERT_TRUE(flashui::WaitUntil([&ready] { return (ready = flashui::ReadDialog()).buttonTitle == "OK"; }));
  EXPECT_GE(call.Elapsed(), 0.95);
  EXPECT_LE(call.Elapsed() - upAfter, 1.0 + kTimerSlack);
  EXPECT_TRUE(ready.buttonEnabled);
  EXPECT_FALSE(ready.buttonHidden);
  EXPECT_EQ(ready.state, kFlashStateClosable);
  EXPECT_EQ(ready.timer, nil);
  Pause(1.2);
  EXPECT_TRUE(flashui::ReadDialog().modal);
  flashui::Shot("dialog-please-wait-turned-ok", ready.frame, 12);
  call.KeepController();
  Click(call, ready);
  EXPECT_EQ(call.KeptResultCode(), kButtonTag);
}

TEST(DialogTimeOut, ATimerFiringInTheClosableStateChangesNothing) {
  DialogCall call{DialogArgs()};
  const DialogView view = flashui::WaitForModalDialog();
  flashui::OnMain([] {
    [FlashCocoaIntern_RunningController() myAddTimerWithDelayTime:[NSNumber numberWithUnsignedInt:60]];
  });
  const NSTimer* timer = flashui::ReadDialog().timer;
  ASSERT_NE(timer, nil);
  Pause(2.5);  // two firings
  const DialogView later = flashui::ReadDialog();
  EXPECT_TRUE(later.modal);
  EXPECT_EQ(later.state, kFlashStateClosable);
  EXPECT_EQ(later.buttonTitle, "OK");
  EXPECT_TRUE(later.buttonEnabled);
  EXPECT_EQ(later.timer, timer);
  EXPECT_TRUE(later.timerValid);
  flashui::OnMain([] { [[FlashCocoaIntern_RunningController() myTimer] invalidate]; });
  Click(call, view);
}

TEST(DialogClick, ARealClickEndsTheTitledDialogWithTheButtonsTagAndOnlyThenTheCall) {
  DialogCall call{DialogArgs()};
  const DialogView view = flashui::WaitForModalDialog();
  call.KeepController();
  Pause(0.5);
  EXPECT_FALSE(call.Returned());
  Click(call, view);
  EXPECT_EQ(call.KeptResultCode(), kButtonTag);
  EXPECT_FALSE(flashui::ReadDialog().modal);
  EXPECT_EQ(flashui::VisibleWindows(), 0);
}

TEST(DialogBusy, ASecondCallReturnsAtOnceAndShowsNothing) {
  DialogCall first{DialogArgs()};
  const DialogView view = flashui::WaitForModalDialog();
  const int windows = flashui::VisibleWindows();
  DialogCall second(DialogArgs::PleaseWait(60));
  ASSERT_TRUE(second.WaitReturned());
  EXPECT_LT(second.Elapsed(), 1.0);
  EXPECT_EQ(second.Result(), 0);
  // And from the main thread, inside the running dialog's modal session.
  int result = -1;
  const double start = flashui::Now();
  flashui::OnMain([&result] {
    result = KestCocoa_CALLShowPluginFlashDialog(true, 60, 0, nullptr, nullptr, nullptr, nullptr, nullptr);
  });
  EXPECT_LT(flashui::Now() - start, 1.0);
  EXPECT_EQ(result, 0);
  EXPECT_EQ(flashui::VisibleWindows(), windows);
  EXPECT_EQ(flashui::ReadDialog().nibName, "Flash7_FlashDialog.nib");
  Click(first, view);
}

TEST(DialogResources, AMissingNibShowsNothingAndTheNextDialogRuns) {
  testing_host::TempFolder empty;
  for (const char* folder : {empty.path().c_str(), static_cast<const char*>(nullptr)}) {
    DialogArgs args;
    args.nibFolder = folder;
    DialogCall call(args);
    ASSERT_TRUE(call.WaitReturned());
    EXPECT_EQ(call.Result(), 0);
    EXPECT_EQ(flashui::VisibleWindows(), 0);
  }
  DialogCall next(DialogArgs::Splash(60));
  EXPECT_TRUE(flashui::WaitForModalDialog().modal);
  EXPECT_TRUE(next.WaitReturned());
}

TEST(DialogResources, AMissingLogoLeavesTheLogoEmpty) {
  for (const char* logo : {"/nonexistent/PluginLogo.png", static_cast<const char*>(nullptr)}) {
    DialogArgs args;
    args.logoPath = logo;
    DialogCall call(args);
    const DialogView view = flashui::WaitForModalDialog();
    EXPECT_FALSE(view.logoImage);
    const std::string shot = flashui::Shot(logo ? "dialog-missing-logo" : "dialog-null-logo", view.frame, 12);
    EXPECT_EQ(flashui::ColorsIn(shot, NSInsetRect(view.frame, -12, -12), view.logoFrame), 1);
    Click(call, view);
  }
}

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
  constexpr unsigned kRed = 0xFF0000;
  {
    DialogCall call(DialogArgs::PleaseWait(59));
    const NSRect frame = flashui::WaitForModalDialog().frame;
    const NSPoint middle = NSMakePoint(NSMidX(frame), NSMidY(frame));
    EXPECT_TRUE(flashui::WaitUntil([middle] { return flashui::ScreenColorAt(middle) != kRed; }));
    // The application goes to the background and the dialog behind another window. (A
    // window ordered front does not cover GNUstep's modal window, so the dialog goes back.)
    flashui::OnMain([] {
      [NSApp deactivate];
      [[FlashCocoaIntern_RunningController() window] orderBack:nil];
    });
    ASSERT_TRUE(flashui::WaitUntil([middle] { return flashui::ScreenColorAt(middle) == kRed; }));
    flashui::OnMain([] { [NSApp activateIgnoringOtherApps:YES]; });
    EXPECT_TRUE(flashui::WaitUntil([middle] { return flashui::ScreenColorAt(middle) != kRed; }))
        << "the dialog stayed behind";
    Abort(call);
  }
  flashui::OnMain([cover] {
    [cover orderOut:nil];
    [cover release];
  });
}

}  // namespace
