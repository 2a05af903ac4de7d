// The flash dialog seen from a test: the exported entry called on a thread of its own, and
// what the running dialog shows.
#ifndef XPFLASH_TESTS_DIALOGPROBE_H
#define XPFLASH_TESTS_DIALOGPROBE_H

#import <AppKit/AppKit.h>

#include <array>
#include <atomic>
#include <string>
#include <thread>

#import "Flash_WindowController_KESTBU.h"

namespace flashui {

/// The running flash dialog, read on the main thread in one go.
struct DialogView {
  bool registered = false;  // a controller runs
  bool visible = false;     // its window is on screen
  bool modal = false;       // its window runs the modal session
  bool key = false;
  std::string nibName;      // file name of the nib it came from
  NSRect frame = NSZeroRect;
  NSRect screen = NSZeroRect;  // the visible part of the window's screen
  long level = 0;
  bool titled = false;
  std::string title;
  std::array<std::string, 3> labels;
  std::string buttonTitle;
  bool buttonEnabled = false;
  bool buttonHidden = false;
  NSRect buttonFrame = NSZeroRect;  // screen coordinates, like logoFrame
  bool logoImage = false;
  NSRect logoFrame = NSZeroRect;
  int state = -1;
  bool timer = false;
  bool timerValid = false;
  double timerInterval = 0;
};

/// What the running flash dialog shows now.
DialogView ReadDialog();
/// Labels 1 to 3 as the nib `nibName` has them.
std::array<std::string, 3> NibLabels(const std::string& nibName);
/// How many windows are on screen.
int VisibleWindows();

/// The arguments of one flash dialog; the defaults make the titled "OK" dialog with the
/// project's nibs and logo.
struct DialogArgs {
  bool withButton = true;
  unsigned int delayTicks = 0;
  short kind = 3;
  const char* text2 = "Text parameter 1";
  const char* text3 = "Text parameter 2";
  const char* text1 = "Text parameter 3";
  const char* nibFolder = nullptr;  // null: the project's resources
  const char* logoPath = nullptr;   // null: the project's logo
  bool noNibFolder = false;         // pass null as the nib folder
  bool noLogo = false;              // pass null as the logo path

  static DialogArgs Titled();
  static DialogArgs PleaseWait(unsigned int delayTicks);
  static DialogArgs Splash(unsigned int delayTicks);
};

/// KestCocoa_CALLShowPluginFlashDialog running on a thread of its own, as the plug-in
/// calls it. Going out of scope ends a dialog that still runs.
class DialogCall {
 public:
  explicit DialogCall(const DialogArgs& args);
  DialogCall(const DialogCall&) = delete;
  DialogCall& operator=(const DialogCall&) = delete;
  ~DialogCall();

  /// Whether the entry has returned.
  bool Returned() const { return returned_.load(); }
  /// Waits for the entry to return; false when it did not within `seconds`.
  bool WaitReturned(double seconds);
  /// What the entry returned.
  int Result() const { return result_; }
  /// Seconds from the call to its return.
  double Elapsed() const { return returnedAt_.load() - calledAt_; }
  /// When the call was made, on the clock of Now().
  double CalledAt() const { return calledAt_; }
  /// Holds on to the running dialog's controller, so that it can be asked after the dialog
  /// has ended. Call while the dialog runs.
  void KeepController();
  /// The kept controller.
  Flash_WindowController_KESTBU* Kept() const { return kept_; }

 private:
  std::atomic<bool> returned_{false};
  std::atomic<double> returnedAt_{0};
  double calledAt_ = 0;
  int result_ = -1;
  Flash_WindowController_KESTBU* kept_ = nil;
  std::thread thread_;
};

/// Waits until the running dialog's window runs its modal session and returns what it shows.
DialogView WaitForModalDialog();

}  // namespace flashui

#endif  // XPFLASH_TESTS_DIALOGPROBE_H
