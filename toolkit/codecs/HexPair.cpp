// The hex pair reader: two characters of host text to one byte.
#include "codecs/HexPair.h"

namespace {

// Only the low 8 bits count, so a unit such as U+0141 reads as "A"; lower case is
// refused on purpose, the writers never produce it.
int Nibble(unsigned short unit) {
  const unsigned char c = static_cast<unsigned char>(unit);
  if (c >= 'A' && c <= 'F') return c - 0x37;
  if (c >= '0' && c <= '9') return c - 0x30;
  return 42;
}

}  // namespace

char XP7_Get1HexTxtChar(fmx::TextAutoPtr& text, unsigned int position) {
  // Callers promise a whole pair. Should one not be there, the host clips the
  // read and the missing units stay 0, i.e. invalid digits: nothing past the end
  // of the text is ever touched.
  unsigned short units[2] = {0, 0};
  text->GetUnicode(units, position, 2);
  return static_cast<char>(static_cast<unsigned char>((Nibble(units[0]) << 4) + Nibble(units[1])));
}
