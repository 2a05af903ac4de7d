// xptool urlencode, utf8 and reinterpret: the toolkit's UTF-8 text, URL encoding
// and charset repair on files.
//
// The input is made into host text in one host call; the toolkit functions that
// go character by character then run over slices of it, cut where they read every
// character as in one call, so that large inputs show progress and their output
// leaves as it is made.
#include <exception>
#include <functional>
#include <new>
#include <string>

#include "Command.h"
#include "EncodingNames.h"
#include "Progress.h"
#include "encoding/Reinterpret.h"
#include "encoding/URLEncoding.h"
#include "encoding/UTF8.h"
#include "text/TextCore.h"

namespace xptool {
namespace {

constexpr size_t kMaxUnits = 0xFFFFFFFE;
constexpr uint32_t kSlice = 1u << 20;

using Convert = std::function<void(fmx::TextAutoPtr& in, fmx::TextAutoPtr& out)>;
using SliceEnd = std::function<uint32_t(uint32_t at)>;

// Reads the one optional input file of `a`, after `firstFile` other positionals;
// on failure reports it and sets `code`.
bool ReadOneInput(const char* name, const Arguments& a, size_t firstFile, std::string& bytes, int& code) {
  if (a.positionals().size() > firstFile + 1) {
    code = Fail(name, "at most one input file", kUsage);
    return false;
  }
  std::string error;
  if (!ReadInput(a.positionals().size() > firstFile ? a.positionals()[firstFile] : "", bytes, error)) {
    code = Fail(name, error, kFailed);
    return false;
  }
  if (bytes.size() > kMaxUnits) {
    code = Fail(name, "input larger than a host text can hold", kFailed);
    return false;
  }
  return true;
}

bool ParseOption(const char* name, const Arguments& a, const char* option, fmx::Text::Encoding& enc, int& code) {
  if (ParseEncoding(a.value(option), enc)) return true;
  code = Fail(name, "unknown encoding '" + a.value(option) + "' (see 'xptool encodings')", kUsage);
  return false;
}

// Host text of `bytes` decoded in `enc`; ByteValues gives one character per byte,
// which is how the toolkit holds UTF-8 text.
void TextFromBytes(const std::string& bytes, fmx::Text::Encoding enc, fmx::TextAutoPtr& txt) {
  if (enc != ByteValues) {
    txt->AssignWithLength(bytes.data(), static_cast<uint32_t>(bytes.size()), enc);
    return;
  }
  std::u16string widened(bytes.size(), u'\0');
  for (size_t i = 0; i < bytes.size(); ++i) widened[i] = static_cast<unsigned char>(bytes[i]);
  txt->AssignUnicodeWithLength(reinterpret_cast<const unsigned short*>(widened.data()),
                               static_cast<uint32_t>(widened.size()));
}

// The bytes of a text whose characters are all below U+0100 (UTF-8 text, or the
// ASCII of URL encoding), read in one host call.
std::string BytesOf(fmx::TextAutoPtr& txt) {
  const uint32_t size = txt->GetSize();
  std::u16string units(size, u'\0');
  txt->GetUnicode(reinterpret_cast<unsigned short*>(units.data()), 0, size);
  std::string bytes(size, '\0');
  for (uint32_t i = 0; i < size; ++i) bytes[i] = static_cast<char>(units[i]);
  return bytes;
}

// Slices of whole characters: a slice never ends between the halves of a pair,
// nor after a lone high surrogate, which the readers join with the next unit.
SliceEnd WholeCharacters(fmx::TextAutoPtr& txt) {
  const uint32_t size = txt->GetSize();
  return [&txt, size](uint32_t at) {
    if (size - at <= kSlice) return size;
    const uint32_t end = at + kSlice;
    return (XP7_Get1UTF16Char(txt, end - 1) & 0xFC00) == 0xD800 ? end + 1 : end;
  };
}

// Slices of whole UTF-8 sequences as the toolkit's decoder reads them: a lead byte
// takes as many bytes as it announces, whatever they are.
SliceEnd WholeSequences(const std::string& bytes) {
  return [&bytes](uint32_t at) {
    const size_t size = bytes.size();
    size_t end = at;
    while (end < size && end - at < kSlice) {
      const unsigned char b = bytes[end];
      end += b < 0xC0 ? 1 : b < 0xE0 ? 2 : b < 0xF0 ? 3 : b < 0xF8 ? 4 : b < 0xFC ? 5 : 6;
    }
    return static_cast<uint32_t>(end < size ? end : size);
  };
}

// Runs `convert` over `txt` slice by slice and writes each result, a text of
// characters below U+0100, as bytes.
int ConvertInSlices(const char* name, fmx::TextAutoPtr& txt, const SliceEnd& sliceEnd, const Convert& convert) {
  const uint32_t size = txt->GetSize();
  Progress progress(name, size);
  fmx::TextAutoPtr slice, out;
  for (uint32_t at = 0; at < size;) {
    const uint32_t end = sliceEnd(at);
    slice->SetText(*txt, at, end - at);
    convert(slice, out);
    if (!WriteOutput(BytesOf(out))) return Fail(name, "cannot write standard output", kFailed);
    progress.Update(end);
    at = end;
  }
  return 0;
}

// The toolkit passes host failures on as exceptions; here they end the command
// like any failed work.
int Guarded(const char* name, const std::function<int()>& work) {
  try {
    return work();
  } catch (const std::bad_alloc&) {
    return Fail(name, "out of memory", kFailed);
  } catch (const std::exception&) {
    return Fail(name, "the host failed", kFailed);
  }
}

}  // namespace

int RunURLEncode(const std::vector<std::string>& args) {
  Arguments a(args, {}, {});
  if (!a.error().empty()) return Fail("urlencode", a.error(), kUsage);
  std::string bytes;
  int code;
  if (!ReadOneInput("urlencode", a, 0, bytes, code)) return code;
  return Guarded("urlencode", [&] {
    fmx::TextAutoPtr txt;
    TextFromBytes(bytes, fmx::Text::kEncoding_UTF8, txt);
    return ConvertInSlices("urlencode", txt, WholeCharacters(txt), XP7_TxtToURLEncodedTxt);
  });
}

int RunUTF8(const std::vector<std::string>& args) {
  Arguments a(args, {"from"}, {});
  if (!a.error().empty()) return Fail("utf8", a.error(), kUsage);
  const std::string mode = a.positionals().empty() ? "" : a.positionals()[0];
  if (mode != "encode" && mode != "decode") return Fail("utf8", "say encode or decode", kUsage);
  if (mode == "decode" && a.has("from")) return Fail("utf8", "--from belongs to encode", kUsage);
  fmx::Text::Encoding from = fmx::Text::kEncoding_UTF8;
  int code;
  if (a.has("from") && !ParseOption("utf8", a, "from", from, code)) return code;
  std::string bytes;
  if (!ReadOneInput("utf8", a, 1, bytes, code)) return code;
  if (mode == "encode") {
    return Guarded("utf8", [&] {
      fmx::TextAutoPtr txt;
      TextFromBytes(bytes, from, txt);
      return ConvertInSlices("utf8 encode", txt, WholeCharacters(txt), XP7_TxtToUTF8Txt);
    });
  }
  return Guarded("utf8", [&] {
    fmx::TextAutoPtr utf8;
    TextFromBytes(bytes, ByteValues, utf8);
    return ConvertInSlices("utf8 decode", utf8, WholeSequences(bytes), [](fmx::TextAutoPtr& in, fmx::TextAutoPtr& out) {
      fmx::TextAutoPtr decoded;
      XP7_UTF8TxtToTxt(in, decoded);
      XP7_TxtToUTF8Txt(decoded, out);
    });
  });
}

int RunReinterpret(const std::vector<std::string>& args) {
  Arguments a(args, {"from", "to"}, {"meta"});
  if (!a.error().empty()) return Fail("reinterpret", a.error(), kUsage);
  if (!a.has("from")) return Fail("reinterpret", "--from is required", kUsage);
  if (a.has("to") == a.has("meta")) return Fail("reinterpret", "give either --to or --meta", kUsage);
  fmx::Text::Encoding from, to = fmx::Text::kEncoding_Native;
  int code;
  if (!ParseOption("reinterpret", a, "from", from, code)) return code;
  if (a.has("to") && !ParseOption("reinterpret", a, "to", to, code)) return code;
  // The text goes back to bytes through the host, which knows no ByteValues.
  if (from == ByteValues) return Fail("reinterpret", "--from must be a host encoding", kUsage);
  std::string bytes;
  if (!ReadOneInput("reinterpret", a, 0, bytes, code)) return code;
  return Guarded("reinterpret", [&] {
    fmx::TextAutoPtr txt;
    TextFromBytes(bytes, from, txt);
    if (a.has("meta")) {
      XP7_ReinterpretTxtUsingCharsetMetaTag(txt, from);
    } else {
      XP7_ReinterpretTxtUsingNewEncoding(txt, from, to);
    }
    return ConvertInSlices("reinterpret", txt, WholeCharacters(txt), XP7_TxtToUTF8Txt);
  });
}

}  // namespace xptool
