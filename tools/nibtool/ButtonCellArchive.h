// A button cell archived together with its font.
//
// GNUstep's NSButtonCell writes its font only when the cell is of the text type, which a
// push button read from a xib is not, so a nib made from it would load with the default
// font size instead of the xib's. This object writes the cell as usual plus the font under
// the key the cell decoder reads it from, and is archived under the class name NSButtonCell.
#import <AppKit/AppKit.h>

@interface ButtonCellArchive : NSObject
{
  NSButtonCell* _cell;
}
- (id) initWithCell: (NSButtonCell*)cell;
- (void) encodeWithCoder: (NSCoder*)coder;
@end
