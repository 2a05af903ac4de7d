// Tests of parameter extraction: the running index, each reader's value and empty
// value, host failures, the tokenizer and rectangles.
#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <string>
#include <vector>

#include "../helpers/HostFaults.h"
#include "../helpers/HostText.h"
#include "MemHost.h"
#include "params/Parameters.h"

namespace {

void PushText(fmx::DataVectAutoPtr& list, const char* utf8) {
  DataHolder d;
  testing_host::SetText(*d, utf8);
  list->PushBack(*d);
}

TEST(Parameters, ReadersTakeParametersInTurnAndYieldEmptyValuesPastTheEnd) {
  fmx::DataVectAutoPtr list;
  PushText(list, "d\xC3\xA9\xE2\x98\x83");  // U+00E9, then U+2603 which Mac Roman lacks
  fmx::FixPtAutoPtr big;
  big->AssignDouble(3000000000.0);
  DataHolder number;
  number->SetAsNumber(*big);
  list->PushBack(*number);

  unsigned int i = 0;
  char bytes[16];
  XP7_GetNextCStringFromVect(*list, bytes, 4, &i, fmx::Text::kEncoding_Native);
  EXPECT_STREQ(bytes, "d\x8E*");
  EXPECT_EQ(XP7_GetNextlongFromVect(*list, &i), 3000000000LL - (1LL << 32));  // the host keeps 32 bits
  fmx::TextAutoPtr txt;
  txt->Assign("abc", fmx::Text::kEncoding_UTF8);
  EXPECT_EQ(XP7_GetNextTxtFromVect(*list, txt, &i), 0);
  EXPECT_EQ(txt->GetSize(), 0u);
  EXPECT_EQ(i, 3u);
  EXPECT_EQ(XP7_GetNextlongFromVect(*list, &i), 0);
  XP7_GetNextCStringFromVect(*list, bytes, sizeof bytes, &i, fmx::Text::kEncoding_UTF8);
  EXPECT_STREQ(bytes, "");
  unsigned short units[4] = {1, 1, 1, 1};
  EXPECT_EQ(XP7_GetNextUniStrFromVect(*list, units, 4, &i), 0u);
  EXPECT_EQ(units[0], 0);
  EXPECT_EQ(i, 6u);

  i = 0;
  EXPECT_EQ(XP7_GetNextUniStrFromVect(*list, units, 3, &i), 2u);
  EXPECT_EQ(std::u16string(units, units + 3), std::u16string(u"d\u00E9\0", 3));
  XP7_GetNextCStringFromVect(*list, bytes, sizeof bytes, &i, fmx::Text::kEncoding_UTF8);
  EXPECT_STREQ(bytes, "3000000000");
}

TEST(Parameters, DateAndContainerReadersCopyAndLeaveTheirValueAlonePastTheEnd) {
  fmx::DataVectAutoPtr list;
  PushText(list, "2024-05-06 01:02:03");
  fmx::BinaryDataAutoPtr bin;
  QuadCharHolder jpeg('J', 'P', 'E', 'G');
  char payload[] = "\x01\x02\x03";
  bin->Add(*jpeg, 3, payload);
  DataHolder d;
  d->SetBinaryData(*bin);
  list->PushBack(*d);
  PushText(list, "-12.7");

  fmx::DateTimeAutoPtr date;
  fmx::BinaryDataAutoPtr copy;
  unsigned int i = 0;
  EXPECT_EQ(XP7_GetNextDateTimeFromVect(*list, date, &i), 0);
  EXPECT_EQ(XP7_GetNextBinaryFromVect(*list, copy, &i), 0);
  EXPECT_EQ(XP7_GetNextlongFromVect(*list, &i), -12);
  EXPECT_EQ(XP7_GetNextDateTimeFromVect(*list, date, &i), 0);
  EXPECT_EQ(XP7_GetNextBinaryFromVect(*list, copy, &i), 0);
  EXPECT_EQ((std::array<int, 6>{date->GetYear(), date->GetMonth(), date->GetDay(), date->GetHour(),
                                date->GetMinute(), date->GetSec()}),
            (std::array<int, 6>{2024, 5, 6, 1, 2, 3}));
  ASSERT_EQ(copy->GetCount(), 1);
  EXPECT_EQ(copy->GetSize(0), 3u);
}

// Fails each host call of each reader in turn: the failure leaves as an exception, with
// no host value left over and the index where it was.
TEST(Parameters, FailedHostCallsLeaveTheIndexAndNoValuesBehind) {
  fmx::DataVectAutoPtr list;
  PushText(list, "2024-05-06 07:08:09");
  char bytes[1000];
  unsigned short units[32];
  fmx::TextAutoPtr txt;
  fmx::DateTimeAutoPtr date;
  fmx::BinaryDataAutoPtr bin;
  Rect rect;
  bool empty;
  const std::function<void(unsigned int*)> readers[] = {
      [&](unsigned int* i) { XP7_GetNextCStringFromVect(*list, bytes, sizeof bytes, i, fmx::Text::kEncoding_Native); },
      [&](unsigned int* i) { XP7_GetNextCStringFromVect(*list, bytes, sizeof bytes, i, fmx::Text::kEncoding_UTF8); },
      [&](unsigned int* i) { XP7_GetNextUniStrFromVect(*list, units, 32, i); },
      [&](unsigned int* i) { XP7_GetNextTxtFromVect(*list, txt, i); },
      [&](unsigned int* i) { XP7_GetNextDateTimeFromVect(*list, date, i); },
      [&](unsigned int* i) { XP7_GetNextlongFromVect(*list, i); },
      [&](unsigned int* i) { XP7_GetNextRectFromVect(*list, rect, &empty, i); },
      [&](unsigned int* i) { XP7_GetNextBinaryFromVect(*list, bin, i); },
  };
  for (size_t r = 0; r < std::size(readers); ++r) {
    SCOPED_TRACE(r);
    unsigned int i = 0;
    const auto read = [&] {
      i = 0;
      readers[r](&i);
    };
    EXPECT_GT(testing_host::SweepHostFaults(2, read, [&](bool threw) {
      if (threw) {
        EXPECT_EQ(i, 0u);
      }
    }), 1);
  }
}

TEST(Parameters, TokenizerKeepsEmptyTokensAndEndsAtMinusOne) {
  const struct {
    const char* source;
    const char* separator;
    long tokenSize;
    std::vector<std::string> tokens;
  } cases[] = {
      {"10  20", " ", 1000, {"10", "", "20"}},  {"a, b, ", ", ", 1000, {"a", "b", ""}},
      {"abcdef,xy", ",", 3, {"abc", "xy"}},     {"abcdef", ",", 3, {"abc"}},
      {"", " ", 1000, {""}},
  };
  for (const auto& c : cases) {
    std::string source = c.source;
    std::vector<char> token(static_cast<size_t>(c.tokenSize) + 1);  // exact size, for the sanitizers
    std::vector<std::string> got;
    long position = 0;
    do {
      XP_GetNextCString(source.data(), c.separator, token.data(), c.tokenSize, &position);
      got.emplace_back(token.data());
    } while (position != -1);
    XP_GetNextCString(source.data(), c.separator, token.data(), c.tokenSize, &position);
    EXPECT_EQ(got, c.tokens) << c.source;
    EXPECT_EQ(position, -1);
    EXPECT_EQ(token[0], '\0');
  }
}

TEST(Parameters, RectanglesReadLeftTopRightBottomFromTextAndFromParameters) {
  const struct {
    const char* text;
    std::array<int, 4> leftTopRightBottom;
    bool empty;
  } cases[] = {
      {"10 20 110 220", {10, 20, 110, 220}, false},
      {"5", {5, 0, 0, 0}, false},
      {"-3 x  70000", {-3, 0, 0, 70000 - 65536}, false},  // "x" and the empty token read 0
      {"", {0, 0, 0, 0}, true},
  };
  const auto fields = [](const Rect& r) { return std::array<int, 4>{r.left, r.top, r.right, r.bottom}; };
  fmx::DataVectAutoPtr list;
  for (const auto& c : cases) PushText(list, c.text);
  unsigned int i = 0;
  for (const auto& c : cases) {
    fmx::TextAutoPtr t;
    t->Assign(c.text, fmx::Text::kEncoding_UTF8);
    Rect fromText = {1, 1, 1, 1}, fromList = {1, 1, 1, 1};
    bool textEmpty = !c.empty, listEmpty = !c.empty;
    EXPECT_EQ(XP7_GetNativeRectFromTxt(t, fromText, nullptr), 0);
    EXPECT_EQ(XP7_GetNativeRectFromTxt(t, fromText, &textEmpty), 0);
    EXPECT_EQ(XP7_GetNextRectFromVect(*list, fromList, &listEmpty, &i), 0);
    EXPECT_EQ(fields(fromText), c.leftTopRightBottom) << c.text;
    EXPECT_EQ(fields(fromList), c.leftTopRightBottom) << c.text;
    EXPECT_EQ(textEmpty, c.empty);
    EXPECT_EQ(listEmpty, c.empty);
  }
  Rect past = {1, 1, 1, 1};
  bool empty = false;
  XP7_GetNextRectFromVect(*list, past, &empty, &i);
  EXPECT_TRUE(empty);
  EXPECT_EQ(fields(past), (std::array<int, 4>{0, 0, 0, 0}));
  EXPECT_EQ(i, 5u);
}

}  // namespace
