// Tests of the host call protocol as toolkit functions see it: host failures
// leave them as exceptions, and their temporaries are gone afterwards.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "../helpers/HostFaults.h"
#include "MemHost.h"
#include "encoding/LegacyTables.h"
#include "text/TextCore.h"

namespace {

TEST(HostValues, QuadCharBytesGoMostSignificantFirst) {
  EXPECT_EQ(XP7_QuadCharToUInt32('T', 'E', 'X', 'T'), 0x54455854u);
  EXPECT_EQ(XP7_QuadCharToUInt32('\xFF', 0, 0, '\x80'), 0xFF000080u);
  QuadCharHolder code('J', 'P', 'E', 'G');
  EXPECT_EQ(code->GetMacType(), XP7_QuadCharToUInt32('J', 'P', 'E', 'G'));
}

TEST(HostValues, ResettingAHolderDeletesTheOldValue) {
  int64_t before = memhost::LiveValues();
  fmx::TextAutoPtr a;
  fmx::TextAutoPtr b;
  a.reset(b.release());
  EXPECT_EQ(memhost::LiveValues(), before + 1);
}

struct Sample {
  const char* name;
  std::function<void()> call;
};

// Toolkit functions that make temporaries of their own or several host calls.
std::vector<Sample> Samples(fmx::TextAutoPtr& txt) {
  return {
      {"XP7_AppendCStrToTxt", [&] { XP7_AppendCStrToTxt("abc", txt, fmx::Text::kEncoding_UTF8); }},
      {"XP7_AppendUTF32CharToTxt", [&] { XP7_AppendUTF32CharToTxt(0x1F600, txt); }},
      {"XP7_AppendCharToTxt", [&] { XP7_AppendCharToTxt('\xE9', txt, fmx::Text::kEncoding_ASCII_Mac); }},
      {"XP7_AppendUnicodeStrToTxt",
       [&] {
         unsigned short s[] = {0x41, 0xD83D, 0xDE00, 0};
         XP7_AppendUnicodeStrToTxt(s, 3, txt);
       }},
      {"XP7_AppendMacASCIICharToTxt", [&] { XP7_AppendMacASCIICharToTxt(0xA5, txt); }},
      {"XP7_TxtToCStr",
       [&] {
         char buf[64];
         XP7_TxtToCStr(txt, 0, 0xFFFFFFFF, sizeof buf, true, buf, fmx::Text::kEncoding_ASCII_Mac);
       }},
      {"XP7_ReplaceCharAtEndOfTxt", [&] { XP7_ReplaceCharAtEndOfTxt(txt, 'c', 'd'); }},
      {"XP7_CopyDefaultStyle", [&] {
         fmx::TextAutoPtr other;
         other->Assign("x", fmx::Text::kEncoding_ASCII_Mac);
         XP7_CopyDefaultStyle(*other, txt);
       }},
  };
}

// Fails each host call of each sample in turn, with both failure codes.
TEST(HostValues, EveryFailedHostCallLeavesAsItsExceptionWithoutLeaks) {
  for (int32_t code : {1, 2}) {
    fmx::TextAutoPtr txt;
    txt->Assign("abc", fmx::Text::kEncoding_ASCII_Mac);
    for (const Sample& sample : Samples(txt)) {
      SCOPED_TRACE(sample.name);
      EXPECT_GT(testing_host::SweepHostFaults(code, sample.call), 0);
    }
  }
}

}  // namespace
