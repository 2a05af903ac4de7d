// xptool hex and xptool base64: bytes to hex text or base64 and back through
// the toolkit's codecs.
//
// The text forms (hex text, bin text, base64 text, decoded text) go in and out
// as Mac Roman, the encoding in which the toolkit reads and writes them: every
// byte value is one character there and comes back as the same byte. Large
// inputs go to the toolkit in slices cut where the codec's groups and lines end,
// so that the output is the same as in one call and progress can be shown.
#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <string>
#include <vector>

#include "Command.h"
#include "Progress.h"
#include "codecs/Base64.h"
#include "codecs/HexText.h"
#include "encoding/LegacyTables.h"

namespace xptool {
namespace {

// Input bytes per toolkit call, before rounding to whole groups.
constexpr size_t kSlice = 1u << 20;

// Output modes of the decoder and input modes of the text encoder, as the toolkit numbers them.
constexpr short kPlainMode = 0;
constexpr short kHexMode = 2;
constexpr short kBinMode = 4;

void MacTextFromBytes(const char* bytes, size_t n, fmx::TextAutoPtr& txt) {
  std::vector<unsigned short> units(n);
  for (size_t i = 0; i < n; ++i) {
    const unsigned char b = static_cast<unsigned char>(bytes[i]);
    units[i] = static_cast<unsigned short>(b < 0x80 ? b : XP7_FMP6MacAsciiToUni(b));
  }
  txt->AssignUnicodeWithLength(units.data(), static_cast<uint32_t>(n));
}

// A character without a Mac Roman byte (the codecs never write one) becomes "*",
// as in the toolkit's own readers.
std::string MacBytesFromText(fmx::TextAutoPtr& txt) {
  const uint32_t n = txt->GetSize();
  std::vector<unsigned short> units(n);
  if (n > 0) txt->GetUnicode(units.data(), 0, n);
  std::string bytes(n, '\0');
  for (uint32_t i = 0; i < n; ++i) {
    const unsigned int b = XP7_UniToFMP6MacAscii(units[i], 0);
    bytes[i] = b == 0xFFFFFFFF ? '*' : static_cast<char>(b);
  }
  return bytes;
}

// The hex digits of an input: ASCII blanks and line breaks are passed over and
// lower case is read as upper case (the toolkit takes only upper case); any other
// character, or an odd number of digits, is an error.
bool HexDigits(const std::string& in, std::string& digits, std::string& error) {
  digits.clear();
  digits.reserve(in.size());
  for (size_t i = 0; i < in.size(); ++i) {
    const char c = in[i];
    if (c == ' ' || c == '\t' || c == '\r' || c == '\n') continue;
    if ((c >= '0' && c <= '9') || (c >= 'A' && c <= 'F')) {
      digits += c;
    } else if (c >= 'a' && c <= 'f') {
      digits += static_cast<char>(c - 'a' + 'A');
    } else {
      error = "not a hex digit at byte " + std::to_string(i);
      return false;
    }
  }
  if (digits.size() % 2 != 0) {
    error = "odd number of hex digits";
    return false;
  }
  return true;
}

bool ParseLineLength(const std::string& text, int& lineLength) {
  if (text.empty() || text.find_first_not_of("0123456789") != std::string::npos) return false;
  errno = 0;
  const unsigned long long value = std::strtoull(text.c_str(), nullptr, 10);
  if (errno != 0 || value > INT_MAX) return false;
  lineLength = static_cast<int>(value);
  return true;
}

// Bytes per slice for the encoders: whole lines of whole groups, so that every
// slice but the last ends where a line ends.
size_t EncoderSliceBytes(int lineLength) {
  const size_t lineBytes = 3 * static_cast<size_t>(lineLength >= 4 ? lineLength / 4 : 1);
  return lineBytes * std::max<size_t>(1, kSlice / lineBytes);
}

int HexEncode(const std::string& bytes) {
  Progress progress("hex encode", bytes.size());
  fmx::TextAutoPtr hex;
  for (size_t at = 0; at < bytes.size(); at += kSlice) {
    const size_t n = std::min(kSlice, bytes.size() - at);
    XP7_BlockToHexTxt(const_cast<char*>(bytes.data() + at), static_cast<unsigned int>(n), hex);
    if (!WriteOutput(MacBytesFromText(hex))) return Fail("hex", "cannot write standard output", kFailed);
    progress.Update(at + n);
  }
  if (!bytes.empty() && !WriteOutput("\n")) return Fail("hex", "cannot write standard output", kFailed);
  return 0;
}

int HexDecode(const std::string& input) {
  std::string digits, error;
  if (!HexDigits(input, digits, error)) return Fail("hex", error, kFailed);
  Progress progress("hex decode", digits.size());
  fmx::TextAutoPtr hex;
  std::string bytes;
  for (size_t at = 0; at < digits.size(); at += 2 * kSlice) {
    const size_t n = std::min(2 * kSlice, digits.size() - at);
    MacTextFromBytes(digits.data() + at, n, hex);
    bytes.resize(n / 2);
    unsigned int position = 0, produced = 0;
    XP7_HexTxtToBlock(hex, static_cast<unsigned int>(n), 0, &position, static_cast<unsigned int>(n / 2),
                      reinterpret_cast<unsigned char*>(bytes.data()), &produced);
    if (!WriteOutput(bytes)) return Fail("hex", "cannot write standard output", kFailed);
    progress.Update(at + n);
  }
  return 0;
}

int EncodeBlocks(const std::string& bytes, int lineLength) {
  Progress progress("base64 encode", bytes.size());
  const size_t slice = EncoderSliceBytes(lineLength);
  const size_t lineGroups = lineLength >= 4 ? lineLength / 4 : 1;
  std::vector<unsigned char> out;
  for (size_t at = 0; at < bytes.size(); at += slice) {
    const size_t n = std::min(slice, bytes.size() - at);
    const size_t groups = (n + 2) / 3;
    // The characters, a CR LF per line, and the byte the encoder keeps spare.
    out.resize(4 * groups + (lineLength > 0 ? 2 * ((groups + lineGroups - 1) / lineGroups) : 0) + 1);
    unsigned long length = 0;
    if (XP7_Base64_EncodeBlock(reinterpret_cast<unsigned char*>(const_cast<char*>(bytes.data() + at)), n, out.data(),
                               out.size(), &length, lineLength) != 0) {
      return Fail("base64", "the encoder ran out of room", kFailed);
    }
    if (!WriteOutput(std::string(reinterpret_cast<char*>(out.data()), length))) {
      return Fail("base64", "cannot write standard output", kFailed);
    }
    progress.Update(at + n);
  }
  return 0;
}

// Where the next slice of bin text ends: after a multiple of `sliceBytes`
// encoded bytes, never inside an escape ("\0" and "\\" are one byte each).
size_t BinTextSliceEnd(const std::string& text, size_t from, size_t sliceBytes) {
  size_t at = from;
  for (size_t bytes = 0; at < text.size() && bytes < sliceBytes; ++bytes) {
    const bool escape = text[at] == '\\' && at + 1 < text.size() && (text[at + 1] == '0' || text[at + 1] == '\\');
    at += escape ? 2 : 1;
  }
  return at;
}

int EncodeText(const std::string& input, short mode, int lineLength) {
  std::string text = input, error;
  if (mode == kHexMode && !HexDigits(input, text, error)) return Fail("base64", error, kFailed);
  Progress progress("base64 encode", text.size());
  const size_t sliceBytes = EncoderSliceBytes(lineLength);
  fmx::TextAutoPtr slice, out;
  for (size_t at = 0; at < text.size();) {
    const size_t end =
        mode == kHexMode ? std::min(text.size(), at + 2 * sliceBytes) : BinTextSliceEnd(text, at, sliceBytes);
    MacTextFromBytes(text.data() + at, end - at, slice);
    out->DeleteText(0, 0xFFFFFFFF);
    // Full lines end with a CR anyway; the flag gives the last, shorter line one too.
    if (XP7_TxtToBase64Txt(slice, mode, fmx::Text::kEncoding_ASCII_Mac, static_cast<unsigned int>(lineLength), out,
                           lineLength >= 4) != 0) {
      return Fail("base64", "the encoder refused the text", kFailed);
    }
    if (!WriteOutput(MacBytesFromText(out))) return Fail("base64", "cannot write standard output", kFailed);
    at = end;
    progress.Update(at);
  }
  return 0;
}

// Where the next slice of base64 text ends: after a multiple of 4 alphabet
// characters (a whole group), once at least `target` bytes are taken.
size_t Base64SliceEnd(const std::string& text, size_t from, size_t target) {
  size_t count = 0;
  for (size_t at = from; at < text.size(); ++at) {
    const unsigned char c = static_cast<unsigned char>(text[at]);
    if (c < 43 || c > 122 || XP7_Base64DecodeTable[c - 43] == '$') continue;
    if (++count % 4 == 0 && at + 1 - from >= target) return at + 1;
  }
  return text.size();
}

int Decode(const std::string& input, short mode) {
  Progress progress("base64 decode", input.size());
  fmx::TextAutoPtr slice, out;
  for (size_t at = 0; at < input.size();) {
    const size_t end = Base64SliceEnd(input, at, kSlice);
    MacTextFromBytes(input.data() + at, end - at, slice);
    out->DeleteText(0, 0xFFFFFFFF);
    if (XP7_Base64TxtToTxt(slice, 0, fmx::Text::kEncoding_ASCII_Mac, static_cast<unsigned short>(mode), out) != 0) {
      return Fail("base64", "the decoder refused the text", kFailed);
    }
    if (!WriteOutput(MacBytesFromText(out))) return Fail("base64", "cannot write standard output", kFailed);
    at = end;
    progress.Update(at);
  }
  return 0;
}

// The action word and at most one input file; false with a message otherwise.
bool ActionAndInput(const Arguments& a, std::string& action, std::string& path, std::string& error) {
  const auto& p = a.positionals();
  if (p.empty() || (p[0] != "encode" && p[0] != "decode")) {
    error = "the first argument must be encode or decode";
    return false;
  }
  if (p.size() > 2) {
    error = "at most one input file";
    return false;
  }
  action = p[0];
  path = p.size() == 2 ? p[1] : "";
  return true;
}

}  // namespace

int RunHex(const std::vector<std::string>& args) {
  Arguments a(args, {}, {});
  std::string action, path, input, error;
  if (!a.error().empty()) return Fail("hex", a.error(), kUsage);
  if (!ActionAndInput(a, action, path, error)) return Fail("hex", error, kUsage);
  if (!ReadInput(path, input, error)) return Fail("hex", error, kFailed);
  return action == "encode" ? HexEncode(input) : HexDecode(input);
}

int RunBase64(const std::vector<std::string>& args) {
  Arguments a(args, {"line-length", "mode"}, {});
  std::string action, path, input, error;
  if (!a.error().empty()) return Fail("base64", a.error(), kUsage);
  if (!ActionAndInput(a, action, path, error)) return Fail("base64", error, kUsage);
  const std::string modeName = a.value("mode", "plain");
  const short mode = modeName == "hex" ? kHexMode : modeName == "bin" ? kBinMode : kPlainMode;
  if (modeName != "plain" && mode == kPlainMode) {
    return Fail("base64", "unknown mode '" + modeName + "' (plain, hex or bin)", kUsage);
  }
  int lineLength = 76;
  if (action == "decode" && a.has("line-length")) return Fail("base64", "--line-length is for encode only", kUsage);
  if (a.has("line-length") && !ParseLineLength(a.value("line-length"), lineLength)) {
    return Fail("base64", "--line-length wants a number from 0 to " + std::to_string(INT_MAX), kUsage);
  }
  if (!ReadInput(path, input, error)) return Fail("base64", error, kFailed);
  if (action == "decode") return Decode(input, mode);
  return mode == kPlainMode ? EncodeBlocks(input, lineLength) : EncodeText(input, mode, lineLength);
}

}  // namespace xptool
