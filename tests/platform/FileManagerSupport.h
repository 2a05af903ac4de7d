// Helpers of the File Manager tests: a scratch folder and calls that take UTF-16 strings.
#ifndef XPTESTS_PLATFORM_FILEMANAGERSUPPORT_H
#define XPTESTS_PLATFORM_FILEMANAGERSUPPORT_H

#include <CoreServices/CoreServices.h>

#include <string>

#include <gtest/gtest.h>

#include "../helpers/TempFolder.h"

// A fresh temporary folder and its reference.
class ScratchFolder : public testing_host::TempFolder {
 public:
  ScratchFolder() { EXPECT_EQ(FSPathMakeRef(reinterpret_cast<const UInt8*>(path().c_str()), &ref_, nullptr), noErr); }

  const FSRef& ref() const { return ref_; }

 private:
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
