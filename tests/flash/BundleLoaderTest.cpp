// The flash bundle's loader on real bundles: a plug-in bundle laid out in a temporary
// folder, carrying in its resources a flash bundle whose executable is a fixture module.
#include "BundleLoader.h"

#include <gtest/gtest.h>
#include <stdlib.h>
#include <syslog.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "helpers/SystemLog.h"
#include "text/CFRef.h"
#include "text/ResultCodes.h"

namespace {

namespace fs = std::filesystem;

const char* const kNotLoadedLine = "Varn Kest Plug-in: Could not load Cocoa Flash bundle";

void WriteInfoPlist(const fs::path& contents, const std::string& executable) {
  fs::create_directories(contents);
  std::ofstream(contents / "Info.plist")
      << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n<dict>\n"
      << "  <key>CFBundleExecutable</key><string>" << executable << "</string>\n"
      << "  <key>CFBundleIdentifier</key><string>org.example." << executable << "</string>\n"
      << "</dict>\n</plist>\n";
}

// Whether the file is mapped into this process: what is unloaded is unmapped again.
bool IsMapped(const fs::path& file) {
  std::ifstream maps("/proc/self/maps");
  for (std::string line; std::getline(maps, line);) {
    if (line.find(file.string()) != std::string::npos) return true;
  }
  return false;
}

// Each message of a run as its level and the text after the program's tag ("4 text").
std::vector<std::string> Logged(const testing_syslog::Run& run) {
  std::vector<std::string> logged;
  for (const std::string& message : run.messages) {
    const size_t close = message.find('>');
    const size_t text = message.find(": ", close);
    if (message.empty() || message[0] != '<' || close == std::string::npos || text == std::string::npos) {
      logged.push_back("unreadable: " + message);
    } else {
      logged.push_back(std::to_string(std::stoi(message.substr(1, close - 1)) & LOG_PRIMASK) + " " +
                       message.substr(text + 2));
    }
  }
  return logged;
}

// The parts of the main plug-in's bundle that the cases leave out.
enum class Missing { kNothing, kExecutable, kFlashBundle, kResources, kPluginBundle };

class BundleLoaderTest : public testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = (fs::temp_directory_path() / "loader-XXXXXX").string();
    ASSERT_NE(mkdtemp(pattern.data()), nullptr);
    root_ = fs::canonical(pattern);
    plugin_ = root_ / "KestPlugin.bundle";
    flash_ = plugin_ / "Contents" / "Resources" / kFlashBundleFileName;
    executable_ = flash_ / "Contents" / "MacOS" / "Vn7_KestCocoaFlashBundle";
  }
  void TearDown() override {
    Kest7_UnLoadMyCocoaFlashPlugin();
    fs::remove_all(root_);
  }

  // The main plug-in's bundle, whose flash bundle runs `module`, without what `missing` names.
  CFRef<CFBundleRef> PluginBundle(const char* module, Missing missing = Missing::kNothing) {
    if (missing == Missing::kPluginBundle) return CFRef<CFBundleRef>();
    WriteInfoPlist(plugin_ / "Contents", "KestPlugin");
    if (missing != Missing::kResources) fs::create_directories(plugin_ / "Contents" / "Resources");
    if (missing == Missing::kNothing || missing == Missing::kExecutable) {
      WriteInfoPlist(flash_ / "Contents", executable_.filename());
    }
    if (missing == Missing::kNothing) {
      fs::create_directories(executable_.parent_path());
      fs::copy_file(module, executable_);
    }
    const CFRef<CFURLRef> url(CFURLCreateFromFileSystemRepresentation(
        nullptr, reinterpret_cast<const UInt8*>(plugin_.c_str()), static_cast<CFIndex>(plugin_.string().size()), true));
    return CFRef<CFBundleRef>(CFBundleCreate(nullptr, url.get()));
  }

  FSRef FlashBundleRef() const {
    FSRef ref{};
    EXPECT_EQ(FSPathMakeRef(reinterpret_cast<const UInt8*>(flash_.c_str()), &ref, nullptr), noErr);
    return ref;
  }

  fs::path root_, plugin_, flash_, executable_;
};

TEST_F(BundleLoaderTest, CurrentBundleLoadsWithItsDialogEntry) {
  const auto plugin = PluginBundle(FIXTURE_1228);
  unsigned int version = 7;
  ASSERT_EQ(Kest7_LoadMyCocoaFlashPlugin(plugin.get(), &version), kXP_NoErr);
  EXPECT_EQ(version, 1228u);
  ASSERT_NE(gFlashBundlePtr, nullptr);
  ASSERT_NE(gKestBundle_CALLShowPluginFlashDialogFunc, nullptr);
  EXPECT_EQ(gKestBundle_CALLShowPluginFlashDialogFunc(false, 77, 0, nullptr, nullptr, nullptr, nullptr, nullptr), 77);
  EXPECT_TRUE(IsMapped(executable_));

  Kest7_UnLoadMyCocoaFlashPlugin();
  EXPECT_EQ(gFlashBundlePtr, nullptr);
  EXPECT_FALSE(IsMapped(executable_));
  // Left set on purpose: callers test gFlashBundlePtr first.
  EXPECT_NE(gKestBundle_CALLShowPluginFlashDialogFunc, nullptr);
}

