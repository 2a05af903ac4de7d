// Reading and writing forks: positions, the mark, sizes and access.
#include "FileManagerSupport.h"

#include <CoreServices/CoreServices.h>

#include <string>

#include <gtest/gtest.h>

namespace {

class Forks : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(createFile(scratch_.ref(), u"data", file_), noErr);
    ASSERT_EQ(FSOpenFork(&file_, 0, nullptr, fsRdWrPerm, &fork_), noErr);
    ASSERT_EQ(FSWriteFork(fork_, fsFromStart, 0, 11, "hello world", nullptr), noErr);
  }
  void TearDown() override { FSCloseFork(fork_); }

  std::string read(UInt16 mode, SInt64 offset, ByteCount count, OSErr expected) {
    std::string buffer(count, '\0');
    ByteCount actual = 0;
    EXPECT_EQ(FSReadFork(fork_, mode, offset, count, buffer.data(), &actual), expected);
    buffer.resize(actual);
    return buffer;
  }
  SInt64 mark() {
    SInt64 position = -1;
    EXPECT_EQ(FSGetForkPosition(fork_, &position), noErr);
    return position;
  }

  ScratchFolder scratch_;
  FSRef file_{};
  FSIORefNum fork_ = 0;
};

TEST_F(Forks, PositionModesCountFromStartEndAndMark) {
  EXPECT_EQ(mark(), 11);
  EXPECT_EQ(read(fsFromStart, 6, 5, noErr), "world");
  EXPECT_EQ(read(fsFromLEOF, -11, 5, noErr), "hello");
  EXPECT_EQ(read(fsFromMark, 1, 3, noErr), "wor");
  EXPECT_EQ(read(fsAtMark, 999, 2, noErr), "ld");
  EXPECT_EQ(FSWriteFork(fork_, fsFromMark, -5, 5, "WORLD", nullptr), noErr);
  EXPECT_EQ(read(fsFromStart, 0, 11, noErr), "hello WORLD");
}

TEST_F(Forks, ShortReadGivesEofErrAndWhatWasThere) {
  EXPECT_EQ(read(fsFromStart, 8, 10, eofErr), "rld");
  EXPECT_EQ(mark(), 11);
  EXPECT_EQ(read(fsFromStart, 20, 1, eofErr), "");
  EXPECT_EQ(read(fsFromStart, -1, 1, posErr), "");
}

TEST_F(Forks, SettingThePositionBeyondTheEndStopsAtTheEnd) {
  EXPECT_EQ(FSSetForkPosition(fork_, fsFromStart, 3), noErr);
  EXPECT_EQ(mark(), 3);
  EXPECT_EQ(FSSetForkPosition(fork_, fsFromStart, 30), eofErr);
  EXPECT_EQ(mark(), 11);
}

TEST_F(Forks, SizeFollowsSetForkSizeAndTheMarkStaysInside) {
  ASSERT_EQ(FSSetForkSize(fork_, fsFromStart, 5), noErr);
  SInt64 size = 0;
  ASSERT_EQ(FSGetForkSize(fork_, &size), noErr);
  EXPECT_EQ(size, 5);
  EXPECT_EQ(mark(), 5);
  ASSERT_EQ(FSSetForkSize(fork_, fsFromLEOF, 3), noErr);
  EXPECT_EQ(read(fsFromStart, 0, 8, noErr), std::string("hello\0\0\0", 8));
  FSCatalogInfo info{};
  ASSERT_EQ(FSGetCatalogInfo(&file_, kFSCatInfoDataSizes, &info, nullptr, nullptr, nullptr), noErr);
  EXPECT_EQ(info.dataLogicalSize, 8u);
}

TEST_F(Forks, AccessIsCheckedPerPath) {
  FSIORefNum readOnly = 0;
  ASSERT_EQ(FSOpenFork(&file_, 0, nullptr, fsRdPerm, &readOnly), noErr);
  EXPECT_EQ(FSWriteFork(readOnly, fsFromStart, 0, 1, "x", nullptr), wrPermErr);
  EXPECT_EQ(FSSetForkSize(readOnly, fsFromStart, 0), wrPermErr);
  ASSERT_EQ(FSCloseFork(readOnly), noErr);
  EXPECT_EQ(FSCloseFork(readOnly), rfNumErr);
  EXPECT_EQ(FSGetForkSize(readOnly, nullptr), rfNumErr);

  FSIORefNum writeOnly = 0;
  ASSERT_EQ(FSOpenFork(&file_, 0, nullptr, fsWrPerm, &writeOnly), noErr);
  char byte;
  EXPECT_EQ(FSReadFork(writeOnly, fsFromStart, 0, 1, &byte, nullptr), permErr);
  FSCloseFork(writeOnly);

  const std::u16string otherFork = u"DATA";
  EXPECT_EQ(FSOpenFork(&file_, otherFork.size(), units(otherFork), fsRdPerm, &readOnly), errFSBadForkName);
  EXPECT_EQ(FSOpenFork(&scratch_.ref(), 0, nullptr, fsRdPerm, &readOnly), notAFileErr);
}

// A file that has no resource fork opens one empty, which comes into being when written.
TEST_F(Forks, ResourceForkIsASeparateStream) {
  HFSUniStr255 name;
  ASSERT_EQ(FSGetResourceForkName(&name), noErr);
  FSIORefNum resource = 0;
  ASSERT_EQ(FSOpenFork(&file_, name.length, name.unicode, fsRdWrPerm, &resource), noErr);
  SInt64 size = -1;
  ASSERT_EQ(FSGetForkSize(resource, &size), noErr);
  EXPECT_EQ(size, 0);
  ASSERT_EQ(FSWriteFork(resource, fsFromStart, 2, 3, "abc", nullptr), noErr);
  std::string back(5, '?');
  ByteCount actual = 0;
  EXPECT_EQ(FSReadFork(resource, fsFromStart, 0, 5, back.data(), &actual), noErr);
  EXPECT_EQ(back, std::string("\0\0abc", 5));
  FSCloseFork(resource);
  EXPECT_EQ(read(fsFromStart, 0, 11, noErr), "hello world");
}

}  // namespace
