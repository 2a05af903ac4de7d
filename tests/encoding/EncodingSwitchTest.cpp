// Tests of reading the encoding switch out of a switches string.
#include "encoding/EncodingSwitch.h"

#include <gtest/gtest.h>

#include <cctype>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

namespace {

using Encoding = fmx::Text::Encoding;

// No host number, so that a default that comes back cannot pass for a match.
constexpr Encoding kDefault = static_cast<Encoding>(99);

Encoding Read(std::string switches) {
  const std::string original = switches;
  const Encoding result = XP7_GetEncodingSwitch(switches.data(), kDefault);
  EXPECT_EQ(switches, original) << "the switches string was changed";
  return result;
}

std::string Upper(std::string s) {
  for (char& c : s) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return s;
}

std::string Lower(std::string s) {
  for (char& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return s;
}

// Swaps the case of every other letter: "-eNcOdInG=...".
std::string Mixed(std::string s) {
  for (std::size_t i = 0; i < s.size(); i += 2) {
    const auto c = static_cast<unsigned char>(s[i]);
    s[i] = static_cast<char>(std::isupper(c) ? std::tolower(c) : std::toupper(c));
  }
  return s;
}

// The host's names, each at the index of the number the host gives it.
const char* const kNamesByNumber[] = {
    "Native",          "UTF8",            "ASCII_DOS",       "ASCII_Windows",     "ASCII_Mac",
    "ISO_8859_1",      "ShiftJIS_Mac",    "ShiftJIS_Win",    "Korean_Mac",        "Korean_Win",
    "Korean_Johab",    "ChineseTrad_Mac", "ChineseTrad_Win", "ChineseSimp_Mac",   "ChineseSimp_Win",
    "Cyrillic_Mac",    "Cyrillic_Win",    "ISO_8859_5",      "CentralEurope_Mac", "EasternEurope_Win",
    "ISO_8859_2",      "Turkish_Mac",     "Turkish_Win",     "ISO_8859_3",        "ISO_8859_9",
    "Baltic_Win",      "ISO_8859_4",      "Arabic_Mac",      "Arabic_Win",        "ISO_8859_6",
    "Greek_Mac",       "Greek_Win",       "ISO_8859_7",      "Hebrew_Mac",        "Hebrew_Win",
    "ISO_8859_8",      "ISO_8859_15",
};

TEST(EncodingSwitch, EverySwitchSelectsItsHostNumberInAnyCase) {
  std::vector<std::pair<std::string, int>> switches;
  for (int number = 0; number < static_cast<int>(std::size(kNamesByNumber)); ++number) {
    switches.emplace_back(std::string("-Encoding=") + kNamesByNumber[number], number);
  }
  switches.emplace_back("-Encoding=UTF-8", fmx::Text::kEncoding_UTF8);
  ASSERT_EQ(switches.size(), 38u);
  for (const auto& [name, number] : switches) {
    for (const std::string& text : {name, Upper(name), Lower(name), Mixed(name)}) {
      EXPECT_EQ(Read(text), number) << text;
      EXPECT_EQ(Read("-Debug " + text + " -Silent"), number) << text;
    }
  }
}

TEST(EncodingSwitch, FirstNameOfTheTableFoundAnywhereInTheStringWins) {
  const std::pair<const char*, Encoding> cases[] = {
      {"-Encoding=ISO_8859_15", fmx::Text::kEncoding_ISO_8859_15},  // not taken for its prefix
      {"-Encoding=ISO_8859_1", fmx::Text::kEncoding_ISO_8859_1},
      {"-Encoding=ISO_8859_10", fmx::Text::kEncoding_ISO_8859_1},  // unknown, but holds "-Encoding=ISO_8859_1"
      // Table order beats position in the string.
      {"-Encoding=Hebrew_Win -Encoding=Native", fmx::Text::kEncoding_Native},
      {"-Encoding=ISO_8859_8 -Encoding=UTF8", fmx::Text::kEncoding_UTF8},
      {"-Encoding=ISO_8859_1 -Encoding=ISO_8859_15", fmx::Text::kEncoding_ISO_8859_15},
      // The match is anchored at neither end.
      {"xx-Encoding=Greek_Macyy", fmx::Text::kEncoding_Greek_Mac},
      {"-encoding=utf8xyz", fmx::Text::kEncoding_UTF8},
      {"-ENCODING=utf-8", fmx::Text::kEncoding_UTF8},
  };
  for (const auto& [switches, expected] : cases) EXPECT_EQ(Read(switches), expected) << switches;
}

TEST(EncodingSwitch, ShortUnknownOrMissingSwitchesGiveTheDefault) {
  const char* const cases[] = {
      "", "-Encoding",  // 9 bytes, one short of the prefix
      "-Encoding=",     // the prefix alone
      "-Encoding=UTF", "-Encoding=UTF-", "-Encoding=UTF16",
      "-Encoding=latin1",  // no alias by charset name
      "-Encoding= UTF8", "-Debug UTF8 ASCII_Mac", "-Encoding:UTF8 -Encoding=Unknown",
      // Only A-Z fold: a loose fold would take DEL for "_", CR for "-", or a byte with
      // the high bit set for the ASCII letter below it.
      "-Encoding=ASCII\x7FMac", "\rEncoding=UTF8", "-Encoding=\xD5TF8",
  };
  for (const char* switches : cases) EXPECT_EQ(Read(switches), kDefault) << switches;
}

TEST(EncodingSwitch, ReturnsTheCallersDefaultUnchanged) {
  char none[] = "-Silent";
  EXPECT_EQ(XP7_GetEncodingSwitch(none, fmx::Text::kEncoding_ISO_8859_15), fmx::Text::kEncoding_ISO_8859_15);
  EXPECT_EQ(XP7_GetEncodingSwitch(none, fmx::Text::kEncoding_Native), fmx::Text::kEncoding_Native);
}

}  // namespace
