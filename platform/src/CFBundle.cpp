// CFBundle: bundle folders laid out as on macOS, their Info.plist, resources, localized
// string tables and executables loaded with dlopen.
#include <CoreFoundation/CFBundle.h>

#include "CFErrorInternal.h"
#include "CFObject.h"
#include "CFStringInternal.h"
#include "CFURLInternal.h"
#include "PropertyLists.h"

#include <dirent.h>
#include <dlfcn.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <map>
#include <memory>
#include <mutex>
#include <sstream>
#include <vector>

const CFStringRef kCFBundleInfoDictionaryVersionKey = CFSTR("CFBundleInfoDictionaryVersion");
const CFStringRef kCFBundleExecutableKey = CFSTR("CFBundleExecutable");
const CFStringRef kCFBundleIdentifierKey = CFSTR("CFBundleIdentifier");
const CFStringRef kCFBundleVersionKey = CFSTR("CFBundleVersion");
const CFStringRef kCFBundleDevelopmentRegionKey = CFSTR("CFBundleDevelopmentRegion");
const CFStringRef kCFBundleNameKey = CFSTR("CFBundleName");

namespace {

bool isDirectory(const std::string& path) {
  struct stat info {};
  return stat(path.c_str(), &info) == 0 && S_ISDIR(info.st_mode);
}

bool exists(const std::string& path) {
  struct stat info {};
  return stat(path.c_str(), &info) == 0;
}

std::optional<std::string> fileBytes(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) return std::nullopt;
  std::ostringstream bytes;
  bytes << file.rdbuf();
  return bytes.str();
}

std::string withoutTrailingSlash(std::string path) {
  while (path.size() > 1 && path.back() == '/') path.pop_back();
  return path;
}

std::string parentOf(const std::string& path) {
  const size_t slash = path.rfind('/');
  return slash == 0 || slash == std::string::npos ? "/" : path.substr(0, slash);
}

std::string nameOf(const std::string& path) {
  return path.substr(path.rfind('/') + 1);
}

// The folder's name without its extension: "Flash.bundle" is "Flash".
std::string displayNameOf(const std::string& path) {
  const std::string name = nameOf(path);
  const size_t dot = name.rfind('.');
  return dot == 0 || dot == std::string::npos ? name : name.substr(0, dot);
}

// The languages to look for, best first, from the POSIX locale of messages:
// "de_DE.UTF-8" gives de_DE, de-DE, de and the old folder name German.
std::vector<std::string> languageNames(const std::string& language) {
  static const std::map<std::string, std::string> kOldNames = {
      {"en", "English"}, {"de", "German"},   {"fr", "French"}, {"it", "Italian"},
      {"es", "Spanish"}, {"ja", "Japanese"}, {"nl", "Dutch"},
  };
  std::vector<std::string> names;
  if (language.empty()) return names;
  const std::string base = language.substr(0, language.find_first_of("_-"));
  if (base != language) {
    names.push_back(language);
    std::string tag = language;
    std::replace(tag.begin(), tag.end(), '_', '-');
    names.push_back(tag);
  }
  names.push_back(base);
  const auto old = kOldNames.find(base);
  if (old != kOldNames.end()) names.push_back(old->second);
  return names;
}

std::string userLanguage() {
  for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    const char* value = std::getenv(variable);
    if (value == nullptr || *value == '\0') continue;
    const std::string name = std::string(value).substr(0, std::string(value).find_first_of(".@"));
    // The C locale asks for no language in particular.
    return name == "C" || name == "POSIX" ? std::string() : name;
  }
  return {};
}

// dlerror's text says why a library did not load; Apple's codes sort the reasons.
CFIndex loadErrorCode(const std::string& reason) {
  if (reason.find("undefined symbol") != std::string::npos) return kCFBundleExecutableLinkError;
  if (reason.find("wrong ELF class") != std::string::npos) return kCFBundleExecutableArchitectureMismatchError;
  if (reason.find("invalid ELF header") != std::string::npos || reason.find("file too short") != std::string::npos) {
    return kCFBundleExecutableNotLoadableError;
  }
  return kCFBundleExecutableLoadError;
}