TEST_F(BundleLoaderTest, Version1227IsRefusedAndUnloaded) {
  const auto plugin = PluginBundle(FIXTURE_1227);
  unsigned int version = 7;
  EXPECT_EQ(Kest7_LoadMyCocoaFlashPlugin(plugin.get(), &version), kXP_BundleTooOld);
  EXPECT_EQ(version, 1227u);
  EXPECT_EQ(gFlashBundlePtr, nullptr);
  EXPECT_FALSE(IsMapped(executable_));
}

TEST_F(BundleLoaderTest, BundleWithoutVersionFunctionIsRefusedWithVersion0) {
  const auto plugin = PluginBundle(FIXTURE_NO_VERSION);
  unsigned int version = 7;
  EXPECT_EQ(Kest7_LoadMyCocoaFlashPlugin(plugin.get(), &version), kXP_BundleTooOld);
  EXPECT_EQ(version, 0u);
  EXPECT_EQ(gFlashBundlePtr, nullptr);
  EXPECT_FALSE(IsMapped(executable_));
}

TEST_F(BundleLoaderTest, BundleWithoutDialogEntryLoadsWithNullEntry) {
  const auto plugin = PluginBundle(FIXTURE_NO_DIALOG);
  // What an earlier load left behind must not survive this one.
  gKestBundle_CALLShowPluginFlashDialogFunc = [](bool, unsigned int, short, CFStringRef, CFStringRef, CFStringRef,
                                                 CFStringRef, CFStringRef) { return -1; };
  unsigned int version = 7;
  EXPECT_EQ(Kest7_LoadMyCocoaFlashPlugin(plugin.get(), &version), kXP_NoErr);
  EXPECT_EQ(version, 1228u);
  EXPECT_NE(gFlashBundlePtr, nullptr);
  EXPECT_EQ(gKestBundle_CALLShowPluginFlashDialogFunc, nullptr);
}

TEST_F(BundleLoaderTest, SecondLoadReloadsAndOneUnloadUnmaps) {
  const auto plugin = PluginBundle(FIXTURE_1228);
  unsigned int version = 0;
  ASSERT_EQ(Kest7_LoadMyCocoaFlashPlugin(plugin.get(), &version), kXP_NoErr);
  EXPECT_EQ(gKestBundle_CALLShowPluginFlashDialogFunc(true, 33, 2, nullptr, nullptr, nullptr, nullptr, nullptr), 33);
  ASSERT_EQ(Kest7_LoadMyCocoaFlashPlugin(plugin.get(), &version), kXP_NoErr);
  EXPECT_EQ(version, 1228u);
  // Reloaded code has not been called yet.
  EXPECT_EQ(gKestBundle_CALLShowPluginFlashDialogFunc(true, 33, 2, nullptr, nullptr, nullptr, nullptr, nullptr), 33);
  EXPECT_TRUE(IsMapped(executable_));

  Kest7_UnLoadMyCocoaFlashPlugin();
  EXPECT_EQ(gFlashBundlePtr, nullptr);
  EXPECT_FALSE(IsMapped(executable_));
}

TEST_F(BundleLoaderTest, UnloadWithoutLoadChangesNothing) {
  const KestCocoa_ShowPluginFlashDialogProc entry = gKestBundle_CALLShowPluginFlashDialogFunc;
  Kest7_UnLoadMyCocoaFlashPlugin();
  Kest7_UnLoadMyCocoaFlashPlugin();
  EXPECT_EQ(gFlashBundlePtr, nullptr);
  EXPECT_EQ(gKestBundle_CALLShowPluginFlashDialogFunc, entry);
}

TEST_F(BundleLoaderTest, FindNamesEachMissingPiece) {
  FSRef ref;
  std::memset(&ref, 0xAB, sizeof ref);
  const FSRef untouched = ref;
  // No resources folder can be named without a bundle: success, and the reference untouched.
  EXPECT_EQ(Vn7_FindCocoaFlashBundleInMyBundle(nullptr, &ref), kXP_NoErr);
  EXPECT_EQ(std::memcmp(&ref, &untouched, sizeof ref), 0);

  EXPECT_EQ(Vn7_FindCocoaFlashBundleInMyBundle(PluginBundle(nullptr, Missing::kResources).get(), &ref),
            kXP_ResourcesNotReferenced);
  EXPECT_EQ(Vn7_FindCocoaFlashBundleInMyBundle(PluginBundle(nullptr, Missing::kFlashBundle).get(), &ref),
            kXP_FileNotFound);

  ASSERT_EQ(Vn7_FindCocoaFlashBundleInMyBundle(PluginBundle(FIXTURE_1228).get(), &ref), kXP_NoErr);
  char path[1024];
  ASSERT_EQ(FSRefMakePath(&ref, reinterpret_cast<UInt8*>(path), sizeof path), noErr);
  EXPECT_EQ(fs::path(path), flash_);
}

