// File system helpers over the platform's File Manager.
#include "services/Files.h"

#include <CoreFoundation/CoreFoundation.h>

#include <cstring>
#include <memory>
#include <new>

#include "services/ForkHolder.h"
#include "text/ByteBlocks.h"
#include "text/CFRef.h"

namespace {

constexpr unsigned int kMaxNameUnits = 2000;
constexpr unsigned int kBundleItself = 2;
// The Finder flags sit at the same place for files (after type and creator) and for
// folders (after the window rectangle).
constexpr size_t kFinderFlagsOffset = 8;

static_assert(sizeof(FInfo) == 16, "Finder information is 16 bytes");

HFSUniStr255 ResourceForkName() {
  HFSUniStr255 name;
  FSGetResourceForkName(&name);
  return name;
}

int OpenFork(const FSRef* file, const HFSUniStr255& forkName, signed char permission, int* forkRef) {
  if (forkRef == nullptr) return paramErr;
  FSIORefNum fork = 0;
  OSErr err = FSOpenFork(file, forkName.length, forkName.unicode, permission, &fork);
  if (err == noErr) *forkRef = fork;
  return err;
}

// Catalog information with only the type and creator set, for new files.
FSCatalogInfo NewFileInfo(unsigned int creator, unsigned int type) {
  FSCatalogInfo info;
  std::memset(&info, 0, sizeof info);
  FInfo finder;
  std::memset(&finder, 0, sizeof finder);
  finder.fdType = type;
  finder.fdCreator = creator;
  std::memcpy(info.finderInfo, &finder, sizeof finder);
  return info;
}

OSErr NodeFlags(const FSRef* object, UInt16* flags) {
  FSCatalogInfo info;
  OSErr err = FSGetCatalogInfo(object, kFSCatInfoNodeFlags, &info, nullptr, nullptr, nullptr);
  if (err == noErr) *flags = info.nodeFlags;
  return err;
}

// Moves the content date on and tells the Finder.
void TouchForFinder(const FSRef* object) {
  FSCatalogInfo info;
  FSRef parent;
  if (FSGetCatalogInfo(object, kFSCatInfoNodeFlags | kFSCatInfoContentMod, &info, nullptr, nullptr, &parent) != noErr)
    return;
  UTCDateTime now;
  if (UCConvertCFAbsoluteTimeToUTCDateTime(CFAbsoluteTimeGetCurrent(), &now) != noErr) return;
  info.contentModDate = XP7_NextContentModDate(info.contentModDate, now);
  FSSetCatalogInfo(object, kFSCatInfoContentMod, &info);
  FNNotify((info.nodeFlags & kFSNodeIsDirectoryMask) != 0 ? object : &parent, kFNDirectoryModifiedMessage, 0);
}

OSErr DateToMacSeconds(const UTCDateTime& date, unsigned int* seconds) {
  CFAbsoluteTime absolute = 0;
  OSStatus err = UCConvertUTCDateTimeToCFAbsoluteTime(&date, &absolute);
  UInt32 converted = 0;
  if (err == noErr) err = UCConvertCFAbsoluteTimeToSeconds(absolute, &converted);
  if (err == noErr) *seconds = converted;
  return static_cast<OSErr>(err);
}

// The reference of the main bundle's URL; -50 when there is no URL or no reference.
int BundleRef(const CFRef<CFURLRef>& url, FSRef* ref) {
  return url && CFURLGetFSRef(url.get(), ref) ? int{noErr} : int{paramErr};
}

CFURLRef CopyMainBundleURL() {
  CFBundleRef bundle = CFBundleGetMainBundle();
  return bundle != nullptr ? CFBundleCopyBundleURL(bundle) : nullptr;
}

}  // namespace

std::vector<UniChar> XP7_FSNameUnits(fmx::TextAutoPtr& name) {
  uint32_t size = name->GetSize();
  if (size > kMaxNameUnits) size = kMaxNameUnits;
  std::vector<UniChar> units(size);
  if (size > 0) name->GetUnicode(units.data(), 0, size);
  return units;
}

