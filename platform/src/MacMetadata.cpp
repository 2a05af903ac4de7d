// Finder information and resource forks in the extended attributes "com.apple.FinderInfo"
// and "com.apple.ResourceFork" (in Linux's user namespace, the only one open to
// unprivileged programs), falling back to an AppleDouble file "._name" in the object's
// folder when the file system refuses them: no extended attributes at all, or a value too
// large for it (ext4 keeps a value within one block, and resource forks grow beyond).
// Readers look at the attribute first, then at the AppleDouble file, so that files
// brought over from a Mac with such companions keep what they carried.
#include "MacMetadata.h"

#include "FileErrors.h"
#include "FileNodes.h"
#include "UniqueFd.h"

#include <CoreServices/MacErrors.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>

namespace xpcs {

namespace {

constexpr char kFinderInfoAttribute[] = "user.com.apple.FinderInfo";
constexpr char kResourceForkAttribute[] = "user.com.apple.ResourceFork";

// AppleDouble version 2: a header, a table of entries, their data; all big-endian.
constexpr std::uint32_t kAppleDoubleMagic = 0x00051607;
constexpr std::uint32_t kAppleDoubleVersion = 0x00020000;
constexpr std::uint32_t kResourceForkEntry = 2;
constexpr std::uint32_t kFinderInfoEntry = 9;
constexpr std::size_t kHeaderSize = 26;
constexpr std::size_t kEntrySize = 12;
// The filler of the files macOS writes.
constexpr char kFiller[] = "Mac OS X        ";

struct AppleDouble {
  bool hasFinderInfo = false;
  FinderBytes finderInfo{};
  bool hasResourceFork = false;
  std::vector<UInt8> resourceFork;
};

// Errors after which a value belongs in the AppleDouble file instead.
bool attributeRefused(int err) { return err == ENOTSUP || err == E2BIG || err == ENOSPC || err == ERANGE; }

std::string appleDoublePath(const std::string& path) {
  const std::string folder = parentPath(path);
  return folder.empty() ? std::string() : childPath(folder, "._" + lastComponent(path));
}

std::uint32_t readBE32(const std::vector<UInt8>& in, std::size_t at) {
  return static_cast<std::uint32_t>(in[at]) << 24 | static_cast<std::uint32_t>(in[at + 1]) << 16 |
         static_cast<std::uint32_t>(in[at + 2]) << 8 | in[at + 3];
}

void appendBE(std::vector<UInt8>& out, std::uint32_t value, int bytes) {
  for (int shift = (bytes - 1) * 8; shift >= 0; shift -= 8) out.push_back(static_cast<UInt8>(value >> shift));
}

// Reads a whole file; `exists` false (and noErr) when there is none.
OSErr readWholeFile(const std::string& path, std::vector<UInt8>& bytes, bool& exists) {
  bytes.clear();
  exists = false;
  const UniqueFd fd(open(path.c_str(), O_RDONLY | O_CLOEXEC));
  if (!fd) return errno == ENOENT ? OSErr{noErr} : osErrFromErrno(errno);
  exists = true;
  UInt8 chunk[8192];
  for (;;) {
    const ssize_t got = read(fd.get(), chunk, sizeof chunk);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return osErrFromErrno(errno);
    if (got == 0) return noErr;
    bytes.insert(bytes.end(), chunk, chunk + got);
  }
}

// The AppleDouble file of `path`; empty when there is none or it is not one (a stray
// "._" file is nobody's metadata).
OSErr loadAppleDouble(const std::string& path, AppleDouble& ad) {
  ad = AppleDouble{};
  const std::string adPath = appleDoublePath(path);
  if (adPath.empty()) return noErr;
  std::vector<UInt8> raw;
  bool exists = false;
  if (const OSErr err = readWholeFile(adPath, raw, exists); err != noErr || !exists) return err;
  if (raw.size() < kHeaderSize || readBE32(raw, 0) != kAppleDoubleMagic) return noErr;
  const std::size_t count = static_cast<std::size_t>(raw[24]) << 8 | raw[25];
  for (std::size_t i = 0; i < count && kHeaderSize + (i + 1) * kEntrySize <= raw.size(); ++i) {
    const std::size_t entry = kHeaderSize + i * kEntrySize;
    const std::uint32_t id = readBE32(raw, entry);
    const std::size_t offset = readBE32(raw, entry + 4);
    const std::size_t length = readBE32(raw, entry + 8);
    if (offset > raw.size() || length > raw.size() - offset) continue;
    if (id == kFinderInfoEntry) {
      ad.hasFinderInfo = true;
      std::copy_n(raw.begin() + static_cast<std::ptrdiff_t>(offset), std::min(length, ad.finderInfo.size()),
                  ad.finderInfo.begin());
    } else if (id == kResourceForkEntry) {
      ad.hasResourceFork = true;
      ad.resourceFork.assign(raw.begin() + static_cast<std::ptrdiff_t>(offset),
                             raw.begin() + static_cast<std::ptrdiff_t>(offset + length));
    }
  }
  return noErr;
}

// Writes the AppleDouble file of `path`, or removes it when it would hold nothing.
OSErr storeAppleDouble(const std::string& path, const AppleDouble& ad) {
  const std::string adPath = appleDoublePath(path);
  if (adPath.empty()) return paramErr;
  if (!ad.hasFinderInfo && !ad.hasResourceFork) {
    removeAppleDouble(path);
    return noErr;
  }
  const std::uint32_t count = (ad.hasFinderInfo ? 1 : 0) + (ad.hasResourceFork ? 1 : 0);
  std::vector<UInt8> raw;
  appendBE(raw, kAppleDoubleMagic, 4);
  appendBE(raw, kAppleDoubleVersion, 4);
  raw.insert(raw.end(), kFiller, kFiller + 16);
  appendBE(raw, count, 2);
  std::uint32_t offset = static_cast<std::uint32_t>(kHeaderSize + count * kEntrySize);
  if (ad.hasFinderInfo) {
    appendBE(raw, kFinderInfoEntry, 4);
    appendBE(raw, offset, 4);
    appendBE(raw, static_cast<std::uint32_t>(ad.finderInfo.size()), 4);
    offset += static_cast<std::uint32_t>(ad.finderInfo.size());
  }
  if (ad.hasResourceFork) {
    appendBE(raw, kResourceForkEntry, 4);
    appendBE(raw, offset, 4);
    appendBE(raw, static_cast<std::uint32_t>(ad.resourceFork.size()), 4);
  }
  if (ad.hasFinderInfo) raw.insert(raw.end(), ad.finderInfo.begin(), ad.finderInfo.end());
  if (ad.hasResourceFork) raw.insert(raw.end(), ad.resourceFork.begin(), ad.resourceFork.end());

  const UniqueFd fd(open(adPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666));
  if (!fd) return osErrFromErrno(errno);
  for (std::size_t done = 0; done < raw.size();) {
    const ssize_t put = write(fd.get(), raw.data() + done, raw.size() - done);
    if (put < 0 && errno == EINTR) continue;
    if (put < 0) return osErrFromErrno(errno);
    done += static_cast<std::size_t>(put);
  }
  return noErr;
}

// Reads an attribute; `exists` false when the object has none or the file system keeps
// none (then `refused` is set).
OSErr readAttribute(const std::string& path, const char* name, std::vector<UInt8>& value, bool& exists,
                    bool& refused) {
  exists = refused = false;
  for (;;) {
    const ssize_t size = getxattr(path.c_str(), name, nullptr, 0);
    if (size < 0) {
      if (errno == ENODATA) return noErr;
      refused = errno == ENOTSUP;
      return refused ? OSErr{noErr} : osErrFromErrno(errno);
    }
    value.resize(static_cast<std::size_t>(size));
    const ssize_t got = getxattr(path.c_str(), name, value.data(), value.size());
    if (got >= 0) {
      value.resize(static_cast<std::size_t>(got));
      exists = true;
      return noErr;
    }
    if (errno != ERANGE) return osErrFromErrno(errno);  // ERANGE: it grew in between
  }
}

// Removes an attribute that is not there or cannot be there without complaint.
OSErr removeAttribute(const std::string& path, const char* name) {
  if (removexattr(path.c_str(), name) == 0 || errno == ENODATA || errno == ENOTSUP) return noErr;
  return osErrFromErrno(errno);
}

}  // namespace

OSErr readFinderInfo(const std::string& path, FinderBytes& bytes) {
  bytes.fill(0);
  std::vector<UInt8> value;
  bool exists = false;
  bool refused = false;
  if (const OSErr err = readAttribute(path, kFinderInfoAttribute, value, exists, refused); err != noErr) return err;
  if (exists) {
    std::copy_n(value.begin(), std::min(value.size(), bytes.size()), bytes.begin());
    return noErr;
  }
  AppleDouble ad;
  if (const OSErr err = loadAppleDouble(path, ad); err != noErr) return err;
  bytes = ad.finderInfo;
  return noErr;
}

OSErr writeFinderInfo(const std::string& path, const FinderBytes& bytes) {
  const bool empty = std::all_of(bytes.begin(), bytes.end(), [](UInt8 b) { return b == 0; });
  AppleDouble ad;
  if (const OSErr err = loadAppleDouble(path, ad); err != noErr) return err;
  bool useAppleDouble = false;
  if (empty) {
    if (const OSErr err = removeAttribute(path, kFinderInfoAttribute); err != noErr) return err;
  } else if (setxattr(path.c_str(), kFinderInfoAttribute, bytes.data(), bytes.size(), 0) != 0) {
    if (!attributeRefused(errno)) return osErrFromErrno(errno);
    useAppleDouble = true;
  }
  if (!useAppleDouble && !ad.hasFinderInfo) return noErr;
  ad.hasFinderInfo = useAppleDouble;
  ad.finderInfo = bytes;
  return storeAppleDouble(path, ad);
}

OSErr readResourceFork(const std::string& path, std::vector<UInt8>& bytes, bool& exists) {
  bool refused = false;
  if (const OSErr err = readAttribute(path, kResourceForkAttribute, bytes, exists, refused); err != noErr || exists) {
    return err;
  }
  AppleDouble ad;
  if (const OSErr err = loadAppleDouble(path, ad); err != noErr) return err;
  exists = ad.hasResourceFork;
  bytes = std::move(ad.resourceFork);
  return noErr;
}

OSErr writeResourceFork(const std::string& path, const std::vector<UInt8>& bytes) {
  AppleDouble ad;
  if (const OSErr err = loadAppleDouble(path, ad); err != noErr) return err;
  if (setxattr(path.c_str(), kResourceForkAttribute, bytes.data(), bytes.size(), 0) == 0) {
    if (!ad.hasResourceFork) return noErr;
    ad.hasResourceFork = false;
    ad.resourceFork.clear();
    return storeAppleDouble(path, ad);
  }
  if (!attributeRefused(errno)) return osErrFromErrno(errno);
  // A smaller copy left in the attribute would hide this one from readers.
  if (const OSErr err = removeAttribute(path, kResourceForkAttribute); err != noErr) return err;
  ad.hasResourceFork = true;
  ad.resourceFork = bytes;
  return storeAppleDouble(path, ad);
}

void removeAppleDouble(const std::string& path) {
  const std::string adPath = appleDoublePath(path);
  if (!adPath.empty()) unlink(adPath.c_str());
}

}  // namespace xpcs
