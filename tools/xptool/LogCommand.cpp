// xptool log: one line through the plug-in's log writer, and where it went.
#include <CoreServices/CoreServices.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "Command.h"
#include "services/Logging.h"

namespace xptool {
namespace {

// A whole decimal number within [min, max], or false.
bool ParseNumber(const std::string& text, long min, long max, long& value) {
  if (text.empty()) return false;
  char* end = nullptr;
  errno = 0;
  value = std::strtol(text.c_str(), &end, 10);
  return errno == 0 && *end == '\0' && value >= min && value <= max;
}

}  // namespace

int RunLog(const std::vector<std::string>& args) {
  Arguments a(args, {"app-type", "tag", "host-version"}, {"shallow"});
  if (!a.error().empty()) return Fail("log", a.error(), kUsage);
  if (!a.has("app-type") || !a.has("tag")) return Fail("log", "needs --app-type N and --tag T", kUsage);
  if (a.positionals().size() != 1) return Fail("log", "needs exactly one TEXT (quote it)", kUsage);
  long appType = 0;
  long hostVersion = 0;
  if (!ParseNumber(a.value("app-type"), SHRT_MIN, SHRT_MAX, appType)) {
    return Fail("log", "--app-type takes a whole number from -32768 to 32767", kUsage);
  }
  if (!ParseNumber(a.value("host-version", "0"), INT_MIN, INT_MAX, hostVersion)) {
    return Fail("log", "--host-version takes a whole number", kUsage);
  }

  fmx::TextAutoPtr text;
  text->Assign(a.positionals()[0].c_str(), fmx::Text::kEncoding_UTF8);
  XP7_WriteTxtToLog(static_cast<int>(hostVersion), static_cast<short>(appType), a.value("tag").c_str(), text,
                    a.has("shallow"));
  if (gThePluginLogPtr == nullptr) {
    return Fail("log", "no log file: \"Logs/Varn Logs\" could not be found or made above this program", kFailed);
  }
  if (appType != 1 && appType != 2) {
    std::printf("standard error\n");
    return 0;
  }
  UInt8 path[PATH_MAX];
  if (FSRefMakePath(gThePluginLogPtr, path, sizeof path) != noErr) return Fail("log", "the log file has no path", kFailed);
  std::printf("%s\n", reinterpret_cast<const char*>(path));
  return 0;
}

}  // namespace xptool
