// Fuzzes XP7_RemoveHexTxt: one character per pair (two in bin text at most), and
// the hex text of a block gives that block back.
#include <string>

#include "FuzzInput.h"
#include "codecs/HexText.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  fuzz::Input input(data, size);
  const unsigned char selector = input.Byte();
  if (selector & 1) {
    std::string block = input.Rest();
    fmx::TextAutoPtr text;
    XP7_BlockToHexTxt(block.data(), static_cast<unsigned int>(block.size()), text);
    XP7_RemoveHexTxt(text, 0);
    FUZZ_CHECK(fuzz::UnitsOf(*text) == fuzz::ByteChars(block));
    return 0;
  }
  const unsigned char asBinText = selector & 2;
  fmx::TextAutoPtr text;
  fuzz::SetUntrustedText(text, input);
  const uint64_t pairs = text->GetSize() / 2;
  XP7_RemoveHexTxt(text, asBinText);
  FUZZ_CHECK(text->GetSize() <= (asBinText ? 2 * pairs : pairs));
  return 0;
}
