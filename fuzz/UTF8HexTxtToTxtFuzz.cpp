// Fuzzes XP7_UTF8HexTxtToTxt: no more characters out than digit pairs in.
#include "FuzzInput.h"
#include "encoding/UTF8.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  fuzz::Input input(data, size);
  fmx::TextAutoPtr source, result;
  fuzz::SetUntrustedText(source, input);
  XP7_UTF8HexTxtToTxt(source, result);
  FUZZ_CHECK(result->GetSize() <= source->GetSize() / 2);
  return 0;
}
