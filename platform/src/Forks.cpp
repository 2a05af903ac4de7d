// Open forks: a process-wide table of numbered access paths, each with its own mark.
// The data fork is the file itself, read and written in place; the resource fork is read
// and stored whole (MacMetadata) on every call, so that two paths to it never disagree.
#include "FileErrors.h"
#include "FileNodes.h"
#include "HFSNames.h"
#include "MacMetadata.h"
#include "UniqueFd.h"

#include <CoreServices/Files.h>

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

namespace {

// Apple's resource forks stop at 16 MB (their map uses 24-bit offsets); a request beyond
// is refused before it could ask for memory.
constexpr SInt64 kMaxResourceForkSize = 16 * 1024 * 1024;

struct OpenFork {
  std::mutex mutex;  // one call at a time moves the mark
  xpcs::Fork kind = xpcs::Fork::kData;
  xpcs::UniqueFd file;
  std::string path;
  bool canRead = false;
  bool canWrite = false;
  SInt64 mark = 0;
};

class ForkTable {
 public:
  // Numbers start at 1 and a closed fork's number is given out again, as on Apple systems.
  FSIORefNum add(std::shared_ptr<OpenFork> fork) {
    std::lock_guard<std::mutex> lock(mutex_);
    FSIORefNum number = 1;
    for (const auto& entry : forks_) {
      if (entry.first != number) break;
      ++number;
    }
    forks_.emplace(number, std::move(fork));
    return number;
  }

  std::shared_ptr<OpenFork> find(FSIORefNum number) {
    std::lock_guard<std::mutex> lock(mutex_);
    const auto found = forks_.find(number);
    return found == forks_.end() ? nullptr : found->second;
  }

  bool remove(FSIORefNum number) {
    std::lock_guard<std::mutex> lock(mutex_);
    return forks_.erase(number) == 1;
  }

 private:
  std::mutex mutex_;
  std::map<FSIORefNum, std::shared_ptr<OpenFork>> forks_;
};

// Never destroyed, so that forks stay usable while other static objects go.
ForkTable& table() {
  static ForkTable* const instance = new ForkTable;
  return *instance;
}

OSErr sizeOf(const OpenFork& fork, SInt64& size) {
  if (fork.kind == xpcs::Fork::kResource) {
    std::vector<UInt8> bytes;
    bool exists = false;
    if (const OSErr err = xpcs::readResourceFork(fork.path, bytes, exists); err != noErr) return err;
    size = static_cast<SInt64>(bytes.size());
    return noErr;
  }
  struct stat st {};
  if (fstat(fork.file.get(), &st) != 0) return xpcs::osErrFromErrno(errno);
  size = st.st_size;
  return noErr;
}

// The position `positionMode` and `positionOffset` point at.
OSErr positionOf(const OpenFork& fork, UInt16 positionMode, SInt64 positionOffset, SInt64& position) {
  SInt64 base = 0;
  switch (positionMode & 0x03) {
    case fsAtMark:
      position = fork.mark;
      return noErr;
    case fsFromStart:
      base = 0;
      break;
    case fsFromLEOF:
      if (const OSErr err = sizeOf(fork, base); err != noErr) return err;
      break;
    default:  // fsFromMark
      base = fork.mark;
      break;
  }
  if (__builtin_add_overflow(base, positionOffset, &position)) return positionOffset < 0 ? posErr : paramErr;
  return position < 0 ? OSErr{posErr} : OSErr{noErr};
}

OSErr readData(const OpenFork& fork, SInt64 position, ByteCount count, void* buffer, ByteCount& done) {
  auto* bytes = static_cast<UInt8*>(buffer);
  while (done < count) {
    const ssize_t got = pread(fork.file.get(), bytes + done, count - done, position + static_cast<SInt64>(done));
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return xpcs::osErrFromErrno(errno);
    if (got == 0) break;
    done += static_cast<ByteCount>(got);
  }
  return noErr;
}

OSErr writeData(const OpenFork& fork, SInt64 position, ByteCount count, const void* buffer, ByteCount& done) {
  const auto* bytes = static_cast<const UInt8*>(buffer);
  while (done < count) {
    const ssize_t put = pwrite(fork.file.get(), bytes + done, count - done, position + static_cast<SInt64>(done));
    if (put < 0 && errno == EINTR) continue;
    if (put < 0) return xpcs::osErrFromErrno(errno);
    done += static_cast<ByteCount>(put);
  }
  return noErr;
}

OSErr loadResource(const OpenFork& fork, std::vector<UInt8>& bytes) {
  bool exists = false;
  return xpcs::readResourceFork(fork.path, bytes, exists);
}

// Opens the file with the access `permissions` asks for; fsCurPerm takes what it can get.
OSErr openFile(const std::string& path, SInt8 permissions, OpenFork& fork) {
  const int base = permissions & ~(fsRdDenyPerm | fsWrDenyPerm);
  int flags = O_RDWR;
  switch (base) {
    case fsRdPerm:
      flags = O_RDONLY;
      break;
    case fsWrPerm:
      flags = O_WRONLY;
      break;
    case fsCurPerm:
    case fsRdWrPerm:
    case fsRdWrShPerm:
      break;
    default:
      return paramErr;
  }
  fork.file = xpcs::UniqueFd(open(path.c_str(), flags | O_CLOEXEC));
  if (!fork.file && base == fsCurPerm && (errno == EACCES || errno == EROFS)) {
    flags = O_RDONLY;
    fork.file = xpcs::UniqueFd(open(path.c_str(), flags | O_CLOEXEC));
  }
  if (!fork.file) return errno == EACCES || errno == EPERM ? OSErr{permErr} : xpcs::osErrFromErrno(errno);
  fork.canRead = flags != O_WRONLY;
  fork.canWrite = flags != O_RDONLY;
  return noErr;
}

}  // namespace

