// Tests of localized messages from a bundle's strings table and of the CFString bridges.
#include "text/PlatformStrings.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "../helpers/HostText.h"
#include "../helpers/TempFolder.h"
#include "text/CFRef.h"

namespace {

namespace fs = std::filesystem;

const char kTable[] =
    "/* Messages of the tests. */\n"
    "\"1\" = \"Disk full (code 3)\";\n"
    "\"2\" = \"abcd\";\n"
    "\"3\" = \"3\";\n"
    "\"4\" = \"No parenthesis\";\n"
    "\"131\" = \"Never read\";\n"
    "\"MSG_1\" = \"Prefixed\";\n";

// A bundle laid out as on macOS, holding the table "Msgs" in English.
class LocalizedMessage : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    root_ = new testing_host::TempFolder;
    fs::path contents = root_->path() / "Test.bundle" / "Contents";
    fs::create_directories(contents / "Resources" / "en.lproj");
    std::ofstream(contents / "Info.plist")
        << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>\n"
           "<key>CFBundleDevelopmentRegion</key><string>en</string>\n"
           "<key>CFBundleIdentifier</key><string>test.strings</string>\n</dict></plist>\n";
    std::ofstream(contents / "Resources" / "en.lproj" / "Msgs.strings") << kTable;
    std::string folder = (root_->path() / "Test.bundle").string();
    CFRef<CFURLRef> url(CFURLCreateFromFileSystemRepresentation(
        kCFAllocatorDefault, reinterpret_cast<const UInt8*>(folder.c_str()), CFIndex(folder.size()), true));
    bundle_ = CFBundleCreate(kCFAllocatorDefault, url.get());
  }
  static void TearDownTestSuite() {
    CFRelease(bundle_);
    delete root_;
  }
  static unsigned long handle() { return reinterpret_cast<unsigned long>(bundle_); }

  static testing_host::TempFolder* root_;
  static CFBundleRef bundle_;
};

testing_host::TempFolder* LocalizedMessage::root_ = nullptr;
CFBundleRef LocalizedMessage::bundle_ = nullptr;

using testing_host::UniStr;

}  // namespace

TEST_F(LocalizedMessage, ReturnedOnlyWhenShorterThanTheBufferLessOne) {
  const struct {
    unsigned int id;
    int outSize;
    int length;  // 0: refused, buffer untouched
  } cases[] = {{2, 6, 4}, {2, 5, 0}, {2, 1, 0}, {9, 64, 0}, {3, 64, 1}};
  for (const auto& c : cases) {
    SCOPED_TRACE(::testing::Message() << "id " << c.id << " size " << c.outSize);
    unsigned short out[64] = {'u', 'n', 't', 'o', 'u', 'c', 'h', 'e', 'd', 0};
    EXPECT_EQ(VnSub_OSXLoadString(bundle_, "Msgs", "%d", c.id, out, c.outSize), c.length);
    EXPECT_EQ(UniStr(out), c.length == 0 ? u"untouched" : c.id == 2 ? u"abcd" : u"3");
  }
  EXPECT_EQ(VnSub_OSXLoadString(bundle_, "Msgs", "%d", 2, nullptr, 64), 0);
}

TEST_F(LocalizedMessage, ID131IsReadAsID1) {
  unsigned short direct[64], aliased[64];
  EXPECT_EQ(VnSub_OSXLoadString(bundle_, "Msgs", "%d", 131, direct, 64), 10);
  EXPECT_EQ(XP7_Do_GetStringUni(handle(), "Msgs", "%d", 131, 0, 64, aliased), 18);
  EXPECT_EQ(UniStr(direct), u"Never read");
  EXPECT_EQ(UniStr(aliased), u"Disk full (code 3)");
}

TEST_F(LocalizedMessage, GetStringCutsAtTheFirstParenthesis) {
  const struct {
    const char* format;
    unsigned int id;
    bool cut;
    const char16_t* text;
  } cases[] = {{"%d", 131, true, u"Disk full "}, {"%d", 1, false, u"Disk full (code 3)"},
               {"%d", 4, true, u"No parenthesis"}, {"%d", 9, true, u""}, {"MSG_%d", 1, false, u"Prefixed"}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.id);
    fmx::TextAutoPtr out;
    out->Assign("old");
    EXPECT_EQ(XP7_Do_GetString(handle(), "Msgs", c.format, c.id, out, c.cut), 0);
    EXPECT_EQ(testing_host::Units(out), c.text);
  }
}

TEST(CFStringBridge, HostTextAndUTF16KeepEveryUnit) {
  unsigned short units[] = {'A', 0, 0xD83D, 0xDE00, 0xE9, 0};
  fmx::TextAutoPtr text, back;
  text->AssignUnicodeWithLength(units, 5);
  CFStringRef made = nullptr;
  ASSERT_EQ(XP7_TxtToCFStringRef(text, made), 0);
  CFRef<CFStringRef> string(made);
  EXPECT_EQ(XP7_CFStringRefToTxt(string.get(), back), 0);
  EXPECT_TRUE(*back == *text);
  EXPECT_EQ(XP7_CFStringRefToTxt(nullptr, back), -4176);

  ASSERT_EQ(XP7_UniStrToCFStringRef(units + 2, made), 0);  // up to the 0 unit
  CFRef<CFStringRef> zeroEnded(made);
  unsigned short out[4] = {'x', 'x', 'x', 'x'};
  XP7_CFStringRefToUniStr(zeroEnded.get(), out, 2);
  EXPECT_EQ(UniStr(out), u"\U0001F600");
  XP7_CFStringRefToUniStr(string.get(), out, 1);
  EXPECT_EQ(UniStr(out), u"A");
}

TEST(CFStringBridge, CStringsGoInInTheirEncodingAndComeOutInUTF8) {
  const struct {
    const char* in;
    CFStringEncoding encoding;
    const char* utf8;  // null: no string is made
  } cases[] = {{"Gr\xC3\xBC\xC3\x9F" "e \xF0\x9F\x98\x80", kCFStringEncodingUTF8, "Gr\xC3\xBC\xC3\x9F" "e \xF0\x9F\x98\x80"},
               {"\x8A\xDB", kCFStringEncodingMacRoman, "\xC3\xA4\xE2\x82\xAC"},
               {"", kCFStringEncodingUTF8, ""},
               {"\xC3(", kCFStringEncodingUTF8, nullptr}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.in);
    CFStringRef made = nullptr;
    EXPECT_EQ(XP7_CStrToCFStringRef(c.in, made, c.encoding), c.utf8 ? 0 : -50);
    CFRef<CFStringRef> string(made);
    char* bytes = XP7_CFStringRefToCStr(string.get());
    EXPECT_EQ(std::string(bytes ? bytes : "(null)"), c.utf8 ? c.utf8 : "(null)");
    delete[] bytes;
  }
}
