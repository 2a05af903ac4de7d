// Apple's File Manager (Files.h): references to files and folders, their catalog
// information, their data and resource forks.
#ifndef XPPLATFORM_CORESERVICES_FILES_H
#define XPPLATFORM_CORESERVICES_FILES_H

#include <CoreServices/Finder.h>
#include <CoreServices/MacErrors.h>
#include <CoreServices/TextCommon.h>
#include <CoreServices/UTCUtils.h>
#include <MacTypes.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef SInt16 FSVolumeRefNum;
/// An open fork; 32 bits wide in Apple's 64-bit ABI.
typedef int FSIORefNum;

#pragma pack(push, 2)
/// An existing file or folder, opaque. Off Apple systems it names an entry of a
/// process-wide table of absolute paths together with the device, inode and birth time
/// the object had when the reference was made: a reference outlives neither the process
/// nor the object, and an object deleted or replaced under its name gives fnfErr (where
/// the file system records no birth time, a new object that reuses the inode number goes
/// unnoticed). Unlike on Apple systems, a reference does not follow its object when it is
/// renamed or moved.
struct FSRef {
  UInt8 hidden[80];
};
typedef struct FSRef FSRef;
typedef FSRef* FSRefPtr;

/// A name of at most 255 UTF-16 units.
struct HFSUniStr255 {
  UInt16 length;
  UniChar unicode[255];
};
typedef struct HFSUniStr255 HFSUniStr255;
typedef const HFSUniStr255* ConstHFSUniStr255Param;

/// The 64-bit form of the older file reference record; never filled here: the calls that
/// take one leave it untouched.
struct FSSpec {
  UInt8 hidden[70];
};
typedef struct FSSpec FSSpec;
typedef FSSpec* FSSpecPtr;

/// Owner, group and mode of an object.
struct FSPermissionInfo {
  UInt32 userID;
  UInt32 groupID;
  UInt8 reserved1;
  UInt8 userAccess;
  UInt16 mode;
  UInt32 reserved2;
};
typedef struct FSPermissionInfo FSPermissionInfo;

/// Catalog information; which fields count is given by an FSCatalogInfoBitmap.
struct FSCatalogInfo {
  UInt16 nodeFlags;
  FSVolumeRefNum volume;
  UInt32 parentDirID;
  UInt32 nodeID;
  UInt8 sharingFlags;
  UInt8 userPrivileges;
  UInt8 reserved1;
  UInt8 reserved2;
  UTCDateTime createDate;
  UTCDateTime contentModDate;
  UTCDateTime attributeModDate;
  UTCDateTime accessDate;
  UTCDateTime backupDate;
  FSPermissionInfo permissions;
  /// A FileInfo or FolderInfo in the host's byte order.
  UInt8 finderInfo[16];
  /// An ExtendedFileInfo or ExtendedFolderInfo in the host's byte order.
  UInt8 extFinderInfo[16];
  UInt64 dataLogicalSize;
  UInt64 dataPhysicalSize;
  UInt64 rsrcLogicalSize;
  UInt64 rsrcPhysicalSize;
  UInt32 valence;
  TextEncoding textEncodingHint;
};
typedef struct FSCatalogInfo FSCatalogInfo;
typedef FSCatalogInfo* FSCatalogInfoPtr;
#pragma pack(pop)

typedef UInt32 FSCatalogInfoBitmap;
enum {
  kFSCatInfoNone = 0x00000000,
  kFSCatInfoTextEncoding = 0x00000001,
  kFSCatInfoNodeFlags = 0x00000002,
  kFSCatInfoVolume = 0x00000004,
  kFSCatInfoParentDirID = 0x00000008,
  kFSCatInfoNodeID = 0x00000010,
  kFSCatInfoCreateDate = 0x00000020,
  kFSCatInfoContentMod = 0x00000040,
  kFSCatInfoAttrMod = 0x00000080,
  kFSCatInfoAccessDate = 0x00000100,
  kFSCatInfoBackupDate = 0x00000200,
  kFSCatInfoPermissions = 0x00000400,
  kFSCatInfoFinderInfo = 0x00000800,
  kFSCatInfoFinderXInfo = 0x00001000,
  kFSCatInfoValence = 0x00002000,
  kFSCatInfoDataSizes = 0x00004000,
  kFSCatInfoRsrcSizes = 0x00008000,
  kFSCatInfoSharingFlags = 0x00010000,
  kFSCatInfoUserPrivs = 0x00020000,
  kFSCatInfoUserAccess = 0x00080000,
  kFSCatInfoAllDates = 0x000003E0,
  kFSCatInfoGettableInfo = 0x0003FFFF,
  kFSCatInfoSettableInfo = 0x00001FE3
};

