// The flash UI tests' harness. NSApp runs on the main thread as in the host; the tests run
// on a thread of their own and call the flash entry from further threads, as the plug-in
// does. With --no-display-child the program stands for a server process instead: no
// display, no NSApp, only the NoDisplayChild tests.
#import "UIHarness.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <condition_variable>
#include <cstdio>
#include <cstring>
#include <deque>
#include <mutex>
#include <thread>
#include <vector>

#import "AppKitCompat.h"
#import "FlashDialog.h"

namespace {

struct MainTask {
  std::function<void()> function;
  bool done = false;
};

std::mutex gMainTasksLock;
std::condition_variable gMainTaskDone;
std::deque<MainTask*> gMainTasks;
int gTestStatus = 1;
std::string gShotsDir = "flash-ui-shots";

NSArray* AllModes() {
  return [NSArray arrayWithObjects:NSDefaultRunLoopMode, NSModalPanelRunLoopMode, NSEventTrackingRunLoopMode, nil];
}

}  // namespace

// Carries a C++ function to the main thread (held as void*: Objective-C cannot describe
// C++ types of instance variables).
@interface FlashUIMainCall : NSObject {
  void* function_;
}
- (id)initWithFunction:(const std::function<void()>&)function;
- (void)run:(id)unused;
@end

@implementation FlashUIMainCall
- (id)initWithFunction:(const std::function<void()>&)function {
  self = [super init];
  if (self != nil) function_ = new std::function<void()>(function);
  return self;
}
- (void)dealloc {
  delete static_cast<std::function<void()>*>(function_);
  [super dealloc];
}
- (void)run:(id)unused {
  (void)unused;
  (*static_cast<std::function<void()>*>(function_))();
}
@end

// Runs what the tests queue for the main thread, from a timer that fires in every mode.
// GNUstep passes performSelectorOnMainThread: calls over in batches: one that arrives
// together with a call that runs a modal session waits until that session has ended, which
// for a dialog waiting for its click is forever. Timers fire inside modal sessions too.
@interface FlashUIMainQueue : NSObject
- (void)drain:(NSTimer*)timer;
@end

@implementation FlashUIMainQueue
- (void)drain:(NSTimer*)timer {
  (void)timer;
  std::unique_lock<std::mutex> lock(gMainTasksLock);
  while (!gMainTasks.empty()) {
    MainTask* task = gMainTasks.front();
    gMainTasks.pop_front();
    lock.unlock();
    task->function();
    lock.lock();
    task->done = true;
    gMainTaskDone.notify_all();
  }
}
@end

// Starts the tests once the application runs, and stops it with their result.
@interface FlashUITestRunner : NSObject
- (void)applicationDidFinishLaunching:(NSNotification*)note;
- (void)runTests:(id)unused;
- (void)finish:(id)unused;
@end

@implementation FlashUITestRunner
- (void)applicationDidFinishLaunching:(NSNotification*)note {
  (void)note;
  [NSThread detachNewThreadSelector:@selector(runTests:) toTarget:self withObject:nil];
}
- (void)runTests:(id)unused {
  (void)unused;
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  gTestStatus = RUN_ALL_TESTS();
  [self performSelectorOnMainThread:@selector(finish:) withObject:nil waitUntilDone:NO];
  [pool release];
}
- (void)finish:(id)unused {
  (void)unused;
  [NSApp stop:nil];
  // -stop: takes effect with the next event.
  [NSApp postEvent:[NSEvent otherEventWithType:NSApplicationDefined location:NSZeroPoint modifierFlags:0
                                     timestamp:0 windowNumber:0 context:nil subtype:0 data1:0 data2:0]
           atStart:NO];
}
@end

