// Tests of bin text: the escapes both ways, the plain character reader and the
// byte-value listing.
#include <gtest/gtest.h>

#include "../helpers/HostText.h"

#include <string>

#include "codecs/BinText.h"

namespace {

using testing_host::Units;
using testing_host::Set;

TEST(BinText, EscapesGoInAndComeOutAgain) {
  fmx::TextAutoPtr t;
  Set(t, u"old");
  char bytes[] = {0x41, 0x00, 0x5C, 0x42, '\x8E'};
  XP7_BlockToBinTxt(bytes, sizeof bytes, t, fmx::Text::kEncoding_ASCII_Mac);
  EXPECT_EQ(Units(t), u"A\\0\\\\B\u00E9");  // Mac 0x8E: U+00E9 LATIN SMALL LETTER E WITH ACUTE
  XP7_RemoveBinTxt(t);
  EXPECT_EQ(Units(t), std::u16string(u"A\0\\B\u00E9", 5));
}

TEST(BinText, RemoveBinTxtTakesOnlyTheTwoEscapes) {
  const struct {
    std::u16string in, out;
  } cases[] = {
      {u"ends in \\", u"ends in \\"},
      {u"\\n stays", u"\\n stays"},
      {u"\\\\0", u"\\0"},                                          // the first pair is the escape
      {u"\\\U0001F600\\0", std::u16string(u"\\\U0001F600\0", 4)},  // U+1F600 GRINNING FACE, kept whole
      {u"\\\xDC00", u"\\\xDC00"},                                  // a lone low surrogate passes unchanged
      {u"", u""},
  };
  for (const auto& c : cases) {
    fmx::TextAutoPtr t;
    Set(t, c.in);
    XP7_RemoveBinTxt(t);
    EXPECT_EQ(Units(t), c.out);
  }
}

TEST(BinText, ReadersTakeUnitsAsTheyStand) {
  fmx::TextAutoPtr t;
  Set(t, u"A\\0\u20AC");  // U+20AC EURO SIGN is above 255
  unsigned char out[6];
  unsigned int position = 0, produced = 99;
  XP7_BinTxtToBlock(t, 4, &position, 6, out, &produced);
  const unsigned char expected[] = {'A', '\\', '0', '?', 0, 0};  // no unescaping, zeros past the end
  EXPECT_EQ(std::basic_string<unsigned char>(out, 6), std::basic_string<unsigned char>(expected, 6));
  EXPECT_EQ(produced, 4u);
  EXPECT_EQ(position, 4u);

  Set(t, std::u16string(u"Hi\0\u00FF\u20AC", 5));
  XP7_ConvertTxtToByteValues(t);
  EXPECT_EQ(Units(t), u"72 105 0 255 * ");
}

}  // namespace
