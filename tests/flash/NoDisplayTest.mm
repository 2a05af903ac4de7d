// A process without a display, as a server host is: the flash dialog and the alerts must
// neither abort nor hang it.
#import <AppKit/AppKit.h>

#include <gtest/gtest.h>
#include <signal.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include "FlashEntryPoints.h"
#import "UIHarness.h"
#include "text/CFRef.h"

extern char** environ;

namespace {

// How long a call that shows nothing may take: it must not wait for anything.
constexpr double kPromptly = 2.0;

struct ChildCase {
  const char* name;
  bool unreachable;  // DISPLAY names a display no server answers on; otherwise it is unset
};

class NoDisplay : public testing::TestWithParam<ChildCase> {};

// A display number nobody serves on this machine.
std::string UnservedDisplay() {
  struct stat info;
  for (int number = 4093; number > 1000; --number) {
    const std::string socket = "/tmp/.X11-unix/X" + std::to_string(number);
    if (stat(socket.c_str(), &info) != 0) return ":" + std::to_string(number);
  }
  return ":4093";
}

TEST_P(NoDisplay, TheDialogAndTheAlertsGiveUpQuietly) {
  std::vector<std::string> environment;
  for (char** entry = environ; *entry != nullptr; ++entry) {
    if (std::strncmp(*entry, "DISPLAY=", 8) != 0) environment.push_back(*entry);
  }
  if (GetParam().unreachable) environment.push_back("DISPLAY=" + UnservedDisplay());
  std::vector<char*> envp;
  for (std::string& entry : environment) envp.push_back(entry.data());
  envp.push_back(nullptr);
  std::string program = flashui::SelfPath();
  std::string flag = "--no-display-child";
  char* argv[] = {program.data(), flag.data(), nullptr};

  pid_t child = 0;
  ASSERT_EQ(posix_spawn(&child, program.c_str(), nullptr, nullptr, argv, envp.data()), 0);
  int status = 0;
  const bool ended = flashui::WaitUntil([&] { return waitpid(child, &status, WNOHANG) == child; }, 60.0);
  if (!ended) {
    kill(child, SIGKILL);
    waitpid(child, &status, 0);
  }
  ASSERT_TRUE(ended) << "the child hung";
  ASSERT_TRUE(WIFEXITED(status)) << "the child died of signal " << WTERMSIG(status);
  EXPECT_EQ(WEXITSTATUS(status), 0) << "the child's checks failed (its output is above)";
}

INSTANTIATE_TEST_SUITE_P(Flash, NoDisplay,
                         testing::Values(ChildCase{"DisplayUnset", false}, ChildCase{"DisplayUnserved", true}),
                         [](const testing::TestParamInfo<ChildCase>& info) { return std::string(info.param.name); });

// The child's side, run only with --no-display-child.

int CallFlashEntry() {
  CFRef<CFStringRef> folder(CFStringCreateWithCString(nullptr, flashui::ResourcesDir().c_str(), kCFStringEncodingUTF8));
  return KestCocoa_CALLShowPluginFlashDialog(true, 60, 3, nullptr, nullptr, nullptr, folder.get(), nullptr);
}

TEST(NoDisplayChild, TheFlashEntryReturnsAtOnce) {
  for (int round = 0; round < 2; ++round) {
    int result = -1;
    double start = flashui::Now();
    std::thread caller([&result] { result = CallFlashEntry(); });
    caller.join();
    EXPECT_EQ(result, 0);
    EXPECT_LT(flashui::Now() - start, kPromptly);

    start = flashui::Now();
    EXPECT_EQ(CallFlashEntry(), 0);
    EXPECT_LT(flashui::Now() - start, kPromptly);
  }
  EXPECT_EQ(NSApp, nil);
}

TEST(NoDisplayChild, TheAlertsReturnAsAbortedOnes) {
  CFRef<CFStringRef> text(CFStringCreateWithCString(nullptr, "No one to read this", kCFStringEncodingUTF8));
  const double start = flashui::Now();
  EXPECT_EQ(CX_DisplayMessageAlert(text.get()), NSModalResponseAbort);
  EXPECT_EQ(CX_DisplayFlashDialogSimple(text.get()), NSModalResponseAbort);
  EXPECT_EQ(CX_DisplayMessageAlert2Button(text.get(), text.get(), text.get()), 0);
  XP64_DisplayMessageCStr("No one to read this either");
  EXPECT_LT(flashui::Now() - start, kPromptly);
  EXPECT_EQ(NSApp, nil);
}

}  // namespace