int XP7_FSMakeFSRef(const FSRef* parent, fmx::TextAutoPtr& name, FSRef* out) {
  if (out == nullptr) return paramErr;
  std::vector<UniChar> units = XP7_FSNameUnits(name);
  return FSMakeFSRefUnicode(parent, units.size(), units.data(), kTextEncodingUnknown, out);
}

int XP7_FSCreateFile_MakeFSRef(const FSRef* parent, fmx::TextAutoPtr& name, unsigned int creator,
                               unsigned int type, FSRef* out) {
  if (out == nullptr) return paramErr;
  std::vector<UniChar> units = XP7_FSNameUnits(name);
  FSCatalogInfo info = NewFileInfo(creator, type);
  return FSCreateFileUnicode(parent, units.size(), units.data(), kFSCatInfoFinderInfo, &info, out, nullptr);
}

int XP7_FSCreateResFile_MakeFSRef(const FSRef* parent, fmx::TextAutoPtr& name, unsigned int creator,
                                  unsigned int type, FSRef* out) {
  if (out == nullptr) return paramErr;
  std::vector<UniChar> units = XP7_FSNameUnits(name);
  FSCatalogInfo info = NewFileInfo(creator, type);
  HFSUniStr255 fork = ResourceForkName();
  return FSCreateResourceFile(parent, units.size(), units.data(), kFSCatInfoFinderInfo, &info, fork.length,
                              fork.unicode, out, nullptr);
}

int XP7_FSRefCreateResFile(const FSRef* file) {
  HFSUniStr255 fork = ResourceForkName();
  return FSCreateResourceFork(file, fork.length, fork.unicode, 0);
}

int XP7_FSDeleteObject(FSRef* object) { return FSDeleteObject(object); }

int XP7_FSRefOpenDF(const FSRef* file, signed char permission, int* forkRef) {
  return OpenFork(file, DataForkName(), permission, forkRef);
}

int XP7_FSRefOpenRF(const FSRef* file, signed char permission, int* forkRef) {
  return OpenFork(file, ResourceForkName(), permission, forkRef);
}

int XP7_VNFileORefOpenDF(VNFileORefRecTag* rec, signed char permission, int* forkRef) {
  if (rec == nullptr) return paramErr;
  if (rec->refNotMade) {
    if (rec->name == nullptr) return paramErr;
    std::vector<UniChar> name(static_cast<size_t>(CFStringGetLength(rec->name)));
    CFStringGetCharacters(rec->name, CFRangeMake(0, static_cast<CFIndex>(name.size())), name.data());
    OSErr err = FSMakeFSRefUnicode(&rec->parentRef, name.size(), name.data(), kTextEncodingUnknown, &rec->ref);
    if (err != noErr) return err;
    rec->refNotMade = false;
    CFRef<CFStringRef> made(rec->name);
    rec->name = nullptr;
  }
  return XP7_FSRefOpenDF(&rec->ref, permission, forkRef);
}

int XP7_FSGetForkSize(int fork, long long* size) {
  if (size == nullptr) return paramErr;
  SInt64 value = 0;
  OSErr err = FSGetForkSize(fork, &value);
  *size = value;
  return err;
}

int XP7_FSGetForkPosition(int fork, long long* position) {
  if (position == nullptr) return paramErr;
  SInt64 value = 0;
  OSErr err = FSGetForkPosition(fork, &value);
  *position = value;
  return err;
}

int XP7_FSSetForkPosition(int fork, unsigned short mode, long long offset) {
  return FSSetForkPosition(fork, mode, offset);
}

int XP7_FSSetForkSize(int fork, long long size) { return FSSetForkSize(fork, fsFromStart, size); }

int XP7_FSReadFork(int fork, unsigned long count, void* buffer, unsigned long* actual) {
  return FSReadFork(fork, fsAtMark, 0, count, buffer, actual);
}

int XP7_FSWriteFork(int fork, unsigned long count, void* buffer, unsigned long* actual) {
  return FSWriteFork(fork, fsFromMark, 0, count, buffer, actual);
}

int Vn64_FSWrite(int fork, unsigned long* count, void* buffer) {
  if (count == nullptr) return paramErr;
  ByteCount written = 0;
  OSErr err = FSWriteFork(fork, fsAtMark, 0, *count, buffer, &written);
  *count = written;
  return err;
}

