// CFBundle: a bundle laid out as on macOS, built in a temporary folder by each test.
#include <gtest/gtest.h>

#include "platform/CFTestSupport.h"
#include "../helpers/TempFolder.h"
#include "platform/ScopedEnvironment.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <vector>

namespace fs = std::filesystem;

namespace {

const char* const kInfoPlist = R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
<dict>
  <!-- values of other types are passed over -->
  <key>LSArchitecturePriority</key>
  <array><string>x86_64</string><dict><key>k</key><string>v</string></dict></array>
  <key>NSHighResolutionCapable</key><true/>
  <key>CFBundleExecutable</key><string>EXECUTABLE</string>
  <key>CFBundleIdentifier</key><string>IDENTIFIER</string>
  <key>CFBundleDevelopmentRegion</key><string>en</string>
  <key>CFBundleGetInfoString</key><string>Tom &amp; Jerry &#x2122;</string>
</dict>
</plist>
)";

const char* const kEnglishMessages = R"(/* Messages of the flash dialog. */
"MSG_1" = "Hello \"World\"\n";  // a line comment
"MSG_2" = "Tab\there \U00E9\\";
MSG_3 = plain.word;
"MSG_4";
)";

std::string replaced(std::string text, const std::string& from, const std::string& to) {
  return text.replace(text.find(from), from.size(), to);
}

void writeFile(const fs::path& path, const std::string& bytes) {
  fs::create_directories(path.parent_path());
  std::ofstream(path, std::ios::binary) << bytes;
}

// UTF-16LE with a byte order mark, from ASCII text.
std::string utf16WithMark(const std::string& ascii) {
  std::string bytes = "\xFF\xFE";
  for (const char c : ascii) {
    bytes += c;
    bytes += '\0';
  }
  return bytes;
}

class CFBundleTest : public testing::Test {
 protected:
  // A bundle whose executable is `executable`; `module` is copied there when given.
  fs::path makeBundle(const std::string& name, const std::string& executable, const std::string& module) {
    const fs::path bundle = root_ / name;
    const fs::path contents = bundle / "Contents";
    writeFile(contents / "Info.plist",
              replaced(replaced(kInfoPlist, "EXECUTABLE", executable), "IDENTIFIER", "org.example." + name));
    if (!module.empty()) {
      fs::create_directories(contents / "MacOS");
      fs::copy_file(module, contents / "MacOS" / executable);
    }
    const fs::path resources = contents / "Resources";
    writeFile(resources / "en.lproj" / "Messages.strings", kEnglishMessages);
    writeFile(resources / "de.lproj" / "Messages.strings", utf16WithMark("\"MSG_1\" = \"Hallo Welt\";\n"));
    writeFile(resources / "en.lproj" / "Localizable.strings", "\"default\" = \"from Localizable\";");
    writeFile(resources / "en.lproj" / "Broken.strings", "\"MSG_1\" = \"no semicolon\"");
    writeFile(resources / "Logo.png", "global");
    writeFile(resources / "en.lproj" / "Logo.png", "localized");
    writeFile(resources / "de.lproj" / "Nibs" / "Dialog.nib", "nib");
    return bundle;
  }

  static CFHolder<CFBundleRef> open(const fs::path& folder) {
    const std::string path = folder.string();
    const auto url = own(CFURLCreateFromFileSystemRepresentation(nullptr, reinterpret_cast<const UInt8*>(path.data()),
                                                                  static_cast<CFIndex>(path.size()), true));
    return own(CFBundleCreate(nullptr, url.get()));
  }

  static std::string pathOf(CFURLRef url) {
    return utf8(own(CFURLCopyFileSystemPath(url, kCFURLPOSIXPathStyle)).get());
  }

  testing_host::TempFolder temp_;
  const fs::path& root_ = temp_.path();
};

