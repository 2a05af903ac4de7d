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

/// The running flash dialog, read on the main thread in one go; frames in screen coordinates.
struct DialogView {
  bool modal = false;  // a dialog runs and its window runs the modal session
  std::string nibName;
  NSRect frame = NSZeroRect, screen = NSZeroRect, buttonFrame = NSZeroRect, logoFrame = NSZeroRect;
  long level = 0;
  bool titled = false;
  std::string title;
  std::array<std::string, 3> labels;
  std::string buttonTitle;
  bool buttonEnabled = false, buttonHidden = false, logoImage = false;
  int state = -1;
  NSTimer* timer = nil;  // compare only
  bool timerValid = false;
  double timerInterval = 0;
};

/// What the running flash dialog shows now; all defaults when none runs.
DialogView ReadDialog();
/// Waits until a flash dialog runs its modal session and returns what it shows.
DialogView WaitForModalDialog();
/// How many windows are on screen.
int VisibleWindows();

/// The arguments of one flash dialog; by default the titled "OK" dialog with the project's
/// nibs and logo.
struct DialogArgs {
  bool withButton = true;
  unsigned int delayTicks = 0;
  short kind = 3;
  const char* text2 = "Text parameter 1";
  const char* text3 = "Text parameter 2";
  const char* text1 = "Text parameter 3";
  const char* nibFolder = "";  // "": the project's resources; null: passed as null
  const char* logoPath = "";   // "": the project's logo; null: passed as null

  static DialogArgs PleaseWait(unsigned int delayTicks);
  static DialogArgs Splash(unsigned int delayTicks);
};

/// KestCocoa_CALLShowPluginFlashDialog on a thread of its own, as the plug-in calls it.
/// Going out of scope ends a dialog that still runs.
class DialogCall {
 public:
  explicit DialogCall(const DialogArgs& args);
  DialogCall(const DialogCall&) = delete;
  DialogCall& operator=(const DialogCall&) = delete;
  ~DialogCall();

  bool Returned() const { return returned_; }
  /// Waits for the entry to return; false when it did not within `seconds`.
  bool WaitReturned(double seconds = 20.0);
  int Result() const { return result_; }
  /// Seconds from the call to its return (or to now).
  double Elapsed() const;
  /// From now on holds the running dialog's controller, to be asked after the dialog.
  void KeepController();
  /// The kept controller's result code and state.
  NSInteger KeptResultCode() const;
  int KeptState() const;

 private:
  std::atomic<bool> returned_{false};
  std::atomic<double> returnedAt_{0};
  double calledAt_ = 0;
  int result_ = -1;
  Flash_WindowController_KESTBU* kept_ = nil;
  std::thread thread_;
};

}  // namespace flashui

#endif  // XPFLASH_TESTS_DIALOGPROBE_H
