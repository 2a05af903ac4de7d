// FSGetCatalogInfo and FSSetCatalogInfo over stat(), utimensat() and the stored Finder
// information.
#include "CatalogInfo.h"

#include "FileErrors.h"
#include "HFSNames.h"
#include "MacMetadata.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <memory>
#include <vector>

namespace xpcs {

namespace {

// Seconds from 1904-01-01 to 1970-01-01, both UTC.
constexpr std::int64_t kUnixEpochIn1904 = 2082844800;
constexpr std::int64_t kNanosPerSecond = 1000000000;
constexpr std::int64_t kFractionsPerSecond = 65536;

// A time in 1/65536 s since 1904, the resolution of UTCDateTime.
std::int64_t fractionsOfTimespec(const timespec& t) {
  const std::int64_t seconds = std::max<std::int64_t>(0, static_cast<std::int64_t>(t.tv_sec) + kUnixEpochIn1904);
  return seconds * kFractionsPerSecond + static_cast<std::int64_t>(t.tv_nsec) * kFractionsPerSecond / kNanosPerSecond;
}

// Rounds up, so that reading the time back (which rounds down) gives the same fractions.
timespec timespecOfFractions(std::int64_t fractions) {
  timespec t{};
  t.tv_sec = static_cast<time_t>(fractions / kFractionsPerSecond - kUnixEpochIn1904);
  t.tv_nsec = static_cast<long>(((fractions % kFractionsPerSecond) * kNanosPerSecond + kFractionsPerSecond - 1) /
                                kFractionsPerSecond);
  return t;
}

UTCDateTime dateOfFractions(std::int64_t fractions) {
  const auto seconds = static_cast<std::uint64_t>(fractions / kFractionsPerSecond);
  UTCDateTime date{};
  date.highSeconds = static_cast<UInt16>(seconds >> 32);
  date.lowSeconds = static_cast<UInt32>(seconds);
  date.fraction = static_cast<UInt16>(fractions % kFractionsPerSecond);
  return date;
}

// Dates up to 2^46 seconds after 1904 (some two million years) are kept; beyond, counting
// them in fractions would overflow.
bool isStorable(const UTCDateTime& date) { return date.highSeconds < 0x4000; }

std::int64_t fractionsOfDate(const UTCDateTime& date) {
  return (static_cast<std::int64_t>(date.highSeconds) << 32 | date.lowSeconds) * kFractionsPerSecond + date.fraction;
}

// Finder information is stored big-endian and handed out in the host's order, field by
// field; the fields differ between files and folders (FileInfo / FolderInfo and their
// extended halves in Finder.h), so each layout lists its field widths.
constexpr int kFileFields[] = {4, 4, 2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 4};
constexpr int kFolderFields[] = {2, 2, 2, 2, 2, 2, 2, 2, 2, 2, 4, 2, 2, 4};

template <std::size_t N>
void swapFields(UInt8* bytes, const int (&widths)[N]) {
  for (const int width : widths) {
    std::reverse(bytes, bytes + width);
    bytes += width;
  }
}

void swapFinderFields(UInt8* bytes, bool isDirectory) {
#if __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
  if (isDirectory) {
    swapFields(bytes, kFolderFields);
  } else {
    swapFields(bytes, kFileFields);
  }
#else
  (void)bytes;
  (void)isDirectory;
#endif
}

// The creation time: the birth time where the file system records it, else the earliest
// time stat() knows.
timespec creationTime(const Node& node) {
  struct statx stx {};
  if (statx(AT_FDCWD, node.path.c_str(), 0, STATX_BTIME, &stx) == 0 && (stx.stx_mask & STATX_BTIME) != 0) {
    return timespec{static_cast<time_t>(stx.stx_btime.tv_sec), static_cast<long>(stx.stx_btime.tv_nsec)};
  }
  const timespec& m = node.st.st_mtim;
  const timespec& c = node.st.st_ctim;
  return (c.tv_sec < m.tv_sec || (c.tv_sec == m.tv_sec && c.tv_nsec < m.tv_nsec)) ? c : m;
}

struct DirCloser {
  void operator()(DIR* dir) const { closedir(dir); }
};

OSErr countEntries(const std::string& path, UInt32& count) {
  const std::unique_ptr<DIR, DirCloser> dir(opendir(path.c_str()));
  if (!dir) return osErrFromErrno(errno);
  count = 0;
  while (const dirent* entry = readdir(dir.get())) {
    if (std::strcmp(entry->d_name, ".") != 0 && std::strcmp(entry->d_name, "..") != 0) ++count;
  }
  return noErr;
}

OSErr fillCatalogInfo(const Node& node, FSCatalogInfoBitmap which, FSCatalogInfo& info) {
  const struct stat& st = node.st;
  const bool isDirectory = node.isDirectory();
  if (which & kFSCatInfoNodeFlags) info.nodeFlags = isDirectory ? kFSNodeIsDirectoryMask : 0;
  if (which & kFSCatInfoVolume) info.volume = 0;
  if (which & kFSCatInfoParentDirID) {
    struct stat parent {};
    const std::string parentOfNode = parentPath(node.path);
    info.parentDirID = !parentOfNode.empty() && stat(parentOfNode.c_str(), &parent) == 0
                           ? static_cast<UInt32>(parent.st_ino)
                           : 1;  // Apple's number of the root folder's parent
  }
  if (which & kFSCatInfoNodeID) info.nodeID = static_cast<UInt32>(st.st_ino);
  if (which & kFSCatInfoSharingFlags) info.sharingFlags = 0;
  if (which & kFSCatInfoUserPrivs) info.userPrivileges = 0;
  if (which & kFSCatInfoCreateDate) info.createDate = dateOfFractions(fractionsOfTimespec(creationTime(node)));
  if (which & kFSCatInfoContentMod) info.contentModDate = dateOfFractions(fractionsOfTimespec(st.st_mtim));
  if (which & kFSCatInfoAttrMod) info.attributeModDate = dateOfFractions(fractionsOfTimespec(st.st_ctim));
  if (which & kFSCatInfoAccessDate) info.accessDate = dateOfFractions(fractionsOfTimespec(st.st_atim));
  if (which & kFSCatInfoBackupDate) info.backupDate = UTCDateTime{};
  if (which & kFSCatInfoPermissions) {
    info.permissions = FSPermissionInfo{};
    info.permissions.userID = st.st_uid;
    info.permissions.groupID = st.st_gid;
    info.permissions.mode = static_cast<UInt16>(st.st_mode);
  }
  if (which & (kFSCatInfoFinderInfo | kFSCatInfoFinderXInfo)) {
    FinderBytes bytes{};
    if (const OSErr err = readFinderInfo(node.path, bytes); err != noErr) return err;
    swapFinderFields(bytes.data(), isDirectory);
    if (which & kFSCatInfoFinderInfo) std::memcpy(info.finderInfo, bytes.data(), 16);
    if (which & kFSCatInfoFinderXInfo) std::memcpy(info.extFinderInfo, bytes.data() + 16, 16);
  }
  if (which & kFSCatInfoValence) {
    UInt32 count = 0;  // counted aside: a packed field cannot be bound to a reference
    if (isDirectory) {
      if (const OSErr err = countEntries(node.path, count); err != noErr) return err;
    }
    info.valence = count;
  }
  if (which & kFSCatInfoDataSizes) {
    info.dataLogicalSize = isDirectory ? 0 : static_cast<UInt64>(st.st_size);
    info.dataPhysicalSize = isDirectory ? 0 : static_cast<UInt64>(st.st_blocks) * 512;
  }
  if (which & kFSCatInfoRsrcSizes) {
    std::vector<UInt8> fork;
    bool exists = false;
    if (!isDirectory) {
      if (const OSErr err = readResourceFork(node.path, fork, exists); err != noErr) return err;
    }
    info.rsrcLogicalSize = info.rsrcPhysicalSize = fork.size();
  }
  if (which & kFSCatInfoTextEncoding) info.textEncodingHint = 0;
  return noErr;
}

OSErr readModificationTime(const std::string& path, std::int64_t& fractions) {
  struct stat st {};
  if (stat(path.c_str(), &st) != 0) return osErrFromErrno(errno);
  fractions = fractionsOfTimespec(st.st_mtim);
  return noErr;
}

OSErr setTimes(const std::string& path, const timespec& access, const timespec& modification) {
  const timespec times[2] = {access, modification};
  return utimensat(AT_FDCWD, path.c_str(), times, 0) == 0 ? OSErr{noErr} : osErrFromErrno(errno);
}

// Sets the content-modification time. A file system that keeps coarser times than
// 1/65536 s (ext3: 1 s, FAT: 2 s) rounds it, and could round a change back to the time
// that was there, which would hide the change from whoever watches the date; the time
// then steps on by such a granularity in the direction of the change.
OSErr setModificationTime(const std::string& path, std::int64_t wanted) {
  std::int64_t before = 0;
  if (const OSErr err = readModificationTime(path, before); err != noErr) return err;
  const std::int64_t direction = wanted < before ? -1 : 1;
  for (const std::int64_t stepSeconds : {0, 1, 2}) {
    const timespec at = timespecOfFractions(wanted + direction * stepSeconds * kFractionsPerSecond);
    if (const OSErr err = setTimes(path, timespec{0, UTIME_OMIT}, at); err != noErr) return err;
    std::int64_t stored = 0;
    if (const OSErr err = readModificationTime(path, stored); err != noErr) return err;
    if (wanted == before || stored != before) break;
  }
  return noErr;
}

}  // namespace

OSErr applyCatalogInfo(const Node& node, FSCatalogInfoBitmap which, const FSCatalogInfo& info) {
  if (((which & kFSCatInfoAccessDate) && !isStorable(info.accessDate)) ||
      ((which & kFSCatInfoContentMod) && !isStorable(info.contentModDate))) {
    return paramErr;
  }
  if (which & (kFSCatInfoFinderInfo | kFSCatInfoFinderXInfo)) {
    FinderBytes stored{};
    if (const OSErr err = readFinderInfo(node.path, stored); err != noErr) return err;
    FinderBytes bytes = stored;
    swapFinderFields(bytes.data(), node.isDirectory());
    if (which & kFSCatInfoFinderInfo) std::memcpy(bytes.data(), info.finderInfo, 16);
    if (which & kFSCatInfoFinderXInfo) std::memcpy(bytes.data() + 16, info.extFinderInfo, 16);
    swapFinderFields(bytes.data(), node.isDirectory());
    if (bytes != stored) {
      if (const OSErr err = writeFinderInfo(node.path, bytes); err != noErr) return err;
    }
  }
  if ((which & kFSCatInfoPermissions) && chmod(node.path.c_str(), info.permissions.mode & 07777) != 0) {
    return osErrFromErrno(errno);
  }
  if (which & kFSCatInfoAccessDate) {
    const timespec access = timespecOfFractions(fractionsOfDate(info.accessDate));
    if (const OSErr err = setTimes(node.path, access, timespec{0, UTIME_OMIT}); err != noErr) return err;
  }
  if (which & kFSCatInfoContentMod) return setModificationTime(node.path, fractionsOfDate(info.contentModDate));
  return noErr;
}

}  // namespace xpcs

