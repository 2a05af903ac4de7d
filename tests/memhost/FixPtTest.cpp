// Tests of the in-memory host's fixed-point numbers: exactness at the edges of
// the range the toolkit needs, truncation, and failures.
#include <gtest/gtest.h>

#include <utility>

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

// AssignDouble takes the shortest decimal, so 0.1 * 0.3 is 0.03 exactly, as is 12.7 + 0.3 13.
TEST(HostFixPt, MultipliesAndAddsFractionsToSixteenDigits) {
  const struct {
    double a, b;
    bool multiply;
    double expected;
  } cases[] = {{0.1, 0.3, true, 0.03}, {-1.5, -1.5, true, 2.25}, {12.7, 0.3, false, 13}};
  for (const auto& c : cases) {
    fmx::FixPtAutoPtr a, b, result, expected;
    a->AssignDouble(c.a);
    b->AssignDouble(c.b);
    const fmx::FixPt& operand = c.a == c.b ? *a : *b;  // -1.5 is squared with itself as the operand
    c.multiply ? a->Multiply(operand, *result) : a->Add(operand, *result);
    expected->AssignDouble(c.expected);
    EXPECT_TRUE(Equal(*result, *expected)) << c.a << (c.multiply ? " * " : " + ") << c.b;
  }
}

TEST(HostFixPt, AsLongTruncatesTowardsZeroAndWrapsPastThirtyTwoBits) {
  const std::pair<double, long> cases[] = {{3.9, 3}, {-3.9, -3}, {12.7, 12}, {3000000000.0, int32_t(3000000000u)}};
  for (const auto& [value, truncated] : cases) {
    fmx::FixPtAutoPtr fx;
    fx->AssignDouble(value);
    EXPECT_EQ(fx->AsLong(), truncated) << value;
  }
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
