// Tests of the plain string helpers: strings, blocks, line ends, numbers, byte order, ticks.
#include "services/PlainStrings.h"

#include <Carbon/Carbon.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstring>
#include <string>
#include <vector>

#include "../helpers/HostText.h"

namespace {

// A Pascal string of the given bytes, in a buffer of the full 256.
std::vector<unsigned char> pascal(const std::string& bytes) {
  std::vector<unsigned char> p(256, 0xAA);
  p[0] = static_cast<unsigned char>(bytes.size());
  std::memcpy(p.data() + 1, bytes.data(), bytes.size());
  return p;
}

std::string pascalBytes(const unsigned char* p) { return std::string(reinterpret_cast<const char*>(p + 1), p[0]); }

// The C string an in-place edit leaves of `s`.
std::string edited(void (*edit)(char*), std::string s) {
  edit(s.data());
  return s.c_str();
}

const unsigned short* units(const char16_t* s) {
  return reinterpret_cast<const unsigned short*>(s);
}

template <typename T>
std::vector<unsigned char> memoryBytes(T value) {
  std::vector<unsigned char> bytes(sizeof value);
  std::memcpy(bytes.data(), &value, sizeof value);
  return bytes;
}

}  // namespace

TEST(PlainStrings, CopiesTakeSourceFirst) {
  char dst[16] = "old";
  XP_CToCStrCopy("new", dst);
  EXPECT_STREQ(dst, "new");
  XP_CToCStrConcat("er", dst);
  EXPECT_STREQ(dst, "newer");
  EXPECT_EQ(XP_Strlen(dst), 5);
}

TEST(PlainStrings, EqualPStringReportsDifference) {
  EXPECT_FALSE(XP_EqualPString(pascal("same").data(), pascal("same").data()));
  EXPECT_FALSE(XP_EqualPString(pascal("").data(), pascal("").data()));
  EXPECT_TRUE(XP_EqualPString(pascal("abc").data(), pascal("abcd").data()));
  EXPECT_TRUE(XP_EqualPString(pascal("abcd").data(), pascal("abcX").data()));
}

TEST(PlainStrings, PascalStringsAreCutAt255) {
  const std::string text300(300, 'x');
  std::string inPlace = text300;
  inPlace[254] = 'L';
  inPlace[255] = 'C';
  XP_CToPStr(inPlace.data());
  EXPECT_EQ(static_cast<unsigned char>(inPlace[0]), 255);
  EXPECT_EQ(inPlace[255], 'L');  // the 255th byte moved up by one, the 256th is gone

  unsigned char copy[256];
  XP_CToPStrCopy(std::string(256, 'y').c_str(), copy);
  EXPECT_EQ(copy[0], 255);
  XP_CToPStrCopy(std::string(255, 'y').c_str(), copy);
  EXPECT_EQ(pascalBytes(copy), std::string(255, 'y'));
}

TEST(PlainStrings, PStrConcatKeepsTotalAt255) {
  auto dst = pascal(std::string(100, 'a'));
  const std::string tail = std::string(155, 'b') + std::string(45, 'c');
  XP_PStrConcat(pascal(tail).data(), dst.data());
  EXPECT_EQ(pascalBytes(dst.data()), std::string(100, 'a') + std::string(155, 'b'));

  auto shortDst = pascal("ab");
  XP_PStrConcat(pascal("cd").data(), shortDst.data());
  EXPECT_EQ(pascalBytes(shortDst.data()), "abcd");
}

TEST(PlainStrings, PascalToCStringKeepsEveryByte) {
  auto p = pascal("abc");
  XP_PToCStr(p.data());
  EXPECT_STREQ(reinterpret_cast<char*>(p.data()), "abc");

  char c[16] = "x";
  XP_PToCStrConcat(pascal("yz").data(), c);
  EXPECT_STREQ(c, "xyz");
  XP_PToCStrCopy(pascal("").data(), c);
  EXPECT_STREQ(c, "");
}

