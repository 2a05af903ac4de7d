// Fuzzes XP7_UTF8TxtToTxt: no more characters out than bytes in, and any text
// without broken surrogates comes back from its UTF-8 text unchanged.
#include <string>

#include "FuzzInput.h"
#include "encoding/UTF8.h"

namespace {

bool IsHigh(char16_t u) { return (u & 0xFC00) == 0xD800; }
bool IsLow(char16_t u) { return (u & 0xFC00) == 0xDC00; }

void RoundTrip(fuzz::Input& input) {
  fmx::TextAutoPtr source, utf8, result;
  fuzz::SetUnits(source, input.Rest());
  std::u16string units = fuzz::UnitsOf(*source);
  for (size_t i = 0; i < units.size(); ++i) {
    if (IsHigh(units[i]) && i + 1 < units.size() && IsLow(units[i + 1])) {
      ++i;
    } else if (IsHigh(units[i]) || IsLow(units[i])) {
      units[i] = u'x';
    }
  }
  fuzz::SetText(source, units);
  XP7_TxtToUTF8Txt(source, utf8);
  XP7_UTF8TxtToTxt(utf8, result);
  FUZZ_CHECK(fuzz::UnitsOf(*result) == units);
}

void DecodeUntrusted(fuzz::Input& input) {
  fmx::TextAutoPtr source, result;
  fuzz::SetUntrustedText(source, input);
  XP7_UTF8TxtToTxt(source, result);
  FUZZ_CHECK(result->GetSize() <= source->GetSize());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  return fuzz::RoundTripOrUntrusted(data, size, RoundTrip, DecodeUntrusted);
}
