// nibtool: compiles an Interface Builder .xib into the keyed-archive .nib that GNUstep loads.
//
// GNUstep reads a .xib only from a path ending in ".xib", while the plug-in asks for
// "<name>.nib" as on macOS, where Apple's tools compile the xib. This tool does that
// compilation on build machines without a display.
//
//   nibtool INPUT.xib OUTPUT.nib
#import <AppKit/AppKit.h>

#import "NibArchive.h"

// Exported by gnustep-gui but declared in none of its headers: loads the back end (fonts
// among it) without opening a display, which a build must not need.
extern "C" BOOL initialize_gnustep_backend(void);

static int Fail(NSString* message)
{
  fprintf(stderr, "nibtool: %s\n", [message UTF8String]);
  return 1;
}

int main(int argc, char** argv)
{
  if (argc != 3)
    {
      fprintf(stderr, "usage: nibtool INPUT.xib OUTPUT.nib\n");
      return 2;
    }

  NSAutoreleasePool* pool = [[NSAutoreleasePool alloc] init];
  int status = 0;
  NSString* input = [NSString stringWithUTF8String: argv[1]];
  NSString* output = [NSString stringWithUTF8String: argv[2]];
  NSData* xib = [NSData dataWithContentsOfFile: input];
  NSString* error = nil;
  NSData* nib = nil;

  if (xib == nil)
    status = Fail([NSString stringWithFormat: @"cannot read %@", input]);
  else if (!initialize_gnustep_backend())
    status = Fail(@"the GNUstep back end did not load");
  else if ((nib = NibArchiveFromXib(xib, &error)) == nil)
    status = Fail([NSString stringWithFormat: @"%@: %@", input, error]);
  else if (![nib writeToFile: output atomically: YES])
    status = Fail([NSString stringWithFormat: @"cannot write %@", output]);

  [pool release];
  return status;
}
