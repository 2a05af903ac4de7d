// A window template that can be archived without a window server.
//
// GNUstep's own -[NSWindowTemplate encodeWithCoder:] asks the display server for the frame
// decorations, which a build machine does not have. This object writes the same keys from a
// template read out of a xib and is archived under the class name NSWindowTemplate, so the
// nib loader builds the real template from it.
#import <GNUstepGUI/GSNibLoading.h>

@interface WindowTemplateArchive : NSObject
{
  NSWindowTemplate* _template;
  unsigned _styleMask;
}
/// Archives `windowTemplate` with `styleMask` in place of the template's own mask. The
/// window is never shown by loading the nib: its owner decides when.
- (id) initWithTemplate: (NSWindowTemplate*)windowTemplate styleMask: (unsigned)styleMask;
- (void) encodeWithCoder: (NSCoder*)coder;
@end
