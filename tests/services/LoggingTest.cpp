// Tests of logging and debug output: the log file placed by folders counted up from the
// program, the desktop debug file, debug texts and error numbers as text.
#include "services/Logging.h"

#include <Carbon/Carbon.h>
#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "../helpers/HostText.h"
#include "../helpers/TempFolder.h"
#include "platform/ScopedEnvironment.h"
#include "services/LogSandbox.h"

namespace {

namespace fs = std::filesystem;

const char* const kServerLog = "Varn Plugin FMServer.log";

using testing_host::Utf8;

// The lines of a log file without their times; "?" for a line without one.
std::vector<std::string> LogLines(const fs::path& file) {
  std::vector<std::string> lines;
  std::string text = logtest::Sandbox::ReadFile(file);
  for (size_t start = 0, end; (end = text.find('\n', start)) != std::string::npos; start = end + 1) {
    std::string line = logtest::AfterTime(text.substr(start, end - start));
    lines.push_back(line.empty() ? "?" : line);
  }
  return lines;
}

using Lines = std::vector<std::string>;

class LogFile : public ::testing::Test {
 protected:
  logtest::Sandbox box{LOG_WRITER};
};

}  // namespace

TEST_F(LogFile, ServerLinesGoThreeFoldersUp) {
  EXPECT_EQ(box.Run({"0", "1", "0", "srv", "caf\xC3\xA9", "0", "1", "0", "srv", std::string(1000, 'x') + "cut"}), "");
  EXPECT_EQ(LogLines(box.LogFile(3, kServerLog)), (Lines{"[srv] caf\xC3\xA9", "[srv] " + std::string(1000, 'x')}));
}

TEST_F(LogFile, WebEngineDepthFollowsHostVersionAndLayout) {
  // Each depth its own: 4 up before version 53, then 3 when shallow, else 5.
  EXPECT_EQ(box.Run({"52", "2", "1", "web", "a"}), "");
  EXPECT_EQ(box.Run({"53", "2", "1", "web", "b"}), "");
  EXPECT_EQ(box.Run({"53", "2", "0", "web", "c"}), "");
  EXPECT_EQ(LogLines(box.LogFile(4, "Varn Plugin Web Engine.log")), Lines{"[web] a"});
  EXPECT_EQ(LogLines(box.LogFile(3, "Varn Plugin Web Engine.log")), Lines{"[web] b"});
  EXPECT_EQ(LogLines(box.LogFile(5, "Varn Plugin Web Engine.log")), Lines{"[web] c"});
}

TEST_F(LogFile, OtherTypesMakeTheFileBesideTheProgramButWriteToStandardError) {
  EXPECT_EQ(box.Run({"0", "101", "0", "dbg", "state"}), "[dbg] state\n");
  EXPECT_EQ(LogLines(box.LogFile(0, "VarnDebug.log")), Lines{});
  fs::remove_all(box.Above(0) / "Logs");
  EXPECT_EQ(box.Run({"0", "0", "0", "any", "state"}), "[any] state\n");
  EXPECT_TRUE(fs::exists(box.LogFile(0, kServerLog)));
}

TEST_F(LogFile, FirstCallSettlesTheFileForLaterTypes) {
  EXPECT_EQ(box.Run({"0", "101", "0", "a", "first", "0", "1", "0", "b", "second"}), "[a] first\n");
  EXPECT_EQ(LogLines(box.LogFile(0, "VarnDebug.log")), Lines{"[b] second"});
  EXPECT_FALSE(fs::exists(box.Above(3) / "Logs"));
}

TEST_F(LogFile, NoLogFolderMeansNoOutputAtAll) {
  std::ofstream(box.Above(0) / "Logs") << "a file where the folder belongs";
  EXPECT_EQ(box.Run({"0", "101", "0", "dbg", "lost"}), "");
}