extern "C" {

OSErr FSGetDataForkName(HFSUniStr255* dataForkName) {
  if (dataForkName == nullptr) return paramErr;
  xpcs::nameOfFork(xpcs::Fork::kData, *dataForkName);
  return noErr;
}

OSErr FSGetResourceForkName(HFSUniStr255* resourceForkName) {
  if (resourceForkName == nullptr) return paramErr;
  xpcs::nameOfFork(xpcs::Fork::kResource, *resourceForkName);
  return noErr;
}

OSErr FSOpenFork(const FSRef* ref, UniCharCount forkNameLength, const UniChar* forkName, SInt8 permissions,
                 FSIORefNum* forkRefNum) {
  if (forkRefNum == nullptr) return paramErr;
  auto fork = std::make_shared<OpenFork>();
  if (const OSErr err = xpcs::forkOfName(forkNameLength, forkName, fork->kind); err != noErr) return err;
  xpcs::Node node;
  if (const OSErr err = xpcs::resolveFSRef(ref, node); err != noErr) return err;
  if (node.isDirectory()) return notAFileErr;
  if (const OSErr err = openFile(node.path, permissions, *fork); err != noErr) return err;
  fork->path = node.path;
  *forkRefNum = table().add(std::move(fork));
  return noErr;
}

OSErr FSCreateResourceFork(const FSRef* ref, UniCharCount forkNameLength, const UniChar* forkName, UInt32 flags) {
  if (flags != 0) return paramErr;
  xpcs::Fork kind = xpcs::Fork::kData;
  if (const OSErr err = xpcs::forkOfName(forkNameLength, forkName, kind); err != noErr) return err;
  if (kind != xpcs::Fork::kResource) return errFSBadForkName;
  xpcs::Node node;
  if (const OSErr err = xpcs::resolveFSRef(ref, node); err != noErr) return err;
  if (node.isDirectory()) return notAFileErr;
  std::vector<UInt8> bytes;
  bool exists = false;
  if (const OSErr err = xpcs::readResourceFork(node.path, bytes, exists); err != noErr) return err;
  return exists ? OSErr{errFSForkExists} : xpcs::writeResourceFork(node.path, {});
}

OSErr FSGetForkSize(FSIORefNum forkRefNum, SInt64* forkSize) {
  const auto fork = table().find(forkRefNum);
  if (!fork) return rfNumErr;
  if (forkSize == nullptr) return paramErr;
  std::lock_guard<std::mutex> lock(fork->mutex);
  return sizeOf(*fork, *forkSize);
}

OSErr FSSetForkSize(FSIORefNum forkRefNum, UInt16 positionMode, SInt64 positionOffset) {
  const auto fork = table().find(forkRefNum);
  if (!fork) return rfNumErr;
  std::lock_guard<std::mutex> lock(fork->mutex);
  if (!fork->canWrite) return wrPermErr;
  SInt64 size = 0;
  if (const OSErr err = positionOf(*fork, positionMode, positionOffset, size); err != noErr) return err;
  if (fork->kind == xpcs::Fork::kData) {
    if (ftruncate(fork->file.get(), size) != 0) return xpcs::osErrFromErrno(errno);
  } else {
    if (size > kMaxResourceForkSize) return dskFulErr;
    std::vector<UInt8> bytes;
    if (const OSErr err = loadResource(*fork, bytes); err != noErr) return err;
    bytes.resize(static_cast<std::size_t>(size));
    if (const OSErr err = xpcs::writeResourceFork(fork->path, bytes); err != noErr) return err;
  }
  fork->mark = std::min(fork->mark, size);
  return noErr;
}

OSErr FSGetForkPosition(FSIORefNum forkRefNum, SInt64* position) {
  const auto fork = table().find(forkRefNum);
  if (!fork) return rfNumErr;
  if (position == nullptr) return paramErr;
  std::lock_guard<std::mutex> lock(fork->mutex);
  *position = fork->mark;
  return noErr;
}

OSErr FSSetForkPosition(FSIORefNum forkRefNum, UInt16 positionMode, SInt64 positionOffset) {
  const auto fork = table().find(forkRefNum);
  if (!fork) return rfNumErr;
  std::lock_guard<std::mutex> lock(fork->mutex);
  SInt64 position = 0;
  SInt64 size = 0;
  if (const OSErr err = positionOf(*fork, positionMode, positionOffset, position); err != noErr) return err;
  if (const OSErr err = sizeOf(*fork, size); err != noErr) return err;
  fork->mark = std::min(position, size);
  return position > size ? OSErr{eofErr} : OSErr{noErr};
}

OSErr FSReadFork(FSIORefNum forkRefNum, UInt16 positionMode, SInt64 positionOffset, ByteCount requestCount,
                 void* buffer, ByteCount* actualCount) {
  if (actualCount != nullptr) *actualCount = 0;
  const auto fork = table().find(forkRefNum);
  if (!fork) return rfNumErr;
  if (buffer == nullptr && requestCount > 0) return paramErr;
  std::lock_guard<std::mutex> lock(fork->mutex);
  if (!fork->canRead) return permErr;
  SInt64 position = 0;
  SInt64 size = 0;
  if (const OSErr err = positionOf(*fork, positionMode, positionOffset, position); err != noErr) return err;
  if (const OSErr err = sizeOf(*fork, size); err != noErr) return err;
  position = std::min(position, size);
  ByteCount done = 0;
  if (fork->kind == xpcs::Fork::kData) {
    if (const OSErr err = readData(*fork, position, requestCount, buffer, done); err != noErr) return err;
  } else {
    std::vector<UInt8> bytes;
    if (const OSErr err = loadResource(*fork, bytes); err != noErr) return err;
    const auto start = std::min(bytes.size(), static_cast<std::size_t>(position));
    done = std::min<ByteCount>(requestCount, bytes.size() - start);
    if (done > 0) std::memcpy(buffer, bytes.data() + start, done);
  }
  fork->mark = position + static_cast<SInt64>(done);
  if (actualCount != nullptr) *actualCount = done;
  return done < requestCount ? OSErr{eofErr} : OSErr{noErr};
}

OSErr FSWriteFork(FSIORefNum forkRefNum, UInt16 positionMode, SInt64 positionOffset, ByteCount requestCount,
                  const void* buffer, ByteCount* actualCount) {
  if (actualCount != nullptr) *actualCount = 0;
  const auto fork = table().find(forkRefNum);
  if (!fork) return rfNumErr;
  if (buffer == nullptr && requestCount > 0) return paramErr;
  std::lock_guard<std::mutex> lock(fork->mutex);
  if (!fork->canWrite) return wrPermErr;
  SInt64 position = 0;
  if (const OSErr err = positionOf(*fork, positionMode, positionOffset, position); err != noErr) return err;
  ByteCount done = 0;
  OSErr result = noErr;
  if (fork->kind == xpcs::Fork::kData) {
    result = writeData(*fork, position, requestCount, buffer, done);
  } else if (requestCount > 0) {
    if (position > kMaxResourceForkSize || requestCount > static_cast<ByteCount>(kMaxResourceForkSize - position)) {
      return dskFulErr;
    }
    std::vector<UInt8> bytes;
    if (const OSErr err = loadResource(*fork, bytes); err != noErr) return err;
    const auto start = static_cast<std::size_t>(position);
    bytes.resize(std::max(bytes.size(), start + requestCount));
    std::memcpy(bytes.data() + start, buffer, requestCount);
    result = xpcs::writeResourceFork(fork->path, bytes);
    if (result == noErr) done = requestCount;
  }
  fork->mark = position + static_cast<SInt64>(done);
  if (actualCount != nullptr) *actualCount = done;
  return result;
}

OSErr FSCloseFork(FSIORefNum forkRefNum) { return table().remove(forkRefNum) ? OSErr{noErr} : OSErr{rfNumErr}; }

}  // extern "C"
