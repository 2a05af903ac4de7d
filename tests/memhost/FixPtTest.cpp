// Tests of the in-memory host's fixed-point numbers: exactness at the edges of
// the range the toolkit needs, truncation, and failures.
#include <gtest/gtest.h>

#include "MemHost.h"

namespace {

// Builds 2^k with host arithmetic only, as the toolkit builds its large numbers.
void PowerOfTwo(int k, fmx::FixPt& out) {
  fmx::FixPtAutoPtr two(2);
  out.AssignInt(1);
  for (int i = 0; i < k; ++i) out.Multiply(*two, out);
}

bool Equal(const fmx::FixPt& a, const fmx::FixPt& b) { return !(a < b) && !(a > b); }

TEST(HostFixPt, HoldsTwoToTheSixtyFourWithSixteenFractionDigits) {
  fmx::FixPtAutoPtr big, tiny, sum, back;
  PowerOfTwo(64, *big);
  tiny->AssignDouble(1e-16);
  big->Add(*tiny, *sum);
  EXPECT_TRUE(*sum > *big);
  sum->Subtract(*tiny, *back);
  EXPECT_TRUE(Equal(*back, *big));
  // 2^64 = 18446744073709551616: its low 32 bits are 0, the integer part wraps to 0.
  EXPECT_EQ(big->AsLong(), 0);
  big->Increment(5);
  EXPECT_EQ(big->AsLong(), 5);
}

TEST(HostFixPt, MultipliesLargeByLargeExactly) {
  fmx::FixPtAutoPtr a, b, product, expected;
  PowerOfTwo(32, *a);
  PowerOfTwo(31, *b);
  a->Multiply(*b, *product);
  PowerOfTwo(63, *expected);
  EXPECT_TRUE(Equal(*product, *expected));
  // 2^63 - 1 and 2^63 differ in the last integer digit only.
  expected->Decrement(1);
  EXPECT_TRUE(*product > *expected);
}

TEST(HostFixPt, MultipliesFractionsToSixteenDigits) {
  fmx::FixPtAutoPtr a, b, product, expected;
  a->AssignDouble(0.1);
  b->AssignDouble(0.3);
  a->Multiply(*b, *product);
  expected->AssignDouble(0.03);
  EXPECT_TRUE(Equal(*product, *expected));
  a->AssignDouble(-1.5);
  a->Multiply(*a, *product);
  expected->AssignDouble(2.25);
  EXPECT_TRUE(Equal(*product, *expected));
}

TEST(HostFixPt, AsLongTruncatesTowardsZeroAndWrapsPastThirtyTwoBits) {
  fmx::FixPtAutoPtr fx;
  fx->AssignDouble(3.9);
  EXPECT_EQ(fx->AsLong(), 3);
  fx->AssignDouble(-3.9);
  EXPECT_EQ(fx->AsLong(), -3);
  fx->AssignDouble(12.7);
  EXPECT_EQ(fx->AsLong(), 12);
  fx->AssignDouble(3000000000.0);
  EXPECT_EQ(fx->AsLong(), static_cast<int32_t>(3000000000u));
}

TEST(HostFixPt, AssignDoubleTakesTheShortestDecimal) {
  fmx::FixPtAutoPtr fx, tenth, sum;
  fx->AssignDouble(12.7);
  tenth->AssignDouble(0.3);
  fx->Add(*tenth, *sum);
  fmx::FixPtAutoPtr thirteen(13);
  EXPECT_TRUE(Equal(*sum, *thirteen));
}

TEST(HostFixPt, ALowerPrecisionCutsTheFraction) {
  fmx::FixPtAutoPtr two(0, 2), x;
  x->AssignDouble(1.23456);
  two->AssignFixPt(*x);
  fmx::FixPtAutoPtr expected;
  expected->AssignDouble(1.23);
  EXPECT_TRUE(Equal(*two, *expected));
}

TEST(HostFixPt, OverflowIsAHostFailure) {
  fmx::FixPtAutoPtr big, product;
  PowerOfTwo(70, *big);  // about 1.2e21, near the top of the range
  EXPECT_THROW(big->Multiply(*big, *product), std::exception);
  fmx::FixPtAutoPtr x;
  EXPECT_THROW(x->AssignDouble(1e300), std::exception);
}

TEST(HostFixPt, NegateAndCompare) {
  fmx::FixPtAutoPtr a(5), b(-5), zero;
  a->Negate();
  EXPECT_TRUE(Equal(*a, *b));
  EXPECT_TRUE(*a < *zero);
  EXPECT_FALSE(*a > *zero);
}

}  // namespace