namespace {

// A home of our own, so that the debug file lands on a temporary desktop.
class DesktopDebugFile : public ::testing::Test {
 protected:
  void SetUp() override {
    environment_.set("HOME", home_.c_str());
    fs::create_directory(home_ / "Desktop");
  }
  void TearDown() override {
    XP7_DebugToFile_SET(false);
    delete gDefaultDebugFSRefPtr;
    gDefaultDebugFSRefPtr = nullptr;
  }
  std::string DebugFileBytes() const { return logtest::Sandbox::ReadFile(home_ / "Desktop" / "VARN DEBUG LOG.txt"); }

  testing_host::TempFolder temp_;
  const fs::path& home_ = temp_.path();
  ScopedEnvironment environment_;
};

}  // namespace

TEST_F(DesktopDebugFile, WritesBytesAsTheyAreWhileOn) {
  XP7_DebugToFile_SET(true);
  FSCatalogInfo info;
  ASSERT_EQ(FSGetCatalogInfo(gDefaultDebugFSRefPtr, kFSCatInfoFinderInfo, &info, nullptr, nullptr, nullptr), noErr);
  FInfo finder;
  std::memcpy(&finder, info.finderInfo, sizeof finder);
  EXPECT_EQ(finder.fdType, 0x54455854u);     // 'TEXT'
  EXPECT_EQ(finder.fdCreator, 0x74747874u);  // 'ttxt'

  XP7_DebugToFile("ab");
  XP7_DebugToFile("");
  XP7_DebugToFileIntern("c\r\xE9");
  XP7_DebugToFile_SET(false);
  XP7_DebugToFile("off");
  XP7_DebugToFileIntern("d");
  EXPECT_EQ(DebugFileBytes(), "abc\r\xE9" "d");
}

TEST_F(DesktopDebugFile, SwitchingOnAgainTakesANewReference) {
  XP7_DebugToFile_SET(true);
  std::unique_ptr<FSRef> first(gDefaultDebugFSRefPtr);  // let go of by the toolkit
  fs::remove(home_ / "Desktop" / "VARN DEBUG LOG.txt");
  XP7_DebugToFile_SET(true);
  EXPECT_NE(gDefaultDebugFSRefPtr, first.get());
  XP7_DebugToFile("new");
  EXPECT_EQ(DebugFileBytes(), "new");
}

TEST(DebugText, LinesEndInCarriageReturnsAfterTheTicks) {
  fmx::TextAutoPtr log;
  XP7_DebugLog("caf\x8E", log);  // Mac Roman 0x8E: U+00E9 LATIN SMALL LETTER E WITH ACUTE
  UInt32 before = TickCount();
  XP7_DebugLogWithTicks("step", log);
  UInt32 after = TickCount();
  std::string text = Utf8(*log);
  ASSERT_EQ(text.substr(0, 6), "caf\xC3\xA9\r");
  unsigned long ticks = std::stoul(text.substr(6));
  EXPECT_TRUE(ticks >= before && ticks <= after) << ticks;
  EXPECT_EQ(text.substr(text.find(' ')), " step\r");

  char ignored[] = "";
  EXPECT_EQ(VnDebugMessage(ignored, -12345), 6);
}

TEST(ErrorText, ZeroIsPlainAndOthersAreMarked) {
  fmx::TextAutoPtr text;
  XP7_OSErrLToTxt(0, text);
  EXPECT_EQ(Utf8(*text), "0");
  XP7_OSErrLToTxt(-43, text);
  EXPECT_EQ(Utf8(*text), "$$-43");
  DataHolder data;
  EXPECT_EQ(XP7_OSErrLToData(2147483647, *data), 0);
  EXPECT_EQ(Utf8(data->GetAsText()), "$$2147483647");
}

TEST(ErrorText, WindowsErrorsMapToMacErrors) {
  const int table[][2] = {{0, 0},   {2, -43},  {3, -120},  {5, -47}, {8, -108}, {38, -39},
                          {80, -48}, {183, -48}, {87, -50}, {1, 1},   {184, 184}, {-43, -43}};
  for (const auto& row : table) EXPECT_EQ(XP7_WinToMacOSErr(row[0]), row[1]) << row[0];
}
