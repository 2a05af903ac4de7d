// The platform's CFStrings handed to AppKit as NSStrings.
#ifndef XPFLASH_PLATFORMSTRINGBRIDGE_H
#define XPFLASH_PLATFORMSTRINGBRIDGE_H

#import <Foundation/Foundation.h>

#include <CoreFoundation/CoreFoundation.h>

/// `s` as an NSString, nil for null. Not the caller's to release; use it while `s` lives
/// and before the current autorelease pool goes.
NSString* FlashNSStringFromCFString(CFStringRef s);

#endif  // XPFLASH_PLATFORMSTRINGBRIDGE_H