TEST_F(CFBundleTest, LoadsTheExecutableFindsAFunctionAndUnloads) {
  const auto bundle = open(makeBundle("Flash.bundle", "Flash", TEST_MODULE));
  ASSERT_NE(bundle, nullptr);
  EXPECT_FALSE(CFBundleIsExecutableLoaded(bundle.get()));
  CFErrorRef error = nullptr;
  ASSERT_TRUE(CFBundleLoadExecutableAndReturnError(bundle.get(), &error));
  EXPECT_EQ(error, nullptr);
  EXPECT_TRUE(CFBundleIsExecutableLoaded(bundle.get()));

  using Answer = int (*)();
  const auto answer =
      reinterpret_cast<Answer>(CFBundleGetFunctionPointerForName(bundle.get(), CFSTR("XPTestModuleAnswer")));
  ASSERT_NE(answer, nullptr);
  EXPECT_EQ(answer(), 42);
  EXPECT_EQ(CFBundleGetFunctionPointerForName(bundle.get(), CFSTR("NoSuchFunction")), nullptr);

  CFBundleUnloadExecutable(bundle.get());
  EXPECT_FALSE(CFBundleIsExecutableLoaded(bundle.get()));
  // Looking a function up loads the executable again.
  EXPECT_NE(CFBundleGetFunctionPointerForName(bundle.get(), CFSTR("XPTestModuleAnswer")), nullptr);
  EXPECT_TRUE(CFBundleIsExecutableLoaded(bundle.get()));
  CFBundleUnloadExecutable(bundle.get());
}

TEST_F(CFBundleTest, ReportsWhyAnExecutableDoesNotLoad) {
  const fs::path notALibrary = root_ / "text";
  writeFile(notALibrary, "not a shared object, but long enough to have an ELF header's size...........");
  struct Case {
    const char* name;
    std::string executable;
    std::string module;
    CFIndex code;
  };
  const std::vector<Case> cases = {
      {"Missing.bundle", "Missing", "", kCFBundleExecutableNotFoundError},
      {"Unnamed.bundle", "", "", kCFBundleExecutableNotFoundError},
      {"Text.bundle", "Text", notALibrary.string(), kCFBundleExecutableNotLoadableError},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const auto bundle = open(makeBundle(c.name, c.executable, c.module));
    ASSERT_NE(bundle, nullptr);
    CFErrorRef error = nullptr;
    EXPECT_FALSE(CFBundleLoadExecutableAndReturnError(bundle.get(), &error));
    ASSERT_NE(error, nullptr);
    const auto owned = own(error);
    EXPECT_EQ(CFErrorGetCode(error), c.code);
    EXPECT_TRUE(CFEqual(CFErrorGetDomain(error), kCFErrorDomainCocoa));
    // The sentence names the bundle, as Apple's does.
    EXPECT_NE(utf8(own(CFErrorCopyDescription(error)).get()).find(fs::path(c.name).stem().string()),
              std::string::npos);
    EXPECT_FALSE(CFBundleIsExecutableLoaded(bundle.get()));
    EXPECT_FALSE(CFBundleLoadExecutable(bundle.get()));
  }
}

TEST_F(CFBundleTest, ReadsTheInformationPropertyList) {
  const fs::path folder = makeBundle("Info.bundle", "Info", "");
  const auto bundle = open(folder);
  EXPECT_EQ(utf8(CFBundleGetIdentifier(bundle.get())), "org.example.Info.bundle");
  EXPECT_EQ(utf8(static_cast<CFStringRef>(CFBundleGetValueForInfoDictionaryKey(bundle.get(), CFSTR("CFBundleGetInfoString")))),
            "Tom & Jerry \u2122");
  EXPECT_EQ(CFBundleGetValueForInfoDictionaryKey(bundle.get(), CFSTR("NSHighResolutionCapable")), nullptr);
  EXPECT_EQ(CFBundleGetBundleWithIdentifier(CFSTR("org.example.Info.bundle")), bundle.get());

  // One object per folder while it lives; no bundle for a folder that is not there.
  const auto again = open(folder);
  EXPECT_EQ(again.get(), bundle.get());
  EXPECT_EQ(open(root_ / "Nowhere.bundle"), nullptr);
  EXPECT_EQ(pathOf(own(CFBundleCopyBundleURL(bundle.get())).get()), folder.string());
  EXPECT_EQ(pathOf(own(CFBundleCopyResourcesDirectoryURL(bundle.get())).get()),
            (folder / "Contents" / "Resources").string());
}

TEST_F(CFBundleTest, FindsResourcesOutsideTheLanguageFoldersFirst) {
  ScopedEnvironment environment;
  environment.set("LC_ALL", nullptr);
  environment.set("LC_MESSAGES", nullptr);
  environment.set("LANG", "de_DE.UTF-8");
  const fs::path resources = makeBundle("Resources.bundle", "R", "") / "Contents" / "Resources";
  const auto bundle = open(resources.parent_path().parent_path());
  EXPECT_EQ(pathOf(own(CFBundleCopyResourceURL(bundle.get(), CFSTR("Logo"), CFSTR("png"), nullptr)).get()),
            (resources / "Logo.png").string());
  EXPECT_EQ(pathOf(own(CFBundleCopyResourceURL(bundle.get(), CFSTR("Dialog"), CFSTR("nib"), CFSTR("Nibs"))).get()),
            (resources / "de.lproj" / "Nibs" / "Dialog.nib").string());
  EXPECT_EQ(CFBundleCopyResourceURL(bundle.get(), CFSTR("Absent"), CFSTR("png"), nullptr), nullptr);
}

