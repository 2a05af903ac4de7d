// demo_host: stands in for the main plug-in. It lays out a plug-in bundle that carries the
// flash bundle in its resources, loads the flash bundle the way the plug-in does, and shows
// every dialog through the entries it resolved: the flash dialog from a worker thread
// while NSApp runs on the main thread, as in the host application, and the alert on the
// main thread, where alerts must run.
#import <AppKit/AppKit.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

#include "BundleLoader.h"
#include "FlashEntryPoints.h"
#include "ToolkitTour.h"
#include "XDisplay.h"
#include "text/CFRef.h"

namespace fs = std::filesystem;

// Carries a C++ function to the main thread.
@interface DemoHostMainCall : NSObject {
  // A std::function<void()>*: Objective-C cannot describe C++ types of instance variables.
  void* function_;
}
- (id)initWithFunction:(const std::function<void()>&)function;
- (void)run:(id)unused;
@end

@implementation DemoHostMainCall
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

// Wakes a modal loop that was told to end from outside (see EndModalSession).
@interface DemoHostWaker : NSObject
+ (void)wake:(id)unused;
@end

@implementation DemoHostWaker
+ (void)wake:(id)unused {
  (void)unused;
}
@end

namespace {

struct Options {
  bool autoClick = false;
  std::string out = "demo-host-out";
  std::string screenshots;  // empty: <out>/screenshots
  std::string flashBundle = XP_DEMO_FLASH_BUNDLE;
  std::string samples = XP_DEMO_SAMPLES;
  std::string text;
};

// What the worker reports back to main().
std::atomic<int> gStatus{0};
// Whether the demo runs on its own Xvfb, where nobody but the demo can click.
bool gOwnDisplay = false;
// The version the flash bundle reported.
unsigned int gVersion = 0;
Options gOptions;

// How long anything on screen may take to happen on a loaded machine, in seconds.
constexpr double kPatience = 30.0;

double Now() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

void Pause(double seconds) {
  std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
}

// Every mode the main thread's run loop may be in: idle, in a modal session, tracking.
NSArray* AllModes() {
  return [NSArray arrayWithObjects:NSDefaultRunLoopMode, NSModalPanelRunLoopMode, NSEventTrackingRunLoopMode, nil];
}

void PostToMain(const std::function<void()>& f, bool wait) {
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  DemoHostMainCall* call = [[[DemoHostMainCall alloc] initWithFunction:f] autorelease];
  [call performSelectorOnMainThread:@selector(run:) withObject:nil waitUntilDone:wait modes:AllModes()];
  [pool release];
}

void OnMain(const std::function<void()>& f) {
  PostToMain(f, true);
}

// Runs `f` on the main thread later, from a timer, for calls that run a modal session.
// Posted as a perform instead, such a call would hold back every perform that reached the
// main thread in the same batch (a later OnMain, for one) until its session ended.
void OnMainFromTimer(const std::function<void()>& f) {
  OnMain([f] {
    DemoHostMainCall* call = [[DemoHostMainCall alloc] initWithFunction:f];
    // The default mode only: the main thread idles in it between dialogs, and a timer of
    // the modes the session runs in would fire again from inside the session.
    [call performSelector:@selector(run:) withObject:nil afterDelay:0 inModes:[NSArray arrayWithObject:NSDefaultRunLoopMode]];
    [call release];
  });
}

// A modal loop reads its stop flag only after an event arrives; a posted event together
// with a zero-delay perform makes one arrive.
void WakeMainLoop() {
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
  [[DemoHostWaker class] performSelector:@selector(wake:)
                              withObject:nil
                              afterDelay:0
                                 inModes:[NSArray arrayWithObjects:NSModalPanelRunLoopMode, NSDefaultRunLoopMode, nil]];
}

// Ends whatever modal session runs, for a dialog that nobody clicked in time.
void EndModalSession() {
  OnMain([] {
    if ([NSApp modalWindow] == nil) return;
    [NSApp abortModal];
    WakeMainLoop();
  });
}

std::string Utf8(NSString* s) {
  return s == nil ? std::string() : std::string([s UTF8String]);
}

CFStringRef NewCFString(const std::string& text) {
  return CFStringCreateWithCString(nullptr, text.c_str(), kCFStringEncodingUTF8);
}

// ---------------------------------------------------------------------------------------
// The modal window on screen, read on the main thread.

struct Button {
  std::string title;
  bool enabled = false;
  NSRect frame = NSZeroRect;  // AppKit screen coordinates
};

struct ModalView {
  bool up = false;
  NSRect frame = NSZeroRect;
  double screenHeight = 0;
  std::vector<Button> buttons;
  std::vector<std::string> texts;

