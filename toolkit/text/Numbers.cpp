// Whole numbers to host text and back, and machine integers to and from host fixed-point numbers.
#include "text/Numbers.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>

#include "text/TextCore.h"

namespace {

constexpr fmx::Text::Encoding kNumberEncoding = fmx::Text::kEncoding_ASCII_Mac;
constexpr unsigned int kToEnd = 0xFFFFFFFF;
// Room for any number a caller has ever typed into a field, and then some.
constexpr std::size_t kNumberTextBuffer = 2000;
// Enough for 2^64 - 1 and for a 64-bit long with its sign.
constexpr std::size_t kDigitsBuffer = 24;
constexpr int32_t kMaxSInt32 = 0x7FFFFFFF;

// The first kNumberTextBuffer - 1 bytes of the text, as the readers see it.
void NumberBytes(fmx::TextAutoPtr& txt, char (&buf)[kNumberTextBuffer]) {
  txt->GetBytes(buf, kNumberTextBuffer - 1, 0, kToEnd, kNumberEncoding);
}

}  // namespace

void XP7_ulongToTxt(unsigned int n, fmx::TextAutoPtr& txt) {
  char buf[kDigitsBuffer];
  std::snprintf(buf, sizeof buf, "%u", n);
  txt->Assign(buf, kNumberEncoding);
}

void XP7_longToTxt(long n, fmx::TextAutoPtr& txt) {
  char buf[kDigitsBuffer];
  std::snprintf(buf, sizeof buf, "%ld", n);
  txt->Assign(buf, kNumberEncoding);
}

int XP7_AppendUInt32ToTxt(unsigned int n, fmx::TextAutoPtr& txt) {
  char buf[kDigitsBuffer];
  std::snprintf(buf, sizeof buf, "%u", n);
  XP7_AppendCStrToTxt(buf, txt, kNumberEncoding);
  return 0;
}

int XP7_AppendUInt64ToTxt(unsigned long long n, fmx::Text& txt) {
  char buf[kDigitsBuffer];
  std::snprintf(buf, sizeof buf, "%llu", n);
  fmx::TextAutoPtr part;
  part->Assign(buf, kNumberEncoding);
  txt.AppendText(*part);
  return 0;
}

int XP7_AppendSInt32ToTxt(int n, fmx::TextAutoPtr& txt) {
  // Written unsigned, as it always has been: callers and the texts they already wrote
  // expect -1 as the ten digits 4294967295.
  char buf[kDigitsBuffer];
  std::snprintf(buf, sizeof buf, "%u", static_cast<unsigned int>(n));
  XP7_AppendCStrToTxt(buf, txt, kNumberEncoding);
  return 0;
}

void XP7_boolToTxt(bool b, fmx::TextAutoPtr& txt) { txt->Assign(b ? "1" : "0", kNumberEncoding); }

long XP7_TxtTolong(fmx::TextAutoPtr& txt) {
  char buf[kNumberTextBuffer];
  NumberBytes(txt, buf);
  return std::strtol(buf, nullptr, 10);
}

unsigned int XP7_TxtToUInt32(fmx::TextAutoPtr& txt) {
  char buf[kNumberTextBuffer];
  NumberBytes(txt, buf);
  return static_cast<unsigned int>(std::strtoul(buf, nullptr, 10));
}

unsigned int XP7_FixPtToUInt32(fmx::FixPtAutoPtr& fx) {
  fmx::FixPtAutoPtr zero(0);
  fmx::FixPtAutoPtr limit(kMaxSInt32);
  if (!(*fx > *zero)) return 0;
  if (*fx < *limit) return static_cast<unsigned int>(fx->AsLong());
  // The host's AsLong stops at 32 signed bits, so the top half of the range is read
  // off the caller's own number. The caller's number is left reduced: callers use it
  // once, and have always seen it so.
  fx->Decrement(kMaxSInt32);
  return static_cast<unsigned int>(fx->AsLong()) + static_cast<unsigned int>(kMaxSInt32);
}

void XP7_SInt64ToFixPt(long long n, fmx::FixPtAutoPtr& fx) {
  // The host assigns only 32-bit integers, so the number is put together from its
  // two halves with host arithmetic. The magnitude of -2^63 does not fit; it is taken
  // one short and the missing one subtracted after the sign is applied.
  const bool mostNegative = n == INT64_MIN;
  const uint64_t magnitude = mostNegative ? uint64_t(INT64_MAX)
                             : n < 0      ? 0 - static_cast<uint64_t>(n)
                                          : static_cast<uint64_t>(n);
  const uint32_t hi = static_cast<uint32_t>(magnitude >> 32);
  const uint32_t lo = static_cast<uint32_t>(magnitude);

  // Host results never alias their operands: the host does not promise that works.
  fmx::FixPtAutoPtr one(1);
  fmx::FixPtAutoPtr maxInt(kMaxSInt32);
  fmx::FixPtAutoPtr two31;  // 2^31
  maxInt->Add(*one, *two31);

  fmx::FixPtAutoPtr lowBits;
  lowBits->AssignInt(static_cast<int32_t>(lo & 0x7FFFFFFFu));
  fmx::FixPtAutoPtr lowWithTopBit;
  const fmx::FixPt* low = lowBits.get();
  if ((lo & 0x80000000u) != 0) {
    lowBits->Add(*two31, *lowWithTopBit);
    low = lowWithTopBit.get();
  }

  fmx::FixPtAutoPtr two(2);
  fmx::FixPtAutoPtr base;  // 2^32
  two31->Multiply(*two, *base);

  fmx::FixPtAutoPtr hiBits;
  hiBits->AssignInt(static_cast<int32_t>(hi));  // below 2^31: the magnitude is below 2^63
  fmx::FixPtAutoPtr high;
  hiBits->Multiply(*base, *high);

  fmx::FixPtAutoPtr result;
  low->Add(*high, *result);
  if (n < 0) result->Negate();
  if (mostNegative) {
    fmx::FixPtAutoPtr minimum;
    result->Subtract(*one, *minimum);
    fx->AssignFixPt(*minimum);
  } else {
    fx->AssignFixPt(*result);
  }
}