std::string loadErrorSentence(CFIndex code, const std::string& bundleName) {
  const std::string start = "The bundle \u201C" + bundleName + "\u201D couldn\u2019t be loaded";
  switch (code) {
    case kCFBundleExecutableNotFoundError: return start + " because its executable couldn\u2019t be located.";
    case kCFBundleExecutableNotLoadableError: return start + " because its executable isn\u2019t loadable.";
    case kCFBundleExecutableArchitectureMismatchError:
      return start + " because it doesn\u2019t contain a version for the current architecture.";
    case kCFBundleExecutableLinkError: return start + ".";
    default: return start + " because it is damaged or missing necessary resources.";
  }
}

}  // namespace

struct __CFBundle : xpcf::Object {
  // `executable` names the main program's file, which no Info.plist of a plain program
  // names; other bundles pass an empty one.
  __CFBundle(std::string path, std::string executable);
  ~__CFBundle() override;

  std::string resourcesPath() const { return macStyle ? path + "/Contents/Resources" : path; }
  std::string executablePath() const;
  CFStringRef infoString(CFStringRef key) const;
  std::vector<std::string> localizationOrder() const;
  std::optional<std::string> resourcePath(const std::string& fileName, const std::string& subFolder) const;
  std::shared_ptr<const xpcf::StringTable> stringTable(const std::string& tablePath);
  bool load(CFErrorRef* error);

  const std::string path;  // absolute, without a trailing "/"
  const bool macStyle;     // Contents/ holds Info.plist, MacOS/ and Resources/
  const std::string mainExecutable;
  std::map<std::u16string, xpcf::Owned<CFStringRef>> info;

  std::mutex mutex;  // guards what follows
  void* handle = nullptr;
  std::map<std::string, std::shared_ptr<const xpcf::StringTable>> tables;  // by file path
};

namespace {

// The bundles alive, by folder, so that CFBundleCreate hands out one object per folder.
// Never destroyed: bundles may still be released while the process exits.
struct Registry {
  std::mutex mutex;
  std::map<std::string, __CFBundle*> bundles;
};
Registry& registry() {
  static Registry* const instance = new Registry;
  return *instance;
}

__CFBundle* bundleOf(CFBundleRef bundle) {
  return xpcf::cast<__CFBundle>(bundle, xpcf::kBundleType);
}

}  // namespace

__CFBundle::__CFBundle(std::string folder, std::string executable)
    : Object(xpcf::kBundleType),
      path(std::move(folder)),
      macStyle(isDirectory(path + "/Contents")),
      mainExecutable(std::move(executable)) {
  const auto bytes = fileBytes((macStyle ? path + "/Contents" : path) + "/Info.plist");
  const auto text = bytes ? xpcf::fileText(*bytes) : std::nullopt;
  const auto table = text ? xpcf::readXMLPropertyList(*text) : std::nullopt;
  if (table) {
    for (const auto& [key, value] : *table) info.emplace(key, xpcf::Owned<CFStringRef>(xpcf::makeString(value)));
  }
}

__CFBundle::~__CFBundle() {
  // Loaded code stays loaded: addresses taken from it may still be in use.
  Registry& live = registry();
  const std::lock_guard<std::mutex> lock(live.mutex);
  auto found = live.bundles.find(path);
  if (found != live.bundles.end() && found->second == this) live.bundles.erase(found);
}

CFStringRef __CFBundle::infoString(CFStringRef key) const {
  const std::u16string* chars = xpcf::charsOf(key);
  if (chars == nullptr) return nullptr;
  const auto found = info.find(*chars);
  return found != info.end() ? found->second.get() : nullptr;
}

