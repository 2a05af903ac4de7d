// Child processes are started with posix_spawn and waited for by their own id only.
#include "XDisplay.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <stdlib.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <thread>

extern char** environ;

namespace demo {
namespace {

// Starts `argv` with standard input and output on /dev/null; descriptors without
// close-on-exec stay open in the child. Returns the child's id or -1.
pid_t Spawn(const std::vector<std::string>& argv) {
  std::vector<char*> args;
  for (const std::string& arg : argv) args.push_back(const_cast<char*>(arg.c_str()));
  args.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
  posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
  pid_t pid = -1;
  const int failed = posix_spawnp(&pid, args[0], &actions, nullptr, args.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  return failed == 0 ? pid : -1;
}

bool Wait(pid_t pid) {
  int status = 0;
  while (waitpid(pid, &status, 0) < 0) {
    if (errno != EINTR) return false;
  }
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

void Sleep(double seconds) {
  std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
}

}  // namespace

bool RunQuietly(const std::vector<std::string>& argv) {
  const pid_t pid = Spawn(argv);
  return pid > 0 && Wait(pid);
}

bool PrivateXServer::Start(std::string& error) {
  int fds[2];
  if (pipe2(fds, O_CLOEXEC) != 0) {
    error = std::string("pipe: ") + std::strerror(errno);
    return false;
  }
  // Only the write end goes to Xvfb, which reports the display it took there once it
  // accepts connections: no race for a display number with other servers.
  // F_DUPFD leaves close-on-exec off the copy, so that Xvfb inherits it.
  const int writeEnd = fcntl(fds[1], F_DUPFD, 3);
  close(fds[1]);
  const std::string fd = std::to_string(writeEnd);
  pid_ = fork();
  if (pid_ == 0) {
    // A demo killed from outside (a time-out sends SIGKILL) takes its server with it.
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    const int null = open("/dev/null", O_RDWR);
    dup2(null, 0);
    dup2(null, 1);
    dup2(null, 2);
    execlp("Xvfb", "Xvfb", "-displayfd", fd.c_str(), "-screen", "0", "1280x1024x24", "-nolisten", "tcp",
           static_cast<char*>(nullptr));
    _exit(127);
  }
  close(writeEnd);
  if (pid_ < 0) {
    close(fds[0]);
    error = "Xvfb cannot be started (apt-get install xvfb)";
    return false;
  }
  std::string number;
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  while (number.find('\n') == std::string::npos && std::chrono::steady_clock::now() < deadline) {
    pollfd p = {fds[0], POLLIN, 0};
    if (poll(&p, 1, 200) <= 0) continue;
    char buffer[32];
    const ssize_t n = read(fds[0], buffer, sizeof buffer);
    if (n <= 0) break;
    number.append(buffer, static_cast<size_t>(n));
  }
  close(fds[0]);
  while (!number.empty() && (number.back() == '\n' || number.back() == '\r')) number.pop_back();
  if (number.empty()) {
    error = "Xvfb reported no display";
    Stop();
    return false;
  }
  display_ = ":" + number;
  setenv("DISPLAY", display_.c_str(), 1);
  return true;
}

void PrivateXServer::Stop() {
  if (pid_ <= 0) return;
  kill(pid_, SIGTERM);
  Wait(pid_);
  pid_ = -1;
}

void StartGNUstepDaemons() {
  for (const char* daemon : {"gdnc", "gpbs"}) {
    // Not waited for: a daemon stays, and a second copy ends by itself and is reaped by
    // nobody until the demo ends, which is harmless for two processes.
    Spawn({daemon});
  }
}

bool ClickAt(long x, long y) {
  // A quick "click 1" gets lost: GNUstep needs the pointer to have arrived, and the
  // button to stay down a moment, to see a press and a release.
  if (!RunQuietly({"xdotool", "mousemove", std::to_string(x), std::to_string(y)})) return false;
  Sleep(0.3);
  if (!RunQuietly({"xdotool", "mousedown", "1"})) return false;
  Sleep(0.15);
  return RunQuietly({"xdotool", "mouseup", "1"});
}

bool Screenshot(const std::string& file, long x, long y, long width, long height) {
  const std::string geometry =
      std::to_string(width) + "x" + std::to_string(height) + "+" + std::to_string(x) + "+" + std::to_string(y);
  return RunQuietly({"import", "-window", "root", "-crop", geometry, "+repage", file});
}

}  // namespace demo
