// Fuzzes XP7_HexTxtToBlock: it fills exactly the bytes asked for (an exact-size
// buffer lets the sanitizer see any more), decodes at most one byte per pair and
// ends within one pair past the text.
#include <memory>

#include "FuzzInput.h"
#include "codecs/HexText.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  fuzz::Input input(data, size);
  const unsigned char unescape = input.Byte() & 1;
  const unsigned int count = input.Below(4096);
  unsigned int position = input.Below(64);
  fmx::TextAutoPtr text;
  fuzz::SetUntrustedText(text, input);
  const unsigned int n = text->GetSize();
  const unsigned int start = position;
  std::unique_ptr<unsigned char[]> out(new unsigned char[count]);
  unsigned int produced = 12345;
  XP7_HexTxtToBlock(text, n, unescape, &position, count, out.get(), &produced);
  FUZZ_CHECK(produced <= count);
  FUZZ_CHECK(2 * uint64_t(produced) <= (n > start ? n - start : 0));
  FUZZ_CHECK(position >= start && position <= (n > start ? n + 1 : start));
  return 0;
}
