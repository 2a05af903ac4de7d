// FSRef contents: an index into a table of the absolute paths met so far, with the device,
// inode and birth time the object had. The table only grows: a process names a bounded set of files,
// and an index must stay valid for as long as any copy of a reference may live.
#include "FileNodes.h"

#include "FileErrors.h"

#include <fcntl.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <mutex>
#include <unordered_map>
#include <vector>

namespace xpcs {

namespace {

constexpr std::uint32_t kMagic = 0x58506673;  // "XPfs": bytes never seen in a zeroed ref

struct RefBytes {
  std::uint32_t magic;
  std::uint32_t index;
  std::uint64_t device;
  std::uint64_t inode;
  std::int64_t birthSeconds;
  std::uint32_t birthNanos;
};
static_assert(sizeof(RefBytes) <= sizeof(FSRef::hidden), "an FSRef holds 80 bytes");

class PathTable {
 public:
  std::uint32_t indexOf(const std::string& path) {
    std::lock_guard<std::mutex> lock(mutex_);
    const auto found = indices_.find(path);
    if (found != indices_.end()) return found->second;
    const auto index = static_cast<std::uint32_t>(paths_.size());
    paths_.push_back(path);
    indices_.emplace(path, index);
    return index;
  }

  bool pathAt(std::uint32_t index, std::string& path) {
    std::lock_guard<std::mutex> lock(mutex_);
    if (index >= paths_.size()) return false;
    path = paths_[index];
    return true;
  }

 private:
  std::mutex mutex_;
  std::vector<std::string> paths_;
  std::unordered_map<std::string, std::uint32_t> indices_;
};

// Never destroyed, so that references stay usable while other static objects go.
PathTable& table() {
  static PathTable* const instance = new PathTable;
  return *instance;
}

// File systems give a new file the inode number of one just deleted (ext4 does at once);
// the birth time, where the file system records it, tells the two apart. Elsewhere it
// reads as zero and only device and inode are compared.
void readBirthTime(const std::string& path, RefBytes& bytes) {
  struct statx stx {};
  if (statx(AT_FDCWD, path.c_str(), 0, STATX_BTIME, &stx) == 0 && (stx.stx_mask & STATX_BTIME) != 0) {
    bytes.birthSeconds = stx.stx_btime.tv_sec;
    bytes.birthNanos = stx.stx_btime.tv_nsec;
  }
}

}  // namespace

void makeFSRef(const std::string& path, const struct stat& st, FSRef* ref) {
  RefBytes bytes{kMagic, table().indexOf(path), static_cast<std::uint64_t>(st.st_dev),
                 static_cast<std::uint64_t>(st.st_ino), 0, 0};
  readBirthTime(path, bytes);
  std::memset(ref->hidden, 0, sizeof ref->hidden);
  std::memcpy(ref->hidden, &bytes, sizeof bytes);
}

OSErr makeFSRefForPath(const std::string& path, FSRef* ref, Node* node) {
  struct stat st {};
  if (stat(path.c_str(), &st) != 0) return osErrFromErrno(errno);
  makeFSRef(path, st, ref);
  if (node != nullptr) {
    node->path = path;
    node->st = st;
  }
  return noErr;
}

OSErr resolveFSRef(const FSRef* ref, Node& node) {
  if (ref == nullptr) return paramErr;
  RefBytes bytes{};
  std::memcpy(&bytes, ref->hidden, sizeof bytes);
  if (bytes.magic != kMagic || !table().pathAt(bytes.index, node.path)) return errFSBadFSRef;
  if (stat(node.path.c_str(), &node.st) != 0) {
    // A folder on the way that became a file has taken the object with it.
    const OSErr err = osErrFromErrno(errno);
    return err == dirNFErr ? OSErr{fnfErr} : err;
  }
  RefBytes now{};
  readBirthTime(node.path, now);
  if (static_cast<std::uint64_t>(node.st.st_dev) != bytes.device ||
      static_cast<std::uint64_t>(node.st.st_ino) != bytes.inode || now.birthSeconds != bytes.birthSeconds ||
      now.birthNanos != bytes.birthNanos) {
    return fnfErr;
  }
  return noErr;
}

std::string parentPath(const std::string& path) {
  const auto slash = path.find_last_of('/');
  if (path.size() <= 1 || slash == std::string::npos) return {};
  return slash == 0 ? std::string("/") : path.substr(0, slash);
}

std::string childPath(const std::string& folder, const std::string& name) {
  return folder == "/" ? "/" + name : folder + "/" + name;
}

std::string lastComponent(const std::string& path) {
  if (path.size() <= 1) return {};
  return path.substr(path.find_last_of('/') + 1);
}

}  // namespace xpcs
