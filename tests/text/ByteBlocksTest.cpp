// Tests of byte block and buffer conversion: the UTF-8 check before appending,
// the replace and append rules, and the byte counts of the text-to-block writers.
#include <gtest/gtest.h>

#include "../helpers/HostText.h"

#include <memory>
#include <string>

#include "text/ByteBlocks.h"
#include "text/TextCore.h"

namespace {

using testing_host::Units;
using testing_host::Set;

using Enc = fmx::Text::Encoding;

std::string Block(const unsigned char* block, unsigned int len) { return std::string(block, block + len); }

TEST(ByteBlocks, AppendBlockRefusesMalformedUTF8AndLeavesTheTextAlone) {
  const std::string malformed[] = {
      "\xED\xA0\x80",          // U+D800 encoded as UTF-8
      "\xC3",                  // cut off by the end of the block
      "a\xF0\x9F\x98",         // cut off after three of four bytes
      "\x80",                  // stray continuation byte
      "\xF8\x88\x80\x80\x80",  // five-byte form
      "\xE2\x28\xA1",          // second byte no continuation byte
  };
  fmx::TextAutoPtr t;
  for (const std::string& b : malformed) {
    EXPECT_EQ(XP7_AppendBlockToTxt(b.data(), unsigned(b.size()), t, fmx::Text::kEncoding_UTF8, 0), -4280) << b;
  }
  EXPECT_EQ(t->GetSize(), 0u);
  // Overlong U+0000 is let through on purpose; other encodings take any byte.
  EXPECT_EQ(XP7_AppendBlockToTxt("\xC0\x80", 2, t, fmx::Text::kEncoding_UTF8, 0), 0);
  EXPECT_EQ(XP7_AppendBlockToTxt("\xE2\x82\xAC", 3, t, fmx::Text::kEncoding_UTF8, 0), 0);
  EXPECT_EQ(XP7_AppendBlockToTxt("\x80\xE9", 2, t, fmx::Text::kEncoding_ISO_8859_1, 0), 0);
  EXPECT_EQ(XP7_AppendBlockToTxt("", 0, t, fmx::Text::kEncoding_UTF8, 0), 0);
  fmx::TextAutoPtr hosts;
  hosts->AssignWithLength("\xC0\x80", 2, fmx::Text::kEncoding_UTF8);
  EXPECT_EQ(Units(t), Units(hosts) + u"\u20AC\u0080\u00E9");
}

TEST(ByteBlocks, BlockToTxtReplacesOrAppendsButByteValuesAlwaysAppends) {
  fmx::TextAutoPtr t;
  Set(t, u"old");
  XP7_BlockToTxt("", 0, t, fmx::Text::kEncoding_UTF8, 0);
  EXPECT_EQ(Units(t), u"old");  // size 0 does not replace
  XP7_BlockToTxt("\x00\xFF", 2, t, ByteValues, 0);
  EXPECT_EQ(Units(t), std::u16string(u"old\0\u00FF", 5));
  XP7_BlockToTxt("\xC3\xA9\x00z", 4, t, fmx::Text::kEncoding_UTF8, 0);
  XP7_BlockToTxt("\x8E", 1, t, fmx::Text::kEncoding_ASCII_Mac, 1);
  XP7_AppendBlockToUnicodeTxt("\xE9\x00", 2, t);
  EXPECT_EQ(Units(t), std::u16string(u"\u00E9\0z\u00E9\u00E9\0", 6));
}

TEST(ByteBlocks, TxtToBufCountsBytesAcrossEmbeddedNuls) {
  struct Case {
    std::u16string text;
    Enc enc;
    std::string bytes;
  };
  const Case cases[] = {
      // U+65E5 and U+672C (日, 本) in Shift_JIS are 93 FA and 96 7B.
      {std::u16string(u"\u65E5\0\u672C", 3), fmx::Text::kEncoding_ShiftJIS_Win, std::string("\x93\xFA\0\x96\x7B", 5)},
      {std::u16string(u"a\0\0\u672C\0", 5), fmx::Text::kEncoding_ShiftJIS_Win, std::string("a\0\0\x96\x7B\0", 6)},
      {std::u16string(u"\u00E9\u20AC\0a", 4), fmx::Text::kEncoding_UTF8, std::string("\xC3\xA9\xE2\x82\xAC\0a", 7)},
      {std::u16string(u"\u00E9\0\u0100", 3), ByteValues, std::string("\xE9\0\0", 3)},  // wide units skipped, counted
      // Native is found to be Mac Roman in the in-memory host: one byte counted per
      // unit, even for the pair the host writes as a single "?".
      {u"a\U0001F600", fmx::Text::kEncoding_Native, std::string("a?\0", 3)},
      {u"", fmx::Text::kEncoding_ShiftJIS_Win, ""},
  };
  for (const Case& c : cases) {
    fmx::TextAutoPtr t;
    Set(t, c.text);
    char* raw = nullptr;
    unsigned int len = 12345;
    ASSERT_EQ(XP7_TxtToBuf(t, c.enc, false, &raw, &len), 0);
    const std::unique_ptr<char[]> buf(raw);
    EXPECT_EQ(std::string(buf.get(), len), c.bytes) << int(c.enc);
  }
  fmx::TextAutoPtr t;
  unsigned int len;
  EXPECT_EQ(XP7_TxtToBuf(t, fmx::Text::kEncoding_UTF8, true, nullptr, &len), -50);
}

TEST(ByteBlocks, BlockWritersCountWhatTheyPromise) {
  fmx::TextAutoPtr t, empty;
  Set(t, u"\u00E9\u20ACa");
  unsigned char block[16];
  unsigned int len = 99;
  Enc utf8 = fmx::Text::kEncoding_UTF8;
  XP7_TxtToBlockN(t, utf8, 4, block, &len);
  EXPECT_EQ(Block(block, len), "\xC3\xA9\xE2\x82");
  XP7_TxtToBlockN(empty, utf8, 4, block, &len);
  EXPECT_EQ(len, 0u);
  // Units, not bytes: six bytes are written, three reported.
  XP7_TxtToBlocPrevious(t, utf8, sizeof block - 1, block, &len);
  EXPECT_EQ(len, 3u);
  EXPECT_STREQ(reinterpret_cast<char*>(block), "\xC3\xA9\xE2\x82\xAC" "a");
  XP7_TxtToBlock_ASCII(t, 2, block, &len);
  EXPECT_EQ(Block(block, len), "\xE9?");
  XP7_TxtToBlock_Varn_BytesOnly(t, 0, 0xFFFFFFFF, block, &len);
  EXPECT_EQ(Block(block, len), "\xE9" "a");
  XP7_TxtToBlock_Varn_BytesOnly(t, 2, 0xFFFFFFF0, block, &len);
  EXPECT_EQ(Block(block, len), "a");
  XP7_TxtToBlock_Varn_BytesOnly(t, 1, 1, block, &len);
  EXPECT_EQ(Block(block, len + 1), std::string(1, '\0'));
}

}  // namespace