  const Button* ButtonTitled(const std::string& title) const {
    for (const Button& button : buttons) {
      if (button.title == title) return &button;
    }
    return nullptr;
  }
};

void Collect(NSView* view, ModalView& modal) {
  if ([view isHidden]) return;
  if ([view isKindOfClass:[NSButton class]] && [[(NSButton*)view title] length] > 0) {
    Button button;
    button.title = Utf8([(NSButton*)view title]);
    button.enabled = [(NSButton*)view isEnabled];
    button.frame = [[view window] convertRectToScreen:[view convertRect:[view bounds] toView:nil]];
    modal.buttons.push_back(button);
  } else if ([view isKindOfClass:[NSTextField class]]) {
    const std::string text = Utf8([(NSTextField*)view stringValue]);
    if (!text.empty()) modal.texts.push_back(text);
  } else if ([view isKindOfClass:[NSText class]]) {
    const std::string text = Utf8([(NSText*)view string]);
    if (!text.empty()) modal.texts.push_back(text);
  }
  NSArray* subviews = [view subviews];
  for (NSUInteger i = 0; i < [subviews count]; ++i) Collect([subviews objectAtIndex:i], modal);
}

ModalView ReadModal() {
  ModalView modal;
  OnMain([&modal] {
    NSWindow* window = [NSApp modalWindow];
    if (window == nil || ![window isVisible]) return;
    modal.up = true;
    modal.frame = [window frame];
    modal.screenHeight = [[NSScreen mainScreen] frame].size.height;
    Collect([window contentView], modal);
  });
  return modal;
}

// Waits until a modal window is up that `ready` accepts; `seconds` < 0 waits for ever.
bool WaitForModal(ModalView& modal, const std::function<bool(const ModalView&)>& ready, double seconds = kPatience) {
  const double end = Now() + seconds;
  for (;;) {
    modal = ReadModal();
    if (modal.up && ready(modal)) return true;
    if (seconds >= 0 && Now() > end) return false;
    Pause(0.05);
  }
}

// ---------------------------------------------------------------------------------------
// Screenshots and clicks

std::vector<std::string> gShots;

void Shot(const std::string& name, const ModalView& modal) {
  // Let the main thread draw what is pending before the screen is read.
  OnMain([] { [[NSApp windows] makeObjectsPerformSelector:@selector(displayIfNeeded)]; });
  Pause(0.4);
  const NSRect r = modal.frame;
  const long x = std::max(0L, std::lround(r.origin.x));
  const long y = std::max(0L, std::lround(modal.screenHeight - (r.origin.y + r.size.height)));
  const std::string file = gOptions.screenshots + "/" + name + ".png";
  if (demo::Screenshot(file, x, y, std::lround(r.size.width), std::lround(r.size.height))) {
    gShots.push_back(file);
    std::printf("   screenshot: %s\n", file.c_str());
  } else {
    std::printf("   no screenshot of %s (is ImageMagick's import installed?)\n", name.c_str());
    gStatus = 1;
  }
}

void PrintTexts(const ModalView& modal) {
  for (const std::string& text : modal.texts) std::printf("   shows: \"%s\"\n", text.c_str());
}

// Presses `button` with a real click, or asks the user to.
void Press(const Button& button, const ModalView& modal) {
  if (gOptions.autoClick) {
    std::printf("   clicking \"%s\"\n", button.title.c_str());
    const long x = std::lround(NSMidX(button.frame));
    const long y = std::lround(modal.screenHeight - NSMidY(button.frame));
    if (!demo::ClickAt(x, y)) {
      std::printf("   xdotool could not click (is it installed?)\n");
      gStatus = 1;
    }
  } else {
    std::printf("   click \"%s\" to go on\n", button.title.c_str());
  }
}

// ---------------------------------------------------------------------------------------
// The flash dialog through the entry the loader resolved, called on a thread of its own.

class FlashCall {
 public:
  FlashCall(bool withButton, unsigned int delayTicks, short kind, const std::string& text2, const std::string& text3,
            const std::string& text1)
      : state_(std::make_shared<State>()) {
    std::shared_ptr<State> state = state_;
    state->start = Now();
    thread_ = std::thread([=] {
      CFRef<CFURLRef> resources(CFBundleCopyResourcesDirectoryURL(gFlashBundlePtr));
      CFRef<CFURLRef> logo(CFBundleCopyResourceURL(gFlashBundlePtr, CFSTR("PluginLogo"), CFSTR("png"), nullptr));
      CFRef<CFStringRef> nibFolder(resources ? CFURLCopyFileSystemPath(resources.get(), kCFURLPOSIXPathStyle) : nullptr);
      CFRef<CFStringRef> logoPath(logo ? CFURLCopyFileSystemPath(logo.get(), kCFURLPOSIXPathStyle) : nullptr);
      CFRef<CFStringRef> t2(NewCFString(text2)), t3(NewCFString(text3)), t1(NewCFString(text1));
      state->result = gKestBundle_CALLShowPluginFlashDialogFunc(withButton, delayTicks, kind, t2.get(), t3.get(),
                                                                t1.get(), nibFolder.get(), logoPath.get());
      state->end = Now();
      state->done = true;
    });
  }
  FlashCall(const FlashCall&) = delete;
  FlashCall& operator=(const FlashCall&) = delete;
  ~FlashCall() {
    while (!WaitReturned(2.0)) EndModalSession();
    thread_.join();
  }

