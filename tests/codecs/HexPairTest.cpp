// Tests of the hex pair reader: digits, the folded value of invalid ones, and
// reads at the end of the text.
#include <gtest/gtest.h>

#include <string>

#include "codecs/HexPair.h"

namespace {

TEST(HexPair, ReadsUpperCaseDigitsAndFoldsTheRestTo42) {
  const struct {
    std::u16string text;
    unsigned int position;
    unsigned char expected;
  } cases[] = {
      {u"x4A", 1, 0x4A},
      {u"0F", 0, 0x0F},
      {u"4a", 0, 0x40 + 42},  // lower case is refused
      {u"G1", 0, 0xA1},       // (42 << 4) + 1, truncated to 8 bits
      {u"zz", 0, 0xCA},       // (42 << 4) + 42, truncated
      {u"/:@G", 0, 0xCA},     // the neighbours of "0"-"9"
      {u"/:@G", 2, 0xCA},     // and of "A"-"F"
      // Only the low byte counts: U+0141 LATIN CAPITAL LETTER L WITH STROKE reads
      // as "A", U+0130 LATIN CAPITAL LETTER I WITH DOT ABOVE as "0".
      {u"\u0141\u0130", 0, 0xA0},
      // Callers promise a whole pair; past the end the missing digits count as
      // invalid, and nothing beyond the text is read.
      {u"4", 0, 0x40 + 42},
      {u"41", 2, 0xCA},
  };
  for (const auto& c : cases) {
    fmx::TextAutoPtr t;
    t->AssignUnicodeWithLength(reinterpret_cast<const unsigned short*>(c.text.data()),
                               static_cast<uint32_t>(c.text.size()));
    EXPECT_EQ(static_cast<unsigned char>(XP7_Get1HexTxtChar(t, c.position)), c.expected) << c.position;
  }
}

}  // namespace
