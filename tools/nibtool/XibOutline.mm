// The structure of an Interface Builder .xib read straight from its XML: objects, parents, connections.
#import "XibOutline.h"

@implementation XibConnection

- (id) initWithAction: (BOOL)isAction
               source: (NSString*)sourceID
          destination: (NSString*)destinationID
                label: (NSString*)label
{
  if ((self = [super init]) != nil)
    {
      _isAction = isAction;
      _sourceID = [sourceID copy];
      _destinationID = [destinationID copy];
      _label = [label copy];
    }
  return self;
}

- (void) dealloc
{
  [_sourceID release];
  [_destinationID release];
  [_label release];
  [super dealloc];
}

- (BOOL) isAction
{
  return _isAction;
}

- (NSString*) sourceID
{
  return _sourceID;
}

- (NSString*) destinationID
{
  return _destinationID;
}

- (NSString*) label
{
  return _label;
}

@end

static NSString* AttributeOf(NSXMLElement* element, NSString* name)
{
  return [[element attributeForName: name] stringValue];
}

static NSArray* ChildElementsOf(NSXMLElement* element)
{
  NSMutableArray* result = [NSMutableArray array];
  NSArray* children = [element children];
  for (NSUInteger i = 0; i < [children count]; i++)
    {
      NSXMLNode* child = [children objectAtIndex: i];
      if ([child kind] == NSXMLElementKind)
        [result addObject: child];
    }
  return result;
}

@interface XibOutline (Reading)
- (BOOL) readObjectsIn: (NSXMLElement*)element parentID: (NSString*)parentID error: (NSString**)error;
- (BOOL) readConnectionsIn: (NSXMLElement*)connections sourceID: (NSString*)sourceID
                     error: (NSString**)error;
@end

@implementation XibOutline

+ (NSString*) ownerID
{
  return @"-2";
}

- (id) init
{
  if ((self = [super init]) != nil)
    {
      _objectIDs = [[NSMutableArray alloc] init];
      _parentIDs = [[NSMutableDictionary alloc] init];
      _customClasses = [[NSMutableDictionary alloc] init];
      _titledWindowIDs = [[NSMutableSet alloc] init];
      _connections = [[NSMutableArray alloc] init];
    }
  return self;
}

- (void) dealloc
{
  [_objectIDs release];
  [_parentIDs release];
  [_customClasses release];
  [_titledWindowIDs release];
  [_connections release];
  [super dealloc];
}

+ (XibOutline*) outlineWithData: (NSData*)xml error: (NSString**)error
{
  NSError* xmlError = nil;
  NSXMLDocument* document = [[[NSXMLDocument alloc] initWithData: xml options: 0 error: &xmlError]
                              autorelease];
  NSXMLElement* root = [document rootElement];
  if (root == nil || ![[root name] isEqualToString: @"document"])
    {
      *error = xmlError != nil ? [xmlError localizedDescription] : @"not an Interface Builder document";
      return nil;
    }

  NSArray* sections = [root elementsForName: @"objects"];
  if ([sections count] != 1)
    {
      *error = @"the document has no single <objects> section";
      return nil;
    }

  XibOutline* outline = [[[XibOutline alloc] init] autorelease];
  if (![outline readObjectsIn: [sections objectAtIndex: 0] parentID: [XibOutline ownerID] error: error])
    return nil;
  return outline;
}

- (NSArray*) objectIDs
{
  return _objectIDs;
}

- (NSString*) parentIDOf: (NSString*)objectID
{
  return [_parentIDs objectForKey: objectID];
}

- (NSString*) customClassOf: (NSString*)objectID
{
  return [_customClasses objectForKey: objectID];
}

- (BOOL) isTitledWindow: (NSString*)windowID
{
  return [_titledWindowIDs containsObject: windowID];
}

- (NSArray*) connections
{
  return _connections;
}

@end

@implementation XibOutline (Reading)

// An element with an id is an object, except the connections, which are read apart. The
// negative ids are placeholders filled in at load time: only the owner (-2) is kept; a
// nib made here has no use for the First Responder or the Application.
- (BOOL) readObjectsIn: (NSXMLElement*)element parentID: (NSString*)parentID error: (NSString**)error
{
  NSArray* children = ChildElementsOf(element);
  for (NSUInteger i = 0; i < [children count]; i++)
    {
      NSXMLElement* child = [children objectAtIndex: i];
      NSString* name = [child name];
      NSString* objectID = AttributeOf(child, @"id");
      NSString* innerParentID = parentID;

      if ([name isEqualToString: @"connections"])
        {
          if (![self readConnectionsIn: child sourceID: parentID error: error])
            return NO;
          continue;
        }
      if (objectID != nil)
        {
          if ([name isEqualToString: @"customObject"])
            {
              NSString* customClass = AttributeOf(child, @"customClass");
              [_customClasses setObject: (customClass != nil ? customClass : @"NSObject")
                                 forKey: objectID];
            }
          if ([objectID hasPrefix: @"-"])
            {
              if (![objectID isEqualToString: [XibOutline ownerID]])
                continue;
            }
          else
            {
              [_objectIDs addObject: objectID];
              [_parentIDs setObject: parentID forKey: objectID];
            }
          innerParentID = objectID;
        }
      if ([name isEqualToString: @"windowStyleMask"] && [AttributeOf(child, @"titled") boolValue])
        [_titledWindowIDs addObject: parentID];

      if (![self readObjectsIn: child parentID: innerParentID error: error])
        return NO;
    }
  return YES;
}

- (BOOL) readConnectionsIn: (NSXMLElement*)connections sourceID: (NSString*)sourceID
                     error: (NSString**)error
{
  NSArray* children = ChildElementsOf(connections);
  for (NSUInteger i = 0; i < [children count]; i++)
    {
      NSXMLElement* child = [children objectAtIndex: i];
      NSString* name = [child name];
      XibConnection* connection = nil;
      if ([name isEqualToString: @"outlet"])
        connection = [[XibConnection alloc] initWithAction: NO
                                                    source: sourceID
                                               destination: AttributeOf(child, @"destination")
                                                     label: AttributeOf(child, @"property")];
      else if ([name isEqualToString: @"action"])
        connection = [[XibConnection alloc] initWithAction: YES
                                                    source: sourceID
                                               destination: AttributeOf(child, @"target")
                                                     label: AttributeOf(child, @"selector")];
      else
        {
          *error = [NSString stringWithFormat: @"unsupported connection <%@> of object %@", name, sourceID];
          return NO;
        }
      [connection autorelease];
      if ([connection destinationID] == nil || [connection label] == nil)
        {
          *error = [NSString stringWithFormat: @"incomplete <%@> connection of object %@", name, sourceID];
          return NO;
        }
      [_connections addObject: connection];
    }
  return YES;
}

@end
