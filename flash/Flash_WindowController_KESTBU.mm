// The flash dialog's window controller.
#import "Flash_WindowController_KESTBU.h"

#import "AppKitCompat.h"
#import "FlashDialog.h"

namespace {

// A time-out counts in ticks of 1/60 second; anything shorter than one second is none.
const unsigned int kTicksPerSecond = 60;

}  // namespace

@implementation Flash_WindowController_KESTBU

- (void)dealloc {
  [[NSNotificationCenter defaultCenter] removeObserver:self];
  [super dealloc];
}

- (void)addWindowNotifications {
  NSNotificationCenter* center = [NSNotificationCenter defaultCenter];
  [center addObserver:self
             selector:@selector(handleNSApplicationWillResignActiveNotification:)
                 name:NSApplicationWillResignActiveNotification
               object:nil];
  [center addObserver:self
             selector:@selector(handleNSApplicationWillBecomeActiveNotification:)
                 name:NSApplicationWillBecomeActiveNotification
               object:nil];
}

- (void)awakeFromNib {
  myTimer = nil;
  ESCPressed = false;
  mStopOnEscape = false;
  state = kFlashStateLoaded;
}

- (void)changeLabelText:(NSString*)text {
  [labelTextField1 setStringValue:text];
}

- (void)setLabelTexts:(NSString*)text1 text2:(NSString*)text2 text3:(NSString*)text3 {
  if (text1 != nil) [labelTextField1 setStringValue:text1];
  if (text2 != nil) [labelTextField2 setStringValue:text2];
  if (text3 != nil) [labelTextField3 setStringValue:text3];
}

- (void)setWindowTitle:(NSString*)title {
  mWindowTitle = title;
}

- (void)setWantedWindowLevel:(NSInteger)level {
  mWantedWindowLevel = level;
}

- (void)setStopOnEscape:(bool)stop {
  mStopOnEscape = stop;
}

- (bool)stopOnEscape {
  return mStopOnEscape;
}

- (void)myRunModalForWindow {
  NSWindow* window = [self window];
  if (mWindowTitle != nil) [window setTitle:mWindowTitle];
  mResultCode = [NSApp runModalForWindow:window];
  [window orderOut:nil];
}

- (void)myAddTimerWithDelayTime:(NSNumber*)delayTicks {
  const unsigned int ticks = [delayTicks unsignedIntValue];
  if (ticks < kTicksPerSecond) return;
  // Whole seconds, rounded down: 119 ticks give one.
  const NSTimeInterval seconds = ticks / kTicksPerSecond;
  Flash_WindowController_KESTBU* running = FlashCocoaIntern_RunningController();
  NSTimer* timer = [NSTimer scheduledTimerWithTimeInterval:seconds
                                                    target:running
                                                  selector:@selector(FlashCocoa_TimerWentOff:)
                                                  userInfo:nil
                                                   repeats:YES];
  // The modal session runs the run loop in its own mode only.
  [[NSRunLoop currentRunLoop] addTimer:timer forMode:NSModalPanelRunLoopMode];
  [running setMyTimer:timer];
}

- (void)myShowWindow {
  NSWindow* window = [self window];
  [window center];
  [self showWindow:nil];
  [self addWindowNotifications];
  [window makeKeyAndOrderFront:nil];
  [window setLevel:mWantedWindowLevel];
}

- (NSInteger)getResultCode {
  return mResultCode;
}

- (void)FlashCocoa_TimerWentOff:(NSTimer*)timer {
  if (timer != myTimer) return;
  if (state == kFlashStateSplash) {
    state = kFlashStateClosable;
    [timer invalidate];
    myTimer = nil;
    [NSApp abortModal];
    FlashAppKit_WakeModalLoop();
  } else if (state == kFlashStateWaiting) {
    [self setButtonTextAndState:@"OK" enabled:YES];
    state = kFlashStateClosable;
    [timer invalidate];
    myTimer = nil;
  }
  // In any other state the timer keeps repeating and changes nothing.
}

- (NSTimer*)myTimer {
  return myTimer;
}

- (void)setMyTimer:(NSTimer*)timer {
  myTimer = timer;
}

- (bool)ESCPressed {
  return ESCPressed;
}

- (void)setESCPressed:(bool)pressed {
  ESCPressed = pressed;
}

- (void)handleNSApplicationWillResignActiveNotification:(NSNotification*)note {
  (void)note;
}

- (void)handleNSApplicationWillBecomeActiveNotification:(NSNotification*)note {
  (void)note;
  // Another application may have covered the dialog; the user must see what the
  // plug-in is waiting for.
  [[FlashCocoaIntern_RunningController() window] makeKeyAndOrderFront:nil];
}

- (NSButton*)getButtonID:(NSInteger)buttonNo {
  (void)buttonNo;
  return button;
}

- (void)setButtonTextAndState:(NSString*)text enabled:(signed char)enabled {
  NSButton* theButton = [self getButtonID:0];
  // An untitled button would be a blank plate: without a text there is no button.
  if ([text length] > 0) {
    [theButton setTitle:text];
  } else {
    [theButton setHidden:YES];
  }
  [theButton setEnabled:enabled];
}

- (void)setState:(int)newState {
  state = newState;
}

- (void)setpluginlogo:(NSImage*)logo {
  [pluginlogoNSImageCell setImage:logo];
}

- (void)setButtonEnabledState:(bool)enabled buttonNo:(NSInteger)buttonNo {
  [[self getButtonID:buttonNo] setEnabled:enabled];
}

- (void)buttonClickedAction:(id)sender {
  const NSInteger tag = [sender tag];
  // A button of a dialog that is no longer registered must not end someone else's
  // modal session.
  if (FlashCocoaIntern_RunningController() == nil) return;
  [NSApp stopModalWithCode:tag];
  FlashAppKit_WakeModalLoop();
}

- (void)adjustButtonEnableState:(bool)enabled {
  [self setButtonEnabledState:enabled buttonNo:0];
}

@end
