// A process without a display, as a server host is: the flash dialog and the alerts must
// neither abort nor hang it.
#import <AppKit/AppKit.h>

#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include "FlashEntryPoints.h"
#import "UIHarness.h"
#include "text/CFRef.h"

extern char** environ;

namespace {

// How long a call that shows nothing may take: it waits for nothing.
constexpr double kPromptly = 2.0;

// Runs this program again with --no-display-child, DISPLAY unset or naming a display that
// no server answers on, and expects its NoDisplayChild tests to pass.
class NoDisplay : public testing::TestWithParam<bool> {};

TEST_P(NoDisplay, TheDialogAndTheAlertsGiveUpQuietly) {
  std::vector<std::string> environment;
  for (char** entry = environ; *entry != nullptr; ++entry) {
    if (std::strncmp(*entry, "DISPLAY=", 8) != 0) environment.push_back(*entry);
  }
  struct stat info;
  int number = 4093;
  while (stat(("/tmp/.X11-unix/X" + std::to_string(number)).c_str(), &info) == 0) --number;
  if (GetParam()) environment.push_back("DISPLAY=:" + std::to_string(number));
  std::vector<char*> envp;
  for (std::string& entry : environment) envp.push_back(entry.data());
  envp.push_back(nullptr);
  char self[4096] = {};
  ASSERT_GT(readlink("/proc/self/exe", self, sizeof self - 1), 0);
  char flag[] = "--no-display-child";
  char* argv[] = {self, flag, nullptr};

  // The child's result comes as its last line, because GNUstep may reap the child before
  // waitpid could (see Driver in UIHarness.mm).
  int out[2];
  ASSERT_EQ(pipe(out), 0);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, out[1], STDOUT_FILENO);
  posix_spawn_file_actions_addclose(&actions, out[0]);
  pid_t child = 0;
  const int spawned = posix_spawn(&child, self, &actions, nullptr, argv, envp.data());
  posix_spawn_file_actions_destroy(&actions);
  close(out[1]);
  ASSERT_EQ(spawned, 0);
  std::string output;
  char buffer[512];
  pollfd readable = {out[0], POLLIN, 0};
  bool ended = false;  // its output closed: it has gone
  for (const double end = flashui::Now() + 60; !ended && flashui::Now() < end;) {
    if (poll(&readable, 1, 100) != 1) continue;
    const ssize_t n = read(out[0], buffer, sizeof buffer);
    ended = n <= 0;
    if (n > 0) output.append(buffer, static_cast<size_t>(n));
  }
  close(out[0]);
  if (!ended) kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  std::printf("%s", output.c_str());
  EXPECT_NE(output.find("no-display-child status 0\n"), std::string::npos)
      << "the child failed, crashed or hung (its output is above)";
}

INSTANTIATE_TEST_SUITE_P(Flash, NoDisplay, testing::Values(false, true),
                         [](const testing::TestParamInfo<bool>& info) {
                           return std::string(info.param ? "DisplayUnserved" : "DisplayUnset");
                         });

// The child's side.

int CallFlashEntry() {
  CFRef<CFStringRef> folder(CFStringCreateWithCString(nullptr, flashui::ResourcesDir().c_str(), kCFStringEncodingUTF8));
  return KestCocoa_CALLShowPluginFlashDialog(true, 60, 3, nullptr, nullptr, nullptr, folder.get(), nullptr);
}

TEST(NoDisplayChild, TheFlashEntryReturnsAtOnceEveryTime) {
  for (int round = 0; round < 2; ++round) {
    int result = -1;
    const double start = flashui::Now();
    std::thread([&result] { result = CallFlashEntry(); }).join();
    EXPECT_EQ(result, 0);
    EXPECT_EQ(CallFlashEntry(), 0);
    EXPECT_LT(flashui::Now() - start, kPromptly);
  }
  EXPECT_EQ(NSApp, nil);
}

TEST(NoDisplayChild, TheAlertsReturnAsAbortedOnes) {
  CFRef<CFStringRef> text(CFStringCreateWithCString(nullptr, "No one reads this", kCFStringEncodingUTF8));
  const double start = flashui::Now();
  EXPECT_EQ(CX_DisplayMessageAlert(text.get()), NSModalResponseAbort);
  EXPECT_EQ(CX_DisplayFlashDialogSimple(text.get()), NSModalResponseAbort);
  EXPECT_EQ(CX_DisplayMessageAlert2Button(text.get(), text.get(), text.get()), 0);
  XP64_DisplayMessageCStr("Nor this");
  EXPECT_LT(flashui::Now() - start, kPromptly);
  EXPECT_EQ(NSApp, nil);
}

}  // namespace
