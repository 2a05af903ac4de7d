// The File Manager's references, catalog information, Finder information and errors.
#include "FileManagerSupport.h"
#include "ScopedEnvironment.h"

#include <CoreServices/CoreServices.h>
#include <Carbon/Carbon.h>

#include <sys/xattr.h>
#include <unistd.h>

#include <cstring>
#include <fstream>
#include <vector>

#include <gtest/gtest.h>

namespace {

constexpr OSType kTextType = 0x54455854;     // 'TEXT'
constexpr OSType kTextCreator = 0x74747874;  // 'ttxt'

FileInfo finderInfoOf(const FSRef& ref) {
  FSCatalogInfo info{};
  EXPECT_EQ(FSGetCatalogInfo(&ref, kFSCatInfoFinderInfo, &info, nullptr, nullptr, nullptr), noErr);
  FileInfo fileInfo{};
  std::memcpy(&fileInfo, info.finderInfo, sizeof fileInfo);
  return fileInfo;
}

std::vector<UInt8> attribute(const std::filesystem::path& path, const char* name) {
  std::vector<UInt8> value(65536);
  const ssize_t size = getxattr(path.c_str(), name, value.data(), value.size());
  value.resize(size < 0 ? 0 : static_cast<std::size_t>(size));
  return value;
}

TEST(FileManager, CreatedObjectsAreFoundWithTheirCatalogInformation) {
  ScratchFolder scratch;
  FSCatalogInfo info{};
  auto* fileInfo = reinterpret_cast<FileInfo*>(info.finderInfo);
  fileInfo->fileType = kTextType;
  fileInfo->fileCreator = kTextCreator;
  const std::u16string name = u"Notes \u00e9t\u00e9.txt";
  FSRef created;
  ASSERT_EQ(FSCreateFileUnicode(&scratch.ref(), name.size(), units(name), kFSCatInfoFinderInfo, &info, &created,
                                nullptr),
            noErr);
  FSRef folder;
  ASSERT_EQ(createFolder(scratch.ref(), u"Logs", folder), noErr);

  FSRef found;
  ASSERT_EQ(makeRef(scratch.ref(), name, found), noErr);
  EXPECT_EQ(pathOf(found), (scratch.path() / "Notes \u00e9t\u00e9.txt").string());
  FSCatalogInfo read{};
  HFSUniStr255 readName{};
  FSRef parent;
  ASSERT_EQ(FSGetCatalogInfo(&found, kFSCatInfoNodeFlags | kFSCatInfoFinderInfo | kFSCatInfoDataSizes, &read,
                             &readName, nullptr, &parent),
            noErr);
  EXPECT_EQ(read.nodeFlags & kFSNodeIsDirectoryMask, 0);
  const FileInfo readInfo = *reinterpret_cast<FileInfo*>(read.finderInfo);
  EXPECT_EQ(OSType{readInfo.fileType}, kTextType);
  EXPECT_EQ(OSType{readInfo.fileCreator}, kTextCreator);
  EXPECT_EQ(read.dataLogicalSize, 0u);
  EXPECT_EQ(std::u16string(reinterpret_cast<const char16_t*>(readName.unicode), readName.length), name);
  EXPECT_EQ(pathOf(parent), scratch.path().string());

  ASSERT_EQ(FSGetCatalogInfo(&scratch.ref(), kFSCatInfoNodeFlags | kFSCatInfoValence, &read, nullptr, nullptr,
                             nullptr),
            noErr);
  EXPECT_NE(read.nodeFlags & kFSNodeIsDirectoryMask, 0);
  EXPECT_EQ(read.valence, 2u);
}

// "/" in an HFS name is ":" on disk, as on Apple systems, so no name reaches another folder.
TEST(FileManager, SlashInANameIsAColonOnDisk) {
  ScratchFolder scratch;
  FSRef ref;
  ASSERT_EQ(createFile(scratch.ref(), u"a/b", ref), noErr);
  EXPECT_TRUE(std::filesystem::exists(scratch.path() / "a:b"));
  HFSUniStr255 name{};
  ASSERT_EQ(FSGetCatalogInfo(&ref, kFSCatInfoNone, nullptr, &name, nullptr, nullptr), noErr);
  EXPECT_EQ(std::u16string(reinterpret_cast<const char16_t*>(name.unicode), name.length), u"a/b");
}

TEST(FileManager, FinderInfoAndResourceForkPersistAsMacOSStoresThem) {
  ScratchFolder scratch;
  FSRef file;
  ASSERT_EQ(createFile(scratch.ref(), u"doc", file), noErr);
  FSCatalogInfo info{};
  auto* fileInfo = reinterpret_cast<FileInfo*>(info.finderInfo);
  fileInfo->fileType = kTextType;
  fileInfo->finderFlags = kIsInvisible;
  ASSERT_EQ(FSSetCatalogInfo(&file, kFSCatInfoFinderInfo, &info), noErr);
  HFSUniStr255 fork;
  ASSERT_EQ(FSGetResourceForkName(&fork), noErr);
  ASSERT_EQ(FSCreateResourceFork(&file, fork.length, fork.unicode, 0), noErr);
  FSIORefNum refNum = 0;
  ASSERT_EQ(FSOpenFork(&file, fork.length, fork.unicode, fsRdWrPerm, &refNum), noErr);
  ASSERT_EQ(FSWriteFork(refNum, fsFromStart, 0, 4, "rsrc", nullptr), noErr);
  ASSERT_EQ(FSCloseFork(refNum), noErr);

  // On disk: the 32 big-endian bytes macOS keeps, type first and flags at offset 8.
  const auto finder = attribute(scratch.path() / "doc", "user.com.apple.FinderInfo");
  ASSERT_EQ(finder.size(), 32u);
  EXPECT_EQ(std::vector<UInt8>(finder.begin(), finder.begin() + 4), (std::vector<UInt8>{'T', 'E', 'X', 'T'}));
  EXPECT_EQ(std::vector<UInt8>(finder.begin() + 8, finder.begin() + 10), (std::vector<UInt8>{0x40, 0x00}));
  EXPECT_EQ(attribute(scratch.path() / "doc", "user.com.apple.ResourceFork"), (std::vector<UInt8>{'r', 's', 'r', 'c'}));

  // A reference made afresh from the path reads the same back.
  FSRef again;
  ASSERT_EQ(FSPathMakeRef(reinterpret_cast<const UInt8*>((scratch.path() / "doc").c_str()), &again, nullptr), noErr);
  const FileInfo againInfo = finderInfoOf(again);
  EXPECT_EQ(OSType{againInfo.fileType}, kTextType);
  EXPECT_EQ(UInt16{againInfo.finderFlags}, kIsInvisible);
  FSCatalogInfo sizes{};
  ASSERT_EQ(FSGetCatalogInfo(&again, kFSCatInfoRsrcSizes, &sizes, nullptr, nullptr, nullptr), noErr);
  EXPECT_EQ(sizes.rsrcLogicalSize, 4u);
  EXPECT_EQ(FSCreateResourceFork(&again, fork.length, fork.unicode, 0), errFSForkExists);
}

// Linux keeps no attribute value beyond 64 KiB (ext4 no more than a block), so a large
// resource fork goes to the AppleDouble file macOS writes on such volumes, and leaves
// with its file.
TEST(FileManager, LargeResourceForkMovesToAnAppleDoubleFile) {
  ScratchFolder scratch;
  FSRef file;
  ASSERT_EQ(createFile(scratch.ref(), u"big", file), noErr);
  HFSUniStr255 fork;
  FSGetResourceForkName(&fork);
  std::vector<UInt8> bytes(100000);
  for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<UInt8>(i * 7);
  FSIORefNum refNum = 0;
  ASSERT_EQ(FSOpenFork(&file, fork.length, fork.unicode, fsRdWrPerm, &refNum), noErr);
  ASSERT_EQ(FSWriteFork(refNum, fsFromStart, 0, bytes.size(), bytes.data(), nullptr), noErr);
  std::vector<UInt8> back(bytes.size());
  ByteCount read = 0;
  EXPECT_EQ(FSReadFork(refNum, fsFromStart, 0, back.size(), back.data(), &read), noErr);
  EXPECT_EQ(back, bytes);
  ASSERT_EQ(FSCloseFork(refNum), noErr);

  const auto sidecar = scratch.path() / "._big";
  std::ifstream in(sidecar, std::ios::binary);
  char magic[4] = {};
  in.read(magic, 4);
  EXPECT_EQ(std::string(magic, 4), std::string("\x00\x05\x16\x07", 4));
  ASSERT_EQ(FSDeleteObject(&file), noErr);
  EXPECT_FALSE(std::filesystem::exists(sidecar));
}

// The toolkit stamps a change of Finder flags with "now", plus one fraction when "now"
// has not moved since the last stamp; both stamps must land exactly.
TEST(FileManager, ContentDateKeepsEveryFractionSoTwoStampsInOneTickDiffer) {
  ScratchFolder scratch;
  FSRef file;
  ASSERT_EQ(createFile(scratch.ref(), u"flags", file), noErr);
  FSCatalogInfo info{};
  ASSERT_EQ(UCConvertCFAbsoluteTimeToUTCDateTime(CFAbsoluteTimeGetCurrent(), &info.contentModDate), noErr);
  info.contentModDate.fraction = 1;  // 15.26 us: lost by a conversion that rounds down twice
  for (int stamp = 0; stamp < 2; ++stamp) {
    reinterpret_cast<FileInfo*>(info.finderInfo)->finderFlags ^= kIsInvisible;
    ASSERT_EQ(FSSetCatalogInfo(&file, kFSCatInfoFinderInfo | kFSCatInfoContentMod, &info), noErr);
    FSCatalogInfo read{};
    ASSERT_EQ(FSGetCatalogInfo(&file, kFSCatInfoContentMod, &read, nullptr, nullptr, nullptr), noErr);
    EXPECT_EQ(fractionsOf(read.contentModDate), fractionsOf(info.contentModDate));
    info.contentModDate.fraction = static_cast<UInt16>(info.contentModDate.fraction + 1);
  }
}

TEST(FileManager, BadInputGivesApplesResults) {
  ScratchFolder scratch;
  FSRef file;
  FSRef folder;
  FSRef child;
  ASSERT_EQ(createFile(scratch.ref(), u"file", file), noErr);
  ASSERT_EQ(createFolder(scratch.ref(), u"folder", folder), noErr);
  ASSERT_EQ(createFile(folder, u"inside", child), noErr);
  const FSRef zeroed{};
  FSCatalogInfo farFuture{};
  farFuture.contentModDate.highSeconds = 0xFFFF;
  const std::u16string tooLong(256, u'x');
  FSRef out;
  UInt8 small[4];
  const struct {
    const char* what;
    OSStatus result;
    OSStatus expected;
  } cases[] = {
      {"missing name", makeRef(scratch.ref(), u"missing", out), fnfErr},
      {"existing file", createFile(scratch.ref(), u"file", out), dupFNErr},
      {"existing folder", createFolder(scratch.ref(), u"folder", out), dupFNErr},
      {"256 units", makeRef(scratch.ref(), tooLong, out), errFSNameTooLong},
      {"255 units", makeRef(scratch.ref(), tooLong.substr(1), out), fnfErr},
      {"dot-dot", makeRef(scratch.ref(), u"..", out), bdNamErr},
      {"separator", makeRef(scratch.ref(), u"a:b", out), bdNamErr},
      {"unpaired surrogate", makeRef(scratch.ref(), u"\xd800", out), bdNamErr},
      {"file as folder", makeRef(file, u"x", out), dirNFErr},
      {"never made", FSGetCatalogInfo(&zeroed, kFSCatInfoNone, nullptr, nullptr, nullptr, nullptr), errFSBadFSRef},
      {"null ref", FSDeleteObject(nullptr), paramErr},
      {"date beyond storage", FSSetCatalogInfo(&file, kFSCatInfoContentMod, &farFuture), paramErr},
      {"null out", FSMakeFSRefUnicode(&scratch.ref(), 1, units(u"f"), kTextEncodingUnknown, nullptr), paramErr},
      {"folder not empty", FSDeleteObject(&folder), fBsyErr},
      {"path too long for buffer", FSRefMakePath(&file, small, sizeof small), paramErr},
      {"missing path", FSPathMakeRef(reinterpret_cast<const UInt8*>("/no/such/path"), &out, nullptr), fnfErr},
  };
  for (const auto& c : cases) EXPECT_EQ(c.result, c.expected) << c.what;
}

// A reference names one object: once it is deleted, a new object of the same name is
// another one.
TEST(FileManager, ReferenceToADeletedObjectStaysDeadWhenTheNameReturns) {
  ScratchFolder scratch;
  FSRef file;
  ASSERT_EQ(createFile(scratch.ref(), u"again", file), noErr);
  ASSERT_EQ(FSDeleteObject(&file), noErr);
  EXPECT_EQ(FSDeleteObject(&file), fnfErr);
  FSRef recreated;
  ASSERT_EQ(createFile(scratch.ref(), u"again", recreated), noErr);
  EXPECT_EQ(FSGetCatalogInfo(&file, kFSCatInfoNone, nullptr, nullptr, nullptr, nullptr), fnfErr);
  EXPECT_EQ(FSGetCatalogInfo(&recreated, kFSCatInfoNone, nullptr, nullptr, nullptr, nullptr), noErr);
}

TEST(FileManager, URLsAndReferencesConvert) {
  ScratchFolder scratch;
  const CFURLRef url = CFURLCreateFromFSRef(nullptr, &scratch.ref());
  ASSERT_NE(url, nullptr);
  EXPECT_TRUE(CFURLHasDirectoryPath(url));
  FSRef back;
  EXPECT_TRUE(CFURLGetFSRef(url, &back));
  EXPECT_EQ(pathOf(back), scratch.path().string());
  CFRelease(url);
  const FSRef zeroed{};
  EXPECT_EQ(CFURLCreateFromFSRef(nullptr, &zeroed), nullptr);
}

TEST(FolderManager, DesktopIsInTheHomeFolderAndCreatedOnlyWhenAsked) {
  ScratchFolder home;
  ScopedEnvironment environment;
  environment.set("HOME", home.path().c_str());
  FSRef desktop;
  EXPECT_EQ(FSFindFolder(kOnSystemDisk, kDesktopFolderType, kDontCreateFolder, &desktop), fnfErr);
  ASSERT_EQ(FSFindFolder(kOnSystemDisk, kDesktopFolderType, kCreateFolder, &desktop), noErr);
  EXPECT_EQ(pathOf(desktop), (home.path() / "Desktop").string());
  ASSERT_EQ(FSFindFolder(kUserDomain, kPreferencesFolderType, kCreateFolder, &desktop), noErr);
  EXPECT_EQ(pathOf(desktop), (home.path() / "Library/Preferences").string());
  EXPECT_EQ(FSFindFolder(kLocalDomain, kDesktopFolderType, kCreateFolder, &desktop), fnfErr);
}

// Outside a bundle the location is the executable's folder.
TEST(ProcessManager, BundleLocationOfAPlainProgramIsItsFolder) {
  ProcessSerialNumber psn{};
  ASSERT_EQ(GetCurrentProcess(&psn), noErr);
  FSRef location;
  ASSERT_EQ(GetProcessBundleLocation(&psn, &location), noErr);
  EXPECT_EQ(pathOf(location), std::filesystem::canonical("/proc/self/exe").parent_path().string());
  const ProcessSerialNumber other{0, psn.lowLongOfPSN + 1};
  EXPECT_EQ(GetProcessBundleLocation(&other, &location), procNotFound);
}

}  // namespace