TEST(PlainStrings, ConcatUniAppendsSignExtendedLowBytes) {
  unsigned short dst[8] = {'a', 0, 0x7777, 0x7777, 0x7777, 0x7777};
  const unsigned short src[] = {0x00E9, 0x0141, 0x007F, 0};  // é, Ł, DEL
  XP_CToCStrConcatUni(src, dst);
  const unsigned short expected[] = {'a', 0xFFE9, 0x0041, 0x007F, 0};
  EXPECT_EQ(std::memcmp(dst, expected, sizeof expected), 0);

  unsigned short copy[8];
  XP_CToCStrCopyUni(src, copy);
  EXPECT_EQ(std::memcmp(copy, src, sizeof src), 0);
}

TEST(PlainStrings, IsSameNameCutsTheCallersPath) {
  char path[] = "C:\\Docs\\Report.txt";
  EXPECT_TRUE(XP_IsSameName(path, "report"));
  EXPECT_STREQ(path, "C:\\Docs\\Report");

  char bare[] = "Notes.old.txt";
  EXPECT_FALSE(XP_IsSameName(bare, "notes"));
  EXPECT_STREQ(bare, "Notes.old");
}

TEST(PlainStrings, RemoveExtensionNeverLooksAtTheFirstByte) {
  EXPECT_EQ(edited(XP_RemoveExtension, ".cfg"), ".cfg");
  EXPECT_EQ(edited(XP_RemoveExtension, "a.b.c"), "a.b");
  EXPECT_EQ(edited(XP_RemoveExtension, "plain"), "plain");
}

TEST(PlainStrings, ExtensionOfUnicodePathFollowsTheLastDot) {
  unsigned short ext[8] = {'o', 'l', 'd', 0};
  XP_GetExtensionFromFullPathUNI(units(u"dir.d/a.tar.gz"), ext);
  EXPECT_EQ(testing_host::UniStr(ext), u"gz");
  XP_GetExtensionFromFullPathUNI(units(u"README"), ext);
  EXPECT_EQ(ext[0], 0);
  XP_GetExtensionFromFullPathUNI(units(u"name."), ext);
  EXPECT_EQ(ext[0], 0);
}

TEST(PlainStrings, FoldingTouchesOnlyAToZ) {
  EXPECT_TRUE(XP_EqualCString("Hello", "hELLO", false));
  EXPECT_FALSE(XP_EqualCString("Hello", "hELLO", true));
  EXPECT_FALSE(XP_EqualCString("Hello", "Hello!", false));
  // Neighbours of A-Z 32 apart, and Latin-1 É/é, must stay apart.
  EXPECT_FALSE(XP_EqualCString("@[", "`{", false));
  EXPECT_FALSE(XP_EqualCString("\xC9", "\xE9", false));
  EXPECT_EQ(XP_tolower('@'), '@');
  EXPECT_EQ(XP_tolower('['), '[');
  EXPECT_EQ(XP_tolowerUniSimple(0x00C9), 0x00C9);
  EXPECT_EQ(XP_MemcmpUniU(units(u"AZ"), units(u"az"), 2, false), 0);
}

TEST(PlainStrings, MemcmpOrdersBytesAsSigned) {
  EXPECT_EQ(XP_Memcmp("\x80", "\x7F", 1, true), -1);
  EXPECT_EQ(XP_MemcmpU("\x7F", "\x80", 1, true), 1);
  EXPECT_EQ(XP_Memcmp("abc", "ABD", 3, false), -1);
  EXPECT_EQ(XP_Memcmp("ABC", "abc", 3, false), 0);
  EXPECT_EQ(XP_Memcmp("abX", "abY", 2, true), 0);
  EXPECT_EQ(XP_Memcmp("a", "b", 0, true), 0);
  EXPECT_EQ(XP_Memcmp("a", "b", -1, true), 0);
  // UTF-16 units order as unsigned numbers.
  const unsigned short high[] = {0xFFE9}, low[] = {0x0041};
  EXPECT_EQ(XP_MemcmpUniU(high, low, 1, true), 1);
}

