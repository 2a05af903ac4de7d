// Tests of number conversion, with fixed-point results checked against the host's own
// reading of the expected decimal text.
#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <string>

#include "../helpers/HostText.h"
#include "MemHost.h"
#include "text/Numbers.h"

namespace {

using testing_host::Utf8;

void SetFromDecimal(fmx::FixPtAutoPtr& fx, const std::string& decimal) {
  DataHolder data;
  testing_host::SetText(*data, decimal);
  fmx::DataVectAutoPtr list;
  list->PushBack(*data);
  fx->AssignFixPt(list->AtAsNumber(0));
}

bool Equals(const fmx::FixPtAutoPtr& fx, const std::string& decimal) {
  fmx::FixPtAutoPtr expected;
  SetFromDecimal(expected, decimal);
  return !(*fx < *expected) && !(*fx > *expected);
}

TEST(Numbers, WritersReplaceOrAppendAndSignedAppendWritesUnsigned) {
  fmx::TextAutoPtr t;
  XP7_ulongToTxt(4294967295u, t);
  EXPECT_EQ(Utf8(*t), "4294967295");
  XP7_longToTxt(LONG_MIN, t);
  EXPECT_EQ(Utf8(*t), std::to_string(LONG_MIN));
  XP7_boolToTxt(true, t);
  EXPECT_EQ(XP7_AppendUInt32ToTxt(4294967295u, t), 0);
  EXPECT_EQ(XP7_AppendSInt32ToTxt(-1, t), 0);
  EXPECT_EQ(XP7_AppendSInt32ToTxt(INT_MIN, t), 0);
  EXPECT_EQ(XP7_AppendUInt64ToTxt(ULLONG_MAX, *t), 0);
  EXPECT_EQ(Utf8(*t), "1" "4294967295" "4294967295" "2147483648" "18446744073709551615");
  XP7_boolToTxt(false, t);
  EXPECT_EQ(Utf8(*t), "0");
}

TEST(Numbers, ReadersTakeTheLeadingNumberOfTheFirst1999Bytes) {
  const struct {
    std::string text;
    long asLong;
    unsigned int asUInt32;
  } cases[] = {
      {"  -42abc", -42, 0u - 42u},  // strtoul negates in unsigned arithmetic
      {"abc", 0, 0},
      {"4294967297", 4294967297L, 1},
      {"99999999999999999999", LONG_MAX, 0xFFFFFFFFu},
      {std::string(1998, ' ') + "12", 1, 1},
  };
  fmx::TextAutoPtr t;
  for (const auto& c : cases) {
    t->Assign(c.text.c_str(), fmx::Text::kEncoding_ASCII_Mac);
    EXPECT_EQ(XP7_TxtTolong(t), c.asLong) << c.text;
    EXPECT_EQ(XP7_TxtToUInt32(t), c.asUInt32) << c.text;
  }
}

TEST(Numbers, FixPtToUInt32TruncatesAndReducesTheCallersNumberFromTheTopHalfUp) {
  const struct {
    const char* number;
    unsigned int result;
    const char* leftBehind;
  } cases[] = {
      {"3.9", 3, "3.9"},
      {"0.5", 0, "0.5"},
      {"-5", 0, "-5"},
      {"2147483646.9", 2147483646u, "2147483646.9"},
      {"2147483647", 2147483647u, "0"},
      {"3000000000", 3000000000u, "852516353"},
      {"4294967301", 5, "2147483654"},  // 2^32 + 5 wraps
  };
  for (const auto& c : cases) {
    fmx::FixPtAutoPtr fx;
    SetFromDecimal(fx, c.number);
    EXPECT_EQ(XP7_FixPtToUInt32(fx), c.result) << c.number;
    EXPECT_TRUE(Equals(fx, c.leftBehind)) << c.number;
  }
}

TEST(Numbers, SInt64ToFixPtIsExactOverTheWholeRange) {
  for (long long n : {0LL, -1LL, 0x80000000LL, 1LL << 32, -3000000000LL, 0x123456789ABCDEF0LL, LLONG_MAX,
                      LLONG_MIN + 1, LLONG_MIN}) {
    fmx::FixPtAutoPtr fx(99);
    XP7_SInt64ToFixPt(n, fx);
    EXPECT_TRUE(Equals(fx, std::to_string(n))) << n;
  }
}

}  // namespace
