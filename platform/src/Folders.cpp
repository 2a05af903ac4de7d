// FSFindFolder: the user's special folders, laid out in the home folder as on Apple
// systems.
#include "FileErrors.h"

#include <CoreServices/Files.h>
#include <CoreServices/Folders.h>

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

std::string homeFolder() {
  if (const char* home = std::getenv("HOME"); home != nullptr && *home != '\0') return home;
  passwd entry{};
  passwd* found = nullptr;
  std::vector<char> buffer(16384);
  if (getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &found) == 0 && found != nullptr &&
      found->pw_dir != nullptr) {
    return found->pw_dir;
  }
  return {};
}

// The place of a user-domain folder below the home folder, or null for types not kept.
const char* userFolder(OSType folderType) {
  switch (folderType) {
    case kCurrentUserFolderType:
      return "";
    case kDesktopFolderType:
      return "/Desktop";
    case kDocumentsFolderType:
      return "/Documents";
    case kPreferencesFolderType:
      return "/Library/Preferences";
    case kApplicationSupportFolderType:
      return "/Library/Application Support";
    default:
      return nullptr;
  }
}

// Creates the folders of `path` that are missing, outermost first.
OSErr createFolders(const std::string& path) {
  for (std::size_t end = path.find('/', 1);; end = path.find('/', end + 1)) {
    const std::string folder = path.substr(0, end);
    if (mkdir(folder.c_str(), 0777) != 0 && errno != EEXIST) return xpcs::osErrFromErrno(errno);
    if (end == std::string::npos) return noErr;
  }
}

}  // namespace

extern "C" OSErr FSFindFolder(FSVolumeRefNum vRefNum, OSType folderType, Boolean createFolder, FSRef* foundRef) {
  if (foundRef == nullptr) return paramErr;
  std::string path;
  if (folderType == kTemporaryFolderType) {
    const char* tmp = std::getenv("TMPDIR");
    path = tmp != nullptr && *tmp == '/' ? tmp : "/tmp";
  } else {
    const bool userDomain = vRefNum == kOnSystemDisk || vRefNum == kOnAppropriateDisk || vRefNum == kUserDomain;
    const char* place = userFolder(folderType);
    const std::string home = homeFolder();
    if (!userDomain || place == nullptr || home.empty()) return fnfErr;
    path = home + place;
  }
  if (createFolder) {
    if (const OSErr err = createFolders(path); err != noErr) return err;
  }
  const OSStatus status = FSPathMakeRef(reinterpret_cast<const UInt8*>(path.c_str()), foundRef, nullptr);
  return status == dirNFErr ? OSErr{fnfErr} : static_cast<OSErr>(status);
}
