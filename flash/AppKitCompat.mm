// The one place where GNUstep's AppKit gets help to act as Apple's does.
#import "AppKitCompat.h"

#import <AppKit/AppKit.h>

#ifdef GNUSTEP
#include <X11/Xlib.h>

// The target of the zero-delay perform that wakes a sleeping modal loop.
@interface FlashModalLoopWaker : NSObject
+ (void)wake:(id)unused;
@end

@implementation FlashModalLoopWaker
+ (void)wake:(id)unused {
  (void)unused;
}
@end
#endif

bool FlashAppKit_CanShowWindows() {
#ifdef GNUSTEP
  // GNUstep's X back end crashes the whole process when NSApp is made without a
  // reachable X server, where Apple's AppKit would merely fail to show anything. Once
  // NSApp exists it has its display; before that, ask Xlib whether there is one.
  if (NSApp != nil) return true;
  Display* display = XOpenDisplay(NULL);
  if (display == NULL) return false;
  XCloseDisplay(display);
#endif
  return true;
}

void FlashAppKit_WakeModalLoop() {
#ifdef GNUSTEP
  // GNUstep's modal loop reads the stop flag only after an event, and an ended session
  // otherwise sleeps until the user next moves the mouse. An application-defined event
  // alone does not wake the run loop, nor does a perform alone end the wait for events;
  // together they do.
  NSEvent* wakeEvent = [NSEvent otherEventWithType:NSApplicationDefined
                                          location:NSZeroPoint
                                     modifierFlags:0
                                         timestamp:0
                                      windowNumber:0
                                           context:nil
                                           subtype:0
                                             data1:0
                                             data2:0];
  [NSApp postEvent:wakeEvent atStart:NO];
  NSArray* modes = [NSArray arrayWithObjects:NSModalPanelRunLoopMode, NSDefaultRunLoopMode, nil];
  id waker = [FlashModalLoopWaker class];
  [waker performSelector:@selector(wake:) withObject:nil afterDelay:0 inModes:modes];
#endif
}
