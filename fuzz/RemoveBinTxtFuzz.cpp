// Fuzzes XP7_RemoveBinTxt: undoing escapes never lengthens a text, and the bin
// text of a block gives that block back.
#include <string>

#include "FuzzInput.h"
#include "codecs/BinText.h"

namespace {

// ISO 8859-1 maps every byte to the character of its value, so the escapes are all
// that stands between the bin text and the block.
void RoundTrip(fuzz::Input& input) {
  std::string block = input.Rest();
  fmx::TextAutoPtr text;
  XP7_BlockToBinTxt(block.data(), static_cast<unsigned int>(block.size()), text, fmx::Text::kEncoding_ISO_8859_1);
  XP7_RemoveBinTxt(text);
  FUZZ_CHECK(fuzz::UnitsOf(*text) == fuzz::ByteChars(block));
}

void RemoveUntrusted(fuzz::Input& input) {
  fmx::TextAutoPtr text;
  fuzz::SetUntrustedText(text, input);
  const uint32_t before = text->GetSize();
  XP7_RemoveBinTxt(text);
  FUZZ_CHECK(text->GetSize() <= before);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  return fuzz::RoundTripOrUntrusted(data, size, RoundTrip, RemoveUntrusted);
}
