// The message alerts in real windows: their buttons, what each click returns, their text.
#import <AppKit/AppKit.h>

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <string>
#include <vector>

#include "FlashEntryPoints.h"
#import "UIHarness.h"
#include "text/CFRef.h"

namespace {

struct AlertButton {
  std::string title;
  NSRect frame;  // screen coordinates
};

// The alert panel now running, read on the main thread.
struct AlertView {
  bool up = false;
  NSRect frame = NSZeroRect;
  std::vector<AlertButton> buttons;
  std::vector<std::string> texts;  // every text the panel shows
};

void Collect(NSView* view, AlertView& alert) {
  if ([view isHidden]) return;
  // The panel's icon is a borderless button too.
  if ([view isKindOfClass:[NSButton class]] && [(NSButton*)view isBordered]) {
    NSRect frame = [[view window] convertRectToScreen:[view convertRect:[view bounds] toView:nil]];
    alert.buttons.push_back({flashui::Utf8([(NSButton*)view title]), frame});
  } else if ([view isKindOfClass:[NSTextField class]]) {
    alert.texts.push_back(flashui::Utf8([(NSTextField*)view stringValue]));
  } else if ([view isKindOfClass:[NSText class]]) {
    alert.texts.push_back(flashui::Utf8([(NSText*)view string]));
  }
  NSArray* subviews = [view subviews];
  for (NSUInteger i = 0; i < [subviews count]; ++i) Collect([subviews objectAtIndex:i], alert);
}

AlertView ReadAlert() {
  AlertView alert;
  flashui::OnMain([&alert] {
    NSWindow* panel = [NSApp modalWindow];
    if (panel == nil || ![panel isVisible]) return;
    alert.up = true;
    alert.frame = [panel frame];
    Collect([panel contentView], alert);
  });
  return alert;
}

AlertView WaitForAlert() {
  AlertView alert;
  EXPECT_TRUE(flashui::WaitUntil([&alert] {
    alert = ReadAlert();
    return alert.up && !alert.buttons.empty();
  })) << "no alert came up";
  return alert;
}

bool Shows(const AlertView& alert, const std::string& text) {
  for (const std::string& shown : alert.texts) {
    if (shown == text) return true;
  }
  return false;
}

NSRect ButtonFrame(const AlertView& alert, const std::string& title) {
  for (const AlertButton& button : alert.buttons) {
    if (button.title == title) return button.frame;
  }
  ADD_FAILURE() << "no button " << title;
  return NSZeroRect;
}

// An alert run on the main thread, as the plug-in's callers must run it.
class AlertRun {
 public:
  explicit AlertRun(const std::function<long()>& show) : state_(std::make_shared<State>()) {
    std::shared_ptr<State> state = state_;
    flashui::OnMainLater([=] {
      state->result = show();
      state->done = true;
    });
  }
  AlertRun(const AlertRun&) = delete;
  AlertRun& operator=(const AlertRun&) = delete;
  ~AlertRun() {
    // A test that failed half-way leaves its alert up; the next test needs the screen.
    while (!state_->done) {
      flashui::AbortModalSession();
      flashui::WaitUntil([this] { return state_->done.load(); }, 1.0);
    }
  }

  /// Waits for the alert to end; false when it did not.
  bool WaitEnded() {
    return flashui::WaitUntil([this] { return state_->done.load(); });
  }
  /// Waits for the alert to end and returns its result.
  long Result() {
    EXPECT_TRUE(WaitEnded()) << "the alert did not end";
    return state_->result;
  }

