// Tests of the text conversion core: code points in and out of host text, the
// byte paths of XP7_TxtToCStr, the readers, trimming and the plain UTF-16 buffers.
#include <gtest/gtest.h>

#include "../helpers/HostText.h"

#include <cstring>
#include <string>
#include <utility>

#include "MemHost.h"
#include "encoding/LegacyTables.h"
#include "text/TextCore.h"

namespace {

using testing_host::Set;
using testing_host::UniStr;
using testing_host::Units;

std::u16string AfterAppendingCodePoint(unsigned int cp) {
  fmx::TextAutoPtr t;
  EXPECT_EQ(XP7_AppendUTF32CharToTxt(cp, t), 0);
  return Units(t);
}

TEST(TextCore, AppendUTF32CharPassesHighSurrogatesButNotLowOnes) {
  EXPECT_EQ(AfterAppendingCodePoint(0x1F600), u"\xD83D\xDE00");  // U+1F600 GRINNING FACE
  EXPECT_EQ(AfterAppendingCodePoint(0xDC00), u"\xFFFD");
  EXPECT_EQ(AfterAppendingCodePoint(0xD800), u"\xD800");
  EXPECT_EQ(AfterAppendingCodePoint(0x110000), u"\xFFFD");
  EXPECT_EQ(AfterAppendingCodePoint(0x10FFFF), u"\xDBFF\xDFFF");
  EXPECT_EQ(AfterAppendingCodePoint(0), std::u16string(1, u'\0'));
}

TEST(TextCore, AppendUnicodeStrTurnsEverySecondHalfIntoFFFD) {
  fmx::TextAutoPtr t;
  unsigned short pair[] = {0xD83D, 0xDE00, 0x0000, 0x0041};
  XP7_AppendUnicodeStrToTxt(pair, 4, t);
  EXPECT_EQ(Units(t), std::u16string(u"\xD83D\xFFFD\0A", 4));
}

TEST(TextCore, AppendCharRefinesMacRomanAndRefusesLoneUTF8HighBytes) {
  const unsigned char saved = gBetterEncoding_ASCII_Mac;
  fmx::TextAutoPtr t;
  gBetterEncoding_ASCII_Mac = 1;
  XP7_AppendCharToTxt('\xBD', t, fmx::Text::kEncoding_ASCII_Mac);  // U+03A9 GREEK CAPITAL LETTER OMEGA
  XP7_AppendCharToTxt('\xF0', t, fmx::Text::kEncoding_ASCII_Mac);  // U+F8FF Apple logo
  gBetterEncoding_ASCII_Mac = 0;
  XP7_AppendCharToTxt('\xF0', t, fmx::Text::kEncoding_ASCII_Mac);
  XP7_AppendCharToTxt('\xC3', t, fmx::Text::kEncoding_UTF8);
  XP7_AppendCharToTxt('\0', t, fmx::Text::kEncoding_UTF8);
  XP7_AppendCharToTxt('\xE9', t, fmx::Text::kEncoding_ISO_8859_1);
  gBetterEncoding_ASCII_Mac = saved;
  EXPECT_EQ(Units(t), std::u16string(u"\x03A9\xF8FF\xF8FF\xFFFD\0\xE9", 6));
}

TEST(TextCore, AppendCharWithoutTheFlagLeavesBDToTheHost) {
  const unsigned char saved = gBetterEncoding_ASCII_Mac;
  gBetterEncoding_ASCII_Mac = 0;
  fmx::TextAutoPtr ours, hosts;
  XP7_AppendCharToTxt('\xBD', ours, fmx::Text::kEncoding_ASCII_Mac);
  hosts->Assign("\xBD", fmx::Text::kEncoding_ASCII_Mac);
  gBetterEncoding_ASCII_Mac = saved;
  EXPECT_EQ(Units(ours), Units(hosts));
}

TEST(TextCore, CStringsPascalStringsAndUTF16StringsMakeText) {
  fmx::TextAutoPtr t;
  XP7_CStrToTxt("caf\xC3\xA9", t, fmx::Text::kEncoding_UTF8);
  EXPECT_EQ(Units(t), u"caf\u00E9");
  const unsigned char pascal[] = {3, 'a', 0, 'b', 'z'};
  EXPECT_EQ(XP7_PStrToTxt(pascal, t, fmx::Text::kEncoding_ASCII_Mac), 0);
  EXPECT_EQ(Units(t), std::u16string(u"a\0b", 3));
  unsigned short uni[] = {0x41, 0xDC00, 0};
  XP7_UniStrToTxt(uni, t);
  XP7_AppendUniStrToTxt(uni, t);
  EXPECT_EQ(Units(t), u"A\xDC00" u"A\xDC00");
  XP7_AppendCStrToTxt("\x8E", t, fmx::Text::kEncoding_ASCII_Mac);
  EXPECT_EQ(Units(t).back(), u'\u00E9');
}

TEST(TextCore, TxtToTxtReplacesAndAppendTxtToTxtAdds) {
  fmx::TextAutoPtr src, dst;
  Set(src, u"new");
  Set(dst, u"old");
  XP7_AppendTxtToTxt(src, dst);
  EXPECT_EQ(Units(dst), u"oldnew");
  XP7_TxtToTxt(src, dst);
  EXPECT_EQ(Units(dst), u"new");
}

TEST(TextCore, CopyDefaultStyleLeavesAnEmptyTextWithTheFirstCharactersStyle) {
  fmx::TextAutoPtr src, dst;
  Set(src, u"styled");
  memhost::SetStyle(*src, 42);
  Set(dst, u"former content");
  EXPECT_EQ(XP7_CopyDefaultStyle(*src, dst), 0);
  EXPECT_EQ(dst->GetSize(), 0u);
  EXPECT_EQ(memhost::StyleOf(*dst), 42u);

  fmx::TextAutoPtr empty, untouched;
  Set(untouched, u"stays");
  XP7_CopyDefaultStyle(*empty, untouched);
  EXPECT_EQ(Units(untouched), u"stays");
}

// ByteValues skips wide units without taking room; `improved` uses the toolkit's Mac
// Roman table (U+2126 OHM SIGN is taken as omega, U+4E00 has no byte); else the host's.
TEST(TextCore, TxtToCStrTakesEachPathWithinTheBuffer) {
  const struct {
    std::u16string text;
    unsigned int start, length, size;
    bool improved;
    fmx::Text::Encoding enc;
    std::string expected;
  } cases[] = {
      {u"a\u20ACb\u00FFc", 0, 3, 10, false, ByteValues, "ab"},
      {u"a\u20ACb\u00FFc", 0, 0xFFFFFFFF, 4, false, ByteValues, "ab\xFF"},
      {u"a\u20ACb\u00FFc", 4, 0xFFFFFFF0, 10, false, ByteValues, "c"},
      {u"\u00E9\u2126\u4E00\U0001F600z", 0, 0xFFFFFFFF, 16, true, fmx::Text::kEncoding_ASCII_Mac, "\x8E\xBD**z"},
      {u"\u00E9\u2126\u4E00\U0001F600z", 0, 0xFFFFFFFF, 3, true, fmx::Text::kEncoding_ASCII_Mac, "\x8E\xBD"},
      {u"caf\u00E9", 0, 0xFFFFFFFF, 16, false, fmx::Text::kEncoding_UTF8, "caf\xC3\xA9"},
      {u"caf\u00E9", 1, 2, 16, true, fmx::Text::kEncoding_ISO_8859_1, "af"},
  };
  fmx::TextAutoPtr t;
  for (const auto& c : cases) {
    Set(t, c.text);
    char buf[16];
    XP7_TxtToCStr(t, c.start, c.length, c.size, c.improved, buf, c.enc);
    EXPECT_STREQ(buf, c.expected.c_str()) << c.expected;
  }
  char untouched[4] = {'x', 'x', 'x', 'x'};  // size 0 writes nothing
  for (fmx::Text::Encoding enc : {ByteValues, fmx::Text::kEncoding_ASCII_Mac, fmx::Text::kEncoding_UTF8}) {
    XP7_TxtToCStr(t, 0, 0xFFFFFFFF, 0, true, untouched, enc);
    EXPECT_EQ(untouched[0], 'x');
  }
}

TEST(TextCore, GetBytesImprovedRefusesOtherEncodings) {
  fmx::TextAutoPtr t;
  Set(t, u"abc");
  char buf[8] = "xxxxxxx";
  EXPECT_EQ(XP7_GetBytesImproved(t, buf, 7, 0, 0xFFFFFFFF, fmx::Text::kEncoding_UTF8), -50);
  EXPECT_STREQ(buf, "");
  EXPECT_EQ(XP7_GetBytesImproved(t, buf, 2, 1, 0xFFFFFFFF, fmx::Text::kEncoding_ASCII_Mac), 0);
  EXPECT_STREQ(buf, "bc");
}

TEST(TextCore, GetOneByteAnswersQuestionMarkPastTheEndAndForWideUnits) {
  fmx::TextAutoPtr t;
  Set(t, u"a\u0100");
  EXPECT_EQ(XP7_GetOneByte(t, 2, 0), 'a');
  EXPECT_EQ(XP7_GetOneByte(t, 2, 1), '?');
  EXPECT_EQ(XP7_GetOneByte(t, 2, 2), '?');
  unsigned char out = 7;
  EXPECT_FALSE(XP7_GetOneByte_Checked(t, 2, 1, &out));
  EXPECT_FALSE(XP7_GetOneByte_Checked(t, 1, 1, &out));
  EXPECT_EQ(out, 7);
}

TEST(TextCore, Get1UTF32CharJoinsPairsAndReportsBrokenOnes) {
  fmx::TextAutoPtr t;
  Set(t, u"\xD83D\xDE00x\xDE00\xD800y\xD800");
  const unsigned int size = t->GetSize();
  unsigned int pos = 0;
  EXPECT_EQ(XP7_Get1UTF32Char(t, size, &pos), 0x1F600u);
  EXPECT_EQ(pos, 1u);
  pos = 3;
  EXPECT_EQ(XP7_Get1UTF32Char(t, size, &pos), static_cast<unsigned int>(gMyErrorChar));
  pos = 4;  // a high surrogate swallows the unit after it even when that is no low one
  EXPECT_EQ(XP7_Get1UTF32Char(t, size, &pos), static_cast<unsigned int>(gMyErrorChar));
  EXPECT_EQ(pos, 5u);
  pos = 6;  // a high surrogate at the very end reads as itself
  EXPECT_EQ(XP7_Get1UTF32Char(t, size, &pos), 0xD800u);
  EXPECT_EQ(pos, 6u);
}

TEST(TextCore, ErrorCharIsSignExtended) {
  const unsigned char saved = gMyErrorChar;
  gMyErrorChar = 0xFF;
  fmx::TextAutoPtr t;
  Set(t, u"\xDC00");
  unsigned int pos = 0;
  EXPECT_EQ(XP7_Get1UTF32Char(t, 1, &pos), 0xFFFFFFFFu);
  gMyErrorChar = saved;
}

TEST(TextCore, UTF32CharToUniStrWritesUnitsAndATerminator) {
  unsigned short out[3] = {9, 9, 9};
  EXPECT_EQ(XP7_UTF32CharToUniStr(0x1F600, out), 2u);
  EXPECT_EQ(out[0], 0xD83D);
  EXPECT_EQ(out[1], 0xDE00);
  EXPECT_EQ(out[2], 0);
  EXPECT_EQ(XP7_UTF32CharToUniStr(0, out), 1u);
  EXPECT_EQ(out[0], 0);
  EXPECT_EQ(XP7_UTF32CharToUniStr(0xDFFF, out), 1u);
  EXPECT_EQ(out[0], 0xFFFD);
}

TEST(TextCore, HasOnlyLowerASCII) {
  fmx::TextAutoPtr t;
  EXPECT_TRUE(XP7_HasOnlyLowerASCIIinTxt(t));
  Set(t, u"plain\x7F");
  EXPECT_TRUE(XP7_HasOnlyLowerASCIIinTxt(t));
  Set(t, u"caf\u00E9");
  EXPECT_FALSE(XP7_HasOnlyLowerASCIIinTxt(t));
}

TEST(TextCore, TxtCharToAsciiReadsEscapesAndMapsToMacRoman) {
  fmx::TextAutoPtr t;
  // The byte at `pos` with escapes on, and where `pos` is left.
  const auto escaped = [&t](unsigned int size, unsigned int pos) {
    const char c = XP7_TxtCharToAscii(t, 1, size, &pos, 0);
    return std::make_pair(c, pos);
  };
  Set(t, u"\\0");
  EXPECT_EQ(escaped(2, 0), std::make_pair('\0', 1u));
  Set(t, u"\\\\x\\q\\");
  EXPECT_EQ(escaped(6, 0), std::make_pair('\\', 1u));
  EXPECT_EQ(escaped(6, 3), std::make_pair('\\', 3u));  // backslash before q: not an escape, q is read next
  EXPECT_EQ(escaped(6, 5).first, '\\');

  Set(t, u"\u2126\u00E9");
  const struct {
    unsigned int pos;
    short mode;
    unsigned char byte;
  } mapped[] = {{0, 20, 0xBD}, {0, 4, 0xFF}, {1, 4, 0x8E}};
  for (auto c : mapped) EXPECT_EQ(static_cast<unsigned char>(XP7_TxtCharToAscii(t, 0, 2, &c.pos, c.mode)), c.byte);
}

TEST(TextCore, RemoveCharsAtEndDoesNotClamp) {
  fmx::TextAutoPtr t;
  Set(t, u"abcdef");
  XP7_RemoveCharsAtEnd(t, 2);
  EXPECT_EQ(Units(t), u"abcd");
  XP7_RemoveCharsAtEnd(t, 5);
  EXPECT_EQ(Units(t), u"abcd");
}

TEST(TextCore, RemoveAndReplaceTheLastCharacter) {
  fmx::TextAutoPtr t;
  Set(t, u"list,");
  XP7_RemoveCharFromEndOfTxt(t, ';');
  EXPECT_EQ(Units(t), u"list,");
  XP7_RemoveCharFromEndOfTxt(t, ',');
  EXPECT_EQ(Units(t), u"list");
  XP7_ReplaceCharAtEndOfTxt(t, 't', '\xF0');
  EXPECT_EQ(Units(t), u"lis\uF8FF");
  fmx::TextAutoPtr empty;
  XP7_RemoveCharFromEndOfTxt(empty, '\0');
  EXPECT_EQ(empty->GetSize(), 0u);
}

TEST(TextCore, GetTxtFromEndEncodesTheLastUnitsInNative) {
  fmx::TextAutoPtr t;
  Set(t, u"abc\u00E9");
  char buf[8];
  XP7_GetTxtFromEnd(t, buf, 7, 2);
  EXPECT_STREQ(buf, "c\x8E");  // Native stands for Mac Roman
  XP7_GetTxtFromEnd(t, buf, 7, 99);
  EXPECT_STREQ(buf, "abc\x8E");
}

TEST(TextCore, BlockToNewCStringCopiesAndTerminates) {
  char block[] = {'a', '\0', 'b'};
  char* s = XP7_BlockToNewCString(block, 3);
  EXPECT_EQ(std::memcmp(s, "a\0b\0", 4), 0);
  delete[] s;
}

TEST(TextCore, TxtToUniStrCutsToTheBuffer) {
  fmx::TextAutoPtr t;
  Set(t, u"abcdef");
  unsigned short buf[4];
  EXPECT_EQ(XP7_TxtToUniStr(t, buf, 4), 3u);
  EXPECT_EQ(UniStr(buf), u"abc");
  unsigned short big[10];
  EXPECT_EQ(XP7_TxtToUniStr(t, big, 10), 6u);
  EXPECT_EQ(XP7_StrlenUni(big), 6u);
}

TEST(UniStrSimple, HighCharactersBecomeStarsExceptInConcatSimple) {
  const unsigned short uni[] = {'a', 0xE9, 'b', 0x4E00, 0};
  char c[8];
  XP7_UniStrToCStrSimple(uni, c, 3);
  EXPECT_STREQ(c, "a*b");

  unsigned short out[8];
  EXPECT_EQ(XP7_CStrToUniStrSimple("x\xE9y", out, 8), 3u);
  EXPECT_EQ(UniStr(out), u"x*y");

  XP7_AppendCStrToUniStrSimple("\x80zz", out, 5);
  EXPECT_EQ(UniStr(out), u"x*y*z");

  unsigned short concat[8] = {'q', 0};
  EXPECT_EQ(XP7_CStrToUniStrConcatSimple("\x80\xE9", concat, 8), 3u);
  EXPECT_EQ(concat[1], 0xFF80);
  EXPECT_EQ(concat[2], 0xFFE9);
  EXPECT_EQ(XP7_CStrToUniStrConcatSimple("abcdef", concat, 5), 5u);
  EXPECT_EQ(concat[5], 0);
}

TEST(UniStrSimple, CopyReturnsMaxAndConcatStopsAtMax) {
  const unsigned short src[] = {'a', 'b', 'c', 0};
  unsigned short dst[8] = {};
  EXPECT_EQ(XP7_UniStrToUniStrCopy(src, dst, 2), 2u);
  EXPECT_EQ(UniStr(dst), u"ab");
  EXPECT_EQ(XP7_UniStrToUniStrCopy(src, dst, 7), 7u);
  EXPECT_EQ(XP7_UniStrToUniStrConcat(src, dst, 5), 5u);
  EXPECT_EQ(UniStr(dst), u"abcab");
  unsigned short s[] = {'a', 'x', 'a', 0};
  XP7_ReplaceCharsUni(s, 'a', 'o');
  EXPECT_EQ(UniStr(s), u"oxo");
}

}  // namespace