TEST(PlainStrings, PositionCountsOccurrencesFromStart) {
  const char text[] = "abcabcabc";
  EXPECT_EQ(XP_Position(text, 9, "abc", 3, 0, 1, true), 0);
  EXPECT_EQ(XP_Position(text, 9, "abc", 3, 0, 3, true), 6);
  EXPECT_EQ(XP_Position(text, 9, "abc", 3, 0, 4, true), -1);
  EXPECT_EQ(XP_Position(text, 9, "abc", 3, 1, 1, true), 3);
  EXPECT_EQ(XP_Position(text, 9, "abc", 3, 9, 1, true), -1);
  EXPECT_EQ(XP_Position(text, 9, "abc", 3, 10, 1, true), -1);
  EXPECT_EQ(XP_Position(text, 9, "BCA", 3, 0, 1, true), -1);
  EXPECT_EQ(XP_Position(text, 9, "BCA", 3, 0, 2, false), 4);
  EXPECT_EQ(XP_Position("xxab", 4, "ab", 2, 0, 1, true), 2);
  EXPECT_EQ(XP_Position("aaaa", 4, "aa", 2, 0, 3, true), 2);
}

TEST(PlainStrings, BlockHasStringOnlyWhenItFitsInTheBlock) {
  const char block[] = "hello world";
  EXPECT_TRUE(XP_BlockHasString(block, 11, 0, "world", true));
  EXPECT_FALSE(XP_BlockHasString(block, 10, 0, "world", true));
  EXPECT_FALSE(XP_BlockHasString(block, 11, 7, "world", true));
  EXPECT_TRUE(XP_BlockHasString(block, 11, 6, "WORLD", false));
  EXPECT_FALSE(XP_BlockHasString(block, 11, 6, "WORLD", true));
}

TEST(PlainStrings, BlockToCStringNeedsRoomForTheNul) {
  char dst[4] = {'x', 'x', 'x', 'x'};
  EXPECT_EQ(XP_BlockToCString("abcd", 4, dst, 4), -207);
  EXPECT_EQ(dst[0], 0);
  EXPECT_EQ(XP_BlockToCString("abcd", 3, dst, 4), 0);
  EXPECT_STREQ(dst, "abc");
}

TEST(PlainStrings, BlockMoveDataHandlesOverlap) {
  char buf[] = "abcdef";
  XP_BlockMoveData(buf, buf + 2, 4);
  EXPECT_STREQ(buf, "ababcd");
  XP_BlockMoveDataU(buf + 2, buf, 4);
  EXPECT_STREQ(buf, "abcdcd");
  XP_BlockMoveData("zz", buf, -1);
  EXPECT_STREQ(buf, "abcdcd");
}

TEST(PlainStrings, CRLFToCRJoinsPairsOnly) {
  const auto joined = [](std::string s, long length, long result) {
    EXPECT_EQ(XP_CRLFToCR(s.data(), &length), result);
    return s.substr(0, static_cast<std::size_t>(length));
  };
  EXPECT_EQ(joined("\r\n\r", 3, 2), "\r\r");
  EXPECT_EQ(joined("\n\ra\r\n\n", 6, 5), "\n\ra\r\n");
  EXPECT_EQ(joined("\r\n\r", -4, 0), "");
}

TEST(PlainStrings, CRToCRLFStopsAtDestinationSize) {
  const auto widened = [](const std::string& source, long size) {
    char dst[8] = {};
    long length = static_cast<long>(source.size());
    XP_CRToCRLF(source.data(), dst, &length, size);
    return std::string(dst, static_cast<std::size_t>(length));
  };
  EXPECT_EQ(widened("A\r", 3), "A\r\n");
  EXPECT_EQ(widened("A\r", 2), "A\r");
  EXPECT_EQ(widened("abcdef", 3), "abc");
  EXPECT_EQ(widened("\r\n", 8), "\r\n\n");
  EXPECT_EQ(widened("ab", 0), "");
}

TEST(PlainStrings, TrimmingRemovesOnlyItsOwnWhiteSpace) {
  EXPECT_EQ(edited(XP_TrimLeftSpaces, "  \tkeep "), "\tkeep ");
  EXPECT_EQ(edited(XP_TrimWhiteSpaces, " \t\r\n\v\fin side \n"), "in side");
  EXPECT_EQ(edited(XP_TrimWhiteSpaces, " \t "), "");
  EXPECT_EQ(edited([](char* s) { XP_ReplaceChars(s, '/', '\\'); }, "a/b/c"), "a\\b\\c");
}

