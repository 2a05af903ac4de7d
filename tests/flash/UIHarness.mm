// The flash UI tests' harness: NSApp runs on the main thread as in the host, the tests run
// on a thread of their own and call the flash entry from further threads, as the plug-in
// does.
#import "UIHarness.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <cmath>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <mutex>
#include <thread>
#include <vector>

#import "AppKitCompat.h"
#import "FlashDialog.h"

// Carries a C++ function to the main thread.
@interface FlashUIMainCall : NSObject {
  // A std::function<void()>*: Objective-C cannot describe C++ types of instance variables.
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

static int gTestStatus = 1;

// Runs the functions that tests queue for the main thread, from a timer that fires in
// every mode. GNUstep hands performSelectorOnMainThread: calls over in batches: a call that
// arrives together with one that runs a modal session waits until that session ends, which
// for a dialog waiting to be clicked is forever. Timers fire inside modal sessions too.
@interface FlashUIMainQueue : NSObject
- (void)drain:(NSTimer*)timer;
@end

namespace {

struct MainTask {
  std::function<void()> function;
  bool done = false;
};

std::mutex gMainTasksLock;
std::condition_variable gMainTaskDone;
std::deque<MainTask*> gMainTasks;

}  // namespace

@implementation FlashUIMainQueue
- (void)drain:(NSTimer*)timer {
  (void)timer;
  for (;;) {
    MainTask* task = nullptr;
    {
      std::lock_guard<std::mutex> lock(gMainTasksLock);
      if (gMainTasks.empty()) return;
      task = gMainTasks.front();
      gMainTasks.pop_front();
    }
    task->function();
    std::lock_guard<std::mutex> lock(gMainTasksLock);
    task->done = true;
    gMainTaskDone.notify_all();
  }
}
@end

// Starts the tests once the application runs, and ends the process with their result.
@interface FlashUITestRunner : NSObject
- (void)applicationDidFinishLaunching:(NSNotification*)note;
- (void)runTests:(id)unused;
- (void)finish:(NSNumber*)status;
@end

@implementation FlashUITestRunner
- (void)applicationDidFinishLaunching:(NSNotification*)note {
  (void)note;
  [NSThread detachNewThreadSelector:@selector(runTests:) toTarget:self withObject:nil];
}
- (void)runTests:(id)unused {
  (void)unused;
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  const int status = RUN_ALL_TESTS();
  [self performSelectorOnMainThread:@selector(finish:)
                         withObject:[NSNumber numberWithInt:status]
                      waitUntilDone:NO];
  [pool release];
}
- (void)finish:(NSNumber*)status {
  gTestStatus = [status intValue];
  [NSApp stop:nil];
  // -stop: is noticed with the next event only.
  [NSApp postEvent:[NSEvent otherEventWithType:NSApplicationDefined
                                      location:NSZeroPoint
                                 modifierFlags:0
                                     timestamp:0
                                  windowNumber:0
                                       context:nil
                                       subtype:0
                                         data1:0
                                         data2:0]
           atStart:NO];
}
@end

namespace flashui {
namespace {

std::string gShotsDir = "flash-ui-shots";

// Every mode the main thread's run loop may be in while a test wants it: idle, in a
// modal session, or tracking the mouse.
NSArray* AllModes() {
  return [NSArray arrayWithObjects:NSDefaultRunLoopMode, NSModalPanelRunLoopMode, NSEventTrackingRunLoopMode, nil];
}

// How often the main thread looks for queued functions, in seconds.
constexpr double kMainQueueInterval = 0.02;

void StartMainQueue() {
  FlashUIMainQueue* queue = [[FlashUIMainQueue alloc] init];
  NSTimer* timer = [NSTimer timerWithTimeInterval:kMainQueueInterval
                                           target:queue
                                         selector:@selector(drain:)
                                         userInfo:nil
                                          repeats:YES];
  NSArray* modes = AllModes();
  for (NSUInteger i = 0; i < [modes count]; ++i) {
    [[NSRunLoop currentRunLoop] addTimer:timer forMode:[modes objectAtIndex:i]];
  }
  // The timer holds the queue; both live as long as the program.
  [queue release];
}

std::string Quoted(const std::string& s) {
  std::string quoted = "'";
  for (const char c : s) {
    if (c == '\'') {
      quoted += "'\\''";
    } else {
      quoted += c;
    }
  }
  return quoted + "'";
}

// Runs the driver script with `args` and returns what it printed; a failure fails the test.
std::string Driver(const std::vector<std::string>& args) {
  std::string command = Quoted(FLASH_UI_DRIVER);
  for (const std::string& arg : args) command += " " + Quoted(arg);
  FILE* pipe = popen(command.c_str(), "r");
  if (pipe == nullptr) {
    ADD_FAILURE() << "cannot run " << command;
    return "";
  }
  std::string output;
  char buffer[256];
  size_t n = 0;
  while ((n = fread(buffer, 1, sizeof buffer, pipe)) > 0) output.append(buffer, n);
  const int status = pclose(pipe);
  EXPECT_EQ(status, 0) << command << " printed: " << output;
  return output;
}

std::string Int(double v) {
  return std::to_string(static_cast<long>(std::lround(v)));
}

// An X geometry (WxH+X+Y) for `rect` in AppKit screen coordinates.
std::string Geometry(NSRect rect) {
  const double top = ScreenHeight() - (rect.origin.y + rect.size.height);
  return Int(rect.size.width) + "x" + Int(rect.size.height) + "+" + Int(rect.origin.x) + "+" + Int(top);
}

}  // namespace

double Now() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

void OnMain(const std::function<void()>& f) {
  MainTask task;
  task.function = f;
  std::unique_lock<std::mutex> lock(gMainTasksLock);
  gMainTasks.push_back(&task);
  gMainTaskDone.wait(lock, [&task] { return task.done; });
}

void OnMainLater(const std::function<void()>& f) {
  // A modal session run from the queue's timer would stop the queue, so this one goes
  // the ordinary way.
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  FlashUIMainCall* call = [[[FlashUIMainCall alloc] initWithFunction:f] autorelease];
  [call performSelectorOnMainThread:@selector(run:) withObject:nil waitUntilDone:NO modes:AllModes()];
  [pool release];
}

bool WaitUntil(const std::function<bool()>& ready, double seconds) {
  const double end = Now() + seconds;
  while (!ready()) {
    if (Now() > end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
  }
  return true;
}

void AbortModalSession() {
  OnMain([] {
    [[FlashCocoaIntern_RunningController() myTimer] invalidate];
    // AppKit objects to an abort without a session.
    if ([NSApp modalWindow] == nil) return;
    [NSApp abortModal];
    FlashAppKit_WakeModalLoop();
  });
}

double ScreenHeight() {
  double height = 0;
  OnMain([&] { height = [[NSScreen mainScreen] frame].size.height; });
  return height;
}

void ClickAt(NSRect rect) {
  const double x = rect.origin.x + rect.size.width / 2;
  const double y = ScreenHeight() - (rect.origin.y + rect.size.height / 2);
  Driver({"click", Int(x), Int(y)});
}

std::string Shot(const std::string& name, NSRect rect, double margin) {
  // Let the main thread draw what is pending before the screen is read.
  OnMain([] { [[NSApp windows] makeObjectsPerformSelector:@selector(displayIfNeeded)]; });
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  const std::string file = gShotsDir + "/" + name + ".png";
  Driver({"shot", file, Geometry(NSInsetRect(rect, -margin, -margin))});
  return file;
}

int ColorsIn(const std::string& file, NSRect shotRect, NSRect rect) {
  const double left = rect.origin.x - shotRect.origin.x;
  const double top = (shotRect.origin.y + shotRect.size.height) - (rect.origin.y + rect.size.height);
  const std::string geometry =
      Int(rect.size.width) + "x" + Int(rect.size.height) + "+" + Int(left) + "+" + Int(top);
  return std::atoi(Driver({"colors", file, geometry}).c_str());
}

unsigned ScreenColorAt(NSPoint point) {
  const std::string file = gShotsDir + "/pixel.png";
  Driver({"shot", file, Geometry(NSMakeRect(point.x, point.y, 1, 1))});
  unsigned r = 0, g = 0, b = 0;
  if (std::sscanf(Driver({"pixel", file, "0", "0"}).c_str(), "%u,%u,%u", &r, &g, &b) != 3) {
    ADD_FAILURE() << "no colour read at " << point.x << "," << point.y;
  }
  return (r << 16) | (g << 8) | b;
}

std::string Utf8(NSString* s) {
  return s == nil ? std::string() : std::string([s UTF8String]);
}

std::string ResourcesDir() {
  return XP_RESOURCES_DIR;
}

std::string SelfPath() {
  std::vector<char> path(4096);
  const ssize_t n = readlink("/proc/self/exe", path.data(), path.size() - 1);
  return n > 0 ? std::string(path.data(), static_cast<size_t>(n)) : std::string();
}

}  // namespace flashui

namespace {

const char kChildFlag[] = "--no-display-child";
const char kShotsFlag[] = "--shots=";

// gtest's filter with the tests that only a display-less child runs taken out, or with
// only them left in.
void FilterChildTests(bool child) {
  std::string filter = testing::GTEST_FLAG(filter);
  if (child) {
    filter = "NoDisplayChild.*";
  } else {
    filter += filter.find('-') == std::string::npos ? "-NoDisplayChild.*" : ":NoDisplayChild.*";
  }
  testing::GTEST_FLAG(filter) = filter;
}

}  // namespace

int main(int argc, char** argv) {
  // A hung run is killed from outside: what it printed up to then must be out already.
  setvbuf(stdout, nullptr, _IOLBF, 0);
  testing::InitGoogleTest(&argc, argv);
  bool child = false;
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], kChildFlag) == 0) child = true;
    if (std::strncmp(argv[i], kShotsFlag, sizeof kShotsFlag - 1) == 0) {
      flashui::gShotsDir = argv[i] + sizeof kShotsFlag - 1;
    }
  }
  FilterChildTests(child);
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  // The child stands for a server process: it has no display and never makes NSApp.
  if (child) {
    const int status = RUN_ALL_TESTS();
    [pool release];
    return status;
  }

  [[NSFileManager defaultManager] createDirectoryAtPath:[NSString stringWithUTF8String:flashui::gShotsDir.c_str()]
                            withIntermediateDirectories:YES
                                             attributes:nil
                                                  error:NULL];
  // Xvfb has no window manager: GNUstep then draws the title bars itself, so that the
  // titled dialog shows one, and leaves out its application icon.
  NSDictionary* defaults = [NSDictionary dictionaryWithObjectsAndKeys:@"NO", @"GSBackHandlesWindowDecorations",
                                                                      @"YES", @"GSSuppressAppIcon", nil];
  [[NSUserDefaults standardUserDefaults] registerDefaults:defaults];
  [NSApplication sharedApplication];
  flashui::StartMainQueue();
  FlashUITestRunner* runner = [[FlashUITestRunner alloc] init];
  [NSApp setDelegate:runner];
  [NSApp run];
  [runner release];
  [pool release];
  return gTestStatus;
}
