// The structure of an Interface Builder .xib read straight from its XML: objects, parents, connections.
//
// GNUstep's xib reader builds the objects themselves but keeps neither the parent of each
// object nor the connections in a form a nib needs, and it treats every window with a title
// as titled. This outline supplies those from the document itself.
#import <Foundation/Foundation.h>

/// One outlet or action connection of the document, by object id.
@interface XibConnection : NSObject
{
  BOOL _isAction;
  NSString* _sourceID;
  NSString* _destinationID;
  NSString* _label;
}
- (id) initWithAction: (BOOL)isAction
               source: (NSString*)sourceID
          destination: (NSString*)destinationID
                label: (NSString*)label;
/// YES for a control's action (source: the control, destination: its target).
- (BOOL) isAction;
/// For an outlet, the object that holds it; for an action, the control.
- (NSString*) sourceID;
/// For an outlet, the object it points to; for an action, the target.
- (NSString*) destinationID;
/// The outlet's name or the action's selector.
- (NSString*) label;
@end

@interface XibOutline : NSObject
{
  NSMutableArray* _objectIDs;
  NSMutableDictionary* _parentIDs;
  NSMutableDictionary* _customClasses;
  NSMutableSet* _titledWindowIDs;
  NSMutableArray* _connections;
}
/// Reads the document; nil with *error set when the XML is malformed or is not a xib.
+ (XibOutline*) outlineWithData: (NSData*)xml error: (NSString**)error;

/// Id of the File's Owner placeholder, the object a loaded nib is given as its owner.
+ (NSString*) ownerID;
/// Every object of the document in document order, placeholders left out.
- (NSArray*) objectIDs;
/// Id of the object that contains the given one; the owner's id for a top-level object.
- (NSString*) parentIDOf: (NSString*)objectID;
/// The class named by a customObject element (also for the owner), or nil for other objects.
- (NSString*) customClassOf: (NSString*)objectID;
/// YES when the window's <windowStyleMask> asks for a title bar.
- (BOOL) isTitledWindow: (NSString*)windowID;
/// The XibConnection objects in document order.
- (NSArray*) connections;
@end
