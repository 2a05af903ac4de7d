// Apple's Process Manager calls (HIServices' Processes.h, reached through Carbon) that
// locate the running program.
#ifndef XPPLATFORM_HISERVICES_PROCESSES_H
#define XPPLATFORM_HISERVICES_PROCESSES_H

#include <CoreServices/Files.h>
#include <MacTypes.h>

#ifdef __cplusplus
extern "C" {
#endif

/// A process; {0, kCurrentProcess} always means the calling one.
struct ProcessSerialNumber {
  UInt32 highLongOfPSN;
  UInt32 lowLongOfPSN;
};
typedef struct ProcessSerialNumber ProcessSerialNumber;
typedef ProcessSerialNumber* ProcessSerialNumberPtr;

enum { kNoProcess = 0, kSystemProcess = 1, kCurrentProcess = 2 };

/// The serial number of the calling process: off Apple systems {0, process ID}.
OSErr GetCurrentProcess(ProcessSerialNumber* PSN);
/// The bundle the process runs from: the folder X of an executable that lies in
/// X/Contents/MacOS/ where X ends in ".app" or ".bundle", as on Apple systems; for an
/// executable outside such a bundle, the folder that holds it. Only the calling process
/// can be asked here: procNotFound for any other, paramErr for NULL pointers.
OSStatus GetProcessBundleLocation(const ProcessSerialNumber* psn, FSRef* location);

#ifdef __cplusplus
}
#endif

#endif