 private:
  struct State {
    std::atomic<bool> done{false};
    std::atomic<long> result{0};
  };
  std::shared_ptr<State> state_;
};

CFStringRef NewCFString(const char* text) {
  return CFStringCreateWithCString(nullptr, text, kCFStringEncodingUTF8);
}

TEST(MessageAlert, OneButtonShowsTheMessageAndReturns1000) {
  const char* message = "The plug-in needs a moment of your attention.";
  AlertRun run([message] {
    CFRef<CFStringRef> text(NewCFString(message));
    return CX_DisplayMessageAlert(text.get());
  });
  const AlertView alert = WaitForAlert();
  ASSERT_EQ(alert.buttons.size(), 1u);
  EXPECT_EQ(alert.buttons[0].title, "OK");
  EXPECT_TRUE(Shows(alert, message));
  flashui::Shot("alert-one-button", alert.frame, 12);
  flashui::ClickAt(alert.buttons[0].frame);
  EXPECT_EQ(run.Result(), NSAlertFirstButtonReturn);
}

struct TwoButtonCase {
  const char* click;
  int result;
};

void PrintTo(const TwoButtonCase& button, std::ostream* out) {
  *out << button.click;
}

class TwoButtonAlert : public testing::TestWithParam<TwoButtonCase> {};

TEST_P(TwoButtonAlert, ReturnsTheNumberOfTheButtonClicked) {
  AlertRun run([] {
    CFRef<CFStringRef> text(NewCFString("Replace the stored container?"));
    CFRef<CFStringRef> first(NewCFString("Replace"));
    CFRef<CFStringRef> second(NewCFString("Keep"));
    return static_cast<long>(CX_DisplayMessageAlert2Button(text.get(), first.get(), second.get()));
  });
  const AlertView alert = WaitForAlert();
  ASSERT_EQ(alert.buttons.size(), 2u);
  EXPECT_TRUE(Shows(alert, "Replace the stored container?"));
  flashui::Shot("alert-two-buttons", alert.frame, 12);
  flashui::ClickAt(ButtonFrame(alert, GetParam().click));
  EXPECT_EQ(run.Result(), GetParam().result);
}

INSTANTIATE_TEST_SUITE_P(Flash, TwoButtonAlert,
                         testing::Values(TwoButtonCase{"Replace", 1}, TwoButtonCase{"Keep", 2}),
                         [](const testing::TestParamInfo<TwoButtonCase>& info) {
                           return std::string(info.param.click);
                         });

TEST(MessageAlert, UTF8TextWithNonAsciiLettersIsShownAsWritten) {
  const char* message = "Größe: 5 €. Ελληνικά, кириллица, čeština, Ærøskøbing.";
  AlertRun run([message] {
    XP64_DisplayMessageCStr(message);
    return 0L;
  });
  const AlertView alert = WaitForAlert();
  EXPECT_TRUE(Shows(alert, message));
  flashui::Shot("alert-non-ascii", alert.frame, 12);
  flashui::ClickAt(ButtonFrame(alert, "OK"));
  EXPECT_TRUE(run.WaitEnded());
}

TEST(MessageAlert, HostTextsMakeATwoButtonAlert) {
  AlertRun run([] {
    fmx::TextAutoPtr message, first, second;
    message->Assign("Überschreiben?", fmx::Text::kEncoding_UTF8);
    first->Assign("Ja", fmx::Text::kEncoding_UTF8);
    second->Assign("Nein", fmx::Text::kEncoding_UTF8);
    return static_cast<long>(XP64_DisplayMessage2Button(message, first, second));
  });
  const AlertView alert = WaitForAlert();
  EXPECT_TRUE(Shows(alert, "Überschreiben?"));
  flashui::ClickAt(ButtonFrame(alert, "Nein"));
  EXPECT_EQ(run.Result(), 2);
}

TEST(MessageAlert, TheFlashTextIsAPlainAlert) {
  {
    AlertRun run([] {
      fmx::TextAutoPtr text;
      text->Assign("Flash text from the host", fmx::Text::kEncoding_UTF8);
      XP64_DisplayFlashTxt(text);
      return 0L;
    });
    const AlertView alert = WaitForAlert();
    EXPECT_TRUE(Shows(alert, "Flash text from the host"));
    ASSERT_EQ(alert.buttons.size(), 1u);
    flashui::ClickAt(alert.buttons[0].frame);
    EXPECT_TRUE(run.WaitEnded());
  }
  AlertRun run([] {
    CFRef<CFStringRef> text(NewCFString("Flash text"));
    return CX_DisplayFlashDialogSimple(text.get());
  });
  const AlertView alert = WaitForAlert();
  ASSERT_EQ(alert.buttons.size(), 1u);
  flashui::ClickAt(alert.buttons[0].frame);
  EXPECT_EQ(run.Result(), NSAlertFirstButtonReturn);
}

TEST(MessageAlert, ANullMessageGivesAnEmptyAlert) {
  AlertRun run([] { return CX_DisplayMessageAlert(nullptr); });
  const AlertView alert = WaitForAlert();
  ASSERT_EQ(alert.buttons.size(), 1u);
  flashui::ClickAt(alert.buttons[0].frame);
  EXPECT_EQ(run.Result(), NSAlertFirstButtonReturn);
}

TEST(MessageAlert, AnAlertEndedWithoutAClickReturnsNoButton) {
  {
    AlertRun run([] {
      CFRef<CFStringRef> text(NewCFString("Aborted"));
      CFRef<CFStringRef> first(NewCFString("One"));
      CFRef<CFStringRef> second(NewCFString("Two"));
      return static_cast<long>(CX_DisplayMessageAlert2Button(text.get(), first.get(), second.get()));
    });
    WaitForAlert();
    flashui::AbortModalSession();
    EXPECT_EQ(run.Result(), 0);
  }
  AlertRun run([] {
    CFRef<CFStringRef> text(NewCFString("Aborted"));
    return CX_DisplayMessageAlert(text.get());
  });
  WaitForAlert();
  flashui::AbortModalSession();
  // Whatever the platform answers for an abort, it is not a button.
  const long result = run.Result();
  EXPECT_NE(result, NSAlertFirstButtonReturn);
  EXPECT_NE(result, NSAlertSecondButtonReturn);
}

}  // namespace
