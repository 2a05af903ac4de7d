// The in-memory host's fixed-point numbers: exact decimals as 128-bit integers
// scaled by 10^16, enough for every value up to 2^64 with 16 fraction digits.
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "Internal.h"

using fmx::FixPt;
using fmx::HostErrorRecord;

namespace memhost {
namespace {

using UFixed = unsigned __int128;

Fixed Checked(bool overflowed, Fixed value) {
  if (overflowed) throw HostFailure();
  return value;
}

Fixed Add(Fixed a, Fixed b) {
  Fixed r;
  bool overflowed = __builtin_add_overflow(a, b, &r);
  return Checked(overflowed, r);
}

Fixed Sub(Fixed a, Fixed b) {
  Fixed r;
  bool overflowed = __builtin_sub_overflow(a, b, &r);
  return Checked(overflowed, r);
}

Fixed Mul(Fixed a, Fixed b) {
  Fixed r;
  bool overflowed = __builtin_mul_overflow(a, b, &r);
  return Checked(overflowed, r);
}

// a x b / 10^16, truncated towards zero, without the 256-bit intermediate: with
// a = ah S + al and b = bh S + bl, the product is ah bh S + ah bl + al bh + al bl / S,
// and al bl < 10^32 fits.
Fixed MulScaled(Fixed a, Fixed b) {
  constexpr Fixed kMin = Fixed(UFixed(1) << 127);
  if (a == kMin || b == kMin) throw HostFailure();
  bool negative = (a < 0) != (b < 0);
  Fixed ua = a < 0 ? -a : a;
  Fixed ub = b < 0 ? -b : b;
  Fixed ah = ua / kScale, al = ua % kScale;
  Fixed bh = ub / kScale, bl = ub % kScale;
  Fixed r = Mul(Mul(ah, bh), kScale);
  r = Add(r, Mul(ah, bl));
  r = Add(r, Mul(al, bh));
  r = Add(r, al * bl / kScale);
  return negative ? -r : r;
}

Fixed Pow10(int n) {
  Fixed p = 1;
  while (n-- > 0) p *= 10;
  return p;
}

}  // namespace

void FixPtImpl::set(Fixed v) {
  if (precision < kScaleDigits) {
    Fixed unit = Pow10(kScaleDigits - (precision < 0 ? 0 : precision));
    v = v / unit * unit;
  }
  value = v;
}

std::string FormatFixed(Fixed value) {
  UFixed u = value < 0 ? UFixed(-(value + 1)) + 1 : UFixed(value);
  UFixed whole = u / UFixed(kScale);
  UFixed frac = u % UFixed(kScale);
  std::string digits;
  do {
    digits.insert(digits.begin(), char('0' + int(whole % 10)));
    whole /= 10;
  } while (whole != 0);
  if (value < 0) digits.insert(digits.begin(), '-');
  if (frac != 0) {
    std::string f(kScaleDigits, '0');
    for (int i = kScaleDigits - 1; i >= 0; --i, frac /= 10) f[i] = char('0' + int(frac % 10));
    f.erase(f.find_last_not_of('0') + 1);
    digits += '.' + f;
  }
  return digits;
}

bool ParseFixed(const std::string& s, Fixed& value) {
  size_t i = 0;
  while (i < s.size() && (s[i] == ' ' || s[i] == '\t')) ++i;
  bool negative = false;
  if (i < s.size() && (s[i] == '-' || s[i] == '+')) negative = s[i++] == '-';
  Fixed whole = 0, frac = 0;
  int fracDigits = 0;
  bool any = false;
  for (; i < s.size() && s[i] >= '0' && s[i] <= '9'; ++i, any = true) whole = Add(Mul(whole, 10), s[i] - '0');
  if (i < s.size() && s[i] == '.') {
    for (++i; i < s.size() && s[i] >= '0' && s[i] <= '9'; ++i, any = true) {
      if (fracDigits < kScaleDigits) frac = frac * 10 + (s[i] - '0'), ++fracDigits;
    }
  }
  if (!any) return false;
  Fixed v = Add(Mul(whole, kScale), frac * Pow10(kScaleDigits - fracDigits));
  value = negative ? -v : v;
  return true;
}

}  // namespace memhost

using namespace memhost;

