// Tests of the file system helpers on files in a temporary folder.
#include "services/Files.h"

#include <CoreServices/CoreServices.h>
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "../helpers/TempFolder.h"
#include "services/DateTime.h"
#include "text/CFRef.h"

namespace {

namespace fs = std::filesystem;

constexpr unsigned int kText = 0x54455854;  // 'TEXT'
constexpr unsigned int kTtxt = 0x74747874;  // 'ttxt'
constexpr unsigned short kInited = 0x0100;
constexpr unsigned short kInvisible = 0x4000;

struct Name {
  explicit Name(const std::string& utf8) { txt->Assign(utf8.c_str(), fmx::Text::kEncoding_UTF8); }
  fmx::TextAutoPtr txt;
};

std::string PathOf(const FSRef& ref) {
  UInt8 path[4096];
  return FSRefMakePath(&ref, path, sizeof path) == noErr ? reinterpret_cast<const char*>(path) : "";
}

FInfo FinderInfo(const FSRef& ref) {
  FSCatalogInfo info;
  EXPECT_EQ(FSGetCatalogInfo(&ref, kFSCatInfoFinderInfo, &info, nullptr, nullptr, nullptr), noErr);
  FInfo finder;
  std::memcpy(&finder, info.finderInfo, sizeof finder);
  return finder;
}

bool SameDate(const UTCDateTime& a, const UTCDateTime& b) {
  return a.highSeconds == b.highSeconds && a.lowSeconds == b.lowSeconds && a.fraction == b.fraction;
}

class Files : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(FSPathMakeRef(reinterpret_cast<const UInt8*>(dir_.c_str()), &folder_, nullptr), noErr);
  }

  FSRef MakeFile(const std::string& name, const std::string& bytes = "") {
    std::ofstream(dir_ / name, std::ios::binary) << bytes;
    FSRef ref{};
    EXPECT_EQ(FSPathMakeRef(reinterpret_cast<const UInt8*>((dir_ / name).c_str()), &ref, nullptr), noErr);
    return ref;
  }
  VNFileORefRecTag Record(const FSRef& ref, const char* lateName = nullptr) {
    CFStringRef name = lateName ? CFStringCreateWithCString(nullptr, lateName, kCFStringEncodingUTF8) : nullptr;
    return VNFileORefRecTag{lateName != nullptr, ref, folder_, name};
  }

  testing_host::TempFolder temp_;
  const fs::path& dir_ = temp_.path();
  FSRef folder_;
};

}  // namespace

TEST_F(Files, CreateThenFindByName) {
  Name name("new \xC3\xA9.txt");
  FSRef created, found;
  ASSERT_EQ(XP7_FSCreateFile_MakeFSRef(&folder_, name.txt, kTtxt, kText, &created), noErr);
  ASSERT_EQ(XP7_FSMakeFSRef(&folder_, name.txt, &found), noErr);
  EXPECT_EQ(PathOf(found), (dir_ / "new \xC3\xA9.txt").string());
  VNFileORefRecTag rec = Record(found);
  FInfo info;
  ASSERT_EQ(XP7_FileORefGetFInfo(&rec, &info), noErr);
  EXPECT_EQ(info.fdType, kText);
  EXPECT_EQ(info.fdCreator, kTtxt);

  Name missing("missing");
  EXPECT_EQ(XP7_FSMakeFSRef(&folder_, missing.txt, &found), fnfErr);
  EXPECT_EQ(XP7_FSMakeFSRef(&folder_, name.txt, nullptr), paramErr);
  EXPECT_EQ(XP7_FSCreateResFile_MakeFSRef(&folder_, missing.txt, kTtxt, kText, nullptr), paramErr);
}

TEST(FileNames, NamesAreCutTo2000Units) {
  Name longName(std::string(2000, 'a') + "b");
  EXPECT_EQ(XP7_FSNameUnits(longName.txt), std::vector<UniChar>(2000, 'a'));
}

TEST_F(Files, ForksReadAndWriteAtTheMark) {
  FSRef file = MakeFile("fork.bin");
  int fork = -1;
  ASSERT_EQ(XP7_FSRefOpenDF(&file, fsRdWrPerm, &fork), noErr);
  unsigned long count = 5, actual = 0;
  char bytes[] = "hello world";
  ASSERT_EQ(Vn64_FSWrite(fork, &count, bytes), noErr);
  ASSERT_EQ(XP7_FSWriteFork(fork, 6, bytes + 5, &actual), noErr);
  long long value = 0;
  EXPECT_EQ(XP7_FSGetForkPosition(fork, &value), noErr);
  EXPECT_EQ(value, 11);
  ASSERT_EQ(XP7_FSSetForkPosition(fork, fsFromStart, 6), noErr);
  char read[8] = {};
  EXPECT_EQ(XP7_FSReadFork(fork, 5, read, &actual), noErr);
  EXPECT_STREQ(read, "world");
  EXPECT_EQ(XP7_FSReadFork(fork, 5, read, &actual), eofErr);
  ASSERT_EQ(XP7_FSSetForkSize(fork, 5), noErr);
  EXPECT_EQ(XP7_FSClose(fork), noErr);
  EXPECT_EQ(fs::file_size(dir_ / "fork.bin"), 5u);
}