int XP7_FSClose(int fork) { return FSCloseFork(fork); }

int XP7_FSRefGetFileDate(const FSRef* file, unsigned int* created, unsigned int* modified) {
  if (created == nullptr || modified == nullptr) return paramErr;
  *created = 0;
  *modified = 0;
  FSCatalogInfo info;
  OSErr err = FSGetCatalogInfo(file, kFSCatInfoCreateDate | kFSCatInfoContentMod, &info, nullptr, nullptr, nullptr);
  if (err == noErr) err = DateToMacSeconds(info.createDate, created);
  if (err == noErr) err = DateToMacSeconds(info.contentModDate, modified);
  return err;
}

int XP7_FileORefGetFInfo(VNFileORefRecTag* rec, FInfo* info) {
  if (rec == nullptr || info == nullptr) return paramErr;
  FSCatalogInfo catalog;
  OSErr err = FSGetCatalogInfo(&rec->ref, kFSCatInfoFinderInfo, &catalog, nullptr, nullptr, nullptr);
  if (err == noErr) std::memcpy(info, catalog.finderInfo, sizeof *info);
  return err;
}

bool VNFileORef_IsDirectory(VNFileORefRecTag* rec) {
  UInt16 flags = 0;
  return rec != nullptr && NodeFlags(&rec->ref, &flags) == noErr && (flags & kFSNodeIsDirectoryMask) != 0;
}

bool VNFileORef_IsFile(VNFileORefRecTag* rec) { return VNFileORef_FileExists(rec) == noErr; }

int VNFileORef_FileExists(VNFileORefRecTag* rec) {
  if (rec == nullptr) return paramErr;
  UInt16 flags = 0;
  OSErr err = NodeFlags(&rec->ref, &flags);
  if (err != noErr) return err;
  return (flags & kFSNodeIsDirectoryMask) != 0 ? int{fnfErr} : int{noErr};
}

bool VNFileORef_Exists(VNFileORefRecTag* rec) {
  UInt16 flags = 0;
  return rec != nullptr && NodeFlags(&rec->ref, &flags) == noErr;
}

bool XP7_IsDirectoryUni(const unsigned short*) { return false; }

int XP7_FSChangeFinderFlags(const FSRef* object, bool set, unsigned short mask) {
  FSCatalogInfo info;
  OSErr err = FSGetCatalogInfo(object, kFSCatInfoFinderInfo, &info, nullptr, nullptr, nullptr);
  if (err != noErr) return err;
  UInt16 flags = 0;
  std::memcpy(&flags, info.finderInfo + kFinderFlagsOffset, sizeof flags);
  flags = set ? static_cast<UInt16>(flags | mask) : static_cast<UInt16>(flags & ~mask);
  std::memcpy(info.finderInfo + kFinderFlagsOffset, &flags, sizeof flags);
  err = FSSetCatalogInfo(object, kFSCatInfoFinderInfo, &info);
  if (err != noErr) return err;
  TouchForFinder(object);
  return err;
}

// A date equal to the old one would go unnoticed by the Finder, so it is nudged instead.
UTCDateTime XP7_NextContentModDate(const UTCDateTime& old, const UTCDateTime& now) {
  if (old.highSeconds != now.highSeconds || old.lowSeconds != now.lowSeconds || old.fraction != now.fraction)
    return now;
  UTCDateTime next = now;
  ++next.fraction;
  if (next.fraction == 0) ++next.lowSeconds;
  return next;
}

int XP7_FSSetInvisible(const FSRef* object) { return XP7_FSChangeFinderFlags(object, true, kIsInvisible); }

int XP7_GetApplicationFolderFSRef(unsigned int which, FSRef* out) {
  if (out == nullptr) return paramErr;
  CFRef<CFURLRef> url(CopyMainBundleURL());
  FSRef bundle;
  if (BundleRef(url, &bundle) != noErr) return paramErr;
  if (which == kBundleItself) {
    *out = bundle;
    return noErr;
  }
  return FSGetCatalogInfo(&bundle, kFSCatInfoNone, nullptr, nullptr, nullptr, out);
}