  bool WaitReturned(double seconds) {
    const double end = Now() + seconds;
    while (!state_->done) {
      if (seconds >= 0 && Now() > end) return false;
      Pause(0.05);
    }
    return true;
  }
  void Report(const char* what) const {
    std::printf("   %s: KestCocoa_CALLShowPluginFlashDialog returned %d after %.1f s\n", what, state_->result.load(),
                state_->end - state_->start);
  }

 private:
  struct State {
    std::atomic<bool> done{false};
    std::atomic<int> result{-1};
    double start = 0;
    double end = 0;
  };
  std::shared_ptr<State> state_;
  std::thread thread_;
};

// In --auto mode a dialog that does not end in time fails the demo; a user may take all
// the time they like.
double Patience() {
  return gOptions.autoClick ? kPatience : -1;
}

bool Fail(const std::string& what) {
  std::printf("   FAILED: %s\n", what.c_str());
  gStatus = 1;
  return false;
}

bool ShowSplash() {
  std::printf("== the splash: no button, asked to end by itself after 150 ticks\n");
  FlashCall call(false, 150, 0, "Starting up...", "Flash bundle version " + std::to_string(gVersion),
                 "Demo Plug-in");
  ModalView modal;
  if (!WaitForModal(modal, [](const ModalView&) { return true; })) return Fail("the splash did not come up");
  PrintTexts(modal);
  Shot("demo-1-splash", modal);
  if (!call.WaitReturned(kPatience)) return Fail("the splash did not end by itself");
  call.Report("splash");
  return true;
}

bool ShowPleaseWait() {
  std::printf("== \"Please wait\" turning into \"OK\" after 120 ticks (2 s)\n");
  FlashCall call(true, 120, 1, "Working on it...", "OK comes after 120 ticks.", "Demo Plug-in");
  ModalView modal;
  if (!WaitForModal(modal, [](const ModalView& m) { return m.ButtonTitled("Please wait") != nullptr; })) {
    return Fail("the \"Please wait\" dialog did not come up");
  }
  PrintTexts(modal);
  std::printf("   button \"Please wait\", %s\n", modal.ButtonTitled("Please wait")->enabled ? "enabled" : "disabled");
  Shot("demo-2-please-wait", modal);
  auto isOK = [](const ModalView& m) {
    const Button* ok = m.ButtonTitled("OK");
    return ok != nullptr && ok->enabled;
  };
  if (!WaitForModal(modal, isOK)) return Fail("the button did not turn into OK");
  std::printf("   button \"OK\", enabled\n");
  Shot("demo-3-please-wait-ok", modal);
  Press(*modal.ButtonTitled("OK"), modal);
  if (!call.WaitReturned(Patience())) return Fail("the click on OK did not end the dialog");
  call.Report("please wait");
  return true;
}

bool ShowTitled(const std::string& text) {
  std::printf("== the titled dialog with the text from the command line\n");
  FlashCall call(true, 0, 3, text, "Shown from a worker thread.", "Demo Plug-in");
  ModalView modal;
  if (!WaitForModal(modal, [](const ModalView& m) { return m.ButtonTitled("OK") != nullptr; })) {
    return Fail("the titled dialog did not come up");
  }
  PrintTexts(modal);
  Shot("demo-4-titled", modal);
  Press(*modal.ButtonTitled("OK"), modal);
  if (!call.WaitReturned(Patience())) return Fail("the click on OK did not end the dialog");
  call.Report("titled");
  return true;
}

bool ShowAlert() {
  std::printf("== a two-button alert, resolved with Vn7GetFunctionPtr and run on the main thread\n");
  typedef int (*Alert2ButtonProc)(CFStringRef, CFStringRef, CFStringRef);
  void* function = nullptr;
  const int found = Vn7GetFunctionPtr(gFlashBundlePtr, "CX_DisplayMessageAlert2Button", &function);
  std::printf("   Vn7GetFunctionPtr(\"CX_DisplayMessageAlert2Button\"): %d\n", found);
  if (found != 0 || function == nullptr) return Fail("the alert entry was not found");
  const Alert2ButtonProc alert = reinterpret_cast<Alert2ButtonProc>(function);

  struct State {
    std::atomic<bool> done{false};
    std::atomic<int> result{-1};
  };
  std::shared_ptr<State> state = std::make_shared<State>();
  OnMainFromTimer(
      [=] {
        CFRef<CFStringRef> message(NewCFString("The demo is over. Keep the screenshots it made?"));
        CFRef<CFStringRef> first(NewCFString("Keep")), second(NewCFString("Discard"));
        state->result = alert(message.get(), first.get(), second.get());
        state->done = true;
      });
  ModalView modal;
  if (!WaitForModal(modal, [](const ModalView& m) { return m.ButtonTitled("Keep") != nullptr; })) {
    EndModalSession();
    return Fail("the alert did not come up");
  }
  PrintTexts(modal);
  Shot("demo-5-alert", modal);
  Press(*modal.ButtonTitled("Keep"), modal);
  const double end = Now() + Patience();
  double nextWake = Now() + 1.0;
  while (!state->done) {
    if (Now() > nextWake) {
      // The click may have ended the session without waking the loop that runs it.
      OnMain([] { WakeMainLoop(); });
      nextWake = Now() + 1.0;
    }
    if (gOptions.autoClick && Now() > end) {
      EndModalSession();
      while (!state->done) Pause(0.05);
      return Fail("the click did not end the alert");
    }
    Pause(0.05);
  }
  const int result = state->result;
  std::printf("   CX_DisplayMessageAlert2Button returned %d (%s)\n", result,
              result == kAlertFirstButton    ? "first button, \"Keep\""
              : result == kAlertSecondButton ? "second button, \"Discard\""
                                             : "no button");
  return true;
}

void RunDialogs() {
  if (ShowSplash() && ShowPleaseWait() && ShowTitled(gOptions.text)) ShowAlert();
}

}  // namespace

