// Logging and debug output: log files, the desktop debug file, the system log, debug texts.
#include "services/Logging.h"

#include <Carbon/Carbon.h>
#include <syslog.h>

#include <cstdio>
#include <string>
#include <vector>

#include "services/DateTime.h"
#include "services/Files.h"
#include "services/ForkHolder.h"
#include "services/LogLock.h"
#include "text/TextCore.h"

FSRef* gThePluginLogPtr = nullptr;
bool gDebugToFile = false;
FSRef* gDefaultDebugFSRefPtr = nullptr;

namespace {

constexpr short kServer = 1;
constexpr short kWebEngine = 2;
constexpr short kDebug = 101;
// From this host version on the web engine runs in one of two depths of folders.
constexpr int kWebEngineLayoutVersion = 53;
constexpr unsigned int kMaxTextChars = 1000;
constexpr UInt32 kTextType = 0x54455854;     // 'TEXT'
constexpr UInt32 kTextCreator = 0x74747874;  // 'ttxt'

struct LogPlace {
  const char* fileName;
  int foldersUp;
};

LogPlace PlaceOf(int hostVersion, short appType, bool shallowWebEngine) {
  switch (appType) {
    case kServer:
      return {"Varn Plugin FMServer.log", 3};
    case kWebEngine:
      if (hostVersion < kWebEngineLayoutVersion) return {"Varn Plugin Web Engine.log", 4};
      return {"Varn Plugin Web Engine.log", shallowWebEngine ? 3 : 5};
    case kDebug:
      return {"VarnDebug.log", 0};
    default:
      return {"Varn Plugin FMServer.log", 0};
  }
}

std::vector<UniChar> Units(const char* ascii) {
  std::vector<UniChar> units;
  for (; *ascii != '\0'; ++ascii) units.push_back(static_cast<UniChar>(*ascii));
  return units;
}

// Finds `name` in `parent`, creating it (a folder or an empty file) when it is missing.
OSErr FindOrCreate(const FSRef* parent, const char* name, bool folder, FSRef* out) {
  std::vector<UniChar> units = Units(name);
  OSErr err = FSMakeFSRefUnicode(parent, units.size(), units.data(), kTextEncodingUnknown, out);
  if (err != fnfErr) return err;
  err = folder ? FSCreateDirectoryUnicode(parent, units.size(), units.data(), kFSCatInfoNone, nullptr, out, nullptr,
                                          nullptr)
               : FSCreateFileUnicode(parent, units.size(), units.data(), kFSCatInfoNone, nullptr, out, nullptr);
  // Another process may have created it since the look-up: then it is there to be found,
  // and a failed creation does not hand out its reference.
  if (err == dupFNErr) err = FSMakeFSRefUnicode(parent, units.size(), units.data(), kTextEncodingUnknown, out);
  return err;
}

// The log file of the first caller that finds it; null while no search has succeeded.
const FSRef* LogFile(int hostVersion, short appType, bool shallowWebEngine) {
  LogLock lock;
  if (gThePluginLogPtr != nullptr) return gThePluginLogPtr;
  LogPlace place = PlaceOf(hostVersion, appType, shallowWebEngine);
  ProcessSerialNumber process;
  FSRef folder;
  if (GetCurrentProcess(&process) != noErr || GetProcessBundleLocation(&process, &folder) != noErr) return nullptr;
  for (int up = 0; up < place.foldersUp; ++up) {
    FSRef parent;
    if (FSGetCatalogInfo(&folder, kFSCatInfoNone, nullptr, nullptr, nullptr, &parent) != noErr) return nullptr;
    folder = parent;
  }
  FSRef logs, varnLogs, file;
  if (FindOrCreate(&folder, "Logs", true, &logs) != noErr ||
      FindOrCreate(&logs, "Varn Logs", true, &varnLogs) != noErr ||
      FindOrCreate(&varnLogs, place.fileName, false, &file) != noErr)
    return nullptr;
  gThePluginLogPtr = new FSRef(file);
  return gThePluginLogPtr;
}

// Appends the bytes at the end of the file's data fork, holding the log lock from opening
// to closing so that no other writer's bytes land inside them. Errors end it silently.
void AppendToFile(const FSRef* file, const char* bytes, size_t length) {
  LogLock lock(file);
  ForkHolder fork(file, DataForkName(), fsRdWrPerm);
  if (fork.error() != noErr) return;
  SInt64 size = 0;
  if (FSGetForkSize(fork.get(), &size) != noErr || FSSetForkPosition(fork.get(), fsFromStart, size) != noErr ||
      FSSetForkSize(fork.get(), fsFromStart, size + static_cast<SInt64>(length)) != noErr)
    return;
  FSWriteFork(fork.get(), fsAtMark, 0, length, bytes, nullptr);
}

// The local time as "YYYY-MM-DD hh:mm:ss".
std::string Now() {
  UInt32 seconds = 0;
  UCConvertCFAbsoluteTimeToSeconds(CFAbsoluteTimeGetCurrent(), &seconds);
  fmx::DateTimeAutoPtr dateTime;
  XP7_MacSecondsToFMXDateTime(seconds, dateTime);
  char iso[32] = "";
  XP7_FMXDateTimeToISODateCStr(dateTime, iso, sizeof iso);
  return iso;
}

}  // namespace

