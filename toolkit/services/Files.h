// File system helpers: references from host-text names, forks, catalog dates and flags,
// the host application's folder, and whole files read into host text.
#ifndef XPTOOLKIT_SERVICES_FILES_H
#define XPTOOLKIT_SERVICES_FILES_H

#include <CoreServices/CoreServices.h>

#include <vector>

#include "text/HostValues.h"

// Every function returns the platform's error number widened to int, 0 for success; none
// reports anything else. A null output pointer gives -50. Names taken from host texts are
// cut to their first 2000 UTF-16 units and passed with the encoding hint "unknown". Fork
// positions take the platform's modes: 0 at the mark, 1 from the start, 2 from the logical
// end, 3 from the mark. Forks are numbered as the platform's FSOpenFork numbers them.

/// A file or folder whose reference may be made late, from its parent folder and name.
/// The main plug-in fills it; `name` belongs to the record and is released (and set to
/// null) once the reference is made.
struct VNFileORefRecTag {
  Boolean refNotMade;  ///< `ref` is still to be made from `parentRef` and `name`.
  FSRef ref;
  FSRef parentRef;
  CFStringRef name;
};

/// The first 2000 UTF-16 units of `name`: the name as the helpers hand it to the platform.
std::vector<UniChar> XP7_FSNameUnits(fmx::TextAutoPtr& name);

// References and new files.

/// Makes the reference of `name` inside `parent`: -43 when there is no such object.
int XP7_FSMakeFSRef(const FSRef* parent, fmx::TextAutoPtr& name, FSRef* out);
/// Creates the file `name` in `parent` with the given Finder type and creator (other
/// Finder fields 0) and makes its reference; -48 when it already exists.
int XP7_FSCreateFile_MakeFSRef(const FSRef* parent, fmx::TextAutoPtr& name, unsigned int creator,
                               unsigned int type, FSRef* out);
/// As XP7_FSCreateFile_MakeFSRef, the new file also getting an empty resource fork.
int XP7_FSCreateResFile_MakeFSRef(const FSRef* parent, fmx::TextAutoPtr& name, unsigned int creator,
                                  unsigned int type, FSRef* out);
/// Adds an empty resource fork to an existing file.
int XP7_FSRefCreateResFile(const FSRef* file);
/// Deletes the file, or the empty folder.
int XP7_FSDeleteObject(FSRef* object);

// Forks.

/// Opens the data fork of `file` with the permission (1 read, 2 write, 3 both).
int XP7_FSRefOpenDF(const FSRef* file, signed char permission, int* forkRef);
/// Opens the resource fork of `file` with the permission.
int XP7_FSRefOpenRF(const FSRef* file, signed char permission, int* forkRef);
/// Makes the record's reference first when it is not yet made (keeping the record as it
/// was on failure), then opens its data fork. -50 for a null record.
int XP7_VNFileORefOpenDF(VNFileORefRecTag* rec, signed char permission, int* forkRef);
/// The fork's logical size in bytes.
int XP7_FSGetForkSize(int fork, long long* size);
/// The fork's mark, in bytes from its start.
int XP7_FSGetForkPosition(int fork, long long* position);
/// Moves the mark by `offset` bytes counted as `mode` says.
int XP7_FSSetForkPosition(int fork, unsigned short mode, long long offset);
/// Sets the fork's logical size to `size` bytes from its start.
int XP7_FSSetForkSize(int fork, long long size);
/// Reads `count` bytes at the mark into `buffer`; -39 when the end came first.
int XP7_FSReadFork(int fork, unsigned long count, void* buffer, unsigned long* actual);
/// Writes `count` bytes of `buffer` at the mark.
int XP7_FSWriteFork(int fork, unsigned long count, void* buffer, unsigned long* actual);
/// Writes *count bytes of `buffer` at the mark; *count becomes the number written.
int Vn64_FSWrite(int fork, unsigned long* count, void* buffer);
/// Closes the fork.
int XP7_FSClose(int fork);

// Catalog information.

/// The creation and content-modification dates as seconds since 1904, both 0 on failure.
int XP7_FSRefGetFileDate(const FSRef* file, unsigned int* created, unsigned int* modified);
/// The 16 bytes of Finder information (type, creator, flags, location, reserved) of the
/// record's object.
int XP7_FileORefGetFInfo(VNFileORefRecTag* rec, FInfo* info);
/// True when the record's object is a folder; false for a null record or on any error.
bool VNFileORef_IsDirectory(VNFileORefRecTag* rec);
/// True when the record's object exists and is not a folder.
bool VNFileORef_IsFile(VNFileORefRecTag* rec);
/// 0 when the record's object is a file, -43 when it is a folder, else the catalog error.
int VNFileORef_FileExists(VNFileORefRecTag* rec);
/// True when the record's object exists, as a file or as a folder.
bool VNFileORef_Exists(VNFileORefRecTag* rec);
/// Always false: paths are not looked at on this platform.
bool XP7_IsDirectoryUni(const unsigned short* path);
/// Sets (`set`) or clears the `mask` bits of the Finder flags, then moves the content
/// date to now, always to a new value, and tells the Finder. Returns the flag write's error.
int XP7_FSChangeFinderFlags(const FSRef* object, bool set, unsigned short mask);
/// The content date XP7_FSChangeFinderFlags stores: `now`, or, when that equals `old` to the
/// fraction, `old` plus one fraction unit (carried into the low seconds).
UTCDateTime XP7_NextContentModDate(const UTCDateTime& old, const UTCDateTime& now);
/// Sets the invisible Finder flag (0x4000), as XP7_FSChangeFinderFlags does.
int XP7_FSSetInvisible(const FSRef* object);

// The host application and whole files.

/// The host application's bundle (`which` 2) or the folder holding it (any other value);
/// -50 when the bundle has no reference.
int XP7_GetApplicationFolderFSRef(unsigned int which, FSRef* out);
/// As XP7_GetApplicationFolderFSRef, as a UTF-8 POSIX path of at most `size` bytes with its
/// NUL; `path` is emptied first. -43 without a main bundle; a path too long leaves it cut
/// or empty with the platform's error (-50 for the bundle itself).
int XP7_GetApplicationFolderPath(unsigned int which, char* path, unsigned int size);
/// Replaces `out` by the bytes of the file's data fork decoded as Mac Roman (an empty file
/// leaves `out` as it was). -43 for a null reference, else the first error met.
int XP7_ReadBytesFromFSRefToTxt(FSRef* file, fmx::TextAutoPtr& out);

#if !__LP64__
// The older FSSpec records, which only the 32-bit platform has.

/// Makes the FSSpec of `name` in the folder `dirID` of the volume `vRefNum`.
int XP7_FSMakeFSSpec(short vRefNum, long dirID, const unsigned char* name, FSSpec* fsSpec);
/// The creation and modification dates of the file as seconds since 1904.
int XP7_FSpGetFileDate(const FSSpec* fsSpec, unsigned int* created, unsigned int* modified);
/// 0 when the file exists, else the catalog error.
int XP7_FileExists(const FSSpec* fsSpec);
/// Opens the data fork of the file with the permission.
int XP7_FSOpenDF(const FSSpec* fsSpec, signed char permission, int* forkRef);
/// Opens the resource fork of the file with the permission.
int XP7_FSOpenRF(const FSSpec* fsSpec, signed char permission, int* forkRef);
/// Deletes the file.
int XP7_FSDelete(const FSSpec* fsSpec);
/// The Finder information of the file.
int XP7_FSpGetFInfo(const FSSpec* fsSpec, FInfo* info);
#endif

#endif  // XPTOOLKIT_SERVICES_FILES_H
