// Tests of hex text: writing, reading with and without the bin text escapes,
// removing it in place, and the lower-case C string form.
#include <gtest/gtest.h>

#include "../helpers/HostText.h"

#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "codecs/HexText.h"

namespace {

using testing_host::Units;
using testing_host::Set;

TEST(HexText, RandomBlocksGoThroughHexTextAndBack) {
  std::mt19937 random(4648);
  fmx::TextAutoPtr hex;
  for (unsigned int length = 0; length <= 80; ++length) {
    std::basic_string<unsigned char> bytes(length, 0);
    std::u16string upper;
    for (unsigned char& b : bytes) {
      b = static_cast<unsigned char>(random());
      char digits[3];
      std::snprintf(digits, sizeof digits, "%02X", b);
      upper += {char16_t(digits[0]), char16_t(digits[1])};
    }
    Set(hex, u"replaced");
    XP7_BlockToHexTxt(reinterpret_cast<char*>(bytes.data()), length, hex);
    ASSERT_EQ(Units(hex), upper);

    std::basic_string<unsigned char> back(length, 0);
    unsigned int position = 0, produced = 0;
    XP7_HexTxtToBlock(hex, hex->GetSize(), 0, &position, length, back.data(), &produced);
    EXPECT_EQ(back, bytes);
    EXPECT_EQ(produced, length);
    XP7_RemoveHexTxt(hex, 0);
    EXPECT_EQ(Units(hex), std::u16string(bytes.begin(), bytes.end()));  // code point = byte value
  }
}

TEST(HexText, HexTxtToBlockUnescapesOnlyOnRequest) {
  const struct {
    std::u16string text;
    unsigned char unescape;
    std::vector<unsigned char> bytes;
    unsigned int produced, position;
  } cases[] = {
      {u"5C3041", 1, {0x00, 0x41}, 2, 6},
      {u"5C3041", 0, {0x5C, 0x30}, 2, 4},
      {u"5C5C41", 1, {0x5C, 0x41}, 2, 6},
      {u"5C41", 1, {0x5C, 0x41}, 2, 4},        // no escape: the follower is the next byte
      {u"415C", 1, {0x41, 0x5C, 0x00}, 2, 4},  // the follower would lie past the end
      {u"41424", 0, {0x41, 0x42, 0, 0, 0}, 2, 4},
      {u"", 1, {0, 0}, 0, 0},
  };
  for (const auto& c : cases) {
    fmx::TextAutoPtr t;
    Set(t, c.text);
    std::vector<unsigned char> out(c.bytes.size(), 0xEE);
    unsigned int position = 0, produced = 99;
    XP7_HexTxtToBlock(t, t->GetSize(), c.unescape, &position, static_cast<unsigned int>(out.size()), out.data(),
                      &produced);
    EXPECT_EQ(out, c.bytes);
    EXPECT_EQ(produced, c.produced);
    EXPECT_EQ(position, c.position);
  }
}

TEST(HexText, RemoveHexTxtGivesCharactersOrBinText) {
  fmx::TextAutoPtr t;
  Set(t, u"303132333435363738005C4142");  // more than one batch of ten bytes
  XP7_RemoveHexTxt(t, 1);
  EXPECT_EQ(Units(t), u"012345678\\0\\\\AB");
  Set(t, u"41424");  // an odd last digit has no partner and is dropped
  XP7_RemoveHexTxt(t, 0);
  EXPECT_EQ(Units(t), u"AB");
}

TEST(HexText, TxtToHexTxtAppendsTheBytesOfTheEncoding) {
  fmx::TextAutoPtr text, out;
  Set(out, u"kept:");
  XP7_TxtToHexTxt(text, fmx::Text::kEncoding_ASCII_Mac, out);
  Set(text, u"A\u00E9");  // U+00E9 LATIN SMALL LETTER E WITH ACUTE
  EXPECT_EQ(XP7_TxtToHexTxt(text, fmx::Text::kEncoding_UTF8, out), 0);
  XP7_TxtToHexTxt(text, fmx::Text::kEncoding_ASCII_Mac, out);
  EXPECT_EQ(Units(out), u"kept:41C3A9418E");
}

TEST(HexText, BufferToHexStringStaysInsideTheDestination) {
  unsigned char bytes[] = {0x01, 0xAB, 0x03};
  const struct {
    const char* separator;
    unsigned int count, size;
    std::string expected;
  } cases[] = {
      {":", 3, 64, "01:ab:03"},    // lower case, unlike hex text
      {":", 3, 6, "01:ab"},        // stops when 4 = size - 2 digits are written
      {":", 3, 8, "01:ab:"},       // room for the separator but not for the next pair
      {"::::::::", 3, 6, "01ab"},  // a separator longer than the room is left out
      {":", 0, 64, ""},           {":", 3, 1, ""},
  };
  for (const auto& c : cases) {
    std::string destination(c.size + 8, '#');
    XP_BufferToHexString(bytes, c.count, c.separator, c.size, destination.data());
    EXPECT_EQ(std::string(destination.c_str()), c.expected) << c.size;
    EXPECT_EQ(destination.substr(c.size), std::string(8, '#')) << c.size;
  }
}

}  // namespace