std::string __CFBundle::executablePath() const {
  if (!mainExecutable.empty()) return mainExecutable;
  const auto name = xpcf::utf8Of(infoString(kCFBundleExecutableKey));
  if (!name || name->empty()) return {};
  const std::string file = (macStyle ? path + "/Contents/MacOS/" : path + "/") + *name;
  return exists(file) ? file : std::string();
}

std::vector<std::string> __CFBundle::localizationOrder() const {
  std::vector<std::string> order = languageNames(userLanguage());
  const auto region = xpcf::utf8Of(infoString(kCFBundleDevelopmentRegionKey));
  for (const std::string& name : languageNames(region.value_or(""))) order.push_back(name);
  for (const std::string& name : languageNames("en")) order.push_back(name);
  order.push_back("Base");
  // Then whatever else the bundle has, in a fixed order.
  std::vector<std::string> others;
  if (DIR* folder = opendir(resourcesPath().c_str())) {
    const std::unique_ptr<DIR, int (*)(DIR*)> closer(folder, closedir);
    while (const dirent* entry = readdir(folder)) {
      const std::string name = entry->d_name;
      const std::string suffix = ".lproj";
      if (name.size() > suffix.size() && name.compare(name.size() - suffix.size(), suffix.size(), suffix) == 0) {
        others.push_back(name.substr(0, name.size() - suffix.size()));
      }
    }
  }
  std::sort(others.begin(), others.end());
  order.insert(order.end(), others.begin(), others.end());
  std::vector<std::string> unique;
  for (const std::string& name : order) {
    if (std::find(unique.begin(), unique.end(), name) == unique.end()) unique.push_back(name);
  }
  return unique;
}

std::optional<std::string> __CFBundle::resourcePath(const std::string& fileName, const std::string& subFolder) const {
  const std::string inner = (subFolder.empty() ? "" : subFolder + "/") + fileName;
  // Resources outside the .lproj folders serve every language and come first, as on macOS.
  const std::string global = resourcesPath() + "/" + inner;
  if (exists(global)) return global;
  for (const std::string& language : localizationOrder()) {
    const std::string localized = resourcesPath() + "/" + language + ".lproj/" + inner;
    if (exists(localized)) return localized;
  }
  return std::nullopt;
}

std::shared_ptr<const xpcf::StringTable> __CFBundle::stringTable(const std::string& tablePath) {
  {
    const std::lock_guard<std::mutex> lock(mutex);
    const auto cached = tables.find(tablePath);
    if (cached != tables.end()) return cached->second;
  }
  const auto bytes = fileBytes(tablePath);
  const auto text = bytes ? xpcf::fileText(*bytes) : std::nullopt;
  auto table = text ? xpcf::readStringsTable(*text) : std::nullopt;
  // A table that cannot be read counts as empty, and is not read again.
  auto shared = std::make_shared<const xpcf::StringTable>(table ? std::move(*table) : xpcf::StringTable());
  const std::lock_guard<std::mutex> lock(mutex);
  return tables.emplace(tablePath, std::move(shared)).first->second;
}

bool __CFBundle::load(CFErrorRef* error) {
  const std::lock_guard<std::mutex> lock(mutex);
  if (handle != nullptr) return true;
  const std::string file = executablePath();
  CFIndex code = kCFBundleExecutableNotFoundError;
  std::string reason;
  if (!file.empty()) {
    // The running program is open already; dlopen names it with a null path.
    handle = dlopen(mainExecutable.empty() ? file.c_str() : nullptr, RTLD_NOW | RTLD_LOCAL);
    if (handle != nullptr) return true;
    const char* message = dlerror();
    reason = message != nullptr ? message : "";
    code = loadErrorCode(reason);
  }
  if (error != nullptr) {
    // The loader's own words follow Apple's sentence: they are what tells a broken
    // library from a missing dependency.
    std::string description = loadErrorSentence(code, displayNameOf(path));
    if (!reason.empty()) description += " (" + reason + ")";
    const xpcf::Owned<CFStringRef> text(xpcf::makeStringFromUTF8(description));
    *error = xpcf::makeError(kCFErrorDomainCocoa, code, text.get());
  }
  return false;
}

