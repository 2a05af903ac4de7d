// Turns an Interface Builder .xib into the keyed-archive .nib that GNUstep's nib loader reads.
#import "NibArchive.h"

#import <AppKit/AppKit.h>
#import <GNUstepGUI/GSNibLoading.h>
#import <GNUstepGUI/GSXibKeyedUnarchiver.h>

#import "ButtonCellArchive.h"
#import "WindowTemplateArchive.h"
#import "XibOutline.h"

// The xib reader keeps every object it built, keyed by the id the xib gives it; that table
// is the only way from an id back to a view or a cell.
@interface GSXibKeyedUnarchiver (NibArchive)
- (id) decodedObjectWithID: (NSString*)objectID;
@end

@implementation GSXibKeyedUnarchiver (NibArchive)
- (id) decodedObjectWithID: (NSString*)objectID
{
  return [decoded objectForKey: objectID];
}
@end

// Swaps in the stand-ins for objects whose own GNUstep encoding falls short of a nib. The
// archiver asks once per object and reuses the answer for every later reference.
@interface NibArchiverDelegate : NSObject
- (id) archiver: (NSKeyedArchiver*)archiver willEncodeObject: (id)object;
- (void) archiver: (NSKeyedArchiver*)archiver willReplaceObject: (id)object withObject: (id)replacement;
@end

@implementation NibArchiverDelegate

- (id) archiver: (NSKeyedArchiver*)archiver willEncodeObject: (id)object
{
  (void)archiver;
  if ([object isMemberOfClass: [NSButtonCell class]])
    return [[[ButtonCellArchive alloc] initWithCell: object] autorelease];
  return object;
}

// GNUstep's archiver sends this without asking whether the delegate implements it.
- (void) archiver: (NSKeyedArchiver*)archiver willReplaceObject: (id)object withObject: (id)replacement
{
  (void)archiver;
  (void)object;
  (void)replacement;
}

@end

static id ArchivedObject(XibOutline* outline, GSXibKeyedUnarchiver* reader, NSString* objectID)
{
  // Custom objects are made afresh from their class name: the reader's own placeholders
  // are private classes that another AppKit would not know.
  NSString* customClass = [outline customClassOf: objectID];
  if (customClass != nil)
    {
      NSCustomObject* custom = [[[NSCustomObject alloc] init] autorelease];
      [custom setClassName: customClass];
      return custom;
    }

  id object = [reader decodedObjectWithID: objectID];
  if ([object isKindOfClass: [NSWindowTemplate class]])
    {
      // The reader marks every window with a title as titled, and Interface Builder always
      // writes a title: the style comes from the xib's own <windowStyleMask> instead.
      unsigned styleMask = [object windowStyle];
      if ([outline isTitledWindow: objectID])
        styleMask |= NSTitledWindowMask;
      else
        styleMask &= ~NSTitledWindowMask;
      return [[[WindowTemplateArchive alloc] initWithTemplate: object styleMask: styleMask]
               autorelease];
    }
  return object;
}

static NSNibConnector* ArchivedConnector(XibConnection* connection, NSDictionary* objects,
                                         NSString** error)
{
  id source = [objects objectForKey: [connection sourceID]];
  id destination = [objects objectForKey: [connection destinationID]];
  if (source == nil || destination == nil)
    {
      *error = [NSString stringWithFormat: @"connection \"%@\" joins %@ and %@, not both objects of the xib",
                [connection label], [connection sourceID], [connection destinationID]];
      return nil;
    }

  // A control connector sets the target and action of its source, so the control is the
  // source; an outlet connector sets the outlet of its source, the object that holds it.
  NSNibConnector* connector = nil;
  if ([connection isAction])
    connector = [[[NSNibControlConnector alloc] init] autorelease];
  else
    connector = [[[NSNibOutletConnector alloc] init] autorelease];
  [connector setSource: source];
  [connector setDestination: destination];
  [connector setLabel: [connection label]];
  return connector;
}

NSData* NibArchiveFromXib(NSData* xib, NSString** error)
{
  XibOutline* outline = [XibOutline outlineWithData: xib error: error];
  if (outline == nil)
    return nil;

  GSXibKeyedUnarchiver* reader =
    (GSXibKeyedUnarchiver*)[GSXibKeyedUnarchiver unarchiverForReadingWithData: xib];
  if (reader == nil || [reader decodeObjectForKey: @"IBDocument.RootObjects"] == nil)
    {
      *error = @"GNUstep's xib reader could not read the document";
      return nil;
    }

  NSString* ownerID = [XibOutline ownerID];
  NSString* ownerClass = [outline customClassOf: ownerID];
  if (ownerClass == nil)
    {
      *error = @"the xib has no File's Owner";
      return nil;
    }
  NSCustomObject* owner = [[[NSCustomObject alloc] init] autorelease];
  [owner setClassName: ownerClass];

  NSMutableDictionary* objects = [NSMutableDictionary dictionaryWithObject: owner forKey: ownerID];
  NSArray* objectIDs = [outline objectIDs];
  for (NSUInteger i = 0; i < [objectIDs count]; i++)
    {
      NSString* objectID = [objectIDs objectAtIndex: i];
      id object = ArchivedObject(outline, reader, objectID);
      if (object == nil)
        {
          *error = [NSString stringWithFormat: @"GNUstep's xib reader built no object for id %@", objectID];
          return nil;
        }
      [objects setObject: object forKey: objectID];
    }

  NSIBObjectData* objectData = [[[NSIBObjectData alloc] init] autorelease];
  [objectData setRoot: owner];
  // The owner stays out of the object table: the loader wakes every object of the table and
  // then the owner once more, and a controller must see awakeFromNib once.
  for (NSUInteger i = 0; i < [objectIDs count]; i++)
    {
      NSString* objectID = [objectIDs objectAtIndex: i];
      id object = [objects objectForKey: objectID];
      id parent = [objects objectForKey: [outline parentIDOf: objectID]];
      NSMapInsert([objectData objects], object, parent);
      NSMapInsert([objectData oids], object, [NSNumber numberWithUnsignedInteger: i + 1]);
    }
  [objectData setNextOid: (int)[objectIDs count] + 1];

  NSArray* connections = [outline connections];
  for (NSUInteger i = 0; i < [connections count]; i++)
    {
      NSNibConnector* connector = ArchivedConnector([connections objectAtIndex: i], objects, error);
      if (connector == nil)
        return nil;
      [[objectData connections] addObject: connector];
    }

  NSMutableData* nib = [NSMutableData data];
  NSKeyedArchiver* archiver = [[[NSKeyedArchiver alloc] initForWritingWithMutableData: nib] autorelease];
  NibArchiverDelegate* delegate = [[[NibArchiverDelegate alloc] init] autorelease];
  [archiver setDelegate: delegate];
  [archiver setOutputFormat: NSPropertyListXMLFormat_v1_0];
  [archiver setClassName: @"NSWindowTemplate" forClass: [WindowTemplateArchive class]];
  [archiver setClassName: @"NSButtonCell" forClass: [ButtonCellArchive class]];
  [archiver encodeObject: objectData forKey: @"IB.objectdata"];
  [archiver finishEncoding];
  return nib;
}
