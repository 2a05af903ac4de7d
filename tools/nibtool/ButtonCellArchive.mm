// A button cell archived together with its font.
#import "ButtonCellArchive.h"

@implementation ButtonCellArchive

- (id) initWithCell: (NSButtonCell*)cell
{
  if ((self = [super init]) != nil)
    _cell = [cell retain];
  return self;
}

- (void) dealloc
{
  [_cell release];
  [super dealloc];
}

- (void) encodeWithCoder: (NSCoder*)coder
{
  [_cell encodeWithCoder: coder];
  // NSCell itself uses the key for a text cell's font or any other cell's image.
  if ([_cell type] != NSTextCellType && [_cell image] == nil)
    [coder encodeObject: [_cell font] forKey: @"NSSupport"];
}

@end
