// Tests of the in-memory host's date-times, data values, parameter lists,
// containers, calculation environment and fault seam.
#include <gtest/gtest.h>

#include <ctime>
#include <random>
#include <string>

#include <tuple>

#include "../helpers/HostText.h"
#include "MemHost.h"

namespace {

using testing_host::Utf8;

void SetText(DataHolder& d, const char* s) { testing_host::SetText(*d, s); }

auto DateOf(const fmx::DateTime& dt) { return std::make_tuple(dt.GetYear(), dt.GetMonth(), dt.GetDay()); }

TEST(HostDateTime, DayOneIsTheFirstOfJanuaryOfYearOne) {
  fmx::DateTimeAutoPtr dt;
  dt->SetDaysSinceEpoch(1);
  EXPECT_EQ(DateOf(*dt), std::make_tuple(1, 1, 1));
  // 1904-01-01, the start of the Mac clock, is day 695056 and second 60052752000.
  fmx::FixPtAutoPtr secs(60052752), thousand(1000);
  secs->Multiply(*thousand, *secs);
  dt->SetSecondsSinceEpoch(*secs);
  EXPECT_EQ(dt->GetDaysSinceEpoch(), 695056);
  EXPECT_EQ(dt->GetYear(), 1904);
  EXPECT_EQ(dt->GetHour(), 0);
}

TEST(HostDateTime, CalendarAgreesWithTheCLibrary) {
  std::mt19937 rng(11);
  fmx::DateTimeAutoPtr dt;
  for (int i = 0; i < 2000; ++i) {
    // Days from 1901 to 2199 around the Unix epoch (day 719163).
    int64_t unixDays = static_cast<int64_t>(rng() % 109500) - 25000;
    time_t t = static_cast<time_t>(unixDays * 86400);
    std::tm tm{};
    gmtime_r(&t, &tm);
    dt->SetDaysSinceEpoch(unixDays + 719163);
    ASSERT_EQ(DateOf(*dt), std::make_tuple(tm.tm_year + 1900, tm.tm_mon + 1, tm.tm_mday)) << unixDays;
  }
}

TEST(HostDateTime, DateAndTimePartsMoveSeparately) {
  fmx::DateTimeAutoPtr a, b;
  fmx::FixPtAutoPtr secs(3 * 3600 + 25 * 60 + 7);
  a->SetDaysSinceEpoch(738000);
  a->SetSecsSinceMidnight(*secs);
  EXPECT_EQ(std::make_tuple(a->GetHour(), a->GetMinute(), a->GetSec()), std::make_tuple(3, 25, 7));
  b->SetDate(*a);
  EXPECT_EQ(b->GetDaysSinceEpoch(), 738000);
  EXPECT_EQ(b->GetHour(), 0);
  b->SetTime(*a);
  fmx::FixPtAutoPtr back;
  b->GetSecsSinceMidnight(*back);
  EXPECT_FALSE(*back < *secs || *back > *secs);
}

TEST(HostData, ParameterListsHoldCopiesInEveryForm) {
  fmx::DataVectAutoPtr params;
  DataHolder d;
  SetText(d, "3000000000");
  params->PushBack(*d);
  fmx::FixPtAutoPtr n;
  n->AssignDouble(12.7);
  d->SetAsNumber(*n);
  params->PushBack(*d);
  fmx::DateTimeAutoPtr ts;
  ts->SetDaysSinceEpoch(738000);
  d->SetAsTimeStamp(*ts);
  params->PushBack(*d);
  SetText(d, "changed afterwards");

  ASSERT_EQ(params->Size(), 3u);
  EXPECT_EQ(Utf8(params->AtAsText(0)), "3000000000");
  fmx::FixPtAutoPtr big(2000000000), limit;
  EXPECT_TRUE(params->AtAsNumber(0) > *big);
  EXPECT_EQ(Utf8(params->AtAsText(1)), "12.7");
  EXPECT_EQ(params->AtAsNumber(1).AsLong(), 12);
  EXPECT_EQ(params->AtAsTimeStamp(2).GetDaysSinceEpoch(), 738000);
  EXPECT_EQ(Utf8(params->AtAsText(2)), "2021-07-29 00:00:00");
  EXPECT_THROW(params->AtAsText(3), std::exception);
}

TEST(HostData, ContainersKeepTypedStreams) {
  fmx::BinaryDataAutoPtr bin, copy;
  QuadCharHolder jpeg('J', 'P', 'E', 'G');
  char bytes[3] = {1, 2, 3};
  EXPECT_EQ(bin->Add(*jpeg, 3, bytes), 0);
  EXPECT_EQ(bin->Add(*jpeg, 0, nullptr), 0);
  *copy = *bin;
  DataHolder d;
  d->SetBinaryData(*copy);
  fmx::DataVectAutoPtr params;
  params->PushBack(*d);
  const fmx::BinaryData& got = params->AtAsBinaryData(0);
  ASSERT_EQ(got.GetCount(), 2);
  QuadCharHolder type;
  got.GetType(0, *type);
  EXPECT_EQ(type->GetMacType(), 0x4A504547u);
  EXPECT_EQ(got.GetSize(0), 3u);
  EXPECT_EQ(got.GetSize(1), 0u);
  char out[3] = {};
  EXPECT_EQ(got.GetData(0, 1, 2, out), 0);
  EXPECT_EQ(std::string(out, 2), "\x02\x03");
  EXPECT_EQ(got.GetData(0, 2, 2, out), memhost::kRangeError);
  EXPECT_EQ(got.GetData(5, 0, 0, out), memhost::kRangeError);
  EXPECT_THROW(got.GetSize(2), std::exception);
}

TEST(HostExprEnv, EvaluatesStringLiteralsOnly) {
  fmx::ExprEnv env;
  DataHolder result;
  fmx::TextAutoPtr expr;
  expr->Assign(" \"say \\\"hi\\\"\" ", fmx::Text::kEncoding_UTF8);
  EXPECT_EQ(env.Evaluate(*expr, *result), 0);
  EXPECT_EQ(Utf8(result->GetAsText()), "say \"hi\"");
  expr->Assign("1 + 1", fmx::Text::kEncoding_UTF8);
  EXPECT_EQ(env.Evaluate(*expr, *result), memhost::kEvaluateSyntaxError);
  expr->Assign("\"open", fmx::Text::kEncoding_UTF8);
  EXPECT_NE(env.Evaluate(*expr, *result), 0);
}

class HostFaults : public ::testing::Test {
 protected:
  void TearDown() override { memhost::ClearFaults(); }
};

TEST_F(HostFaults, NamedFaultFiresAfterTheCallsItSkips) {
  fmx::TextAutoPtr a, b;
  memhost::InjectFault("FM_Text_AppendText", 2, 1);
  a->AppendText(*b);
  EXPECT_THROW(a->AppendText(*b), std::exception);
  EXPECT_NO_THROW(a->AppendText(*b));
  EXPECT_EQ(memhost::PendingFaults(), 0u);
}

TEST_F(HostFaults, CodeOneIsOutOfMemoryAndOtherCodesAreNoErrors) {
  memhost::InjectFault("*", 1);
  EXPECT_THROW(fmx::TextAutoPtr(), std::bad_alloc);
  fmx::TextAutoPtr t;
  memhost::InjectFault("FM_Text_Assign", 3);
  EXPECT_NO_THROW(t->Assign("kept", fmx::Text::kEncoding_ASCII_Mac));
  EXPECT_EQ(t->GetSize(), 4u);
}

TEST_F(HostFaults, FailedDeleteWhileUnwindingEndsTheProcess) {
  EXPECT_DEATH(
      {
        try {
          fmx::TextAutoPtr t;
          memhost::InjectFault("FM_Text_Delete", 2);
          throw 1;
        } catch (int) {
        }
      },
      "");
}

TEST_F(HostFaults, FailedDeleteOutsideUnwindingIsIgnoredAndFreesTheValue) {
  int64_t before = memhost::LiveValues();
  {
    fmx::TextAutoPtr t;
    memhost::InjectFault("FM_Text_Delete", 2);
  }
  EXPECT_EQ(memhost::LiveValues(), before);
}

}  // namespace
