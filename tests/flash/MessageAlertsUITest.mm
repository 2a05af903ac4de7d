// The message alerts in real windows: their buttons, what each click returns, their text.
#import <AppKit/AppKit.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <string>
#include <vector>

#include "FlashEntryPoints.h"
#import "UIHarness.h"
#include "text/CFRef.h"

namespace {

// The alert panel now running, read on the main thread: its buttons (by title, with their
// screen frames) and every text it shows.
struct AlertView {
  NSRect frame = NSZeroRect;
  std::vector<std::pair<std::string, NSRect>> buttons;
  std::vector<std::string> texts;

  NSRect Button(const std::string& title) const {
    for (const auto& button : buttons) {
      if (button.first == title) return button.second;
    }
    ADD_FAILURE() << "no button " << title;
    return NSZeroRect;
  }
  bool Shows(const std::string& text) const { return std::find(texts.begin(), texts.end(), text) != texts.end(); }
};

void Collect(NSView* view, AlertView& alert) {
  if ([view isHidden]) return;
  // The panel's icon is a borderless button.
  if ([view isKindOfClass:[NSButton class]] && [(NSButton*)view isBordered]) {
    const NSRect frame = [[view window] convertRectToScreen:[view convertRect:[view bounds] toView:nil]];
    alert.buttons.emplace_back(flashui::Utf8([(NSButton*)view title]), frame);
  } else if ([view isKindOfClass:[NSTextField class]]) {
    alert.texts.push_back(flashui::Utf8([(NSTextField*)view stringValue]));
  }
  for (NSUInteger i = 0; i < [[view subviews] count]; ++i) Collect([[view subviews] objectAtIndex:i], alert);
}

AlertView WaitForAlert() {
  AlertView alert;
  EXPECT_TRUE(flashui::WaitUntil([&alert] {
    alert = AlertView();
    flashui::OnMain([&alert] {
      NSWindow* panel = [NSApp modalWindow];
      if (panel == nil || ![panel isVisible]) return;
      alert.frame = [panel frame];
      Collect([panel contentView], alert);
    });
    return !alert.buttons.empty();
  })) << "no alert came up";
  return alert;
}

// An alert run on the main thread, where its callers must run it.
class AlertRun {
 public:
  explicit AlertRun(const std::function<long()>& show) {
    std::shared_ptr<State> state = state_;
    flashui::OnMainLater([=] {
      state->result = show();
      state->done = true;
    });
  }
  ~AlertRun() {
    // A test that failed half-way leaves its alert up; the next test needs the screen.
    while (!WaitEnded(1.0)) flashui::AbortModalSession();
  }
  bool WaitEnded(double seconds = flashui::kPatience) {
    return flashui::WaitUntil([this] { return state_->done.load(); }, seconds);
  }
  long Result() {
    EXPECT_TRUE(WaitEnded()) << "the alert did not end";
    return state_->result;
  }

