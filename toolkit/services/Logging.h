// Logging and debug output: the plug-in's log file, the desktop debug file, the system
// log, debug texts and error numbers as text.
//
// The log file is found once per process, by the first XP7_WriteTxtToLog that succeeds,
// counting folders up from the location of the current process's bundle
// (GetProcessBundleLocation): the host application's bundle inside the host, the program
// file itself for a program outside a bundle. Where a program runs from therefore decides
// where its log goes; tests and tools choose it by where they place the program.
//
// Lines from any number of threads and processes stay whole: each line's append holds a
// process-wide mutex and an advisory lock on the file (docs/logging.md). Nothing here
// reports a failure; host text errors raise the host's exceptions.
#ifndef XPTOOLKIT_SERVICES_LOGGING_H
#define XPTOOLKIT_SERVICES_LOGGING_H

#include <CoreServices/CoreServices.h>

#include "text/HostValues.h"

/// The plug-in's log file (allocated with new), settled by the first XP7_WriteTxtToLog
/// that finds or creates it; null until then. Never freed nor reset.
extern FSRef* gThePluginLogPtr;
/// Whether XP7_DebugToFile writes to the desktop debug file; off at load.
extern bool gDebugToFile;
/// The desktop debug file (allocated with new) of the last XP7_DebugToFile_SET(true) that
/// found the desktop, or null. Switching on again allocates a new one without freeing the old.
extern FSRef* gDefaultDebugFSRefPtr;

/// Appends "time [tag] text\n" (the first 1000 characters of `text` in UTF-8, the local time
/// as "YYYY-MM-DD hh:mm:ss") to the log file for appType 1 (server) and 2 (web engine).
/// Any other type writes "[tag] text\n" to standard error, but only once a log file exists:
/// the first call of any type settles the file, by the table of docs/logging.md.
void XP7_WriteTxtToLog(int hostVersion, short appType, const char* tag, fmx::TextAutoPtr& text,
                       bool shallowWebEngine);

/// Switches the desktop debug file on or off; on looks up, or creates, "VARN DEBUG LOG.txt"
/// on the desktop. Without a desktop the output stays on and writes nothing.
void XP7_DebugToFile_SET(bool on);
/// XP7_DebugToFileIntern(text) while debug output to the file is on.
void XP7_DebugToFile(const char* text);
/// Appends the bytes of `text`, without its NUL and without a line end, to the desktop
/// debug file; an empty text writes nothing.
void XP7_DebugToFileIntern(const char* text);

/// Appends `text` (Mac Roman) and a carriage return to `log`.
void XP7_DebugLog(const char* text, fmx::TextAutoPtr& log);
/// Appends the tick count ("%u"), a blank, `text` (Mac Roman) and a carriage return to `log`.
void XP7_DebugLogWithTicks(const char* text, fmx::TextAutoPtr& log);

/// Replaces `out` by "0" for 0, else "$$" and the number ("$$-43").
void XP7_OSErrLToTxt(int err, fmx::TextAutoPtr& out);
/// Stores the text of XP7_OSErrLToTxt into `out` with `out`'s locale; returns the host's code.
fmx::errcode XP7_OSErrLToData(int err, fmx::Data& out);
/// The Mac OS error number of a Windows system error (183 gives -48); unknown numbers
/// come back unchanged.
int XP7_WinToMacOSErr(int windowsError);

/// Writes `text` to the system log at warning level.
void Vn_Mac_WriteToConsole(const char* text);
/// Writes `text` immediately followed by `err` ("%s%d", at most 999 bytes) to the system log.
void Vn_Mac_WriteToConsoleWithErr(const char* text, int err);
/// Returns the length of `number` written as "%ld"; shows nothing, `text` is not read.
int VnDebugMessage(char* text, long number);

#endif  // XPTOOLKIT_SERVICES_LOGGING_H
