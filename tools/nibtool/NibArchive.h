// Turns an Interface Builder .xib into the keyed-archive .nib that GNUstep's nib loader reads.
#import <Foundation/Foundation.h>

/// The contents of a .nib file made from the .xib document `xib`: a keyed archive whose root
/// key "IB.objectdata" holds an NSIBObjectData. Needs the GNUstep back end initialised
/// (fonts), but no display. Returns nil with *error set when the xib cannot be read or one
/// of its connections names an object it lacks.
NSData* NibArchiveFromXib(NSData* xib, NSString** error);
