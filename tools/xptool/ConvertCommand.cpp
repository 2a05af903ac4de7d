// xptool convert and xptool encodings: bytes from one host encoding to another
// through host text.
#include <cstdio>
#include <cstring>

#include "Command.h"
#include "EncodingNames.h"
#include "MemHost.h"
#include "text/TextCore.h"

namespace xptool {
namespace {

void Decode(const std::string& bytes, fmx::Text::Encoding from, fmx::TextAutoPtr& txt) {
  if (from != ByteValues) {
    txt->AssignWithLength(bytes.data(), static_cast<uint32_t>(bytes.size()), from);
    return;
  }
  for (unsigned char b : bytes) XP7_AppendUTF32CharToTxt(b, txt);
}

// The host writes NUL-terminated bytes, so the text goes out in runs between
// its U+0000 characters, each of which becomes one zero byte.
std::string Encode(fmx::TextAutoPtr& txt, fmx::Text::Encoding to) {
  const uint32_t size = txt->GetSize();
  std::string out;
  if (to == ByteValues) {
    for (uint32_t pos = 0; pos < size; ++pos) {
      unsigned char b;
      if (XP7_GetOneByte_Checked(txt, size, pos, &b)) out += static_cast<char>(b);
    }
    return out;
  }
  fmx::TextAutoPtr nul;
  const unsigned short zero[1] = {0};
  nul->AssignUnicodeWithLength(zero, 1);
  std::string buffer;
  for (uint32_t start = 0; start <= size;) {
    uint32_t end = txt->Find(*nul, start);
    if (end == 0xFFFFFFFF) end = size;
    const uint32_t run = end - start;
    buffer.resize(run * 4ULL + 1);  // four bytes cover any character of any host encoding
    txt->GetBytes(buffer.data(), static_cast<uint32_t>(buffer.size() - 1), start, run, to);
    out.append(buffer.c_str(), std::strlen(buffer.c_str()));
    if (end == size) break;
    out += '\0';
    start = end + 1;
  }
  return out;
}

}  // namespace

int RunConvert(const std::vector<std::string>& args) {
  Arguments a(args, {"from", "to"}, {});
  if (!a.error().empty()) return Fail("convert", a.error(), kUsage);
  if (!a.has("from") || !a.has("to")) return Fail("convert", "--from and --to are required", kUsage);
  if (a.positionals().size() > 1) return Fail("convert", "at most one input file", kUsage);
  fmx::Text::Encoding from, to;
  for (auto [option, encoding] : {std::make_pair("from", &from), std::make_pair("to", &to)}) {
    if (!ParseEncoding(a.value(option), *encoding)) {
      return Fail("convert", "unknown encoding '" + a.value(option) + "' (see 'xptool encodings')", kUsage);
    }
  }
  std::string bytes, error;
  if (!ReadInput(a.positionals().empty() ? "" : a.positionals()[0], bytes, error)) {
    return Fail("convert", error, kFailed);
  }
  if (bytes.size() > 0xFFFFFFFEu) return Fail("convert", "input larger than a host text can hold", kFailed);
  fmx::TextAutoPtr txt;
  Decode(bytes, from, txt);
  if (!WriteOutput(Encode(txt, to))) return Fail("convert", "cannot write standard output", kFailed);
  return 0;
}

int RunEncodings(const std::vector<std::string>& args) {
  if (!args.empty()) return Fail("encodings", "takes no arguments", kUsage);
  std::printf("%-6s %s\n", "number", "name");
  for (const EncodingName& e : EncodingNames()) std::printf("%-6d %s\n", static_cast<int>(e.encoding), e.name);
  std::printf("\nNative stands for %d here.\n", static_cast<int>(memhost::NativeEncoding()));
  return 0;
}

}  // namespace xptool