int XP7_GetApplicationFolderPath(unsigned int which, char* path, unsigned int size) {
  if (path != nullptr) *path = '\0';
  if (CFBundleGetMainBundle() == nullptr) return fnfErr;
  CFRef<CFURLRef> url(CopyMainBundleURL());
  FSRef bundle;
  if (BundleRef(url, &bundle) != noErr) return paramErr;
  UInt8* bytes = reinterpret_cast<UInt8*>(path);
  if (which == kBundleItself) {
    if (CFURLGetFileSystemRepresentation(url.get(), true, bytes, size)) return noErr;
    if (path != nullptr) *path = '\0';
    return paramErr;
  }
  FSRef folder;
  OSErr err = FSGetCatalogInfo(&bundle, kFSCatInfoNone, nullptr, nullptr, nullptr, &folder);
  if (err != noErr) return err;
  return FSRefMakePath(&folder, bytes, size);
}

int XP7_ReadBytesFromFSRefToTxt(FSRef* file, fmx::TextAutoPtr& out) {
  if (file == nullptr) return fnfErr;
  ForkHolder fork(file, DataForkName(), fsRdPerm);
  if (fork.error() != noErr) return fork.error();
  SInt64 size = 0;
  OSErr err = FSGetForkSize(fork.get(), &size);
  if (err == noErr) {
    std::unique_ptr<char[]> bytes(new (std::nothrow) char[static_cast<size_t>(size)]);
    ByteCount read = 0;
    if (bytes == nullptr) {
      err = memFullErr;
    } else {
      err = FSReadFork(fork.get(), fsAtMark, 0, static_cast<ByteCount>(size), bytes.get(), &read);
    }
    if (err == noErr) {
      XP7_BlockToTxt(bytes.get(), static_cast<unsigned int>(read), out, fmx::Text::kEncoding_ASCII_Mac, 0);
    }
  }
  OSErr closed = fork.close();
  return err != noErr ? err : closed;
}

#if !__LP64__

int XP7_FSMakeFSSpec(short vRefNum, long dirID, const unsigned char* name, FSSpec* fsSpec) {
  return FSMakeFSSpec(vRefNum, dirID, name, fsSpec);
}

namespace {

// The catalog entry of the file the FSSpec names, as PBHGetFInfoSync reads it.
OSErr GetFileParams(const FSSpec* fsSpec, HParamBlockRec* pb) {
  std::memset(pb, 0, sizeof *pb);
  pb->fileParam.ioNamePtr = const_cast<StringPtr>(fsSpec->name);
  pb->fileParam.ioVRefNum = fsSpec->vRefNum;
  pb->fileParam.ioDirID = fsSpec->parID;
  pb->fileParam.ioFDirIndex = 0;
  return PBHGetFInfoSync(pb);
}

int OpenSpecFork(const FSSpec* fsSpec, const HFSUniStr255& forkName, signed char permission, int* forkRef) {
  FSRef ref;
  OSErr err = FSpMakeFSRef(fsSpec, &ref);
  if (err != noErr) return err;
  return OpenFork(&ref, forkName, permission, forkRef);
}

}  // namespace

int XP7_FSpGetFileDate(const FSSpec* fsSpec, unsigned int* created, unsigned int* modified) {
  HParamBlockRec pb;
  OSErr err = GetFileParams(fsSpec, &pb);
  if (err == noErr) {
    *created = pb.fileParam.ioFlCrDat;
    *modified = pb.fileParam.ioFlMdDat;
  }
  return err;
}

int XP7_FileExists(const FSSpec* fsSpec) {
  HParamBlockRec pb;
  return GetFileParams(fsSpec, &pb);
}

int XP7_FSOpenDF(const FSSpec* fsSpec, signed char permission, int* forkRef) {
  return OpenSpecFork(fsSpec, DataForkName(), permission, forkRef);
}

int XP7_FSOpenRF(const FSSpec* fsSpec, signed char permission, int* forkRef) {
  return OpenSpecFork(fsSpec, ResourceForkName(), permission, forkRef);
}

int XP7_FSDelete(const FSSpec* fsSpec) { return FSpDelete(fsSpec); }

int XP7_FSpGetFInfo(const FSSpec* fsSpec, FInfo* info) { return FSpGetFInfo(fsSpec, info); }

#endif
