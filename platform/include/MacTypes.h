// Apple's basic types (MacTypes.h) with their 64-bit sizes, for systems without the frameworks.
#ifndef XPPLATFORM_MACTYPES_H
#define XPPLATFORM_MACTYPES_H

#ifdef __cplusplus
extern "C" {
#endif

// Integers. On LP64 Apple keeps the 32-bit types at int, not long, so that their size
// never changed when the frameworks went 64-bit.
typedef unsigned char UInt8;
typedef signed char SInt8;
typedef unsigned short UInt16;
typedef signed short SInt16;
#if defined(__LP64__) && __LP64__
typedef unsigned int UInt32;
typedef signed int SInt32;
#else
typedef unsigned long UInt32;
typedef signed long SInt32;
#endif
typedef unsigned long long UInt64;
typedef signed long long SInt64;

typedef UInt8 Byte;
typedef SInt8 SignedByte;
typedef UInt16 UniChar;
typedef unsigned char Boolean;

// Counts, option sets and four-character codes ('TEXT', 'desk').
typedef unsigned long ByteCount;
typedef unsigned long ItemCount;
typedef unsigned long UniCharCount;
typedef UInt32 OptionBits;
typedef UInt32 FourCharCode;
typedef FourCharCode OSType;
typedef FourCharCode ResType;

// Result codes.
typedef SInt16 OSErr;
typedef SInt32 OSStatus;
enum { noErr = 0 };

// Memory.
typedef char* Ptr;
typedef Ptr* Handle;
typedef long Size;

// Pascal strings: a count byte, then at most 255 bytes.
typedef unsigned char Str255[256];
typedef unsigned char* StringPtr;
typedef const unsigned char* ConstStringPtr;
typedef const unsigned char* ConstStr255Param;

// QuickDraw's rectangle, in the order Apple lays it out: vertical before horizontal.
struct Rect {
  short top;
  short left;
  short bottom;
  short right;
};
typedef struct Rect Rect;
typedef Rect* RectPtr;

// QuickDraw's point, vertical first like Rect.
struct Point {
  short v;
  short h;
};
typedef struct Point Point;

#ifdef __cplusplus
}
#endif

#endif
