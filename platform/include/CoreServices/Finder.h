// Apple's Finder information records (Finder.h): the 16 + 16 bytes the Finder keeps per
// file or folder, in the catalog's finderInfo and extFinderInfo.
#ifndef XPPLATFORM_CORESERVICES_FINDER_H
#define XPPLATFORM_CORESERVICES_FINDER_H

#include <MacTypes.h>

#ifdef __cplusplus
extern "C" {
#endif

// Finder flags (finderFlags, fdFlags).
enum {
  kIsOnDesk = 0x0001,
  kColor = 0x000E,
  kIsShared = 0x0040,
  kHasNoINITs = 0x0080,
  kHasBeenInited = 0x0100,
  kHasCustomIcon = 0x0400,
  kIsStationery = 0x0800,
  kNameLocked = 0x1000,
  kHasBundle = 0x2000,
  kIsInvisible = 0x4000,
  kIsAlias = 0x8000
};

#pragma pack(push, 2)
/// Finder information of a file.
struct FileInfo {
  OSType fileType;
  OSType fileCreator;
  UInt16 finderFlags;
  Point location;
  UInt16 reservedField;
};
typedef struct FileInfo FileInfo;

/// Finder information of a folder.
struct FolderInfo {
  Rect windowBounds;
  UInt16 finderFlags;
  Point location;
  UInt16 reservedField;
};
typedef struct FolderInfo FolderInfo;

/// Extended Finder information of a file.
struct ExtendedFileInfo {
  SInt16 reserved1[4];
  UInt16 extendedFinderFlags;
  SInt16 reserved2;
  SInt32 putAwayFolderID;
};
typedef struct ExtendedFileInfo ExtendedFileInfo;

/// Extended Finder information of a folder.
struct ExtendedFolderInfo {
  Point scrollPosition;
  SInt32 reserved1;
  UInt16 extendedFinderFlags;
  SInt16 reserved2;
  SInt32 putAwayFolderID;
};
typedef struct ExtendedFolderInfo ExtendedFolderInfo;

/// The older name of a file's Finder information, field for field the same as FileInfo.
struct FInfo {
  OSType fdType;
  OSType fdCreator;
  UInt16 fdFlags;
  Point fdLocation;
  SInt16 fdFldr;
};
typedef struct FInfo FInfo;
#pragma pack(pop)

#ifdef __cplusplus
}
#endif

#endif
