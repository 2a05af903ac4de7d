// Tests of searching and editing host text: positions, substitution, line ends, items.
#include <gtest/gtest.h>

#include <functional>
#include <random>
#include <string>
#include <vector>

#include "MemHost.h"
#include "params/Switches.h"
#include "text/TextSearch.h"

namespace {

constexpr unsigned int kNone = 0xFFFFFFFF;

void Set(fmx::TextAutoPtr& t, const std::string& ascii) {
  t->AssignWithLength(ascii.data(), static_cast<uint32_t>(ascii.size()), fmx::Text::kEncoding_ASCII_Mac);
}

std::string Str(fmx::TextAutoPtr& t) {
  std::u16string units(t->GetSize(), u'\0');
  t->GetUnicode(reinterpret_cast<unsigned short*>(units.data()), 0, t->GetSize());
  return std::string(units.begin(), units.end());
}

std::string Substituted(const std::string& text, const std::string& search, const std::string& replacement) {
  fmx::TextAutoPtr t, s, r;
  Set(t, text), Set(s, search), Set(r, replacement);
  XP7_SubstituteTxt(t, s, r);
  return Str(t);
}

TEST(TextSearch, SubstituteIgnoresCaseAndNeverRescansTheReplacement) {
  for (const char* search : {"BC", "bc"}) {
    EXPECT_EQ(Substituted("ABCDEFABCDEFBC", search, "12"), "A12DEFA12DEF12");
    EXPECT_EQ(Substituted("ABCDEFABCDEFBC", search, ""), "ADEFADEF");
    EXPECT_EQ(Substituted("ABCDEFABCDEFBC", search, "123456789_"), "A123456789_DEFA123456789_DEF123456789_");
    EXPECT_EQ(Substituted("ABCDEFABCDEFBC", search, "1"), "A1DEFA1DEF1");
  }
  EXPECT_EQ(Substituted("ABC", "", "x"), "ABC");
  EXPECT_EQ(Substituted("aaa", "a", "aa"), "aaaaaa");
}

TEST(TextSearch, SubstituteAgreesWithAPlainLeftToRightReplacementOnRandomTexts) {
  std::mt19937 random(20240611);
  auto word = [&](size_t min, size_t max) {
    std::string s(min + random() % (max - min + 1), ' ');
    for (char& c : s) c = "aAbB"[random() % 4];
    return s;
  };
  auto lower = [](std::string s) {
    for (char& c : s) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return s;
  };
  for (int i = 0; i < 3000; ++i) {
    const std::string text = word(0, 40), search = word(1, 3), repl = word(0, 4);
    std::string expected;  // matches compared without case, the scan going on after each match
    for (size_t k = 0; k < text.size();) {
      const bool match = lower(text.substr(k, search.size())) == lower(search);
      expected += match ? repl : text.substr(k, 1);
      k += match ? search.size() : 1;
    }
    ASSERT_EQ(Substituted(text, search, repl), expected) << text << " / " << search << " / " << repl;
  }
}

TEST(TextSearch, PositionSkipsOverlapsWhileTheBufferSearchesDoNot) {
  fmx::TextAutoPtr t, s, empty;
  Set(t, "aaaa"), Set(s, "aa");
  EXPECT_EQ(XP7_Position(t, s, 0, 2, true), 2u);
  unsigned int pos = 99;
  EXPECT_TRUE(XP7_PositionUInt32("aaaa", 4, "aa", 2, 0, 2, true, &pos));
  EXPECT_EQ(pos, 1u);
  unsigned short hay[] = {'a', 'a', 'a', 'a'}, needle[] = {'A', 'A'};
  EXPECT_FALSE(XP7_PositionUniUInt32(hay, 4, needle, 2, 0, 1, true, &pos));
  EXPECT_TRUE(XP7_PositionUniUInt32(hay, 4, needle, 2, 0, 3, false, &pos));
  EXPECT_EQ(pos, 2u);

  Set(t, "xAyaza"), Set(s, "a");
  EXPECT_EQ(XP7_Position(t, s, 0, 0, false), 1u);  // occurrence 0 counts as 1
  EXPECT_EQ(XP7_Position(t, s, 0, 1, true), 3u);
  EXPECT_EQ(XP7_Position(t, s, 2, 2, false), 5u);
  EXPECT_EQ(XP7_Position(t, s, 2, 3, false), kNone);
  EXPECT_EQ(XP7_Position(t, empty, 0, 1, false), kNone);
  EXPECT_EQ(XP7_PositionOfCStr(t, "Z", fmx::Text::kEncoding_UTF8, 0, 1, false), 4u);
  EXPECT_FALSE(XP7_PositionUInt32("x\xE1", 2, "\xC1", 1, 0, 1, false, &pos));  // only A-Z fold
  EXPECT_EQ(pos, 0u);
  EXPECT_TRUE(XP7_PositionUInt32("abc", 3, "", 0, 1, 3, false, &pos));  // an empty needle matches everywhere
  EXPECT_EQ(pos, 3u);
}

TEST(TextSearch, LineEndModesConvertEveryKindOfLineEnd) {
  const struct {
    short mode;
    const char *in, *out;
  } cases[] = {
      {2, "a\nb\r\nc\r", "a\nb\rc\r"},           {3, "a\nb\r\nc\r", "a\rb\r\rc\r"},
      {9, "a\nb\r\nc\r", "a\rb\rc\r"},           {10, "a\nb\r\nc\r", "a\r\nb\r\nc\r\n"},
      {10, "\n\n\r\r", "\r\n\r\n\r\n\r\n"},      {0, "a\nb\r\nc\r", "a\nb\r\n\nc\r\n"},
      {-1, "\r\r", "\r\n\r\n"},                {11, "\r\n", "\r\n\n"},
      {2, "\r\n\r\n", "\r\r"},                  {2, "\r", "\r"},
  };
  for (const auto& c : cases) {
    fmx::TextAutoPtr t;
    Set(t, c.in);
    XP7_ChangeLineEndsTxt(t, c.mode);
    EXPECT_EQ(Str(t), c.out) << "mode " << c.mode;
  }
}

TEST(TextSearch, ItemsAndLinesSplitAtTheirSeparators) {
  fmx::TextAutoPtr t, out, sep, item;
  Set(t, "x;Y;z");
  for (auto [n, expected] : {std::pair(0u, "x"), {1u, "Y"}, {2u, "z"}, {5u, ""}}) {
    Set(out, "stale");
    XP7_GetNthLineOfTxt(t, n, ";", out);
    EXPECT_EQ(Str(out), expected) << n;
  }
  XP7_GetNthLineOfTxt(t, 1, "y", out);  // the separator is found ignoring case
  EXPECT_EQ(Str(out), ";z");

  std::vector<std::string> items;
  Set(t, "a,,b"), Set(sep, ",");
  for (unsigned int pos = 0; pos != kNone;) {
    XP7_GetNextTxtFromTxt(t, sep, out, &pos);
    items.push_back(Str(out));
  }
  EXPECT_EQ(items, (std::vector<std::string>{"a", "", "b"}));
  unsigned int pos = 0;
  Set(t, "aXbxc"), Set(sep, "x");
  XP7_GetNextTxtFromTxt(t, sep, out, &pos);  // here case matters
  EXPECT_EQ(Str(out), "aXb");

  Set(t, "a\rbb\rb\rb"), Set(item, "b");
  EXPECT_EQ(XP7_GetIndexOfFirstEqualLineOfTxt(t, item), 2u);
  Set(item, "B");
  EXPECT_EQ(XP7_GetIndexOfFirstEqualLineOfTxt(t, item), kNone);

  Set(t, ",ab,B,"), Set(sep, ","), Set(item, "b");
  EXPECT_TRUE(XP7_HasExactSeparatedTxt(t, sep, item));
  Set(t, "b,ab");
  EXPECT_FALSE(XP7_HasExactSeparatedTxt(t, sep, item));  // no separator before the first item
}

TEST(TextSearch, HostStringsColonsAndExpressions) {
  for (auto [version, number] : {std::pair(u"Pro 12.0v4", 12040u), {u"Pro 0.9v1", 0u}, {u"", 0u}, {u"19.6v3", 19630u},
                                 {u"Pro Advanced 19", 19000u}, {u"Pro 12.0v4 ", 0u}, {u"Pro 7\u00E9", 7000u}}) {
    std::u16string s = version;
    EXPECT_EQ(XP7_ExtractAppVersionNrFromAppVersionUniStr(reinterpret_cast<unsigned short*>(s.data())), number);
  }
  fmx::TextAutoPtr t, result;
  Set(t, "a:b:c");
  EXPECT_EQ(XP7_Txt_GetLastColonPos(t), 3u);
  Set(t, "abc");
  EXPECT_EQ(XP7_Txt_GetLastColonPos(t), kNone);

  fmx::ExprEnv env;
  char literal[] = "\"Hi \\\"you\\\"\"", bad[] = "1 +";
  EXPECT_EQ(XP7_EvaluateCStrToTxt(env, literal, result), 0);
  EXPECT_EQ(Str(result), "Hi \"you\"");
  EXPECT_EQ(XP7_EvaluateCStrToTxt(env, bad, result), memhost::kEvaluateSyntaxError);
  EXPECT_EQ(Str(result), "Hi \"you\"");
}

// Fails each host call of each function in turn, the switch readers that use the
// host included: the failure leaves as its exception and no temporary outlives it.
TEST(TextSearch, HostFailuresPassThroughWithoutLeaks) {
  gXP7_Debug_GoDebugTxt = false;
  XP7_TEST_SubstituteTxt();
  EXPECT_TRUE(gXP7_Debug_GoDebugTxt);  // the self-test's one visible effect
  fmx::TextAutoPtr t, s, r, out;
  fmx::ExprEnv env;
  char expr[] = "\"x\"", command[] = "-DebugTxtsON";
  const std::vector<std::pair<const char*, std::function<void()>>> calls = {
      {"Position", [&] { XP7_PositionOfCStr(t, "b", fmx::Text::kEncoding_UTF8, 0, 2, true); }},
      {"Substitute", [&] { XP7_SubstituteTxt(t, s, r); }},
      {"ChangeLineEnds", [&] { XP7_ChangeLineEndsTxt(t, 10); }},
      {"GetNthLine", [&] { XP7_GetNthLineOfTxt(t, 1, "\r", out); }},
      {"GetIndexOfFirstEqualLine", [&] { XP7_GetIndexOfFirstEqualLineOfTxt(t, r); }},
      {"HasExactSeparated", [&] { XP7_HasExactSeparatedTxt(t, s, r); }},
      {"GetLastColonPos", [&] { XP7_Txt_GetLastColonPos(t); }},
      {"Evaluate", [&] { XP7_EvaluateCStrToTxt(env, expr, out); }},
      {"SelfTest", [] { XP7_TEST_SubstituteTxt(); }},
      {"HasSwitch", [&] { XP7_HasSwitch(t, "-b"); }},
      {"GetTaggedTxt", [&] { XP7_GetTaggedTxt(t, "<a", ">", "</a>", out); }},
      {"CheckSwitches", [&] { XP7_Debug_CheckSwitches(command, out); }},
      {"DebugString", [&] { XP7_DebugStringTxt_Intern(t, 0); }},
      {"DebugStringHex", [&] { XP7_DebugStringTxt_Intern(t, 2); }},
  };
  for (int32_t code : {1, 2}) {
    for (const auto& [name, call] : calls) {
      int failures = 0;
      bool fired = true;
      for (uint32_t skip = 0; fired; ++skip) {
        Set(t, "<a x>b\r\nB\rb:</a>"), Set(s, "B"), Set(r, "bb");
        const int64_t live = memhost::LiveValues();
        memhost::InjectFault("*", code, skip);
        try {
          call();
        } catch (const std::exception& e) {
          EXPECT_EQ(code == 1, dynamic_cast<const std::bad_alloc*>(&e) != nullptr) << name << " call " << skip;
          ++failures;
        }
        fired = memhost::PendingFaults() == 0;
        memhost::ClearFaults();
        EXPECT_EQ(memhost::LiveValues(), live) << name << " call " << skip;
      }
      EXPECT_GT(failures, 0) << name;
    }
  }
  gXP7_Debug_GoDebugTxt = false;
}

}  // namespace
