// Fuzzes XP7_ReinterpretTxtUsingCharsetMetaTag over every host encoding: texts of
// 12 characters or fewer are never touched.
#include "FuzzInput.h"
#include "encoding/Reinterpret.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  fuzz::Input input(data, size);
  const auto current = static_cast<fmx::Text::Encoding>(input.Byte() % 37);
  fmx::TextAutoPtr text;
  fuzz::SetUntrustedText(text, input);
  const std::u16string before = fuzz::UnitsOf(*text);
  XP7_ReinterpretTxtUsingCharsetMetaTag(text, current);
  if (before.size() <= 12) FUZZ_CHECK(fuzz::UnitsOf(*text) == before);
  return 0;
}
