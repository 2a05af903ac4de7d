// CFURL: file URLs as the bundle loader and the file helpers build and take them apart.
#include <gtest/gtest.h>

#include "platform/CFTestSupport.h"

#include <unistd.h>

#include <climits>

namespace {

TEST(CFURL, FileSystemPathsSurviveTheRoundTripThroughAURL) {
  const auto url = own(CFURLCreateWithFileSystemPath(nullptr, CFSTR("/tmp/a b/Äpfel"), kCFURLPOSIXPathStyle, true));
  ASSERT_NE(url, nullptr);
  EXPECT_EQ(utf8(CFURLGetString(url.get())), "file:///tmp/a%20b/%C3%84pfel/");
  EXPECT_TRUE(CFURLHasDirectoryPath(url.get()));
  EXPECT_EQ(utf8(own(CFURLCopyFileSystemPath(url.get(), kCFURLPOSIXPathStyle)).get()), "/tmp/a b/Äpfel");
  EXPECT_EQ(utf8(own(CFURLCopyLastPathComponent(url.get())).get()), "Äpfel");

  UInt8 path[PATH_MAX];
  ASSERT_TRUE(CFURLGetFileSystemRepresentation(url.get(), true, path, sizeof path));
  EXPECT_STREQ(reinterpret_cast<char*>(path), "/tmp/a b/\xC3\x84pfel");
  EXPECT_FALSE(CFURLGetFileSystemRepresentation(url.get(), true, path, 15));  // no room for the terminator

  const auto same = own(CFURLCreateFromFileSystemRepresentation(nullptr, path, 15, true));
  EXPECT_TRUE(CFEqual(url.get(), same.get()));
  EXPECT_EQ(CFURLCreateWithFileSystemPath(nullptr, CFSTR("C:\\x"), kCFURLWindowsPathStyle, false), nullptr);
  EXPECT_EQ(CFURLCreateWithFileSystemPath(nullptr, CFSTR(""), kCFURLPOSIXPathStyle, false), nullptr);
}

TEST(CFURL, RelativePathsResolveAgainstTheCurrentDirectory) {
  char cwd[PATH_MAX];
  ASSERT_NE(getcwd(cwd, sizeof cwd), nullptr);
  const auto relative = own(CFURLCreateWithFileSystemPath(nullptr, CFSTR("sub/../file.txt"), kCFURLPOSIXPathStyle, false));
  ASSERT_NE(CFURLGetBaseURL(relative.get()), nullptr);
  EXPECT_EQ(utf8(own(CFURLCopyFileSystemPath(relative.get(), kCFURLPOSIXPathStyle)).get()), "sub/../file.txt");

  const auto absolute = own(CFURLCopyAbsoluteURL(relative.get()));
  EXPECT_EQ(CFURLGetBaseURL(absolute.get()), nullptr);
  const std::string expected = std::string(cwd) == "/" ? "/file.txt" : std::string(cwd) + "/file.txt";
  EXPECT_EQ(utf8(own(CFURLCopyFileSystemPath(absolute.get(), kCFURLPOSIXPathStyle)).get()), expected);
  // An absolute URL is its own absolute URL.
  const auto again = own(CFURLCopyAbsoluteURL(absolute.get()));
  EXPECT_EQ(again.get(), absolute.get());
}

TEST(CFURL, AppendsAndRemovesPathComponents) {
  const auto folder = own(CFURLCreateWithFileSystemPath(nullptr, CFSTR("/Library/Plug-Ins"), kCFURLPOSIXPathStyle, true));
  const auto bundle = own(CFURLCreateCopyAppendingPathComponent(nullptr, folder.get(), CFSTR("Flash.bundle"), true));
  EXPECT_EQ(utf8(CFURLGetString(bundle.get())), "file:///Library/Plug-Ins/Flash.bundle/");
  EXPECT_EQ(utf8(own(CFURLCopyPathExtension(bundle.get())).get()), "bundle");
  const auto parent = own(CFURLCreateCopyDeletingLastPathComponent(nullptr, bundle.get()));
  EXPECT_TRUE(CFEqual(parent.get(), folder.get()));
  const auto root = own(CFURLCreateWithFileSystemPath(nullptr, CFSTR("/"), kCFURLPOSIXPathStyle, true));
  EXPECT_EQ(utf8(own(CFURLCopyLastPathComponent(root.get())).get()), "/");
  EXPECT_EQ(utf8(own(CFURLCopyFileSystemPath(root.get(), kCFURLPOSIXPathStyle)).get()), "/");
}

}  // namespace
