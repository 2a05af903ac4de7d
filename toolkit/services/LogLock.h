// The lock that keeps concurrent log lines whole.
#ifndef XPTOOLKIT_SERVICES_LOGLOCK_H
#define XPTOOLKIT_SERVICES_LOGLOCK_H

#include <CoreServices/CoreServices.h>

#include <mutex>

/// Serialises the log writers: the threads of this process through one process-wide
/// mutex, and other processes through an exclusive advisory lock on the file itself.
class LogLock {
 public:
  /// Holds only the process-wide mutex, for settling where the log goes.
  LogLock();
  /// Holds the mutex and, when the file can be opened, its advisory lock.
  explicit LogLock(const FSRef* file);
  LogLock(const LogLock&) = delete;
  LogLock& operator=(const LogLock&) = delete;
  ~LogLock();

 private:
  std::unique_lock<std::mutex> inProcess_;
  int lockFile_ = -1;
};

#endif  // XPTOOLKIT_SERVICES_LOGLOCK_H
