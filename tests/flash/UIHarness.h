// The flash UI tests' harness: NSApp on the main thread, the tests on a thread of their own,
// hand-offs to the main thread, polling, and real X input and screen grabs.
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
/// Ends the modal session running now as an outside abort would, after stopping the
/// running flash dialog's timer so that it cannot end a later session.
void AbortModalSession();

/// The height of the screen, for turning AppKit's y (up) into X's (down).
double ScreenHeight();
/// A real mouse click at the centre of `rect` (AppKit screen coordinates).
void ClickAt(NSRect rect);
/// The part of the screen under `rect` (AppKit screen coordinates, widened by `margin`)
/// saved under `name` in the screenshot folder; returns the file's path.
std::string Shot(const std::string& name, NSRect rect, double margin = 0);
/// The number of distinct colours in the part of the saved shot `file` under `rect`,
/// which it took from `shotRect` (both AppKit screen coordinates).
int ColorsIn(const std::string& file, NSRect shotRect, NSRect rect);
/// The colour (0xRRGGBB) of the screen at one point (AppKit screen coordinates).
unsigned ScreenColorAt(NSPoint point);

/// A string of the test's, as UTF-8.
std::string Utf8(NSString* s);
/// The folder of the compiled nibs and the logo.
std::string ResourcesDir();
/// The program itself, for tests that run it again in a child process.
std::string SelfPath();

}  // namespace flashui

#endif  // XPFLASH_TESTS_UIHARNESS_H
