// The system log in tests: runs code in a child process that owns the log socket and
// returns what reached it.
//
// syslog(3) sends each message as a datagram to the socket /dev/log, which the C library
// does not let a program move. The child therefore puts a socket of its own there: in a
// mount namespace of its own with a fresh /dev when the system allows one (root, or an
// unprivileged user namespace), so that no other process is affected; otherwise, where
// /dev/log does not exist (a container without a log daemon), at /dev/log itself for the
// time of the run. Where neither is possible the run says why, and the caller skips.
#ifndef XPTOOLKIT_TESTS_SYSTEMLOG_H
#define XPTOOLKIT_TESTS_SYSTEMLOG_H

#include <errno.h>
#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <syslog.h>
#include <unistd.h>

#include <cstring>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

namespace testing_syslog {

/// What one run saw.
struct Run {
  std::string unavailable;            ///< why no log socket could be owned; empty when one was
  std::string result;                 ///< what the code returned
  std::vector<std::string> messages;  ///< the datagrams as sent: "<priority>time tag: text"
};

namespace detail {

constexpr const char* kLogPath = "/dev/log";

inline bool WriteFile(const char* path, const std::string& text) {
  std::ofstream file(path);
  return static_cast<bool>(file << text << std::flush);
}

// A mount namespace of our own, as root or as the root of a new user namespace, with a
// tmpfs on /dev that only this process sees.
inline bool PrivateDev() {
  const uid_t uid = getuid();
  const gid_t gid = getgid();
  if (unshare(CLONE_NEWNS) != 0) {
    if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) return false;
    WriteFile("/proc/self/setgroups", "deny");
    if (!WriteFile("/proc/self/uid_map", "0 " + std::to_string(uid) + " 1") ||
        !WriteFile("/proc/self/gid_map", "0 " + std::to_string(gid) + " 1")) {
      return false;
    }
  }
  // Our mounts must not travel back to the parent's namespace.
  return mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
         mount("tmpfs", "/dev", "tmpfs", 0, "mode=0755") == 0;
}

// Binds `fd` at /dev/log. Another test may hold it for a moment; a socket file that nobody
// listens on is left over from a run that died, and is taken over.
inline std::string BindLogSocket(int fd) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::strcpy(address.sun_path, kLogPath);
  const auto* named = reinterpret_cast<const sockaddr*>(&address);
  for (int attempt = 0; attempt < 250; ++attempt) {
    if (bind(fd, named, sizeof address) == 0) return {};
    if (errno != EADDRINUSE) return std::string("cannot bind /dev/log: ") + std::strerror(errno);
    const int probe = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    const bool listened = connect(probe, named, sizeof address) == 0;
    close(probe);
    if (!listened) {
      unlink(kLogPath);
    } else {
      usleep(20000);
    }
  }
  return "/dev/log belongs to a running log daemon, and no mount namespace is allowed";
}

// The child's side: owns the socket, runs `code`, and writes the run to `out` as
// NUL-separated fields: the reason, the result, then each message.
inline void RunInChild(const std::function<std::string()>& code, int out) {
  std::string report;
  const bool privateDev = PrivateDev();
  const int fd = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  const std::string reason = BindLogSocket(fd);
  report += reason + '\0';
  if (reason.empty()) {
    closelog();  // forget a connection made before the fork
    report += code() + '\0';
    char datagram[4096];
    ssize_t size;
    while ((size = recv(fd, datagram, sizeof datagram, MSG_DONTWAIT)) >= 0) {
      report.append(datagram, strnlen(datagram, static_cast<size_t>(size)));
      report += '\0';
    }
    closelog();
    if (!privateDev) unlink(kLogPath);
  }
  for (size_t done = 0; done < report.size();) {
    const ssize_t n = write(out, report.data() + done, report.size() - done);
    if (n <= 0) break;
    done += static_cast<size_t>(n);
  }
}

}  // namespace detail

/// Runs `code` in a child process whose system log is a socket the child owns, and returns
/// what `code` returned (a text without NUL) and every message it logged. The child ends with _exit, so that
/// nothing of the test program's exit runs twice.
inline Run RunWithSystemLog(const std::function<std::string()>& code) {
  Run run;
  int pipeEnds[2];
  if (pipe(pipeEnds) != 0) {
    run.unavailable = "no pipe";
    return run;
  }
  const pid_t child = fork();
  if (child == 0) {
    close(pipeEnds[0]);
    detail::RunInChild(code, pipeEnds[1]);
    _exit(0);
  }
  close(pipeEnds[1]);
  std::string report;
  char chunk[4096];
  ssize_t n;
  while ((n = read(pipeEnds[0], chunk, sizeof chunk)) > 0) report.append(chunk, static_cast<size_t>(n));
  close(pipeEnds[0]);
  int status = 0;
  if (child < 0 || waitpid(child, &status, 0) != child || !WIFEXITED(status) || WEXITSTATUS(status) != 0) {
    run.unavailable = "the child process did not end normally";
    return run;
  }
  std::vector<std::string> fields;
  for (size_t start = 0, end; (end = report.find('\0', start)) != std::string::npos; start = end + 1) {
    fields.push_back(report.substr(start, end - start));
  }
  if (fields.empty()) {
    run.unavailable = "the child reported nothing";
  } else if (!fields[0].empty() || fields.size() < 2) {
    run.unavailable = fields[0];
  } else {
    run.result = fields[1];
    run.messages.assign(fields.begin() + 2, fields.end());
  }
  return run;
}

}  // namespace testing_syslog

#endif  // XPTOOLKIT_TESTS_SYSTEMLOG_H
