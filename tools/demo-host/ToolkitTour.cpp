// The toolkit on the in-memory host: the calls a plug-in makes, on the values the host
// hands it.
#include "ToolkitTour.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "XPToolkit.h"
#include "codecs/Container.h"

namespace demo {
namespace {

bool ReadFile(const std::string& path, std::string& bytes) {
  std::ifstream in(path, std::ios::binary);
  if (!in) {
    std::printf("   cannot read %s\n", path.c_str());
    return false;
  }
  bytes.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
  return true;
}

std::string Utf8Of(const fmx::Text& text) {
  const uint32_t size = text.GetSize();
  // Up to four bytes for each unit, and the terminator GetBytes adds.
  std::vector<char> buffer(static_cast<size_t>(size) * 4 + 1);
  text.GetBytes(buffer.data(), static_cast<uint32_t>(buffer.size() - 1), 0, size, fmx::Text::kEncoding_UTF8);
  return buffer.data();
}

// The line of `text` holding `marker`, for showing one line of a page.
std::string LineWith(const std::string& text, const std::string& marker) {
  const size_t at = text.find(marker);
  if (at == std::string::npos) return "(no line with \"" + marker + "\")";
  const size_t start = text.rfind('\n', at);
  const size_t end = text.find('\n', at);
  return text.substr(start == std::string::npos ? 0 : start + 1,
                     end == std::string::npos ? std::string::npos : end - (start == std::string::npos ? 0 : start + 1));
}

bool ContainerScene(const std::string& samples) {
  const std::string path = samples + "/menu-macroman.txt";
  std::string bytes;
  if (!ReadFile(path, bytes)) return false;
  std::printf("== a file into container text and back: %s (%zu bytes)\n", "menu-macroman.txt", bytes.size());

  // The parameter a plug-in function receives when the user passes a container field.
  fmx::DataVectAutoPtr params;
  {
    fmx::BinaryDataAutoPtr container;
    QuadCharHolder type('F', 'I', 'L', 'E');
    if (container->Add(*type, static_cast<uint32_t>(bytes.size()), bytes.data()) != 0) {
      std::printf("   the host refused the file as a stream\n");
      return false;
    }
    DataHolder parameter;
    parameter->SetBinaryData(*container);
    params->PushBack(*parameter);
  }
  fmx::TextAutoPtr text;
  unsigned int index = 0;
  int result = XP7_GetBinaryAsHxtTxtFromVect(*params, text, &index);
  const std::string packed = Utf8Of(*text);
  std::printf("   XP7_GetBinaryAsHxtTxtFromVect: result %d, %u characters: %.60s...\n", result, text->GetSize(),
              packed.c_str());
  if (result != 0) return false;

  fmx::BinaryDataAutoPtr back;
  result = XP7_HxtTxtToBinary(text, back);
  std::string unpacked;
  if (result == 0 && back->GetCount() == 1) {
    unpacked.resize(back->GetSize(0));
    if (!unpacked.empty() && back->GetData(0, 0, static_cast<uint32_t>(unpacked.size()), unpacked.data()) != 0) {
      unpacked.clear();
    }
  }
  const bool same = result == 0 && unpacked == bytes;
  std::printf("   XP7_HxtTxtToBinary: result %d, %d stream(s), %zu bytes: %s\n", result,
              static_cast<int>(back->GetCount()), unpacked.size(),
              same ? "identical to the file, byte for byte" : "NOT the bytes of the file");
  return same;
}

bool RepairScene(const std::string& samples) {
  std::string bytes;
  if (!ReadFile(samples + "/menu-utf8.html", bytes)) return false;
  std::printf("== a UTF-8 page decoded as Mac Roman, repaired by its <meta charset>: menu-utf8.html\n");
  fmx::TextAutoPtr text;
  text->AssignWithLength(bytes.data(), static_cast<uint32_t>(bytes.size()), fmx::Text::kEncoding_ASCII_Mac);
  const std::string before = LineWith(Utf8Of(*text), "Soupe");
  XP7_ReinterpretTxtUsingCharsetMetaTag(text, fmx::Text::kEncoding_ASCII_Mac);
  const std::string repaired = Utf8Of(*text);
  std::printf("   as read:  %s\n", before.c_str());
  std::printf("   repaired: %s\n", LineWith(repaired, "Soupe").c_str());
  const bool same = repaired == bytes;
  std::printf("   the repaired text %s the page\n", same ? "is exactly" : "is NOT");
  return same;
}

bool DateScene() {
  // 2024-07-14 12:00 UTC: noon keeps the day the same in every time zone.
  const unsigned int macSeconds = 1720958400u + 2082844800u;
  std::printf("== one date (Mac seconds %u) with XP7_DateString, long style, in three locales\n", macSeconds);
  const char* saved = std::getenv("LC_ALL");
  const std::string previous = saved != nullptr ? saved : "";
  bool ok = true;
  for (const char* locale : {"en_US.UTF-8", "de_DE.UTF-8", "fr_FR.UTF-8"}) {
    // The platform reads the locale from the environment on every call.
    setenv("LC_ALL", locale, 1);
    unsigned char result[256] = {};
    XP7_DateString(macSeconds, 1, result, nullptr);
    const std::string shown(reinterpret_cast<const char*>(result + 1), result[0]);
    std::printf("   LC_ALL=%-12s %s\n", locale, shown.c_str());
    ok = ok && !shown.empty() && shown != "invalid datestring";
  }
  if (saved != nullptr) {
    setenv("LC_ALL", previous.c_str(), 1);
  } else {
    unsetenv("LC_ALL");
  }
  return ok;
}

}  // namespace

bool RunToolkitTour(const std::string& samples) {
  bool ok = ContainerScene(samples);
  ok = RepairScene(samples) && ok;
  ok = DateScene() && ok;
  return ok;
}

}  // namespace demo