namespace flashui {
namespace {

std::string Quoted(const std::string& s) {
  std::string quoted = "'";
  for (const char c : s) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return quoted + "'";
}

// Runs tests/flash/flash-ui.sh with `args` and returns what it printed. Success is told
// by a last line rather than the exit status: once GNUstep has started a program of its
// own (gdnc, gpbs), it reaps every child of the process, and statuses go missing.
std::string Driver(const std::vector<std::string>& args) {
  static const std::string kDone = "flash-ui-done\n";
  std::string command = Quoted(FLASH_UI_DRIVER);
  for (const std::string& arg : args) command += " " + Quoted(arg);
  FILE* pipe = popen((command + " && echo flash-ui-done").c_str(), "r");
  std::string output;
  char buffer[256];
  for (size_t n; pipe != nullptr && (n = fread(buffer, 1, sizeof buffer, pipe)) > 0;) output.append(buffer, n);
  if (pipe != nullptr) pclose(pipe);
  const bool done = output.size() >= kDone.size() && output.compare(output.size() - kDone.size(), kDone.size(), kDone) == 0;
  EXPECT_TRUE(done) << command << " failed, printing: " << output;
  return done ? output.substr(0, output.size() - kDone.size()) : output;
}

std::string Int(double v) {
  return std::to_string(std::lround(v));
}

double ScreenHeight() {
  double height = 0;
  OnMain([&] { height = [[NSScreen mainScreen] frame].size.height; });
  return height;
}

// An X geometry (WxH+X+Y, y down) of `rect` within `outer`, both AppKit screen coordinates.
std::string Geometry(NSRect rect, NSRect outer) {
  return Int(rect.size.width) + "x" + Int(rect.size.height) + "+" + Int(rect.origin.x - outer.origin.x) + "+" +
         Int(NSMaxY(outer) - NSMaxY(rect));
}

NSRect Screen() {
  return NSMakeRect(0, 0, 0, ScreenHeight());
}

}  // namespace

double Now() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

void OnMain(const std::function<void()>& f) {
  MainTask task{f};
  std::unique_lock<std::mutex> lock(gMainTasksLock);
  gMainTasks.push_back(&task);
  gMainTaskDone.wait(lock, [&task] { return task.done; });
}

void OnMainLater(const std::function<void()>& f) {
  // Not through the queue: a modal session run from its timer would stop it.
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  FlashUIMainCall* call = [[[FlashUIMainCall alloc] initWithFunction:f] autorelease];
  [call performSelectorOnMainThread:@selector(run:) withObject:nil waitUntilDone:NO modes:AllModes()];
  [pool release];
}

bool WaitUntil(const std::function<bool()>& ready, double seconds) {
  for (const double end = Now() + seconds; !ready();) {
    if (Now() > end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
  return true;
}

void AbortModalSession() {
  OnMain([] {
    [[FlashCocoaIntern_RunningController() myTimer] invalidate];
    if ([NSApp modalWindow] == nil) return;  // AppKit objects to an abort without a session
    [NSApp abortModal];
    FlashAppKit_WakeModalLoop();
  });
}

void ClickAt(NSRect rect) {
  Driver({"click", Int(NSMidX(rect)), Int(ScreenHeight() - NSMidY(rect))});
}

std::string Shot(const std::string& name, NSRect rect, double margin) {
  OnMain([] { [[NSApp windows] makeObjectsPerformSelector:@selector(displayIfNeeded)]; });
  std::this_thread::sleep_for(std::chrono::milliseconds(300));  // for the X server to show it
  const std::string file = gShotsDir + "/" + name + ".png";
  Driver({"shot", file, Geometry(NSInsetRect(rect, -margin, -margin), Screen())});
  return file;
}

int ColorsIn(const std::string& file, NSRect shotRect, NSRect rect) {
  return std::atoi(Driver({"colors", file, Geometry(rect, shotRect)}).c_str());
}

unsigned ScreenColorAt(NSPoint point) {
  const std::string file = gShotsDir + "/pixel.png";
  Driver({"shot", file, Geometry(NSMakeRect(point.x, point.y, 1, 1), Screen())});
  unsigned r = 0, g = 0, b = 0;
  std::sscanf(Driver({"pixel", file, "0", "0"}).c_str(), "%u,%u,%u", &r, &g, &b);
  return (r << 16) | (g << 8) | b;
}

std::string Utf8(NSString* s) {
  return s == nil ? std::string() : std::string([s UTF8String]);
}

std::string ResourcesDir() {
  return XP_RESOURCES_DIR;
}

}  // namespace flashui

int main(int argc, char** argv) {
  // A hung run is killed from outside: what it printed up to then must be out already.
  setvbuf(stdout, nullptr, _IOLBF, 0);
  testing::InitGoogleTest(&argc, argv);
  bool child = false;
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--no-display-child") == 0) child = true;
    if (std::strncmp(argv[i], "--shots=", 8) == 0) gShotsDir = argv[i] + 8;
  }
  std::string& filter = testing::GTEST_FLAG(filter);
  filter = child ? "NoDisplayChild.*" : filter + (filter.find('-') == std::string::npos ? "-" : ":") + "NoDisplayChild.*";
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  if (child) {
    const int status = RUN_ALL_TESTS();
    // The parent reads this line: it may never see the exit status (see Driver).
    std::printf("no-display-child status %d\n", status);
    [pool release];
    return status;
  }

  [[NSFileManager defaultManager] createDirectoryAtPath:[NSString stringWithUTF8String:gShotsDir.c_str()]
                            withIntermediateDirectories:YES attributes:nil error:NULL];
  // Xvfb has no window manager: GNUstep then draws the title bars itself, and leaves out
  // its application icon.
  [[NSUserDefaults standardUserDefaults] registerDefaults:[NSDictionary dictionaryWithObjectsAndKeys:
      @"NO", @"GSBackHandlesWindowDecorations", @"YES", @"GSSuppressAppIcon", nil]];
  [NSApplication sharedApplication];
  FlashUIMainQueue* queue = [[FlashUIMainQueue alloc] init];
  NSTimer* timer = [NSTimer timerWithTimeInterval:0.02 target:queue selector:@selector(drain:) userInfo:nil
                                          repeats:YES];
  for (NSUInteger i = 0; i < [AllModes() count]; ++i) {
    [[NSRunLoop currentRunLoop] addTimer:timer forMode:[AllModes() objectAtIndex:i]];
  }
  FlashUITestRunner* runner = [[FlashUITestRunner alloc] init];
  [NSApp setDelegate:runner];
  [NSApp run];
  [timer invalidate];
  [queue release];
  [runner release];
  [pool release];
  return gTestStatus;
}
