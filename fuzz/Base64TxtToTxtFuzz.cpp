// Fuzzes XP7_Base64TxtToTxt: any text decodes within three bytes per four
// characters, and the base64 of a block decodes back to that block.
#include <string>
#include <vector>

#include "FuzzInput.h"
#include "codecs/Base64.h"

namespace {

constexpr fmx::Text::Encoding kMac = fmx::Text::kEncoding_ASCII_Mac;

void DecodeUntrusted(fuzz::Input& input) {
  const unsigned short mode = input.Byte() % 5;  // 2 hex, 4 bin, others plain
  const unsigned char plain = input.Byte() & 1;
  fmx::TextAutoPtr text, out;
  fuzz::SetUntrustedText(text, input);
  FUZZ_CHECK(XP7_Base64TxtToTxt(text, plain, kMac, mode, out) == 0);
  // At most three bytes per four characters, each byte at most two characters.
  const uint64_t bytes = 3 * uint64_t(text->GetSize()) / 4;
  FUZZ_CHECK(out->GetSize() <= (mode == 2 || (mode == 4 && !plain) ? 2 * bytes : bytes));
}

void RoundTrip(fuzz::Input& input) {
  const int lineLength = input.Byte() % 100;
  std::string block = input.Rest();
  std::vector<unsigned char> encoded(2 * block.size() + 16);
  unsigned long length = 0;
  FUZZ_CHECK(XP7_Base64_EncodeBlock(reinterpret_cast<unsigned char*>(block.data()), block.size(), encoded.data(),
                                    encoded.size(), &length, lineLength) == 0);
  fmx::TextAutoPtr text, hex;
  fuzz::SetByteChars(text, std::string(encoded.begin(), encoded.begin() + static_cast<long>(length)));
  FUZZ_CHECK(XP7_Base64TxtToTxt(text, 0, kMac, 2, hex) == 0);
  FUZZ_CHECK(fuzz::UnitsOf(*hex) == fuzz::HexChars(block));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  return fuzz::RoundTripOrUntrusted(data, size, RoundTrip, DecodeUntrusted);
}
