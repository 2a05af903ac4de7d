// Tests of switches, tagged values and the debug text switches.
#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <string>

#include "MemHost.h"
#include "params/Switches.h"
#include "text/TextSearch.h"

namespace {

constexpr unsigned int kNone = 0xFFFFFFFF;

void Set(fmx::TextAutoPtr& t, const std::string& ascii) { t->Assign(ascii.c_str(), fmx::Text::kEncoding_ASCII_Mac); }

std::string Str(fmx::TextAutoPtr& t) {
  std::u16string units(t->GetSize(), u'\0');
  t->GetUnicode(reinterpret_cast<unsigned short*>(units.data()), 0, t->GetSize());
  return std::string(units.begin(), units.end());
}

TEST(Switches, MatchAnywhereFoldingOnlyAsciiLetters) {
  EXPECT_TRUE(XP_HasSwitch("-NoDialog -Wait", "-wait"));
  EXPECT_TRUE(XP_HasSwitch("-Waiting", "-Wait"));  // no word boundary
  EXPECT_TRUE(XP_HasSwitch("", ""));
  EXPECT_FALSE(XP_HasSwitch("-Wai", "-Wait"));
  EXPECT_FALSE(XP_HasSwitch("-\xC9t\xC9", "-\xE9t\xE9"));
  fmx::TextAutoPtr t;
  Set(t, "-NoDialog -Wait");
  EXPECT_TRUE(XP7_HasSwitch(t, "-WAIT"));
  EXPECT_FALSE(XP7_HasSwitch(t, ""));  // the host finds no empty text, unlike XP_HasSwitch

  char text[] = "-A -B";
  EXPECT_TRUE(XP_HasSwitch_AndBlank(text, "-b"));
  EXPECT_STREQ(text, "-A   ");
  EXPECT_FALSE(XP_HasSwitch_AndBlank(text, "-b"));
  EXPECT_TRUE(XP_HasSwitch_AndBlank(text, ""));
  EXPECT_STREQ(text, "-A   ");
}

TEST(Switches, TaggedStringCountsMatchesAndCopiesUpToTheEnd) {
  const struct {
    const char *text, *tag;
    long textLen, start, occurrence;  // textLen -1: the whole C string
    bool caseSensitive;
    long valueSize, position;
    const char* value;
  } cases[] = {
      {"a=1;a=2;", "a=", -1, 0, 2, false, 16, 4, "2"}, {"a=1;a=2;", "A=", -1, 0, 0, false, 16, 0, "1"},
      {"a=1;A=2", "A=", -1, 0, 1, true, 16, 4, "2"},   {"aaa", "aa", -1, 0, 2, false, 16, 1, ""},
      {"x=12345", "x=", -1, 0, 1, false, 3, 0, "12"},  {"x=123456", "x=", 4, 0, 1, false, 16, 0, "123"},
      {"a=1", "a=", -1, 2, 1, false, 16, -1, ""},      {"b=1", "a=", -1, 0, 1, false, 16, -1, ""},
      {"ab", "", -1, 1, 2, false, 16, 2, ""},
  };
  for (const auto& c : cases) {
    char value[16] = "stale";
    const long len = c.textLen < 0 ? static_cast<long>(std::strlen(c.text)) : c.textLen;
    EXPECT_EQ(XP_GetTaggedStr(c.text, len, c.tag, static_cast<long>(std::strlen(c.tag)), ';', c.start, c.occurrence,
                              c.caseSensitive, value, c.valueSize),
              c.position)
        << c.text << " " << c.tag;
    EXPECT_STREQ(value, c.value) << c.text << " " << c.tag;
  }
}

// The tag readers find what the overlapping byte search finds, on random texts
// full of near-matches.
TEST(Switches, TagAndSwitchSearchesAgreeWithTheByteSearch) {
  std::mt19937 random(7);
  auto word = [&](unsigned int max) {
    std::string s(random() % (max + 1), ' ');
    for (char& c : s) c = "aAb-"[random() % 4];
    return s;
  };
  for (int i = 0; i < 3000; ++i) {
    const std::string text = word(30), tag = word(4);
    const unsigned int n = static_cast<unsigned int>(text.size()), m = static_cast<unsigned int>(tag.size());
    const unsigned int start = random() % 6, occurrence = random() % 4;
    const bool caseSensitive = random() % 2 == 0;
    unsigned int pos;
    const bool found = XP7_PositionUInt32(text.c_str(), n, tag.c_str(), m, start, occurrence, caseSensitive, &pos);
    char value[8];
    ASSERT_EQ(XP_GetTaggedStr(text.c_str(), n, tag.c_str(), m, ';', start, occurrence, caseSensitive, value, 8),
              found ? static_cast<long>(pos) : -1)
        << text << " / " << tag << " from " << start << " occurrence " << occurrence;
    const bool anywhere = XP7_PositionUInt32(text.c_str(), n, tag.c_str(), m, 0, 1, false, &pos);
    ASSERT_EQ(XP_HasSwitch(text.c_str(), tag.c_str()), anywhere) << text << " / " << tag;
  }
}

// What a reader gives for `text`, its output starting at 5.
template <class T>
std::pair<bool, T> Read(bool (*reader)(const char*, const char*, T*), const std::string& text, const char* tag) {
  T value = 5;
  const bool read = reader(text.c_str(), tag, &value);
  return {read, value};
}

TEST(Switches, TaggedNumbersReadTheFirstDigitsAndNeverAMinusSign) {
  EXPECT_EQ(Read(XP_GetTaggedLong, "-Timeout=30-Other", "-timeout="), std::pair(true, 30L));
  EXPECT_EQ(Read(XP_GetTaggedLong, "-Timeout=-5", "-timeout="), std::pair(false, 0L));
  EXPECT_EQ(Read(XP_GetTaggedLong, "-Timeout= x12y", "-timeout="), std::pair(true, 12L));
  EXPECT_EQ(Read(XP_GetTaggedLong, "-Other=3", "-timeout="), std::pair(false, 0L));
  EXPECT_EQ(Read(XP_GetTaggedLong, "-n=" + std::string(1998, ' ') + "7", "-n="), std::pair(true, 7L));
  EXPECT_EQ(Read(XP_GetTaggedLong, "-n=" + std::string(1999, ' ') + "7", "-n="), std::pair(false, 0L));
  EXPECT_EQ(Read(XP_GetTaggedSInt16, "-n=40000", "-n="), std::pair(true, short{32767}));
  EXPECT_EQ(Read(XP_GetTaggedSInt16, "-n=x", "-n="), std::pair(false, short{0}));
  EXPECT_EQ(Read(XP_GetTaggedUInt16, "-n=70000", "-n="), std::pair(true, static_cast<unsigned short>(65535)));
  EXPECT_EQ(Read(XP_GetTaggedUInt32, "-n=4000000000", "-n="), std::pair(true, 4000000000u));
  EXPECT_EQ(Read(XP_GetTaggedFloat, "-Scale=1.25", "-scale="), std::pair(true, 1.25f));
  EXPECT_EQ(Read(XP_GetTaggedFloat, "-Scale=2e3", "-scale="), std::pair(true, 2.0f));  // only digits and dots
}

TEST(Switches, TaggedTextCutsOutElementContent) {
  fmx::TextAutoPtr t, out;
  Set(t, "<list><Item id=\"1\">Hello</item><item>x</item></list>");
  const struct {
    const char *tag, *afterTag, *endTag;
    unsigned int result;
    const char* out;
  } cases[] = {
      {"<item", ">", "</item>", 0, "Hello"}, {"<item", nullptr, "</ITEM>", 0, " id=\"1\">Hello"},
      {"<list", "#", "</item>", 0, "><Item id=\"1\">Hello"}, {"</item><item", "", "</none>", 0, ">x</item></list>"},
      {"<none", ">", "</item>", kNone, ""},
  };
  for (const auto& c : cases) {
    Set(out, "stale");
    EXPECT_EQ(XP7_GetTaggedTxt(t, c.tag, c.afterTag, c.endTag, out), c.result) << c.tag;
    EXPECT_EQ(Str(out), c.out) << c.tag;
  }
}

TEST(Switches, DebugSwitchesTurnDebugTextsOnAndOffWithOffWinning) {
  const struct {
    const char* command;
    bool before;
    int result;
    bool after;
  } cases[] = {
      {"-debugtxtson", false, 1, true}, {"-DebugTxtsOFF", true, 1, false}, {"-DebugTxtsON-DebugTxtsOFF", true, 1, false},
      {"-DebugTxtsONLY", false, 1, true}, {"-Other", true, 0, true}, {"", true, 0, true},
  };
  for (const auto& c : cases) {
    fmx::TextAutoPtr result;
    Set(result, "unchanged");
    std::string command = c.command;
    gXP7_Debug_GoDebugTxt = c.before;
    EXPECT_EQ(XP7_Debug_CheckSwitches(command.data(), result), c.result) << c.command;
    EXPECT_EQ(gXP7_Debug_GoDebugTxt, c.after) << c.command;
    EXPECT_EQ(Str(result), c.result == 1 ? "0" : "unchanged") << c.command;
  }
  gXP7_Debug_GoDebugTxt = false;
}

}  // namespace