// Node flags (nodeFlags).
enum {
  kFSNodeLockedBit = 0,
  kFSNodeLockedMask = 0x0001,
  kFSNodeIsDirectoryBit = 4,
  kFSNodeIsDirectoryMask = 0x0010
};

// Fork access (FSOpenFork's permissions). Off Apple systems the deny modes and the
// exclusive/shared distinction are not enforced: any number of paths may write a fork.
enum {
  fsCurPerm = 0x00,
  fsRdPerm = 0x01,
  fsWrPerm = 0x02,
  fsRdWrPerm = 0x03,
  fsRdWrShPerm = 0x04,
  fsRdDenyPerm = 0x10,
  fsWrDenyPerm = 0x20
};

// Position modes of the fork calls; the bits above the low two (cache hints) are ignored.
enum {
  fsAtMark = 0,
  fsFromStart = 1,
  fsFromLEOF = 2,
  fsFromMark = 3
};

// Directory change notification (FNNotify).
typedef UInt32 FNMessage;
enum { kFNDirectoryModifiedMessage = 1 };

// Names are HFS names: UTF-16, at most 255 units, stored as UTF-8 without normalisation;
// "/" in a name stands for ":" in the POSIX path and the other way round, as on Apple
// systems. "", ".", "..", and names holding ":", U+0000 or an unpaired surrogate give
// bdNamErr, longer names errFSNameTooLong. NULL pointers where a value is required give paramErr; a reference
// that was never made by these calls gives errFSBadFSRef.
//
// Finder information and resource forks live beside the data: in the extended attributes
// user.com.apple.FinderInfo (32 bytes, big-endian as on disk) and
// user.com.apple.ResourceFork, or where the file system has no extended attributes in an
// AppleDouble file "._name" in the same folder.

/// The reference of `name` in the folder `parentRef`; fnfErr when it does not exist.
OSErr FSMakeFSRefUnicode(const FSRef* parentRef, UniCharCount nameLength, const UniChar* name,
                         TextEncoding textEncodingHint, FSRef* newRef);
/// The reference of the object at the UTF-8 POSIX `path` (relative to the current
/// folder, symbolic links followed); `*isDirectory` tells whether it is a folder when
/// `isDirectory` is not NULL.
OSStatus FSPathMakeRef(const UInt8* path, FSRef* ref, Boolean* isDirectory);
/// The zero-terminated UTF-8 POSIX path of `ref`; paramErr when it does not fit in
/// `pathBufferSize` bytes (the buffer then holds an empty string).
OSStatus FSRefMakePath(const FSRef* ref, UInt8* path, UInt32 pathBufferSize);

/// Creates the empty file `name` in `parentRef` with the catalog fields of `whichInfo`
/// taken from `catalogInfo` (as FSSetCatalogInfo); dupFNErr when the name is taken.
/// `newRef` receives its reference when not NULL.
OSErr FSCreateFileUnicode(const FSRef* parentRef, UniCharCount nameLength, const UniChar* name,
                          FSCatalogInfoBitmap whichInfo, const FSCatalogInfo* catalogInfo, FSRef* newRef,
                          FSSpecPtr newSpec);
/// Creates the folder `name` in `parentRef` as FSCreateFileUnicode creates a file;
/// `*newDirID` receives its node ID when not NULL.
OSErr FSCreateDirectoryUnicode(const FSRef* parentRef, UniCharCount nameLength, const UniChar* name,
                               FSCatalogInfoBitmap whichInfo, const FSCatalogInfo* catalogInfo, FSRef* newRef,
                               FSSpecPtr newSpec, UInt32* newDirID);
/// Creates a file as FSCreateFileUnicode and gives it an empty resource fork; the fork
/// name must be the resource fork's (FSGetResourceForkName), else errFSBadForkName.
OSErr FSCreateResourceFile(const FSRef* parentRef, UniCharCount nameLength, const UniChar* name,
                           FSCatalogInfoBitmap whichInfo, const FSCatalogInfo* catalogInfo,
                           UniCharCount forkNameLength, const UniChar* forkName, FSRef* newRef, FSSpecPtr newSpec);