void XP7_WriteTxtToLog(int hostVersion, short appType, const char* tag, fmx::TextAutoPtr& text,
                       bool shallowWebEngine) {
  const FSRef* file = LogFile(hostVersion, appType, shallowWebEngine);
  if (file == nullptr) return;
  char utf8[kMaxTextChars + 1];
  XP7_TxtToCStr(text, 0, kMaxTextChars, sizeof utf8, false, utf8, fmx::Text::kEncoding_UTF8);
  if (appType == kServer || appType == kWebEngine) {
    std::string line = Now() + " [" + tag + "] " + utf8 + "\n";
    AppendToFile(file, line.data(), line.size());
  } else {
    std::fprintf(stderr, "[%s] %s\n", tag, utf8);
  }
}

void XP7_DebugToFile_SET(bool on) {
  gDebugToFile = on;
  if (!on) return;
  FSRef desktop;
  if (FSFindFolder(kOnSystemDisk, kDesktopFolderType, kDontCreateFolder, &desktop) != noErr) return;
  gDefaultDebugFSRefPtr = new FSRef();
  fmx::TextAutoPtr name;
  name->AssignWithLength("VARN DEBUG LOG.txt", 18, fmx::Text::kEncoding_ASCII_Mac);
  if (XP7_FSMakeFSRef(&desktop, name, gDefaultDebugFSRefPtr) == fnfErr)
    XP7_FSCreateFile_MakeFSRef(&desktop, name, kTextCreator, kTextType, gDefaultDebugFSRefPtr);
}

void XP7_DebugToFile(const char* text) {
  if (gDebugToFile) XP7_DebugToFileIntern(text);
}

void XP7_DebugToFileIntern(const char* text) {
  size_t length = std::char_traits<char>::length(text);
  if (gDefaultDebugFSRefPtr == nullptr || length == 0) return;
  AppendToFile(gDefaultDebugFSRefPtr, text, length);
}

void XP7_DebugLog(const char* text, fmx::TextAutoPtr& log) {
  XP7_AppendCStrToTxt(text, log, fmx::Text::kEncoding_ASCII_Mac);
  XP7_AppendCStrToTxt("\r", log, fmx::Text::kEncoding_ASCII_Mac);
}

void XP7_DebugLogWithTicks(const char* text, fmx::TextAutoPtr& log) {
  char ticks[16];
  std::snprintf(ticks, sizeof ticks, "%u ", static_cast<unsigned int>(TickCount()));
  XP7_AppendCStrToTxt(ticks, log, fmx::Text::kEncoding_ASCII_Mac);
  XP7_DebugLog(text, log);
}

void XP7_OSErrLToTxt(int err, fmx::TextAutoPtr& out) {
  char digits[16] = "0";
  if (err != 0) std::snprintf(digits, sizeof digits, "$$%d", err);
  XP7_CStrToTxt(digits, out, fmx::Text::kEncoding_ASCII_Mac);
}

fmx::errcode XP7_OSErrLToData(int err, fmx::Data& out) {
  fmx::TextAutoPtr text;
  XP7_OSErrLToTxt(err, text);
  return out.SetAsText(*text, out.GetLocale());
}

int XP7_WinToMacOSErr(int windowsError) {
  switch (windowsError) {
    case 2:  // ERROR_FILE_NOT_FOUND
      return fnfErr;
    case 3:  // ERROR_PATH_NOT_FOUND
      return dirNFErr;
    case 5:  // ERROR_ACCESS_DENIED
      return fBsyErr;
    case 8:  // ERROR_NOT_ENOUGH_MEMORY
      return memFullErr;
    case 38:  // ERROR_HANDLE_EOF
      return eofErr;
    case 80:   // ERROR_FILE_EXISTS
    case 183:  // ERROR_ALREADY_EXISTS
      return dupFNErr;
    case 87:  // ERROR_INVALID_PARAMETER
      return paramErr;
    default:
      return windowsError;
  }
}

void Vn_Mac_WriteToConsole(const char* text) { syslog(LOG_WARNING, "%s", text); }

void Vn_Mac_WriteToConsoleWithErr(const char* text, int err) {
  char message[1000];
  std::snprintf(message, sizeof message, "%s%d", text, err);
  Vn_Mac_WriteToConsole(message);
}

int VnDebugMessage(char*, long number) {
  char digits[24];
  return std::snprintf(digits, sizeof digits, "%ld", number);
}