TEST_F(BundleLoaderTest, LoadExecutableTellsNoReferenceFromNoExecutable) {
  CFBundleRef bundle = nullptr;
  // The empty reference names nothing: success without a bundle.
  EXPECT_EQ(Vn7LoadExecutable(FSRef{}, &bundle, true), kXP_NoErr);
  EXPECT_EQ(bundle, nullptr);

  PluginBundle(nullptr, Missing::kExecutable);
  EXPECT_EQ(Vn7LoadExecutable(FlashBundleRef(), &bundle, true), kXP_ExecutableNotLoaded);
  const CFRef<CFBundleRef> notLoaded(bundle);
  EXPECT_NE(bundle, nullptr);
}

TEST_F(BundleLoaderTest, LoadedExecutableGivesItsFunctionsUntilUnloaded) {
  PluginBundle(FIXTURE_1228);
  CFBundleRef bundle = nullptr;
  ASSERT_EQ(Vn7LoadExecutable(FlashBundleRef(), &bundle, false), kXP_NoErr);
  ASSERT_NE(bundle, nullptr);
  void* function = &function;
  EXPECT_EQ(Vn7GetFunctionPtr(bundle, "Vn7BundleFlash_VersionFunc", &function), kXP_NoErr);
  EXPECT_EQ(reinterpret_cast<Vn7BundleFlash_VersionProc>(function)(), 1228u);
  EXPECT_EQ(Vn7GetFunctionPtr(bundle, "Vn7BundleFlash_Missing", &function), kXP_FunctionNotFound);
  EXPECT_EQ(function, nullptr);
  function = &function;
  EXPECT_EQ(Vn7GetFunctionPtr(nullptr, "Vn7BundleFlash_VersionFunc", &function), kXP_ParamErr);
  EXPECT_EQ(function, nullptr);

  EXPECT_EQ(Vn7UnloadExecutable(bundle), kXP_NoErr);
  EXPECT_FALSE(IsMapped(executable_));
  EXPECT_EQ(Vn7UnloadExecutable(nullptr), kXP_NoErr);
}

TEST_F(BundleLoaderTest, DisposeFunctionPtrFreesAPlatformBlock) {
  // The sanitizer builds see a block freed the wrong way, or not at all.
  EXPECT_EQ(VnDisposeFunctionPtr(NewPtr(16)), kXP_NoErr);
}

#ifdef FLASH_BUNDLE
TEST_F(BundleLoaderTest, BuiltBundleLoadsWithTheHostOfItsLoader) {
  const auto plugin = PluginBundle(nullptr, Missing::kFlashBundle);
  fs::copy(FLASH_BUNDLE, flash_, fs::copy_options::recursive);
  unsigned int version = 0;
  ASSERT_EQ(Kest7_LoadMyCocoaFlashPlugin(plugin.get(), &version), kXP_NoErr);
  EXPECT_EQ(version, 1228u);
  EXPECT_NE(gKestBundle_CALLShowPluginFlashDialogFunc, nullptr);
  Kest7_UnLoadMyCocoaFlashPlugin();
  EXPECT_FALSE(IsMapped(executable_));
}
#endif

// Every way the bundle cannot be found or loaded: -4258, and one line to the system log.
class UnloadableBundleTest : public BundleLoaderTest, public testing::WithParamInterface<Missing> {};

TEST_P(UnloadableBundleTest, IsReportedAndLogged) {
  const auto plugin = PluginBundle(FIXTURE_1228, GetParam());
  const testing_syslog::Run run = testing_syslog::RunWithSystemLog([&plugin] {
    unsigned int version = 7;
    const int result = Kest7_LoadMyCocoaFlashPlugin(plugin.get(), &version);
    return std::string(XP_ResultCodeName(result)) + ", version " + std::to_string(version) +
           (gFlashBundlePtr != nullptr ? ", bundle left" : "");
  });
  if (!run.unavailable.empty()) GTEST_SKIP() << "no system log socket of our own: " << run.unavailable;
  EXPECT_EQ(run.result, std::string(XP_ResultCodeName(kXP_BundleNotLoaded)) + ", version 0");
  EXPECT_EQ(Logged(run), std::vector<std::string>{std::to_string(LOG_WARNING) + " " + kNotLoadedLine});
}

std::string MissingName(const testing::TestParamInfo<Missing>& info) {
  const char* const names[] = {"Nothing", "Executable", "FlashBundle", "Resources", "PluginBundle"};
  return names[static_cast<int>(info.param)];
}

INSTANTIATE_TEST_SUITE_P(Missing, UnloadableBundleTest,
                         testing::Values(Missing::kExecutable, Missing::kFlashBundle, Missing::kResources,
                                         Missing::kPluginBundle),
                         MissingName);

}  // namespace
