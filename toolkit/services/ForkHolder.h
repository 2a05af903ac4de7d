// Ownership of one open fork, closed when the holder goes, and the data fork's name.
#ifndef XPTOOLKIT_SERVICES_FORKHOLDER_H
#define XPTOOLKIT_SERVICES_FORKHOLDER_H

#include <CoreServices/CoreServices.h>

/// The name of the data fork, for opening it.
inline HFSUniStr255 DataForkName() {
  HFSUniStr255 name;
  FSGetDataForkName(&name);
  return name;
}

/// Opens a fork of a file and closes it on every path, also when a host call throws.
class ForkHolder {
 public:
  /// Opens the fork of `file` named by `forkName` with `permission`; error() tells how it went.
  ForkHolder(const FSRef* file, const HFSUniStr255& forkName, SInt8 permission)
      : error_(FSOpenFork(file, forkName.length, forkName.unicode, permission, &fork_)), open_(error_ == noErr) {}
  ForkHolder(const ForkHolder&) = delete;
  ForkHolder& operator=(const ForkHolder&) = delete;
  ~ForkHolder() { close(); }

  /// The result of opening: 0 when the fork is open.
  OSErr error() const { return error_; }
  FSIORefNum get() const { return fork_; }
  /// Closes the fork now and returns the platform's result; 0 when it was not open.
  OSErr close() {
    if (!open_) return noErr;
    open_ = false;
    return FSCloseFork(fork_);
  }

 private:
  FSIORefNum fork_ = 0;
  OSErr error_;
  bool open_;
};

#endif  // XPTOOLKIT_SERVICES_FORKHOLDER_H
