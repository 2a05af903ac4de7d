// xptool substitute, lineends and switch: text search and editing, and switches strings.
#include <cstdio>
#include <memory>

#include "Command.h"
#include "params/Switches.h"
#include "text/ByteBlocks.h"
#include "text/TextSearch.h"

namespace xptool {
namespace {

// Reads FILE ("" for standard input) as UTF-8 into `txt`; on failure reports it
// and leaves the exit code in `exitCode`.
bool ReadText(const char* command, const std::string& file, fmx::TextAutoPtr& txt, int& exitCode) {
  std::string bytes, error;
  if (!ReadInput(file, bytes, error)) {
    exitCode = Fail(command, error, kFailed);
    return false;
  }
  if (bytes.size() > 0xFFFFFFFEu) {
    exitCode = Fail(command, "input larger than a host text can hold", kFailed);
    return false;
  }
  txt->AssignWithLength(bytes.data(), static_cast<uint32_t>(bytes.size()), fmx::Text::kEncoding_UTF8);
  return true;
}

int WriteText(const char* command, fmx::TextAutoPtr& txt) {
  char* raw = nullptr;
  unsigned int length = 0;
  if (XP7_TxtToBuf(txt, fmx::Text::kEncoding_UTF8, false, &raw, &length) != 0) {
    return Fail(command, "cannot encode the result", kFailed);
  }
  const std::unique_ptr<char[]> bytes(raw);
  if (!WriteOutput(std::string(bytes.get(), length))) return Fail(command, "cannot write standard output", kFailed);
  return 0;
}

}  // namespace

int RunSubstitute(const std::vector<std::string>& args) {
  Arguments a(args, {}, {});
  if (!a.error().empty()) return Fail("substitute", a.error(), kUsage);
  const std::vector<std::string>& p = a.positionals();
  if (p.size() < 2 || p.size() > 3) return Fail("substitute", "needs SEARCH, REPLACEMENT and at most one FILE", kUsage);
  if (p[0].empty()) return Fail("substitute", "SEARCH must not be empty", kUsage);
  fmx::TextAutoPtr txt, search, replacement;
  int exitCode = 0;
  if (!ReadText("substitute", p.size() > 2 ? p[2] : "", txt, exitCode)) return exitCode;
  search->AssignWithLength(p[0].data(), static_cast<uint32_t>(p[0].size()), fmx::Text::kEncoding_UTF8);
  replacement->AssignWithLength(p[1].data(), static_cast<uint32_t>(p[1].size()), fmx::Text::kEncoding_UTF8);
  XP7_SubstituteTxt(txt, search, replacement);
  return WriteText("substitute", txt);
}

int RunLineEnds(const std::vector<std::string>& args) {
  Arguments a(args, {}, {});
  if (!a.error().empty()) return Fail("lineends", a.error(), kUsage);
  const std::vector<std::string>& p = a.positionals();
  if (p.empty() || p.size() > 2) return Fail("lineends", "needs a mode (cr, crlf, lf-to-cr) and at most one FILE", kUsage);
  short mode;
  if (p[0] == "cr") {
    mode = 9;
  } else if (p[0] == "crlf") {
    mode = 10;
  } else if (p[0] == "lf-to-cr") {
    mode = 3;
  } else {
    return Fail("lineends", "unknown mode '" + p[0] + "' (cr, crlf or lf-to-cr)", kUsage);
  }
  fmx::TextAutoPtr txt;
  int exitCode = 0;
  if (!ReadText("lineends", p.size() > 1 ? p[1] : "", txt, exitCode)) return exitCode;
  XP7_ChangeLineEndsTxt(txt, mode);
  return WriteText("lineends", txt);
}

int RunSwitch(const std::vector<std::string>& args) {
  Arguments a(args, {"has", "tag", "end"}, {"number"});
  if (!a.error().empty()) return Fail("switch", a.error(), kUsage);
  if (a.has("has") == a.has("tag")) return Fail("switch", "give exactly one of --has SWITCH and --tag TAG", kUsage);
  if (a.positionals().size() != 1) return Fail("switch", "needs exactly one TEXT (quote it)", kUsage);
  if (a.has("has") && (a.has("number") || a.has("end"))) {
    return Fail("switch", "--number and --end go with --tag", kUsage);
  }
  if (a.has("number") && a.has("end")) return Fail("switch", "--end does not go with --number", kUsage);
  const std::string end = a.value("end", "-");
  if (end.size() != 1) return Fail("switch", "--end takes one character", kUsage);
  const std::string& text = a.positionals()[0];

  if (a.has("has")) {
    std::printf("%s\n", XP_HasSwitch(text.c_str(), a.value("has").c_str()) ? "true" : "false");
    return 0;
  }
  const std::string tag = a.value("tag");
  if (a.has("number")) {
    long n;
    if (XP_GetTaggedLong(text.c_str(), tag.c_str(), &n)) {
      std::printf("%ld\n", n);
    } else {
      std::printf("none\n");
    }
    return 0;
  }
  std::string value(text.size() + 1, '\0');
  const long at = XP_GetTaggedStr(text.c_str(), static_cast<long>(text.size()), tag.c_str(),
                                  static_cast<long>(tag.size()), end[0], 0, 1, false, value.data(),
                                  static_cast<long>(value.size()));
  if (at < 0) return Fail("switch", "no tag '" + tag + "' in the text", kFailed);
  std::printf("%s\n", value.c_str());
  return 0;
}

}  // namespace xptool