/// Gives an existing file an empty resource fork; errFSForkExists when it has one already,
/// errFSBadForkName for another fork name. `flags` must be 0.
OSErr FSCreateResourceFork(const FSRef* ref, UniCharCount forkNameLength, const UniChar* forkName, UInt32 flags);
/// Deletes a file (with its Finder information and resource fork) or an empty folder;
/// fBsyErr for a folder that is not empty.
OSErr FSDeleteObject(const FSRef* ref);

/// Reads the catalog fields of `whichInfo` into `catalogInfo`, the object's name into
/// `outName` and its folder's reference into `parentRef`, each when not NULL. Of the
/// fields, sharing flags, user privileges, backup date and text encoding read as 0.
OSErr FSGetCatalogInfo(const FSRef* ref, FSCatalogInfoBitmap whichInfo, FSCatalogInfo* catalogInfo,
                       HFSUniStr255* outName, FSSpecPtr fsSpec, FSRef* parentRef);
/// Writes the catalog fields of `whichInfo`: Finder information (both halves), the
/// content-modification and access dates, and the permission mode; the other settable
/// fields (creation and attribute-modification dates, text encoding) are accepted and
/// not stored. A content-modification date is stored to 1/65536 s; should the file system
/// keep coarser times and swallow a change, the stored time moves on by its granularity.
OSErr FSSetCatalogInfo(const FSRef* ref, FSCatalogInfoBitmap whichInfo, const FSCatalogInfo* catalogInfo);

/// The name of the data fork: the empty name.
OSErr FSGetDataForkName(HFSUniStr255* dataForkName);
/// The name of the resource fork: "RESOURCE_FORK".
OSErr FSGetResourceForkName(HFSUniStr255* resourceForkName);
/// Opens the data or the resource fork of a file with the mark at 0. notAFileErr for a
/// folder, errFSBadForkName for other fork names, permErr when access is refused. A
/// resource fork that does not exist yet opens empty and comes into being when written.
OSErr FSOpenFork(const FSRef* ref, UniCharCount forkNameLength, const UniChar* forkName, SInt8 permissions,
                 FSIORefNum* forkRefNum);
/// The fork's logical size. Fork calls on a number that is not open give rfNumErr.
OSErr FSGetForkSize(FSIORefNum forkRefNum, SInt64* forkSize);
/// Sets the fork's logical size to the position `positionOffset` from `positionMode`, and
/// pulls the mark back to the end when it lay beyond it; wrPermErr on a read-only fork.
OSErr FSSetForkSize(FSIORefNum forkRefNum, UInt16 positionMode, SInt64 positionOffset);
/// The fork's mark.
OSErr FSGetForkPosition(FSIORefNum forkRefNum, SInt64* position);
/// Moves the mark; posErr before the start, eofErr beyond the end (the mark then moves to
/// the end).
OSErr FSSetForkPosition(FSIORefNum forkRefNum, UInt16 positionMode, SInt64 positionOffset);
/// Reads up to `requestCount` bytes from the position given and leaves the mark after
/// them; eofErr when fewer were there, permErr on a fork opened for writing only.
/// `*actualCount` (when not NULL) gets the count read.
OSErr FSReadFork(FSIORefNum forkRefNum, UInt16 positionMode, SInt64 positionOffset, ByteCount requestCount,
                 void* buffer, ByteCount* actualCount);
/// Writes `requestCount` bytes at the position given, growing the fork as needed, and
/// leaves the mark after them; wrPermErr on a read-only fork, dskFulErr for a resource
/// fork beyond 16 MB (Apple's limit).
OSErr FSWriteFork(FSIORefNum forkRefNum, UInt16 positionMode, SInt64 positionOffset, ByteCount requestCount,
                  const void* buffer, ByteCount* actualCount);
/// Closes the fork; its number may then be given to another fork.
OSErr FSCloseFork(FSIORefNum forkRefNum);

/// Tells observers of `ref` that it changed. Nothing observes File Manager notifications
/// off Apple systems, so this checks the reference and returns.
OSStatus FNNotify(const FSRef* ref, FNMessage message, OptionBits flags);

#ifdef __cplusplus
}
#endif

#endif