extern "C" OSErr FSGetCatalogInfo(const FSRef* ref, FSCatalogInfoBitmap whichInfo, FSCatalogInfo* catalogInfo,
                                  HFSUniStr255* outName, FSSpecPtr, FSRef* parentRef) {
  if (catalogInfo == nullptr && whichInfo != kFSCatInfoNone) return paramErr;
  xpcs::Node node;
  if (const OSErr err = xpcs::resolveFSRef(ref, node); err != noErr) return err;
  if (catalogInfo != nullptr) {
    if (const OSErr err = xpcs::fillCatalogInfo(node, whichInfo, *catalogInfo); err != noErr) return err;
  }
  if (outName != nullptr) xpcs::nameOfPosixComponent(xpcs::lastComponent(node.path), *outName);
  if (parentRef != nullptr) {
    // The root has no parent: its parent reference is all zero, which no call accepts.
    const std::string parent = xpcs::parentPath(node.path);
    if (parent.empty()) {
      std::memset(parentRef->hidden, 0, sizeof parentRef->hidden);
    } else if (const OSErr err = xpcs::makeFSRefForPath(parent, parentRef, nullptr); err != noErr) {
      return err;
    }
  }
  return noErr;
}

extern "C" OSErr FSSetCatalogInfo(const FSRef* ref, FSCatalogInfoBitmap whichInfo, const FSCatalogInfo* catalogInfo) {
  if (catalogInfo == nullptr && whichInfo != kFSCatInfoNone) return paramErr;
  xpcs::Node node;
  if (const OSErr err = xpcs::resolveFSRef(ref, node); err != noErr) return err;
  return whichInfo == kFSCatInfoNone ? OSErr{noErr} : xpcs::applyCatalogInfo(node, whichInfo, *catalogInfo);
}
