// xptool container: files to a binary container text and back.
#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <random>
#include <string>
#include <system_error>
#include <vector>

#include "Command.h"
#include "Progress.h"
#include "codecs/Container.h"

namespace xptool {
namespace {

namespace fs = std::filesystem;

constexpr char kOpenTag[] = "<VARN_BINARY_CONTAINER10>";
constexpr char kSeparator[] = "\r<- ->\r";
// Host text sizes are 32-bit unit counts.
constexpr size_t kLargestText = 0xFFFFFFFE;
constexpr size_t kNone = static_cast<size_t>(-1);

uint32_t TypeCode(const std::string& four) {
  return uint32_t(uint8_t(four[0])) << 24 | uint32_t(uint8_t(four[1])) << 16 | uint32_t(uint8_t(four[2])) << 8 |
         uint8_t(four[3]);
}

std::string Lower(std::string s) {
  for (char& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return s;
}

uint32_t TypeOfFile(const std::string& path) {
  const std::string ext = Lower(fs::path(path).extension().string());
  if (ext == ".jpg" || ext == ".jpeg") return TypeCode("JPEG");
  if (ext == ".png") return TypeCode("PNGf");
  if (ext == ".pdf") return TypeCode("PDF ");
  if (ext == ".gif") return TypeCode("GIFf");
  return TypeCode("FILE");
}

// The type as a file name extension: its characters without trailing blanks, or
// its hex digits when a character would not do in a file name.
std::string TypeName(uint32_t type) {
  std::string name;
  for (int shift = 24; shift >= 0; shift -= 8) name += static_cast<char>(type >> shift);
  while (!name.empty() && name.back() == ' ') name.pop_back();
  bool plain = !name.empty();
  for (char c : name)
    plain = plain && (std::isalnum(static_cast<unsigned char>(c)) || c == ' ' || c == '_' || c == '-');
  if (plain) return name;
  char hex[9];
  std::snprintf(hex, sizeof hex, "%08X", static_cast<unsigned int>(type));
  return hex;
}

// The host text is written in slices, so no second copy of it is made.
bool WriteText(fmx::TextAutoPtr& text) {
  const uint32_t size = text->GetSize();
  Progress progress("container pack", size);
  std::vector<unsigned short> units(1 << 16);
  std::string bytes;
  for (uint32_t at = 0; at < size;) {
    const uint32_t run = std::min<uint32_t>(size - at, static_cast<uint32_t>(units.size()));
    text->GetUnicode(units.data(), at, run);
    bytes.assign(units.begin(), units.begin() + run);
    if (!WriteOutput(bytes)) return false;
    at += run;
    progress.Update(at);
  }
  return true;
}

// The input, one unit per byte as the writers write it (plain ASCII), read in
// slices: a container text is large, and it is held twice at most, here and in
// the host text made of it.
bool ReadUnits(const std::string& path, std::vector<unsigned short>& units, std::string& error) {
  const bool standardInput = path.empty() || path == "-";
  std::ifstream file;
  if (!standardInput) {
    file.open(path, std::ios::binary);
    if (!file) {
      error = "cannot read '" + path + "': " + std::strerror(errno);
      return false;
    }
    std::error_code unknown;
    const uintmax_t size = fs::file_size(path, unknown);
    if (!unknown && size <= kLargestText) units.reserve(size);
  }
  std::istream& in = standardInput ? std::cin : file;
  std::vector<char> chunk(1 << 20);
  while (in) {
    in.read(chunk.data(), static_cast<std::streamsize>(chunk.size()));
    units.insert(units.end(), reinterpret_cast<unsigned char*>(chunk.data()),
                 reinterpret_cast<unsigned char*>(chunk.data()) + in.gcount());
    if (units.size() > kLargestText) {
      error = "input larger than a host text can hold";
      return false;
    }
  }
  if (in.bad()) error = "cannot read " + (standardInput ? std::string("standard input") : "'" + path + "'");
  return !in.bad();
}

bool IsAt(const std::vector<unsigned short>& units, size_t at, const char* ascii, bool foldCase) {
  for (size_t k = 0; ascii[k] != 0; ++k, ++at) {
    if (at >= units.size()) return false;
    unsigned short u = units[at];
    if (foldCase && u < 128) u = static_cast<unsigned short>(std::toupper(u));
    if (u != static_cast<unsigned char>(ascii[k])) return false;
  }
  return true;
}

// Where the readers will find the open tag: anywhere, in any case.
size_t FindOpenTag(const std::vector<unsigned short>& units) {
  for (size_t at = 0; at < units.size(); ++at) {
    if (units[at] == '<' && IsAt(units, at, kOpenTag, true)) return at;
  }
  return kNone;
}

// Readers tell the variants apart only by where the first separator stands:
// straight after the count in base64 texts, after the first stream in hex ones.
bool LooksLikeBase64(const std::vector<unsigned short>& units, size_t tagAt) {
  return IsAt(units, tagAt + sizeof kOpenTag - 1 + 8, kSeparator, false);
}

// The stream count as the readers see it, for messages only.
unsigned long DeclaredCount(const std::vector<unsigned short>& units, size_t tagAt) {
  std::string digits;
  for (size_t at = tagAt + sizeof kOpenTag - 1; at < units.size() && digits.size() < 8; ++at) {
    digits += static_cast<char>(units[at]);
  }
  return std::strtoul(digits.c_str(), nullptr, 16);
}

// Files land under a temporary name first; only when all are written do they
// take their names, so a failure leaves nothing behind.
class PendingFiles {
 public:
  ~PendingFiles() {
    std::error_code ignored;
    for (const auto& f : files_) fs::remove(f.first, ignored);
  }
  bool write(const fs::path& final, const fmx::BinaryData& data, int32_t stream, Progress& progress, uint64_t& done,
             std::string& error) {
    const fs::path temporary = final.parent_path() / ("." + final.filename().string() + "." + suffix_ + ".part");
    files_.emplace_back(temporary, final);
    std::ofstream out(temporary, std::ios::binary);
    std::vector<char> chunk(1 << 20);
    const uint32_t size = data.GetSize(stream);
    for (uint32_t offset = 0; out && offset < size;) {
      const uint32_t amount = std::min<uint32_t>(size - offset, static_cast<uint32_t>(chunk.size()));
      if (data.GetData(stream, offset, amount, chunk.data()) != 0) {
        error = "cannot read stream " + std::to_string(stream + 1) + " back from the container";
        return false;
      }
      out.write(chunk.data(), amount);
      offset += amount;
      progress.Update(done += amount);
    }
    out.close();
    if (!out) error = "cannot write '" + temporary.string() + "'";
    return static_cast<bool>(out);
  }
  bool commit(std::string& error) {
    for (size_t i = 0; i < files_.size(); ++i) {
      std::error_code failed;
      fs::rename(files_[i].first, files_[i].second, failed);
      if (failed) {
        error = "cannot rename to '" + files_[i].second.string() + "': " + failed.message();
        for (size_t done = 0; done < i; ++done) fs::remove(files_[done].second, failed);
        return false;
      }
    }
    files_.clear();
    return true;
  }

 private:
  std::vector<std::pair<fs::path, fs::path>> files_;
  std::string suffix_ = std::to_string(std::random_device()());
};

// Each stream to INTO/<index>.<type>, all or none; `report` lists them.
bool WriteStreams(const fmx::BinaryData& container, const fs::path& into, std::string& report, std::string& error) {
  const int32_t count = container.GetCount();
  uint64_t total = 0, done = 0;
  for (int32_t stream = 0; stream < count; ++stream) total += container.GetSize(stream);
  Progress progress("container unpack", total);
  PendingFiles files;
  for (int32_t stream = 0; stream < count; ++stream) {
    QuadCharHolder type;
    container.GetType(stream, *type);
    const std::string name = TypeName(type->GetMacType());
    const fs::path path = into / (std::to_string(stream + 1) + "." + name);
    if (!files.write(path, container, stream, progress, done, error)) return false;
    report += "stream " + std::to_string(stream + 1) + ": " + name + ", " + std::to_string(container.GetSize(stream)) +
              " bytes -> " + path.string() + "\n";
  }
  return files.commit(error);
}

int Pack(const std::vector<std::string>& args) {
  Arguments a(args, {"type"}, {"base64"});
  if (!a.error().empty()) return Fail("container", a.error(), kUsage);
  if (a.positionals().empty()) return Fail("container", "pack needs at least one file", kUsage);
  if (a.has("type") && a.value("type").size() != 4) {
    return Fail("container", "--type takes four characters, e.g. JPEG or \"PDF \"", kUsage);
  }
  // Each file goes into the container as soon as it is read, so only one of them
  // is held twice at a time.
  fmx::BinaryDataAutoPtr container;
  for (const std::string& path : a.positionals()) {
    std::string bytes, error;
    if (!ReadInput(path, bytes, error)) return Fail("container", error, kFailed);
    if (bytes.size() > 0xFFFFFFFFu)
      return Fail("container", "'" + path + "' is larger than a stream can hold", kFailed);
    QuadCharHolder type;
    type->SetMacType(a.has("type") ? TypeCode(a.value("type")) : TypeOfFile(path));
    if (container->Add(*type, static_cast<uint32_t>(bytes.size()), bytes.data()) != 0) {
      return Fail("container", "the host refused '" + path + "' as a stream", kFailed);
    }
  }
  fmx::DataVectAutoPtr params;
  {
    DataHolder parameter;
    parameter->SetBinaryData(*container);
    container.reset(nullptr);
    params->PushBack(*parameter);
  }
  fmx::TextAutoPtr text;
  unsigned int index = 0;
  const int result = a.has("base64") ? XP7_GetFMBinaryDataAsBase64TxtFromVect(*params, text, &index)
                                     : XP7_GetBinaryAsHxtTxtFromVect(*params, text, &index);
  params.reset(nullptr);
  if (result != 0) {
    return Fail("container", "the container could not be read (result " + std::to_string(result) + ")", kFailed);
  }
  if (!WriteText(text)) return Fail("container", "cannot write standard output", kFailed);
  return 0;
}

int Unpack(const std::vector<std::string>& args) {
  Arguments a(args, {"into"}, {});
  if (!a.error().empty()) return Fail("container", a.error(), kUsage);
  if (a.positionals().size() > 1) return Fail("container", "unpack reads at most one file", kUsage);
  const fs::path into = a.value("into", ".");
  std::error_code unused;
  if (!fs::is_directory(into, unused)) return Fail("container", "'" + into.string() + "' is not a directory", kUsage);

  std::vector<unsigned short> units;
  std::string error;
  if (!ReadUnits(a.positionals().empty() ? "" : a.positionals()[0], units, error)) {
    return Fail("container", error, kFailed);
  }
  const size_t tagAt = FindOpenTag(units);
  if (tagAt == kNone) return Fail("container", std::string("no ") + kOpenTag + " tag in the input", kFailed);
  const bool base64 = LooksLikeBase64(units, tagAt);
  const unsigned long declared = DeclaredCount(units, tagAt);

  fmx::BinaryDataAutoPtr container;
  int result = 0;
  {
    fmx::TextAutoPtr text;
    text->AssignUnicodeWithLength(units.data(), static_cast<uint32_t>(units.size()));
    std::vector<unsigned short>().swap(units);
    result = base64 ? XP7_Base64TxtToFMBinaryData(text, container) : XP7_HxtTxtToBinary(text, container);
  }
  const int32_t found = container->GetCount();
  const char* variant = base64 ? "base64" : "hex";
  if (result != 0) {
    return Fail("container",
                std::string("malformed ") + variant + " container text (result " + std::to_string(result) + "): " +
                    (declared > 100 ? "more than 100 streams declared"
                                    : std::to_string(found) + " of " + std::to_string(declared) +
                                          " streams read before a field was cut short, a size did not match or a "
                                          "separator was missing"),
                kFailed);
  }
  if (found == 0) return Fail("container", "no streams: the text is too short or declares none", kFailed);

  std::string report;
  if (!WriteStreams(*container, into, report, error)) return Fail("container", error, kFailed);
  std::fprintf(stderr, "%s%d stream%s from a %s container text\n", report.c_str(), found, found == 1 ? "" : "s",
               variant);
  return 0;
}

}  // namespace

int RunContainer(const std::vector<std::string>& args) {
  if (args.empty()) return Fail("container", "pack or unpack? (see 'xptool container --help')", kUsage);
  const std::vector<std::string> rest(args.begin() + 1, args.end());
  if (args[0] == "pack") return Pack(rest);
  if (args[0] == "unpack") return Unpack(rest);
  return Fail("container", "unknown action '" + args[0] + "' (pack or unpack)", kUsage);
}

}  // namespace xptool
