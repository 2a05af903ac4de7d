// The flash UI tests' harness: NSApp on the main thread, the tests on a thread of their own,
// calls to the main thread, polling, real X input and screen grabs.
#ifndef XPFLASH_TESTS_UIHARNESS_H
#define XPFLASH_TESTS_UIHARNESS_H

#import <AppKit/AppKit.h>

#include <functional>
#include <string>

namespace flashui {

/// How long anything on screen may take to happen on a loaded machine, in seconds.
constexpr double kPatience = 20.0;

/// Seconds on a steady clock.
double Now();
/// Runs `f` on the main thread and waits for it, also while a modal session runs there.
void OnMain(const std::function<void()>& f);
/// Runs `f` on the main thread without waiting, for calls that run a modal session.
void OnMainLater(const std::function<void()>& f);
/// Polls `ready` every 50 ms until it holds or `seconds` have gone; returns whether it held.
bool WaitUntil(const std::function<bool()>& ready, double seconds = kPatience);
/// Ends the running modal session from outside, after stopping the running flash dialog's
/// timer so that it cannot end a later session.
void AbortModalSession();

/// A real mouse click at the centre of `rect` (AppKit screen coordinates, y up).
void ClickAt(NSRect rect);
/// Saves the screen under `rect`, widened by `margin`, as `name`.png in the screenshot
/// folder once the main thread has drawn; returns the file's path.
std::string Shot(const std::string& name, NSRect rect, double margin);
/// The number of distinct colours in the part `rect` of the shot `file` of `shotRect`.
int ColorsIn(const std::string& file, NSRect shotRect, NSRect rect);
/// The colour (0xRRGGBB) of the screen at `point`.
unsigned ScreenColorAt(NSPoint point);

/// `s` as UTF-8; nil gives "".
std::string Utf8(NSString* s);
/// The folder of the compiled nibs and the logo.
std::string ResourcesDir();

}  // namespace flashui

#endif  // XPFLASH_TESTS_UIHARNESS_H
