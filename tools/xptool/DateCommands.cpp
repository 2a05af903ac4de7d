// xptool date and xptool strings: Mac seconds as the toolkit shows them, and
// localized messages from a bundle's string tables.
#include <CoreFoundation/CoreFoundation.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "Command.h"
#include "services/DateTime.h"
#include "text/CFRef.h"
#include "text/Numbers.h"
#include "text/PlatformStrings.h"

namespace xptool {
namespace {

// A whole number in decimal or, after "0x", in hex; nothing else may follow it.
bool ParseUInt32(const std::string& s, unsigned int& out) {
  if (s.empty() || s[0] == '-' || s[0] == '+' || s[0] == ' ') return false;
  errno = 0;
  char* end = nullptr;
  unsigned long long n = std::strtoull(s.c_str(), &end, 0);
  if (errno != 0 || *end != '\0' || n > 0xFFFFFFFFull) return false;
  out = static_cast<unsigned int>(n);
  return true;
}

// The key format goes to a printf-style formatter with one unsigned int, so anything but
// exactly one plain integer conversion would read arguments that are not there.
bool IsKeyFormat(const std::string& format) {
  int conversions = 0;
  for (size_t i = 0; i < format.size(); ++i) {
    if (format[i] != '%') continue;
    if (++i < format.size() && format[i] == '%') continue;
    while (i < format.size() && std::string("-+ #0").find(format[i]) != std::string::npos) ++i;
    while (i < format.size() && format[i] >= '0' && format[i] <= '9') ++i;
    if (i >= format.size() || std::string("diuoxX").find(format[i]) == std::string::npos) return false;
    ++conversions;
  }
  return conversions == 1;
}

// Host text as UTF-8, through the toolkit's own CFString bridge.
std::string Utf8Of(fmx::TextAutoPtr& text) {
  CFStringRef made = nullptr;
  XP7_TxtToCFStringRef(text, made);
  CFRef<CFStringRef> string(made);
  char* bytes = XP7_CFStringRefToCStr(string.get());
  std::string utf8 = bytes != nullptr ? bytes : "";
  delete[] bytes;
  return utf8;
}

std::string PascalString(const unsigned char* p) { return std::string(reinterpret_cast<const char*>(p + 1), p[0]); }

}  // namespace

int RunDate(const std::vector<std::string>& args) {
  Arguments a(args, {}, {});
  if (!a.error().empty()) return Fail("date", a.error(), kUsage);
  if (a.positionals().size() != 1) return Fail("date", "expects one MACSECONDS", kUsage);
  unsigned int macSeconds = 0;
  if (!ParseUInt32(a.positionals()[0], macSeconds)) {
    return Fail("date", "'" + a.positionals()[0] + "' is not a number from 0 to 4294967295", kUsage);
  }
  fmx::DateTimeAutoPtr dateTime;
  XP7_MacSecondsToFMXDateTime(macSeconds, dateTime);
  fmx::FixPtAutoPtr secondsOfDay;
  dateTime->GetSecsSinceMidnight(*secondsOfDay);
  char iso[21];
  XP7_FMXDateTimeToISODateCStr(dateTime, iso, sizeof iso);
  std::printf("host:   day %lld, second %u\n", static_cast<long long>(dateTime->GetDaysSinceEpoch()),
              XP7_FixPtToUInt32(secondsOfDay));
  std::printf("iso:    %s\n", iso);
  const struct {
    const char* name;
    signed char flag;
  } styles[] = {{"short", 0}, {"medium", 2}, {"long", 1}};
  for (const auto& style : styles) {
    unsigned char text[256];
    XP7_DateString(macSeconds, style.flag, text, nullptr);
    std::printf("%-7s %s\n", (std::string(style.name) + ":").c_str(), PascalString(text).c_str());
  }
  return 0;
}

int RunStrings(const std::vector<std::string>& args) {
  Arguments a(args, {"format"}, {"cut"});
  if (!a.error().empty()) return Fail("strings", a.error(), kUsage);
  if (a.positionals().size() != 3) return Fail("strings", "expects BUNDLE TABLE ID", kUsage);
  const std::string& folder = a.positionals()[0];
  const std::string& table = a.positionals()[1];
  unsigned int id = 0;
  if (!ParseUInt32(a.positionals()[2], id)) {
    return Fail("strings", "'" + a.positionals()[2] + "' is not a message number", kUsage);
  }
  const std::string format = a.value("format", "%d");
  if (!IsKeyFormat(format)) {
    return Fail("strings", "--format must hold exactly one integer conversion such as %d", kUsage);
  }
  CFRef<CFURLRef> url(CFURLCreateFromFileSystemRepresentation(
      kCFAllocatorDefault, reinterpret_cast<const UInt8*>(folder.c_str()), static_cast<CFIndex>(folder.size()), true));
  CFRef<CFBundleRef> bundle(url ? CFBundleCreate(kCFAllocatorDefault, url.get()) : nullptr);
  if (!bundle) return Fail("strings", "no bundle at '" + folder + "'", kFailed);
  fmx::TextAutoPtr message;
  XP7_Do_GetString(reinterpret_cast<unsigned long>(bundle.get()), table.c_str(), format.c_str(), id, message,
                   a.has("cut"));
  if (message->GetSize() == 0) {
    return Fail("strings", "no message " + std::to_string(id) + " in table '" + table + "'", kFailed);
  }
  std::printf("%s\n", Utf8Of(message).c_str());
  return 0;
}

}  // namespace xptool
