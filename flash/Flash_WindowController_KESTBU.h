// The flash dialog's window controller: the nib's owner, its time-out and its modal run.
#ifndef XPFLASH_FLASH_WINDOWCONTROLLER_KESTBU_H
#define XPFLASH_FLASH_WINDOWCONTROLLER_KESTBU_H

#import <AppKit/AppKit.h>

// The dialog's states. The timer turns the waiting and the splash states into closable.
enum {
  kFlashStateLoaded = 0,    // just woken from the nib
  kFlashStateClosable = 1,  // the button ends the dialog
  kFlashStateWaiting = 2,   // "Please wait" on a disabled button until the time-out
  kFlashStateSplash = 3     // no button; the time-out ends the dialog
};

// The nibs name this class as their owner, so its name is part of their format.
@interface Flash_WindowController_KESTBU : NSWindowController {
  IBOutlet NSTextField* labelTextField1;
  IBOutlet NSTextField* labelTextField2;
  IBOutlet NSTextField* labelTextField3;
  IBOutlet NSButton* button;
  IBOutlet NSImageCell* pluginlogoNSImageCell;
  IBOutlet NSImage* pluginlogo_PlaceHolderimage;
  IBOutlet NSView* varnlogo_PlaceHolder;
  NSTimer* myTimer;  // not retained: the run loop keeps it until it is invalidated
  bool mStopOnEscape;
  bool ESCPressed;
  int state;
  NSInteger mResultCode;
  NSString* mWindowTitle;  // not retained: the caller keeps it until the dialog has ended
  NSInteger mWantedWindowLevel;
}

/// Stops observing the application before going.
- (void)dealloc;
/// Brings the window back to the front whenever the application becomes active again.
- (void)addWindowNotifications;
/// Starts in the loaded state with no timer and Escape unset.
- (void)awakeFromNib;
/// Sets label 1 alone.
- (void)changeLabelText:(NSString*)text;
/// Sets labels 1, 2 and 3; a nil text leaves its label as it is.
- (void)setLabelTexts:(NSString*)text1 text2:(NSString*)text2 text3:(NSString*)text3;
/// The title the window gets when it runs; kept, not retained.
- (void)setWindowTitle:(NSString*)title;
/// The level the window gets when it is shown.
- (void)setWantedWindowLevel:(NSInteger)level;
/// Stored for callers that want it; no key handling reads it.
- (void)setStopOnEscape:(bool)stop;
/// The stored stop-on-Escape setting.
- (bool)stopOnEscape;
/// Main thread: runs the window application-modally until the button or the time-out
/// ends it, keeps the result code and orders the window out.
- (void)myRunModalForWindow;
/// Main thread: starts the repeating time-out of `delayTicks` (an unsigned int, 1/60 s)
/// in whole seconds; under 60 ticks there is none.
- (void)myAddTimerWithDelayTime:(NSNumber*)delayTicks;
/// Main thread: centres the window, shows it in front at the wanted level and starts
/// watching the application's activation.
- (void)myShowWindow;
/// The code that ended the modal run: the button's tag, or the abort response.
- (NSInteger)getResultCode;
/// The time-out: ends the splash, or turns "Please wait" into an enabled "OK".
- (void)FlashCocoa_TimerWentOff:(NSTimer*)timer;
/// The running time-out, or nil.
- (NSTimer*)myTimer;
/// Keeps `timer` as the running time-out, not retained.
- (void)setMyTimer:(NSTimer*)timer;
/// The stored Escape mark.
- (bool)ESCPressed;
/// Stores the Escape mark.
- (void)setESCPressed:(bool)pressed;
/// Nothing to do when the application goes to the background.
- (void)handleNSApplicationWillResignActiveNotification:(NSNotification*)note;
/// Brings the running dialog's window to the front and makes it key.
- (void)handleNSApplicationWillBecomeActiveNotification:(NSNotification*)note;
/// The button numbered `buttonNo`: the dialog has only one, whatever the number.
- (NSButton*)getButtonID:(NSInteger)buttonNo;
/// Titles the button, or hides it for an empty or nil text, and enables it or not.
- (void)setButtonTextAndState:(NSString*)text enabled:(signed char)enabled;
/// Sets the dialog's state (kFlashState...).
- (void)setState:(int)newState;
/// Shows `logo` in the logo cell; nil leaves the cell empty.
- (void)setpluginlogo:(NSImage*)logo;
/// Enables or disables the button numbered `buttonNo`.
- (void)setButtonEnabledState:(bool)enabled buttonNo:(NSInteger)buttonNo;
/// The button's action: ends the running dialog with the button's tag as result code.
- (void)buttonClickedAction:(id)sender;
/// Enables or disables the dialog's button.
- (void)adjustButtonEnableState:(bool)enabled;

@end

#endif  // XPFLASH_FLASH_WINDOWCONTROLLER_KESTBU_H
