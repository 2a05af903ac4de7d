// Fuzzes XP7_AppendBlockToTxt with UTF-8 blocks: a refused block leaves the text
// as it was, an accepted one adds no more characters than it has bytes.
#include <string>

#include "FuzzInput.h"
#include "text/ByteBlocks.h"
#include "text/ResultCodes.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  fuzz::Input input(data, size);
  const std::string block = input.Rest();
  fmx::TextAutoPtr text;
  fuzz::SetByteChars(text, "kept");
  const std::u16string before = fuzz::UnitsOf(*text);
  const int result =
      XP7_AppendBlockToTxt(block.data(), static_cast<unsigned int>(block.size()), text, fmx::Text::kEncoding_UTF8, 0);
  const std::u16string after = fuzz::UnitsOf(*text);
  FUZZ_CHECK(result == kXP_NoErr || result == kXP_MalformedUTF8 || result == kXP_DecodedToNothing);
  if (result != 0) {
    FUZZ_CHECK(after == before);
  } else {
    FUZZ_CHECK(after.compare(0, before.size(), before) == 0 && after.size() - before.size() <= block.size());
  }
  return 0;
}
