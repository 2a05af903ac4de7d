// GetCurrentProcess and GetProcessBundleLocation for the calling process, from the path
// of its executable.
#include <CoreServices/Files.h>
#include <HIServices/Processes.h>

#include <unistd.h>

#include <string>

namespace {

bool endsWith(const std::string& text, const std::string& end) {
  return text.size() > end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

bool isCallingProcess(const ProcessSerialNumber& psn) {
  return psn.highLongOfPSN == 0 &&
         (psn.lowLongOfPSN == kCurrentProcess || psn.lowLongOfPSN == static_cast<UInt32>(getpid()));
}

// The executable's path with symbolic links resolved, as the kernel keeps it.
std::string executablePath() {
  std::string path(4096, '\0');
  for (;;) {
    const ssize_t length = readlink("/proc/self/exe", path.data(), path.size());
    if (length < 0) return {};
    if (static_cast<std::size_t>(length) < path.size()) {
      path.resize(static_cast<std::size_t>(length));
      return path;
    }
    path.resize(path.size() * 2);
  }
}

}  // namespace

extern "C" OSErr GetCurrentProcess(ProcessSerialNumber* PSN) {
  if (PSN == nullptr) return paramErr;
  PSN->highLongOfPSN = 0;
  PSN->lowLongOfPSN = static_cast<UInt32>(getpid());
  return noErr;
}

extern "C" OSStatus GetProcessBundleLocation(const ProcessSerialNumber* psn, FSRef* location) {
  if (psn == nullptr || location == nullptr) return paramErr;
  if (!isCallingProcess(*psn)) return procNotFound;
  const std::string executable = executablePath();
  if (executable.empty()) return fnfErr;
  static const std::string kExecutableFolder = "/Contents/MacOS";
  std::string folder = executable.substr(0, executable.find_last_of('/'));
  if (endsWith(folder, kExecutableFolder)) {
    const std::string bundle = folder.substr(0, folder.size() - kExecutableFolder.size());
    if (endsWith(bundle, ".app") || endsWith(bundle, ".bundle")) folder = bundle;
  }
  if (folder.empty()) folder = "/";
  return FSPathMakeRef(reinterpret_cast<const UInt8*>(folder.c_str()), location, nullptr);
}
