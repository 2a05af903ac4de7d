// Helpers of the File Manager tests: a scratch folder and calls that take UTF-16 strings.
#ifndef XPTESTS_PLATFORM_FILEMANAGERSUPPORT_H
#define XPTESTS_PLATFORM_FILEMANAGERSUPPORT_H

#include <CoreServices/CoreServices.h>

#include <filesystem>
#include <string>
#include <system_error>

#include <gtest/gtest.h>

// A fresh folder under the system's temporary folder, removed with what it holds.
class ScratchFolder {
 public:
  ScratchFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "xpfiles-XXXXXX").string();
    path_ = mkdtemp(pattern.data());
    path_ = std::filesystem::canonical(path_);
    EXPECT_EQ(FSPathMakeRef(reinterpret_cast<const UInt8*>(path_.c_str()), &ref_, nullptr), noErr);
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;
  ~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  const std::filesystem::path& path() const { return path_; }
  const FSRef& ref() const { return ref_; }

 private:
  std::filesystem::path path_;
  FSRef ref_{};
};

// A catalog date as one number, read by value: UTCDateTime is packed to two bytes, so its
// fields cannot be bound to references (as test assertions do) without misalignment.
inline UInt64 fractionsOf(const UTCDateTime& date) {
  return (static_cast<UInt64>(date.highSeconds) << 32 | date.lowSeconds) << 16 | date.fraction;
}

inline const UniChar* units(const std::u16string& text) { return reinterpret_cast<const UniChar*>(text.data()); }

inline OSErr makeRef(const FSRef& parent, const std::u16string& name, FSRef& out) {
  return FSMakeFSRefUnicode(&parent, name.size(), units(name), kTextEncodingUnknown, &out);
}

inline OSErr createFile(const FSRef& parent, const std::u16string& name, FSRef& out) {
  return FSCreateFileUnicode(&parent, name.size(), units(name), kFSCatInfoNone, nullptr, &out, nullptr);
}

inline OSErr createFolder(const FSRef& parent, const std::u16string& name, FSRef& out) {
  return FSCreateDirectoryUnicode(&parent, name.size(), units(name), kFSCatInfoNone, nullptr, &out, nullptr,
                                  nullptr);
}

inline std::string pathOf(const FSRef& ref) {
  UInt8 path[4096] = {};
  return FSRefMakePath(&ref, path, sizeof path) == noErr ? reinterpret_cast<const char*>(path) : "<no path>";
}

#endif