// Runs the dialogs once the application runs, then stops it.
@interface DemoHostRunner : NSObject
- (void)applicationDidFinishLaunching:(NSNotification*)note;
- (void)runDialogs:(id)unused;
- (void)finish:(id)unused;
@end

@implementation DemoHostRunner
- (void)applicationDidFinishLaunching:(NSNotification*)note {
  (void)note;
  [NSThread detachNewThreadSelector:@selector(runDialogs:) toTarget:self withObject:nil];
}
- (void)runDialogs:(id)unused {
  (void)unused;
  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  RunDialogs();
  [self performSelectorOnMainThread:@selector(finish:) withObject:nil waitUntilDone:NO];
  [pool release];
}
- (void)finish:(id)unused {
  (void)unused;
  [NSApp stop:nil];
  // -stop: is noticed with the next event only.
  WakeMainLoop();
}
@end

namespace {

void Usage(FILE* to) {
  std::fprintf(to,
               "usage: demo_host [--auto] [--out DIR] [--screenshots DIR] [--flash-bundle DIR] [--samples DIR]\n"
               "                 [TEXT...]\n"
               "Loads the flash bundle as the main plug-in does and shows its dialogs; TEXT goes into the\n"
               "titled dialog. Without DISPLAY it starts Xvfb of its own and clicks for itself.\n"
               "  --auto             click every button with real X input (xdotool)\n"
               "  --out DIR          where the plug-in bundle is laid out (default demo-host-out)\n"
               "  --screenshots DIR  where the screenshots go (default OUT/screenshots)\n"
               "  --flash-bundle DIR the built Vn7_KestCocoaFlashBundle.bundle\n"
               "  --samples DIR      the sample files of the toolkit tour\n");
}

bool ParseOptions(int argc, char** argv, Options& options) {
  std::vector<std::string> words;
  for (int i = 1; i < argc; ++i) {
    const std::string arg = argv[i];
    auto value = [&](std::string& into) {
      if (i + 1 >= argc) return false;
      into = argv[++i];
      return true;
    };
    if (arg == "--auto") {
      options.autoClick = true;
    } else if (arg == "--help" || arg == "-h") {
      Usage(stdout);
      std::exit(0);
    } else if (arg == "--out") {
      if (!value(options.out)) return false;
    } else if (arg == "--screenshots") {
      if (!value(options.screenshots)) return false;
    } else if (arg == "--flash-bundle") {
      if (!value(options.flashBundle)) return false;
    } else if (arg == "--samples") {
      if (!value(options.samples)) return false;
    } else if (arg.size() > 1 && arg[0] == '-' && arg != "--") {
      return false;
    } else if (arg != "--") {
      words.push_back(arg);
    }
  }
  for (const std::string& word : words) options.text += (options.text.empty() ? "" : " ") + word;
  if (options.text.empty()) options.text = "Hello from the command line!";
  if (options.screenshots.empty()) options.screenshots = options.out + "/screenshots";
  return true;
}

// <out>/DemoPlugin.bundle, laid out as the main plug-in's bundle, with a copy of the flash
// bundle in its resources. Returns the bundle's folder, or an empty path.
fs::path LayOutPluginBundle(const Options& options) {
  const fs::path plugin = fs::absolute(options.out) / "DemoPlugin.bundle";
  const fs::path contents = plugin / "Contents";
  std::error_code error;
  fs::remove_all(plugin, error);
  fs::create_directories(contents / "Resources", error);
  if (error) {
    std::printf("cannot make %s: %s\n", contents.c_str(), error.message().c_str());
    return fs::path();
  }
  std::ofstream(contents / "Info.plist")
      << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n<dict>\n"
      << "  <key>CFBundleExecutable</key><string>DemoPlugin</string>\n"
      << "  <key>CFBundleIdentifier</key><string>com.example.demoplugin</string>\n"
      << "  <key>CFBundleName</key><string>DemoPlugin</string>\n"
      << "  <key>CFBundlePackageType</key><string>BNDL</string>\n"
      << "</dict>\n</plist>\n";
  fs::copy(options.flashBundle, contents / "Resources" / kFlashBundleFileName,
           fs::copy_options::recursive | fs::copy_options::copy_symlinks, error);
  if (error) {
    std::printf("cannot copy the flash bundle %s: %s\n", options.flashBundle.c_str(), error.message().c_str());
    return fs::path();
  }
  return plugin;
}

}  // namespace

