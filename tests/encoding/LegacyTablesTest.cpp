// Tests of the Mac Roman and code page 1252 tables, with ICU's converters as the oracle.
#include "encoding/LegacyTables.h"

#include <gtest/gtest.h>

#include "../helpers/IcuOracle.h"
#include <unicode/ucnv.h>

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "text/TextCore.h"

namespace {

constexpr unsigned int kNoCharacter = 0xFFFFFFFF;
constexpr short kPlain = 0;
constexpr short kEuro = 2;

using Table = const unsigned char (&)[128];

using testing_icu::Converter;
using testing_icu::OpenStrict;

// The one BMP character that `byte` stands for, if it stands for one.
std::optional<UChar> Decode(UConverter* converter, unsigned char byte) {
  const std::u16string text = testing_icu::IcuDecode(converter, std::string(1, static_cast<char>(byte)));
  if (text.size() != 1 || text[0] == 0xFFFD) return std::nullopt;
  return text[0];
}

// The one byte that holds `unit` and reads back as it, if there is one.
std::optional<unsigned char> Encode(UConverter* converter, UChar unit) {
  const std::string bytes = testing_icu::IcuEncode(converter, std::u16string(1, unit));
  if (bytes.size() != 1 || Decode(converter, static_cast<unsigned char>(bytes[0])) != unit) return std::nullopt;
  return static_cast<unsigned char>(bytes[0]);
}

std::string AllBytesFrom(int first) {
  std::string bytes;
  for (int b = first; b <= 0xFF; ++b) bytes.push_back(static_cast<char>(b));
  return bytes;
}

std::vector<int> BytesWhereTablesDiffer(Table a, Table b) {
  std::vector<int> bytes;
  for (int i = 0; i < 128; ++i) {
    if (a[i] != b[i]) bytes.push_back(0x80 + i);
  }
  return bytes;
}

// The reverse mapping as plainly as it can be written: search the whole table.
unsigned int ReverseSearch(unsigned int codePoint, bool acceptOhmSign) {
  if (codePoint < 0x80) return codePoint;
  if (codePoint == 0x2126 && acceptOhmSign) return 0xBD;
  for (unsigned int i = 0; i < 128; ++i) {
    if (XP7_FMP6MacAsciiToUnicodeChars[i] == codePoint) return 0x80 + i;
  }
  return kNoCharacter;
}

// Each table undoes the other, so both are permutations of the high bytes.
TEST(LegacyTables, MacToWinRestoresEveryByteThroughItsInverse) {
  for (const auto& [there, back] : {std::make_pair(XP7_macToWinChars, XP7_WinToMacChars),
                                    std::make_pair(XP7_macToWinCharsEuro, XP7_WinToMacCharsEuro)}) {
    for (int i = 0; i < 128; ++i) {
      ASSERT_GE(there[i], 0x80) << "Mac byte " << 0x80 + i;
      EXPECT_EQ(back[there[i] - 0x80], 0x80 + i) << "Mac byte " << 0x80 + i;
    }
  }
}

TEST(LegacyTables, EuroTablesDifferOnlyWhereTheEuroAndCurrencySignsSit) {
  EXPECT_EQ(BytesWhereTablesDiffer(XP7_macToWinChars, XP7_macToWinCharsEuro), (std::vector<int>{0xAD, 0xDB}));
  EXPECT_EQ(BytesWhereTablesDiffer(XP7_WinToMacChars, XP7_WinToMacCharsEuro), (std::vector<int>{0x80, 0xA4}));
}

TEST(LegacyTables, UnicodeTableMatchesIcuMacintosh) {
  const Converter mac = OpenStrict("macintosh");
  ASSERT_NE(mac, nullptr);
  for (int b = 0x80; b <= 0xFF; ++b) {
    const std::optional<UChar> expected = Decode(mac.get(), static_cast<unsigned char>(b));
    ASSERT_TRUE(expected.has_value()) << "byte " << b;
    EXPECT_EQ(XP7_FMP6MacAsciiToUnicodeChars[b - 0x80], *expected) << "byte " << b;
  }
}

// Sweeps all 256 Mac bytes: wherever 1252 holds the same character, the
// conversion must land on it. The plain table keeps 0xDB for the currency sign of
// Mac Roman before the euro, where ICU has the current euro sign.
TEST(LegacyTables, MacToWinKeepsEveryCharacterBothSetsHold) {
  const Converter mac = OpenStrict("macintosh");
  const Converter win = OpenStrict("windows-1252");
  ASSERT_NE(mac, nullptr);
  ASSERT_NE(win, nullptr);
  for (const short selector : {kPlain, kEuro}) {
    std::string bytes = AllBytesFrom(0);
    XP_MacToWinStrN(bytes.data(), static_cast<long>(bytes.size()), selector);
    int shared = 0;
    for (int b = 0; b <= 0xFF; ++b) {
      const std::optional<UChar> character = Decode(mac.get(), static_cast<unsigned char>(b));
      ASSERT_TRUE(character.has_value()) << "byte " << b;
      const std::optional<unsigned char> winByte = Encode(win.get(), *character);
      if (!winByte) continue;
      ++shared;
      if (selector == kPlain && b == 0xDB) continue;
      EXPECT_EQ(static_cast<unsigned char>(bytes[b]), *winByte) << "Mac byte " << b << ", selector " << selector;
    }
    // All but 25 Mac Roman characters (math signs, pi and omega, the fi and fl
    // ligatures, the Apple logo, dotless i, six spacing accents) are also in 1252.
    EXPECT_EQ(shared, 256 - 25);
  }
}

// Mac 0xDB is the currency sign in the plain tables (1252 0xA4), the euro sign in the euro
// tables (1252 0x80); Mac 0xAD takes the other 1252 byte.
TEST(LegacyTables, OnlySelectorTwoPicksTheEuroTables) {
  for (const short selector : {-1, 0, 1, 3, 2}) {
    std::string mac = "\xDB", macN = "\xDB", win = "\x80", winN = "\x80";
    XP_MacToWinStr(mac.data(), selector);
    XP_MacToWinStrN(macN.data(), 1, selector);
    XP_WinToMacStr(win.data(), selector);
    XP_WinToMacStrN(winN.data(), 1, selector);
    EXPECT_EQ(mac + macN + win + winN, selector == kEuro ? "\x80\x80\xDB\xDB" : "\xA4\xA4\xAD\xAD") << selector;
  }
}

TEST(LegacyTables, ConvertingThereAndBackRestoresEveryByte) {
  const std::string original = AllBytesFrom(1);
  for (const short selector : {kPlain, short(1), kEuro}) {
    std::string s = original;
    XP_MacToWinStr(s.data(), selector);
    EXPECT_NE(s, original);
    XP_WinToMacStr(s.data(), selector);
    EXPECT_EQ(s, original) << "selector " << selector;
    XP_WinToMacStrN(s.data(), static_cast<long>(s.size()), selector);
    XP_MacToWinStrN(s.data(), static_cast<long>(s.size()), selector);
    EXPECT_EQ(s, original) << "selector " << selector;
  }
}

TEST(LegacyTables, StrStopsAtNulWhileStrNPassesOverIt) {
  // Mac 0x8A and 1252 0xE4 are U+00E4 LATIN SMALL LETTER A WITH DIAERESIS.
  const std::string mac("\x8A\0\x8A", 3), win("\xE4\0\xE4", 3);
  std::string s = mac, n = mac;
  XP_MacToWinStr(s.data(), kPlain);
  XP_MacToWinStrN(n.data(), 3, kPlain);
  EXPECT_EQ(s, std::string("\xE4\0\x8A", 3));
  EXPECT_EQ(n, win);
  s = win;
  XP_WinToMacStr(s.data(), kPlain);
  XP_WinToMacStrN(n.data(), 3, kPlain);
  EXPECT_EQ(s, std::string("\x8A\0\xE4", 3));
  EXPECT_EQ(n, mac);
  for (const long length : {0L, -1L}) {
    XP_MacToWinStrN(n.data(), length, kPlain);
    XP_WinToMacStrN(n.data(), length, kPlain);
    EXPECT_EQ(n, mac) << "length " << length;
  }
}

TEST(LegacyTables, MacToUniPassesAsciiAndRejectsValuesPastAByte) {
  EXPECT_EQ(XP7_FMP6MacAsciiToUni(0x41), 0x41u);
  EXPECT_EQ(XP7_FMP6MacAsciiToUni(0x00), 0x00u);
  EXPECT_EQ(XP7_FMP6MacAsciiToUni(0xF0), 0xF8FFu);  // U+F8FF, private use: the Apple logo
  EXPECT_EQ(XP7_FMP6MacAsciiToUni(0xFF), 0x02C7u);  // U+02C7 CARON
  EXPECT_EQ(XP7_FMP6MacAsciiToUni(0x100), kNoCharacter);
  EXPECT_EQ(XP7_FMP6MacAsciiToUni(0xFFFFFFFF), kNoCharacter);
}

// U+2126 OHM SIGN reads as Mac 0xBD only when asked; U+00A4 CURRENCY SIGN went with the euro.
TEST(LegacyTables, UniToMacAgreesWithAFullTableSearchForEveryCodePoint) {
  int mismatches = 0;
  const auto check = [&mismatches](unsigned int cp, unsigned char accept) {
    const unsigned int expected = ReverseSearch(cp, accept != 0);
    if (XP7_UniToFMP6MacAscii(cp, accept) != expected && ++mismatches <= 5) {
      ADD_FAILURE() << "code point " << cp << ", acceptOhmSign " << int(accept) << ": expected " << expected;
    }
  };
  for (const unsigned char accept : {0, 1}) {
    for (unsigned int cp = 0; cp <= 0x10FFFF; ++cp) check(cp, accept);
    for (const unsigned int beyond : {0x110000u, 0x800000F0u, 0xFFFFFFFFu}) check(beyond, accept);
  }
  EXPECT_EQ(mismatches, 0);
}

TEST(LegacyTables, SettingsStartWithTildeAndMacRefinementOn) {
  EXPECT_EQ(gMyErrorChar, '~');
  EXPECT_EQ(gBetterEncoding_ASCII_Mac, 1);
}

TEST(LegacyTables, AppendMacCharUsesTheTableWhateverTheRefinementFlag) {
  const unsigned char savedFlag = gBetterEncoding_ASCII_Mac;
  for (const unsigned char flag : {0, 1}) {
    gBetterEncoding_ASCII_Mac = flag;
    fmx::TextAutoPtr text;
    XP7_AppendMacASCIICharToTxt('A', text);
    for (int b = 0x80; b <= 0xFF; ++b) XP7_AppendMacASCIICharToTxt(static_cast<unsigned char>(b), text);
    ASSERT_EQ(text->GetSize(), 129u) << "flag " << int(flag);
    std::array<unsigned short, 129> units{};
    text->GetUnicode(units.data(), 0, 129);
    EXPECT_EQ(units[0], 'A');
    for (int i = 0; i < 128; ++i) {
      EXPECT_EQ(units[1 + i], XP7_FMP6MacAsciiToUnicodeChars[i]) << "Mac byte " << 0x80 + i << ", flag " << int(flag);
    }
  }
  gBetterEncoding_ASCII_Mac = savedFlag;
}

}  // namespace