extern "C" {

FixPt* FM_FixPt_Constructor1(int32_t value, int32_t precision, HostErrorRecord& err) {
  return Run("FM_FixPt_Constructor1", err, [&] {
    FixPtImpl* fx = Born(new FixPtImpl);
    fx->precision = precision;
    fx->set(Fixed(value) * kScale);
    return static_cast<FixPt*>(fx);
  });
}

void FM_FixPt_Delete(FixPt* self, HostErrorRecord& err) { Dies("FM_FixPt_Delete", static_cast<FixPtImpl*>(self), err); }

void FM_FixPt_AssignInt(FixPt* self, int32_t value, HostErrorRecord& err) {
  Run("FM_FixPt_AssignInt", err, [&] { Impl(self).set(Fixed(value) * kScale); });
}

void FM_FixPt_AssignDouble(FixPt* self, double value, HostErrorRecord& err) {
  Run("FM_FixPt_AssignDouble", err, [&] {
    if (!std::isfinite(value)) throw HostFailure();
    // The shortest decimal that reads back as the same double: 12.7 stays 12.7
    // instead of 12.699999999999999289...
    char text[64];
    for (int digits = 15; digits <= 17; ++digits) {
      std::snprintf(text, sizeof text, "%.*g", digits, value);
      if (std::strtod(text, nullptr) == value) break;
    }
    std::string s(text);
    size_t e = s.find_first_of("eE");
    Fixed v;
    if (e == std::string::npos) {
      if (!ParseFixed(s, v)) throw HostFailure();
    } else {
      // Exponent form: scale the mantissa by hand.
      if (!ParseFixed(s.substr(0, e), v)) throw HostFailure();
      for (int x = std::atoi(s.c_str() + e + 1); x != 0; x += x > 0 ? -1 : 1) v = x > 0 ? Mul(v, 10) : v / 10;
    }
    Impl(self).set(v);
  });
}

void FM_FixPt_AssignFixPt(FixPt* self, const FixPt* other, HostErrorRecord& err) {
  Run("FM_FixPt_AssignFixPt", err, [&] { Impl(self).set(Impl(other).value); });
}

void FM_FixPt_Add(const FixPt* self, const FixPt* other, FixPt* result, HostErrorRecord& err) {
  Run("FM_FixPt_Add", err, [&] { Impl(result).set(Add(Impl(self).value, Impl(other).value)); });
}

void FM_FixPt_Subtract(const FixPt* self, const FixPt* other, FixPt* result, HostErrorRecord& err) {
  Run("FM_FixPt_Subtract", err, [&] { Impl(result).set(Sub(Impl(self).value, Impl(other).value)); });
}

void FM_FixPt_Multiply(const FixPt* self, const FixPt* other, FixPt* result, HostErrorRecord& err) {
  Run("FM_FixPt_Multiply", err, [&] { Impl(result).set(MulScaled(Impl(self).value, Impl(other).value)); });
}

void FM_FixPt_Increment(FixPt* self, int32_t n, HostErrorRecord& err) {
  Run("FM_FixPt_Increment", err, [&] { Impl(self).set(Add(Impl(self).value, Fixed(n) * kScale)); });
}

void FM_FixPt_Decrement(FixPt* self, int32_t n, HostErrorRecord& err) {
  Run("FM_FixPt_Decrement", err, [&] { Impl(self).set(Sub(Impl(self).value, Fixed(n) * kScale)); });
}

void FM_FixPt_Negate(FixPt* self, HostErrorRecord& err) {
  Run("FM_FixPt_Negate", err, [&] { Impl(self).set(Sub(0, Impl(self).value)); });
}

int32_t FM_FixPt_AsLong(const FixPt* self, HostErrorRecord& err) {
  return Run("FM_FixPt_AsLong", err, [&] {
    // Truncated towards zero, then reduced to 32 bits: numbers past the range wrap.
    Fixed whole = Impl(self).value / kScale;
    return static_cast<int32_t>(static_cast<uint32_t>(static_cast<UFixed>(whole) & 0xFFFFFFFFu));
  });
}

bool FM_FixPt_operatorGT(const FixPt* self, const FixPt* other, HostErrorRecord& err) {
  return Run("FM_FixPt_operatorGT", err, [&] { return Impl(self).value > Impl(other).value; });
}

bool FM_FixPt_operatorLT(const FixPt* self, const FixPt* other, HostErrorRecord& err) {
  return Run("FM_FixPt_operatorLT", err, [&] { return Impl(self).value < Impl(other).value; });
}

}  // extern "C"
