// A window template that can be archived without a window server.
#import "WindowTemplateArchive.h"

// The template's flags have no accessor; the nib stores them as one integer.
static_assert(sizeof(GSWindowTemplateFlags) == sizeof(unsigned), "window template flags are one word");

@interface NSWindowTemplate (WindowTemplateArchive)
- (GSWindowTemplateFlags) archivedFlags;
@end

@implementation NSWindowTemplate (WindowTemplateArchive)
- (GSWindowTemplateFlags) archivedFlags
{
  return _flags;
}
@end

@implementation WindowTemplateArchive

- (id) initWithTemplate: (NSWindowTemplate*)windowTemplate styleMask: (unsigned)styleMask
{
  if ((self = [super init]) != nil)
    {
      _template = [windowTemplate retain];
      _styleMask = styleMask;
    }
  return self;
}

- (void) dealloc
{
  [_template release];
  [super dealloc];
}

- (void) encodeWithCoder: (NSCoder*)coder
{
  GSWindowTemplateFlags flags = [_template archivedFlags];
  flags.isVisible = 0;
  unsigned packedFlags = 0;
  memcpy(&packedFlags, &flags, sizeof packedFlags);

  [coder encodeObject: [_template viewClass] forKey: @"NSViewClass"];
  [coder encodeObject: [_template className] forKey: @"NSWindowClass"];
  [coder encodeInt: (int)_styleMask forKey: @"NSWindowStyleMask"];
  [coder encodeInt: (int)[_template backingStoreType] forKey: @"NSWindowBacking"];
  [coder encodeObject: [_template view] forKey: @"NSWindowView"];
  [coder encodeInt: (int)packedFlags forKey: @"NSWTFlags"];
  [coder encodeSize: [_template minSize] forKey: @"NSWindowContentMinSize"];
  [coder encodeSize: [_template maxSize] forKey: @"NSWindowContentMaxSize"];
  // The xib gives the content rectangle, which is what the loader expects here.
  [coder encodeRect: [_template windowRect] forKey: @"NSWindowRect"];
  // The loader turns on the title bar for any window that has a title.
  if (_styleMask & NSTitledWindowMask)
    [coder encodeObject: [_template title] forKey: @"NSWindowTitle"];
  [coder encodeBool: NO forKey: @"visibleAtLaunch"];
}

@end