TEST(PlainStrings, NumbersRoundTripThroughText) {
  unsigned char p[256];
  XP_NumToStr(-1234567, p);
  EXPECT_EQ(pascalBytes(p), "-1234567");

  char c[400];
  XP_SInt32ToCString(INT32_MIN, c);
  EXPECT_STREQ(c, "-2147483648");
  XP_UInt64ToCString(UINT64_MAX, c);
  EXPECT_STREQ(c, "18446744073709551615");
  XP_doubleToCString(-1e308, c);
  EXPECT_EQ(std::strlen(c), 317u);  // sign, 309 digits, point, 6 decimals
  EXPECT_EQ(XP_CStringToDouble(c), -1e308);

  EXPECT_EQ(XP_CStringToUInt32("4294967295"), 0xFFFFFFFFu);
  EXPECT_EQ(XP_CStringToSInt32("-42 apples"), -42);
}

TEST(PlainStrings, ASCIINumStrToCharCutsTo8Bits) {
  unsigned char out = 7;
  EXPECT_EQ(XP_ASCIINumStrToChar("", &out), -1);
  EXPECT_EQ(out, 7);
  EXPECT_EQ(XP_ASCIINumStrToChar("300", &out), 0);
  EXPECT_EQ(out, 44);
}

TEST(PlainStrings, ByteOrderLaysOutBytesInMemory) {
  using Bytes = std::vector<unsigned char>;
  EXPECT_EQ(memoryBytes(XP7_UInt32ToBigEndian(0x01020304u)), (Bytes{1, 2, 3, 4}));
  EXPECT_EQ(memoryBytes(XP7_ShortToBigEndian(0x0102)), (Bytes{1, 2}));
  EXPECT_EQ(memoryBytes(XP7_UInt32ToLittleEndian(0x01020304u)), (Bytes{4, 3, 2, 1}));
  EXPECT_EQ(memoryBytes(XP7_SInt32ToLittleEndian(-2)), (Bytes{0xFE, 0xFF, 0xFF, 0xFF}));
  EXPECT_EQ(memoryBytes(XP7_UInt16ToLittleEndian(0x0102)), (Bytes{2, 1}));
}

TEST(PlainStrings, DelayWaitsAtLeastTheTicksAsked) {
  const auto started = std::chrono::steady_clock::now();
  const std::uint32_t before = XP_TickCount();
  XP_Delay(3);
  const std::uint32_t after = XP_TickCount();
  EXPECT_GE(after - before, 3u);
  // The first tick may be nearly over when the wait starts, so two full ticks is the floor.
  EXPECT_GE(std::chrono::steady_clock::now() - started, std::chrono::microseconds(2 * 1000000 / 60));

  unsigned long finalTicks = 0;
  const std::uint32_t beforePlatform = TickCount();
  Delay(2, &finalTicks);
  EXPECT_GE(static_cast<std::uint32_t>(finalTicks) - beforePlatform, 2u);

  const auto negativeStarted = std::chrono::steady_clock::now();
  XP_Delay(-5);
  EXPECT_LT(std::chrono::steady_clock::now() - negativeStarted, std::chrono::seconds(1));
}

TEST(PlainStrings, TickCountNeverGoesBack) {
  std::uint32_t previous = XP_TickCount();
  for (int i = 0; i < 100000; ++i) {
    const std::uint32_t now = XP_TickCount();
    ASSERT_GE(now, previous);
    previous = now;
  }
}

TEST(PlainStrings, StartupCountStartsAtZeroAndCounts) {
  EXPECT_EQ(XP_GetStartupCount(), 0);
  XP_IncrStartupCount();
  XP_IncrStartupCount();
  EXPECT_EQ(XP_GetStartupCount(), 2);
  EXPECT_EQ(gXP_StartupCount, 2);
}
