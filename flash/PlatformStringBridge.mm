// CFString to NSString: a cast with Apple's frameworks, a copy of the characters elsewhere.
#import "PlatformStringBridge.h"

#include <vector>

NSString* FlashNSStringFromCFString(CFStringRef s) {
  if (s == NULL) return nil;
#ifdef __APPLE__
  return (NSString*)s;
#else
  // Off Apple systems CFString is the platform layer's own type, not an NSString in
  // disguise, so the characters are copied over.
  const CFIndex length = CFStringGetLength(s);
  std::vector<UniChar> units(static_cast<size_t>(length));
  CFStringGetCharacters(s, CFRangeMake(0, length), units.data());
  return [NSString stringWithCharacters:reinterpret_cast<const unichar*>(units.data())
                                 length:static_cast<NSUInteger>(length)];
#endif
}
