// Making FSRefs from names and paths, creating and deleting files and folders.
#include "CatalogInfo.h"
#include "FileErrors.h"
#include "FileNodes.h"
#include "HFSNames.h"
#include "MacMetadata.h"
#include "UniqueFd.h"

#include <CoreServices/Files.h>

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace {

// The path of `name` inside the folder `parentRef`.
OSErr childOf(const FSRef* parentRef, UniCharCount nameLength, const UniChar* name, std::string& path) {
  std::string component;
  if (const OSErr err = xpcs::posixComponentOfName(nameLength, name, component); err != noErr) return err;
  xpcs::Node parent;
  if (const OSErr err = xpcs::resolveFSRef(parentRef, parent); err != noErr) return err;
  if (!parent.isDirectory()) return dirNFErr;
  path = xpcs::childPath(parent.path, component);
  return noErr;
}

// Gives a new object its catalog information and hands out its reference.
OSErr finishCreation(const std::string& path, FSCatalogInfoBitmap whichInfo, const FSCatalogInfo* catalogInfo,
                     FSRef* newRef, UInt32* nodeID) {
  FSRef ref;
  xpcs::Node node;
  if (const OSErr err = xpcs::makeFSRefForPath(path, &ref, &node); err != noErr) return err;
  if (whichInfo != kFSCatInfoNone) {
    if (const OSErr err = xpcs::applyCatalogInfo(node, whichInfo, *catalogInfo); err != noErr) return err;
  }
  if (newRef != nullptr) *newRef = ref;
  if (nodeID != nullptr) *nodeID = static_cast<UInt32>(node.st.st_ino);
  return noErr;
}

OSErr createFile(const FSRef* parentRef, UniCharCount nameLength, const UniChar* name, FSCatalogInfoBitmap whichInfo,
                 const FSCatalogInfo* catalogInfo, std::string& path) {
  if (catalogInfo == nullptr && whichInfo != kFSCatInfoNone) return paramErr;
  if (const OSErr err = childOf(parentRef, nameLength, name, path); err != noErr) return err;
  const xpcs::UniqueFd fd(open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
  return fd ? OSErr{noErr} : xpcs::osErrFromErrno(errno);
}

}  // namespace

extern "C" {

OSErr FSMakeFSRefUnicode(const FSRef* parentRef, UniCharCount nameLength, const UniChar* name, TextEncoding,
                         FSRef* newRef) {
  if (newRef == nullptr) return paramErr;
  std::string path;
  if (const OSErr err = childOf(parentRef, nameLength, name, path); err != noErr) return err;
  return xpcs::makeFSRefForPath(path, newRef, nullptr);
}

OSStatus FSPathMakeRef(const UInt8* path, FSRef* ref, Boolean* isDirectory) {
  if (path == nullptr || ref == nullptr) return paramErr;
  const std::unique_ptr<char, decltype(&std::free)> resolved(realpath(reinterpret_cast<const char*>(path), nullptr),
                                                             &std::free);
  if (!resolved) return xpcs::osErrFromErrno(errno);
  xpcs::Node node;
  if (const OSErr err = xpcs::makeFSRefForPath(resolved.get(), ref, &node); err != noErr) return err;
  if (isDirectory != nullptr) *isDirectory = node.isDirectory();
  return noErr;
}

OSStatus FSRefMakePath(const FSRef* ref, UInt8* path, UInt32 pathBufferSize) {
  if (path == nullptr) return paramErr;
  if (pathBufferSize > 0) path[0] = 0;
  xpcs::Node node;
  if (const OSErr err = xpcs::resolveFSRef(ref, node); err != noErr) return err;
  if (node.path.size() >= pathBufferSize) return paramErr;
  std::memcpy(path, node.path.c_str(), node.path.size() + 1);
  return noErr;
}

OSErr FSCreateFileUnicode(const FSRef* parentRef, UniCharCount nameLength, const UniChar* name,
                          FSCatalogInfoBitmap whichInfo, const FSCatalogInfo* catalogInfo, FSRef* newRef, FSSpecPtr) {
  std::string path;
  if (const OSErr err = createFile(parentRef, nameLength, name, whichInfo, catalogInfo, path); err != noErr) {
    return err;
  }
  return finishCreation(path, whichInfo, catalogInfo, newRef, nullptr);
}

OSErr FSCreateDirectoryUnicode(const FSRef* parentRef, UniCharCount nameLength, const UniChar* name,
                               FSCatalogInfoBitmap whichInfo, const FSCatalogInfo* catalogInfo, FSRef* newRef,
                               FSSpecPtr, UInt32* newDirID) {
  if (catalogInfo == nullptr && whichInfo != kFSCatInfoNone) return paramErr;
  std::string path;
  if (const OSErr err = childOf(parentRef, nameLength, name, path); err != noErr) return err;
  if (mkdir(path.c_str(), 0777) != 0) return xpcs::osErrFromErrno(errno);
  return finishCreation(path, whichInfo, catalogInfo, newRef, newDirID);
}

OSErr FSCreateResourceFile(const FSRef* parentRef, UniCharCount nameLength, const UniChar* name,
                           FSCatalogInfoBitmap whichInfo, const FSCatalogInfo* catalogInfo,
                           UniCharCount forkNameLength, const UniChar* forkName, FSRef* newRef, FSSpecPtr) {
  xpcs::Fork fork = xpcs::Fork::kData;
  if (const OSErr err = xpcs::forkOfName(forkNameLength, forkName, fork); err != noErr) return err;
  if (fork != xpcs::Fork::kResource) return errFSBadForkName;
  std::string path;
  if (const OSErr err = createFile(parentRef, nameLength, name, whichInfo, catalogInfo, path); err != noErr) {
    return err;
  }
  if (const OSErr err = xpcs::writeResourceFork(path, {}); err != noErr) return err;
  return finishCreation(path, whichInfo, catalogInfo, newRef, nullptr);
}

OSErr FSDeleteObject(const FSRef* ref) {
  xpcs::Node node;
  if (const OSErr err = xpcs::resolveFSRef(ref, node); err != noErr) return err;
  if (node.isDirectory() ? rmdir(node.path.c_str()) != 0 : unlink(node.path.c_str()) != 0) {
    return xpcs::osErrFromErrno(errno == EEXIST ? ENOTEMPTY : errno);
  }
  xpcs::removeAppleDouble(node.path);
  return noErr;
}

OSStatus FNNotify(const FSRef* ref, FNMessage, OptionBits) {
  xpcs::Node node;
  return xpcs::resolveFSRef(ref, node);
}

}  // extern "C"
