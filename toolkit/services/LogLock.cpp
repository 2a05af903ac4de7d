// The log lock, the one place where the toolkit calls the system's file locking.
//
// The File Manager offers no lock that other processes honour, so the file is locked with
// flock(), which macOS and Linux both have. flock() and not fcntl(): a process loses its
// fcntl() locks on a file as soon as it closes any descriptor of it, which closing the fork
// after each line does; flock() locks belong to the descriptor opened here.
#include "services/LogLock.h"

#include <cerrno>
#include <climits>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace {

std::mutex gLogMutex;

}  // namespace

LogLock::LogLock() : inProcess_(gLogMutex) {}

LogLock::LogLock(const FSRef* file) : inProcess_(gLogMutex) {
  UInt8 path[PATH_MAX];
  if (FSRefMakePath(file, path, sizeof path) != noErr) return;
  lockFile_ = open(reinterpret_cast<const char*>(path), O_RDONLY | O_CLOEXEC);
  if (lockFile_ < 0) return;
  while (flock(lockFile_, LOCK_EX) != 0 && errno == EINTR) {
  }
}

LogLock::~LogLock() {
  // Closing the descriptor drops its lock.
  if (lockFile_ >= 0) close(lockFile_);
}