 private:
  struct State {
    std::atomic<bool> done{false};
    std::atomic<long> result{0};
  };
  std::shared_ptr<State> state_ = std::make_shared<State>();
};

CFRef<CFStringRef> CF(const char* text) {
  return CFRef<CFStringRef>(CFStringCreateWithCString(nullptr, text, kCFStringEncodingUTF8));
}

TEST(MessageAlert, OneButtonShowsTheMessageAndReturns1000) {
  AlertRun run([] { return CX_DisplayMessageAlert(CF("The plug-in needs a moment of your attention.").get()); });
  const AlertView alert = WaitForAlert();
  ASSERT_EQ(alert.buttons.size(), 1u);
  EXPECT_EQ(alert.buttons[0].first, "OK");
  EXPECT_TRUE(alert.Shows("The plug-in needs a moment of your attention."));
  flashui::Shot("alert-one-button", alert.frame, 12);
  flashui::ClickAt(alert.buttons[0].second);
  EXPECT_EQ(run.Result(), NSAlertFirstButtonReturn);
}

class TwoButtonAlert : public testing::TestWithParam<int> {};

TEST_P(TwoButtonAlert, ReturnsTheNumberOfTheButtonClicked) {
  AlertRun run([] {
    return static_cast<long>(
        CX_DisplayMessageAlert2Button(CF("Replace the stored container?").get(), CF("Replace").get(), CF("Keep").get()));
  });
  const AlertView alert = WaitForAlert();
  ASSERT_EQ(alert.buttons.size(), 2u);
  EXPECT_TRUE(alert.Shows("Replace the stored container?"));
  flashui::Shot("alert-two-buttons", alert.frame, 12);
  flashui::ClickAt(alert.Button(GetParam() == 1 ? "Replace" : "Keep"));
  EXPECT_EQ(run.Result(), GetParam());
}

INSTANTIATE_TEST_SUITE_P(Flash, TwoButtonAlert, testing::Values(1, 2), [](const testing::TestParamInfo<int>& info) {
  return std::string(info.param == 1 ? "FirstButton" : "SecondButton");
});

TEST(MessageAlert, UTF8TextWithNonAsciiLettersIsShownAsWritten) {
  static const char kMessage[] = "Größe: 5 €. Ελληνικά, кириллица, čeština, Ærøskøbing.";
  AlertRun run([] {
    XP64_DisplayMessageCStr(kMessage);
    return 0L;
  });
  const AlertView alert = WaitForAlert();
  EXPECT_TRUE(alert.Shows(kMessage));
  flashui::Shot("alert-non-ascii", alert.frame, 12);
  flashui::ClickAt(alert.Button("OK"));
  EXPECT_TRUE(run.WaitEnded());
}

TEST(MessageAlert, HostTextsMakeAlertsToo) {
  AlertRun twoButtons([] {
    fmx::TextAutoPtr message, first, second;
    message->Assign("Überschreiben?", fmx::Text::kEncoding_UTF8);
    first->Assign("Ja", fmx::Text::kEncoding_UTF8);
    second->Assign("Nein", fmx::Text::kEncoding_UTF8);
    return static_cast<long>(XP64_DisplayMessage2Button(message, first, second));
  });
  AlertView alert = WaitForAlert();
  EXPECT_TRUE(alert.Shows("Überschreiben?"));
  flashui::ClickAt(alert.Button("Nein"));
  EXPECT_EQ(twoButtons.Result(), 2);

  AlertRun flashText([] {
    fmx::TextAutoPtr text;
    text->Assign("Flash text from the host", fmx::Text::kEncoding_UTF8);
    XP64_DisplayFlashTxt(text);
    return 0L;
  });
  alert = WaitForAlert();
  EXPECT_TRUE(alert.Shows("Flash text from the host"));
  flashui::ClickAt(alert.Button("OK"));
  EXPECT_TRUE(flashText.WaitEnded());
}

TEST(MessageAlert, TheSimpleFlashAlertAndANullMessageAreOneButtonAlerts) {
  for (const bool null : {false, true}) {
    AlertRun run([null] { return null ? CX_DisplayMessageAlert(nullptr) : CX_DisplayFlashDialogSimple(CF("Flash").get()); });
    const AlertView alert = WaitForAlert();
    ASSERT_EQ(alert.buttons.size(), 1u);
    flashui::ClickAt(alert.buttons[0].second);
    EXPECT_EQ(run.Result(), NSAlertFirstButtonReturn);
  }
}

TEST(MessageAlert, AnAlertEndedWithoutAClickAnswersNoButton) {
  AlertRun two([] { return static_cast<long>(CX_DisplayMessageAlert2Button(CF("?").get(), CF("1").get(), CF("2").get())); });
  WaitForAlert();
  flashui::AbortModalSession();
  EXPECT_EQ(two.Result(), 0);
  AlertRun one([] { return CX_DisplayMessageAlert(CF("?").get()); });
  WaitForAlert();
  flashui::AbortModalSession();
  // Whatever the platform answers for an abort, it is not the button.
  EXPECT_NE(one.Result(), NSAlertFirstButtonReturn);
}

}  // namespace