int main(int argc, char** argv) {
  // A run killed from outside must have printed what it printed up to then.
  setvbuf(stdout, nullptr, _IOLBF, 0);
  if (!ParseOptions(argc, argv, gOptions)) {
    Usage(stderr);
    return 2;
  }

  std::printf("== the toolkit on the in-memory host\n");
  if (!demo::RunToolkitTour(gOptions.samples)) gStatus = 1;

  const fs::path pluginPath = LayOutPluginBundle(gOptions);
  if (pluginPath.empty()) return 1;
  std::printf("== plug-in bundle: %s\n", pluginPath.c_str());
  CFRef<CFURLRef> url(CFURLCreateFromFileSystemRepresentation(
      nullptr, reinterpret_cast<const UInt8*>(pluginPath.c_str()), static_cast<CFIndex>(pluginPath.string().size()),
      true));
  CFRef<CFBundleRef> plugin(CFBundleCreate(nullptr, url.get()));
  unsigned int& version = gVersion;
  const int loaded = Kest7_LoadMyCocoaFlashPlugin(plugin.get(), &version);
  std::printf("   Kest7_LoadMyCocoaFlashPlugin: %d, flash bundle version %u, dialog entry %s\n", loaded, version,
              gKestBundle_CALLShowPluginFlashDialogFunc != nullptr ? "resolved" : "missing");
  if (loaded != 0 || gKestBundle_CALLShowPluginFlashDialogFunc == nullptr) return 1;

  std::error_code error;
  fs::create_directories(gOptions.screenshots, error);
  demo::PrivateXServer server;
  const char* display = std::getenv("DISPLAY");
  if (display == nullptr || *display == '\0') {
    std::string why;
    if (!server.Start(why)) {
      std::printf("no display, and %s\n", why.c_str());
      Kest7_UnLoadMyCocoaFlashPlugin();
      return 1;
    }
    gOwnDisplay = true;
    // Nobody else can reach the private display to click.
    gOptions.autoClick = true;
    std::printf("== no DISPLAY: started Xvfb on %s\n", server.Display().c_str());
  } else {
    std::printf("== on display %s%s\n", display, gOptions.autoClick ? ", clicking for itself" : "");
  }
  demo::StartGNUstepDaemons();

  {
    NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
    NSMutableDictionary* defaults = [NSMutableDictionary dictionaryWithObject:@"YES" forKey:@"GSSuppressAppIcon"];
    // Xvfb has no window manager: GNUstep then draws the title bars itself.
    if (gOwnDisplay) [defaults setObject:@"NO" forKey:@"GSBackHandlesWindowDecorations"];
    [[NSUserDefaults standardUserDefaults] registerDefaults:defaults];
    [NSApplication sharedApplication];
    DemoHostRunner* runner = [[DemoHostRunner alloc] init];
    [NSApp setDelegate:runner];
    [NSApp run];
    [NSApp setDelegate:nil];
    [runner release];
    [pool release];
  }

  Kest7_UnLoadMyCocoaFlashPlugin();
  std::printf("== Kest7_UnLoadMyCocoaFlashPlugin: flash bundle %s\n",
              gFlashBundlePtr == nullptr ? "unloaded" : "still loaded");
  server.Stop();
  std::printf("== %zu screenshots in %s\n", gShots.size(), fs::absolute(gOptions.screenshots).c_str());
  std::printf("== demo %s\n", gStatus == 0 ? "done" : "FAILED");
  return gStatus;
}