TEST_F(CFBundleTest, LocalizedStringsFollowTheUserLanguage) {
  const auto bundle = open(makeBundle("Strings.bundle", "S", ""));
  struct Case {
    const char* lcAll;
    const char* lang;
    const char* expected;
  };
  const std::vector<Case> cases = {
      {nullptr, "de_DE.UTF-8", "Hallo Welt"},          // UTF-16 table with a byte order mark
      {nullptr, "fr_FR.UTF-8", "Hello \"World\"\n"},   // no French: the development region
      {nullptr, "C", "Hello \"World\"\n"},
      {"de_AT@euro", "fr_FR", "Hallo Welt"},           // LC_ALL comes first
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.lang);
    ScopedEnvironment environment;
    environment.set("LC_ALL", c.lcAll);
    environment.set("LC_MESSAGES", nullptr);
    environment.set("LANG", c.lang);
    const auto text = own(CFBundleCopyLocalizedString(bundle.get(), CFSTR("MSG_1"), nullptr, CFSTR("Messages")));
    EXPECT_EQ(utf8(text.get()), c.expected);
  }
}

TEST_F(CFBundleTest, ReadsTheStringsSyntax) {
  ScopedEnvironment environment;
  environment.set("LC_ALL", "en_US.UTF-8");
  const auto bundle = open(makeBundle("Syntax.bundle", "S", ""));
  const std::vector<std::pair<CFStringRef, std::string>> cases = {
      {CFSTR("MSG_2"), "Tab\there \u00E9\\"},
      {CFSTR("MSG_3"), "plain.word"},
      {CFSTR("MSG_4"), "MSG_4"},
  };
  for (const auto& [key, expected] : cases) {
    EXPECT_EQ(utf8(own(CFBundleCopyLocalizedString(bundle.get(), key, nullptr, CFSTR("Messages"))).get()), expected);
  }
  EXPECT_EQ(utf8(own(CFBundleCopyLocalizedString(bundle.get(), CFSTR("default"), nullptr, nullptr)).get()),
            "from Localizable");
}

TEST_F(CFBundleTest, AMissingKeyGivesBackTheVeryObjectPassedIn) {
  ScopedEnvironment environment;
  environment.set("LC_ALL", "en_US.UTF-8");
  const auto bundle = open(makeBundle("Missing.bundle", "M", ""));
  const auto key = cfstring("MSG_99");
  const auto value = cfstring("fallback");

  const auto msg1 = cfstring("MSG_1");
  const auto copy = [&](CFStringRef k, CFStringRef v, CFStringRef table) {
    return own(CFBundleCopyLocalizedString(bundle.get(), k, v, table));
  };
  const auto withValue = copy(key.get(), value.get(), CFSTR("Messages"));
  EXPECT_EQ(withValue.get(), value.get());
  EXPECT_EQ(CFGetRetainCount(value.get()), 2);
  EXPECT_EQ(copy(key.get(), nullptr, CFSTR("Messages")).get(), key.get());
  EXPECT_EQ(copy(key.get(), CFSTR(""), CFSTR("Messages")).get(), key.get());
  EXPECT_EQ(copy(key.get(), key.get(), CFSTR("NoSuchTable")).get(), key.get());
  // A table with a syntax error counts as empty; a found key gives a new object.
  EXPECT_EQ(copy(msg1.get(), msg1.get(), CFSTR("Broken")).get(), msg1.get());
  EXPECT_NE(copy(msg1.get(), msg1.get(), CFSTR("Messages")).get(), msg1.get());
}

TEST(CFBundle, TheMainBundleIsTheProgramsFolder) {
  char executable[4096] = {};
  ASSERT_GT(readlink("/proc/self/exe", executable, sizeof executable - 1), 0);
  const auto url = own(CFBundleCopyBundleURL(CFBundleGetMainBundle()));
  EXPECT_EQ(utf8(own(CFURLCopyFileSystemPath(url.get(), kCFURLPOSIXPathStyle)).get()),
            fs::path(executable).parent_path().string());
  EXPECT_TRUE(CFBundleLoadExecutable(CFBundleGetMainBundle()));
}

}  // namespace