namespace {

// The registered bundle of a folder, retained, or a new one registered.
CFBundleRef bundleAt(const std::string& folder, const std::string& executable) {
  Registry& live = registry();
  const std::lock_guard<std::mutex> lock(live.mutex);
  auto& bundles = live.bundles;
  const auto found = bundles.find(folder);
  if (found != bundles.end() && found->second->tryRetain()) return found->second;
  auto* bundle = new __CFBundle(folder, executable);
  bundles[folder] = bundle;
  return bundle;
}

void* symbolNamed(CFBundleRef bundle, CFStringRef name) {
  __CFBundle* object = bundleOf(bundle);
  const auto symbol = xpcf::utf8Of(name);
  if (object == nullptr || !symbol || !object->load(nullptr)) return nullptr;
  const std::lock_guard<std::mutex> lock(object->mutex);
  return object->handle != nullptr ? dlsym(object->handle, symbol->c_str()) : nullptr;
}

}  // namespace

extern "C" CFTypeID CFBundleGetTypeID(void) {
  return xpcf::kBundleType;
}

extern "C" CFBundleRef CFBundleGetMainBundle(void) {
  static const CFBundleRef mainBundle = [] {
    std::vector<char> buffer(4096);
    const ssize_t length = readlink("/proc/self/exe", buffer.data(), buffer.size() - 1);
    const std::string executable = length > 0 ? std::string(buffer.data(), static_cast<size_t>(length)) : "";
    std::string folder = executable.empty() ? "/" : parentOf(executable);
    // A program inside "<bundle>/Contents/MacOS/" belongs to that bundle.
    if (nameOf(folder) == "MacOS" && nameOf(parentOf(folder)) == "Contents") folder = parentOf(parentOf(folder));
    CFBundleRef bundle = bundleAt(folder, executable);
    bundle->makeImmortal();
    return bundle;
  }();
  return mainBundle;
}

extern "C" CFBundleRef CFBundleCreate(CFAllocatorRef, CFURLRef bundleURL) {
  const auto path = xpcf::absolutePathOf(bundleURL);
  if (!path) return nullptr;
  const std::string folder = withoutTrailingSlash(*path);
  if (!isDirectory(folder)) return nullptr;
  return bundleAt(folder, "");
}

extern "C" CFBundleRef CFBundleGetBundleWithIdentifier(CFStringRef bundleID) {
  if (xpcf::charsOf(bundleID) == nullptr) return nullptr;
  CFBundleGetMainBundle();
  Registry& live = registry();
  const std::lock_guard<std::mutex> lock(live.mutex);
  for (const auto& [folder, bundle] : live.bundles) {
    if (CFEqual(bundle->infoString(kCFBundleIdentifierKey), bundleID)) return bundle;
  }
  return nullptr;
}

extern "C" CFURLRef CFBundleCopyBundleURL(CFBundleRef bundle) {
  const __CFBundle* object = bundleOf(bundle);
  return object != nullptr ? xpcf::makeFileURL(object->path, true) : nullptr;
}

extern "C" CFURLRef CFBundleCopyResourcesDirectoryURL(CFBundleRef bundle) {
  const __CFBundle* object = bundleOf(bundle);
  return object != nullptr ? xpcf::makeFileURL(object->resourcesPath(), true) : nullptr;
}

extern "C" CFURLRef CFBundleCopyExecutableURL(CFBundleRef bundle) {
  const __CFBundle* object = bundleOf(bundle);
  if (object == nullptr) return nullptr;
  const std::string file = object->executablePath();
  return file.empty() ? nullptr : xpcf::makeFileURL(file, false);
}

