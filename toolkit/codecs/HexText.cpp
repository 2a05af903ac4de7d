// Hex text: byte blocks and host texts to two hex digits per byte and back, and
// the lower-case hex C string of a byte buffer.
#include "codecs/HexText.h"

#include <cstring>
#include <memory>

#include "codecs/BinText.h"
#include "codecs/HexPair.h"
#include "text/ByteBlocks.h"

char pseudo[17] = "0123456789ABCDEF";

namespace {

constexpr unsigned int kToEnd = 0xFFFFFFFF;
constexpr unsigned int kRemoveBatch = 10;

}  // namespace

void XP7_BlockToHexTxt(char* bytes, unsigned int length, fmx::TextAutoPtr& out) {
  out->DeleteText(0, kToEnd);
  fmx::TextAutoPtr pair;
  for (unsigned int i = 0; i < length; ++i) {
    const unsigned char b = static_cast<unsigned char>(bytes[i]);
    const char digits[2] = {pseudo[b >> 4], pseudo[b & 15]};
    pair->AssignWithLength(digits, 2, fmx::Text::kEncoding_ASCII_Mac);
    out->AppendText(*pair);
  }
}

void XP7_HexTxtToBlock(fmx::TextAutoPtr& text, unsigned int textLength, unsigned char unescape, unsigned int* position,
                       unsigned int count, unsigned char* out, unsigned int* produced) {
  *produced = 0;
  // A whole pair starts at p when p + 1 < textLength; written so that neither an
  // empty text nor a position near 2^32 wraps around.
  const auto pairAt = [textLength](unsigned int p) { return p < textLength && textLength - p >= 2; };
  for (unsigned int i = 0; i < count; ++i) {
    if (!pairAt(*position)) {
      out[i] = 0;
      continue;
    }
    unsigned char b = static_cast<unsigned char>(XP7_Get1HexTxtChar(text, *position));
    ++*produced;
    if (unescape && b == 0x5C) {
      // 5C 30 is an escaped 0x00 and 5C 5C one 0x5C; any other follower, or none
      // at all, is left for the next byte and the 5C stands for itself.
      *position += 2;
      const unsigned char next =
          pairAt(*position) ? static_cast<unsigned char>(XP7_Get1HexTxtChar(text, *position)) : 0;
      if (next == 0x30) {
        b = 0x00;
      } else if (next != 0x5C) {
        *position -= 2;
      }
    }
    out[i] = b;
    *position += 2;
  }
}

void XP7_RemoveHexTxt(fmx::TextAutoPtr& text, unsigned char asBinText) {
  fmx::TextAutoPtr result;
  result->Assign("", fmx::Text::kEncoding_ASCII_Mac);
  const unsigned int n = text->GetSize();
  if (n == 0) return;
  fmx::TextAutoPtr part;
  // An odd last character has no partner and is dropped: the loop ends once fewer
  // than two characters remain (on even lengths that is exactly p >= n).
  for (unsigned int p = 0; n - p >= 2;) {
    unsigned char batch[kRemoveBatch] = {};
    unsigned short units[kRemoveBatch];
    unsigned int count = 0;
    for (; count < kRemoveBatch && n - p >= 2; ++count, p += 2) {
      batch[count] = static_cast<unsigned char>(XP7_Get1HexTxtChar(text, p));
      units[count] = batch[count];  // the byte value as the code point, U+0000 included
    }
    if (asBinText) {
      XP7_BlockToBinTxt(reinterpret_cast<char*>(batch), count, part, fmx::Text::kEncoding_ASCII_Mac);
    } else {
      part->AssignUnicodeWithLength(units, count);
    }
    result->AppendText(*part);
  }
  text->DeleteText(0, kToEnd);
  text->AppendText(*result);
}

int XP7_TxtToHexTxt(fmx::TextAutoPtr& text, fmx::Text::Encoding encoding, fmx::TextAutoPtr& out) {
  const unsigned int n = text->GetSize();
  if (n == 0) return 0;
  // Four bytes cover one UTF-16 unit in any host encoding; the cap keeps the
  // buffer within 600 MB for the largest texts.
  const unsigned int bufferSize = n < 150000000u ? n * 4 + 10 : 600000010u;
  std::unique_ptr<unsigned char[]> buffer(new unsigned char[bufferSize]);
  unsigned int length = 0;
  XP7_TxtToBlockN(text, encoding, bufferSize, buffer.get(), &length);
  fmx::TextAutoPtr hex;
  XP7_BlockToHexTxt(reinterpret_cast<char*>(buffer.get()), length, hex);
  out->AppendText(*hex);
  return 0;
}

void XP_BufferToHexString(unsigned char* bytes, unsigned int count, const char* separator, unsigned int destinationSize,
                          char* destination) {
  if (destinationSize == 0) return;
  destination[0] = '\0';
  if (destinationSize <= 2 || count == 0) return;
  const unsigned long long limit = destinationSize - 2;
  const size_t s = separator != nullptr ? std::strlen(separator) : 0;
  static const char kLower[] = "0123456789abcdef";
  unsigned long long written = 0;
  for (unsigned int i = 0; i < count && written < limit; ++i) {
    destination[written] = kLower[bytes[i] >> 4];
    destination[written + 1] = kLower[bytes[i] & 15];
    written += 2;
    // Compared as a sum, so a separator as long as the destination is never written.
    if (i < count - 1 && written + s < destinationSize) {
      std::memcpy(destination + written, separator, s);
      written += s;
    }
    destination[written] = '\0';
  }
}
