// The flash bundle's plain entries: the version, the toolkit's C-string flash wrapper and
// the alert sound. The toolkit's route to the dialog is replaced here by a recorder.
#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <unistd.h>

#include <fstream>
#include <optional>
#include <string>
#include <vector>

#include "FlashEntryPoints.h"
#include "helpers/TempFolder.h"
#include "text/CFRef.h"

namespace {

// One call that reached the toolkit's route to the dialog, its strings as UTF-8.
struct RoutedCall {
  bool withButton = false;
  unsigned int delayTicks = 0;
  short kind = 0;
  std::optional<std::string> text2, text3, text1, nibFolder, logoPath;
};

std::vector<RoutedCall> gRouted;

std::optional<std::string> Utf8(CFStringRef s) {
  char buffer[1024] = {};
  if (s == nullptr) return std::nullopt;
  CFStringGetCString(s, buffer, sizeof buffer, kCFStringEncodingUTF8);
  return std::string(buffer);
}

}  // namespace

// Stands in for the bundle's own route, which shows nothing, to see what reaches it.
int PluginCocoa_DisplayFlashDialog(bool withButton, unsigned int delayTicks, short dialogKind, CFStringRef text2,
                                   CFStringRef text3, CFStringRef text1, CFStringRef nibFolderPath,
                                   CFStringRef logoImagePath) {
  gRouted.push_back({withButton, delayTicks, dialogKind, Utf8(text2), Utf8(text3), Utf8(text1),
                     Utf8(nibFolderPath), Utf8(logoImagePath)});
  return 0;
}

namespace {

TEST(FlashVersion, IsTheOneTheLoaderAccepts) {
  EXPECT_EQ(Vn7BundleFlash_VersionFunc(), 1228u);
}

class FlashDialogWrapper : public testing::Test {
 protected:
  void SetUp() override {
    gRouted.clear();
    resources_ = temp_.path() / "Plugin.bundle" / "Contents" / "Resources";
    std::filesystem::create_directories(resources_);
    std::ofstream(temp_.path() / "Plugin.bundle" / "Contents" / "Info.plist")
        << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>"
           "<key>CFBundleIdentifier</key><string>org.example.plugin</string></dict></plist>\n";
    std::ofstream(resources_ / "Logo.png") << "png";
    const std::string path = (temp_.path() / "Plugin.bundle").string();
    CFRef<CFURLRef> url(CFURLCreateFromFileSystemRepresentation(
        nullptr, reinterpret_cast<const UInt8*>(path.data()), static_cast<CFIndex>(path.size()), true));
    bundle_ = CFBundleCreate(nullptr, url.get());
    ASSERT_NE(bundle_, nullptr);
  }
  void TearDown() override {
    if (bundle_ != nullptr) CFRelease(bundle_);
  }

  testing_host::TempFolder temp_;
  std::filesystem::path resources_;
  CFBundleRef bundle_ = nullptr;
};

TEST_F(FlashDialogWrapper, PassesTextsFolderAndLogoOn) {
  // "\x8A" is "ä" in Mac Roman: the first line is read so, the others as UTF-8.
  XP64_DisplayFlashDialog(bundle_, true, 150, 3, "Gr\xC3\xB6\xC3\x9F" "e", "third", "M\x8A" "rz", "Logo.png");
  ASSERT_EQ(gRouted.size(), 1u);
  const RoutedCall& call = gRouted[0];
  EXPECT_TRUE(call.withButton);
  EXPECT_EQ(call.delayTicks, 150u);
  EXPECT_EQ(call.kind, 3);
  EXPECT_EQ(call.text2, std::optional<std::string>("Gr\xC3\xB6\xC3\x9F" "e"));
  EXPECT_EQ(call.text3, std::optional<std::string>("third"));
  EXPECT_EQ(call.text1, std::optional<std::string>("M\xC3\xA4rz"));
  EXPECT_EQ(call.nibFolder, std::optional<std::string>(resources_.string()));
  EXPECT_EQ(call.logoPath, std::optional<std::string>((resources_ / "Logo.png").string()));
}

TEST_F(FlashDialogWrapper, ALogoTheBundleLacksAndNullTextsArriveAsNull) {
  XP64_DisplayFlashDialog(bundle_, false, 59, 0, nullptr, nullptr, nullptr, "Missing.png");
  ASSERT_EQ(gRouted.size(), 1u);
  const RoutedCall& call = gRouted[0];
  EXPECT_FALSE(call.withButton);
  EXPECT_EQ(call.delayTicks, 59u);
  EXPECT_FALSE(call.text2.has_value());
  EXPECT_FALSE(call.text3.has_value());
  EXPECT_FALSE(call.text1.has_value());
  EXPECT_EQ(call.nibFolder, std::optional<std::string>(resources_.string()));
  EXPECT_FALSE(call.logoPath.has_value());
}

// XP_SysBeep with `fd` as standard error.
void BeepInto(int fd) {
  const int saved = dup(STDERR_FILENO);
  dup2(fd, STDERR_FILENO);
  XP_SysBeep();
  dup2(saved, STDERR_FILENO);
  close(saved);
}

// What arrives on `fd` within half a second; a terminal passes its output on a moment later.
std::string ReadArriving(int fd) {
  std::string bytes;
  pollfd ready = {fd, POLLIN, 0};
  char buffer[16];
  while (poll(&ready, 1, 500) == 1 && (ready.revents & POLLIN) != 0) {
    const ssize_t n = read(fd, buffer, sizeof buffer);
    if (n <= 0) break;
    bytes.append(buffer, static_cast<size_t>(n));
  }
  return bytes;
}

TEST(AlertSound, RingsTheBellOnATerminalOnly) {
  int controller = -1, terminal = -1;
  ASSERT_EQ(openpty(&controller, &terminal, nullptr, nullptr, nullptr), 0);
  BeepInto(terminal);
  EXPECT_EQ(ReadArriving(controller), "\a");
  close(terminal);
  close(controller);

  int pipeEnds[2];
  ASSERT_EQ(pipe(pipeEnds), 0);
  BeepInto(pipeEnds[1]);
  close(pipeEnds[1]);
  EXPECT_EQ(ReadArriving(pipeEnds[0]), "");
  close(pipeEnds[0]);
}

}  // namespace