extern "C" CFURLRef CFBundleCopyResourceURL(CFBundleRef bundle, CFStringRef resourceName, CFStringRef resourceType,
                                            CFStringRef subDirName) {
  const __CFBundle* object = bundleOf(bundle);
  const auto name = xpcf::utf8Of(resourceName);
  if (object == nullptr || !name || name->empty()) return nullptr;
  std::string type = xpcf::utf8Of(resourceType).value_or("");
  if (!type.empty() && type.front() == '.') type.erase(0, 1);
  const auto path =
      object->resourcePath(type.empty() ? *name : *name + "." + type, xpcf::utf8Of(subDirName).value_or(""));
  return path ? xpcf::makeFileURL(*path, isDirectory(*path)) : nullptr;
}

extern "C" CFTypeRef CFBundleGetValueForInfoDictionaryKey(CFBundleRef bundle, CFStringRef key) {
  const __CFBundle* object = bundleOf(bundle);
  return object != nullptr ? object->infoString(key) : nullptr;
}

extern "C" CFStringRef CFBundleGetIdentifier(CFBundleRef bundle) {
  return static_cast<CFStringRef>(CFBundleGetValueForInfoDictionaryKey(bundle, kCFBundleIdentifierKey));
}

extern "C" CFStringRef CFBundleGetDevelopmentRegion(CFBundleRef bundle) {
  return static_cast<CFStringRef>(CFBundleGetValueForInfoDictionaryKey(bundle, kCFBundleDevelopmentRegionKey));
}

extern "C" CFStringRef CFBundleCopyLocalizedString(CFBundleRef bundle, CFStringRef key, CFStringRef value,
                                                   CFStringRef tableName) {
  if (xpcf::charsOf(key) == nullptr) return value != nullptr ? xpcf::retained(value) : CFSTR("");
  __CFBundle* object = bundleOf(bundle);
  std::string table = xpcf::utf8Of(tableName).value_or("");
  if (table.empty()) table = "Localizable";
  if (object != nullptr) {
    if (const auto path = object->resourcePath(table + ".strings", "")) {
      const auto strings = object->stringTable(*path);
      const auto found = strings->find(*xpcf::charsOf(key));
      if (found != strings->end()) return xpcf::makeString(found->second);
    }
  }
  // Callers tell a missing key by the very object they passed coming back.
  return xpcf::retained(CFStringGetLength(value) > 0 ? value : key);
}

extern "C" Boolean CFBundleLoadExecutable(CFBundleRef bundle) {
  __CFBundle* object = bundleOf(bundle);
  return object != nullptr && object->load(nullptr);
}

extern "C" Boolean CFBundleLoadExecutableAndReturnError(CFBundleRef bundle, CFErrorRef* error) {
  if (error != nullptr) *error = nullptr;
  __CFBundle* object = bundleOf(bundle);
  return object != nullptr && object->load(error);
}

extern "C" Boolean CFBundleIsExecutableLoaded(CFBundleRef bundle) {
  __CFBundle* object = bundleOf(bundle);
  if (object == nullptr) return false;
  const std::lock_guard<std::mutex> lock(object->mutex);
  return object->handle != nullptr;
}

extern "C" void CFBundleUnloadExecutable(CFBundleRef bundle) {
  __CFBundle* object = bundleOf(bundle);
  if (object == nullptr) return;
  const std::lock_guard<std::mutex> lock(object->mutex);
  if (object->handle != nullptr) dlclose(object->handle);
  object->handle = nullptr;
}

extern "C" void* CFBundleGetFunctionPointerForName(CFBundleRef bundle, CFStringRef functionName) {
  return symbolNamed(bundle, functionName);
}

extern "C" void* CFBundleGetDataPointerForName(CFBundleRef bundle, CFStringRef symbolName) {
  return symbolNamed(bundle, symbolName);
}
