// xptool mac2win and xptool win2mac: the toolkit's Mac Roman / code page 1252 tables.
#include "Command.h"
#include "encoding/LegacyTables.h"

namespace xptool {
namespace {

int Run(const char* name, const std::vector<std::string>& args, void (*convert)(char*, long, short)) {
  Arguments a(args, {}, {"euro"});
  if (!a.error().empty()) return Fail(name, a.error(), kUsage);
  if (a.positionals().size() > 1) return Fail(name, "at most one input file", kUsage);
  std::string bytes, error;
  if (!ReadInput(a.positionals().empty() ? "" : a.positionals()[0], bytes, error)) return Fail(name, error, kFailed);
  // Selector 2 picks the euro tables; any other value the plain ones.
  convert(bytes.data(), static_cast<long>(bytes.size()), a.has("euro") ? 2 : 0);
  if (!WriteOutput(bytes)) return Fail(name, "cannot write standard output", kFailed);
  return 0;
}

}  // namespace

int RunMacToWin(const std::vector<std::string>& args) { return Run("mac2win", args, XP_MacToWinStrN); }

int RunWinToMac(const std::vector<std::string>& args) { return Run("win2mac", args, XP_WinToMacStrN); }

}  // namespace xptool