TEST_F(Files, RecordsTellFilesFromFolders) {
  VNFileORefRecTag file = Record(MakeFile("file"));
  VNFileORefRecTag folder = Record(folder_);
  EXPECT_TRUE(VNFileORef_IsFile(&file) && VNFileORef_Exists(&file) && !VNFileORef_IsDirectory(&file));
  EXPECT_EQ(VNFileORef_FileExists(&file), noErr);
  EXPECT_TRUE(!VNFileORef_IsFile(&folder) && VNFileORef_Exists(&folder) && VNFileORef_IsDirectory(&folder));
  EXPECT_EQ(VNFileORef_FileExists(&folder), fnfErr);

  ASSERT_EQ(XP7_FSDeleteObject(&file.ref), noErr);
  EXPECT_FALSE(fs::exists(dir_ / "file"));
  EXPECT_FALSE(VNFileORef_Exists(&file));
  EXPECT_FALSE(VNFileORef_IsDirectory(nullptr));
  EXPECT_FALSE(XP7_IsDirectoryUni(reinterpret_cast<const unsigned short*>(u"/")));
}

TEST_F(Files, RecordMakesItsReferenceWhenFirstOpened) {
  FSRef target = MakeFile("late.txt");
  VNFileORefRecTag rec = Record(FSRef{}, "late.txt");
  int fork = -1;
  ASSERT_EQ(XP7_VNFileORefOpenDF(&rec, fsRdPerm, &fork), noErr);
  EXPECT_EQ(XP7_FSClose(fork), noErr);
  EXPECT_FALSE(rec.refNotMade);
  EXPECT_EQ(rec.name, nullptr);
  EXPECT_EQ(PathOf(rec.ref), PathOf(target));

  VNFileORefRecTag missing = Record(FSRef{}, "missing.txt");
  CFRef<CFStringRef> name(missing.name);
  EXPECT_EQ(XP7_VNFileORefOpenDF(&missing, fsRdPerm, &fork), fnfErr);
  EXPECT_TRUE(missing.refNotMade);
  EXPECT_EQ(missing.name, name.get());
}

TEST_F(Files, FinderFlagsChangeAndEveryChangeMovesTheDate) {
  FSRef file = MakeFile("flags");
  ASSERT_EQ(XP7_FSSetInvisible(&file), noErr);
  ASSERT_EQ(XP7_FSChangeFinderFlags(&file, true, kInited), noErr);
  ASSERT_EQ(XP7_FSChangeFinderFlags(&file, false, kInvisible), noErr);
  EXPECT_EQ(FinderInfo(file).fdFlags, kInited);

  FSCatalogInfo info;
  UTCDateTime previous{};
  for (int i = 0; i < 20; ++i) {
    ASSERT_EQ(XP7_FSChangeFinderFlags(&file, i % 2 == 0, kInited), noErr);
    ASSERT_EQ(FSGetCatalogInfo(&file, kFSCatInfoContentMod, &info, nullptr, nullptr, nullptr), noErr);
    EXPECT_FALSE(SameDate(info.contentModDate, previous)) << "change " << i;
    previous = info.contentModDate;
  }
}

TEST(FinderDates, ChangesWithinOneClockStepStillMoveTheDate) {
  const UTCDateTime old{0, 3000000000u, 0x1234};
  const UTCDateTime later{0, 3000000000u, 0x1235};
  EXPECT_TRUE(SameDate(XP7_NextContentModDate(old, later), later));
  EXPECT_TRUE(SameDate(XP7_NextContentModDate(old, old), later));
  // The carry reaches the low seconds only.
  const UTCDateTime last{1, 0xFFFFFFFFu, 0xFFFF};
  EXPECT_TRUE(SameDate(XP7_NextContentModDate(last, last), UTCDateTime{1, 0, 0}));
}

TEST_F(Files, FileDatesAreMacSecondsOfNow) {
  FSRef file = MakeFile("dated");
  unsigned int now = 0, created = 1, modified = 1;
  ASSERT_EQ(XP7_GetCurrentMDateTimeSecs(&now), 0);
  ASSERT_EQ(XP7_FSRefGetFileDate(&file, &created, &modified), noErr);
  EXPECT_NEAR(static_cast<double>(modified), now, 2.0);
  EXPECT_NEAR(static_cast<double>(created), now, 2.0);
  fs::remove(dir_ / "dated");
  EXPECT_EQ(XP7_FSRefGetFileDate(&file, &created, &modified), fnfErr);
  EXPECT_EQ(created + modified, 0u);
}

TEST_F(Files, WholeFileReadsAsMacRomanText) {
  FSRef file = MakeFile("menu.txt", "caf\x8E");  // 0x8E: U+00E9 in Mac Roman
  Name text("old");
  ASSERT_EQ(XP7_ReadBytesFromFSRefToTxt(&file, text.txt), noErr);
  Name expected("caf\xC3\xA9");
  EXPECT_TRUE(*text.txt == *expected.txt);
  EXPECT_EQ(XP7_ReadBytesFromFSRefToTxt(nullptr, text.txt), fnfErr);
  EXPECT_NE(XP7_ReadBytesFromFSRefToTxt(&folder_, text.txt), noErr);
}

TEST(ApplicationFolder, PathIsTheBundlesFolderAndShortBuffersFail) {
  char path[4096];
  FSRef bundle, folder;
  ASSERT_EQ(XP7_GetApplicationFolderPath(0, path, sizeof path), noErr);
  ASSERT_EQ(XP7_GetApplicationFolderFSRef(0, &folder), noErr);
  ASSERT_EQ(XP7_GetApplicationFolderFSRef(2, &bundle), noErr);
  EXPECT_EQ(std::string(path), PathOf(folder));
  EXPECT_EQ(fs::path(path), fs::path(PathOf(bundle)).parent_path());
  std::strcpy(path, "xyz");
  EXPECT_EQ(XP7_GetApplicationFolderPath(2, path, 4), paramErr);
  EXPECT_STREQ(path, "");
  std::strcpy(path, "xyz");
  EXPECT_NE(XP7_GetApplicationFolderPath(0, path, 4), noErr);
  EXPECT_LT(std::strlen(path), 4u);
}
