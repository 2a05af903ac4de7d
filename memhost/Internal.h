// What the in-memory host's values are made of, and the guard every host
// operation runs its body through (fault injection, exceptions to error codes).
#ifndef XPTOOLKIT_MEMHOST_INTERNAL_H
#define XPTOOLKIT_MEMHOST_INTERNAL_H

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "GapBuffer.h"
#include "MemHost.h"

namespace memhost {

/// Thrown inside an operation's body for a failure the host reports as code 2.
struct HostFailure {};

namespace detail {

extern std::atomic<uint32_t> gPendingFaults;
// Per thread, so that counting costs no atomic operation on every temporary text.
extern thread_local int64_t gLiveValues;

/// True (and the record filled) when an injected fault is due for `operation`.
bool FaultDue(const char* operation, fmx::HostErrorRecord& err);

}  // namespace detail

/// Runs the body of host operation `operation`: reports an injected fault instead
/// when one is due, and turns exceptions into the record's codes, since nothing
/// may leave a host operation but its result.
template <class Body>
inline auto Run(const char* operation, fmx::HostErrorRecord& err, Body&& body) -> decltype(body()) {
  using Result = decltype(body());
  // Codes other than 1 and 2 are not failures: the operation still does its work.
  if (detail::gPendingFaults.load(std::memory_order_relaxed) != 0 && detail::FaultDue(operation, err) &&
      (err.code == 1 || err.code == 2)) {
    return Result();
  }
  try {
    return body();
  } catch (const std::bad_alloc&) {
    err.code = 1;
  } catch (...) {
    err.code = 2;
  }
  return Result();
}

/// Counts a value made by a constructor operation.
template <class T>
inline T* Born(T* value) {
  ++detail::gLiveValues;
  return value;
}

/// Deletes a value made by a constructor operation. An injected fault is
/// reported, but the value is freed all the same so that fault tests leak nothing.
template <class T>
inline void Dies(const char* operation, T* value, fmx::HostErrorRecord& err) {
  if (detail::gPendingFaults.load(std::memory_order_relaxed) != 0) detail::FaultDue(operation, err);
  if (value == nullptr) return;
  --detail::gLiveValues;
  delete value;
}

/// Fixed-point numbers are integers scaled by 10^16, the precision the toolkit uses.
using Fixed = __int128;
constexpr int kScaleDigits = 16;
constexpr Fixed kScale = Fixed(10000000000000000LL);

struct TextImpl : fmx::Text {
  GapBuffer units;
  uint32_t style = 0;
};

struct FixPtImpl : fmx::FixPt {
  Fixed value = 0;
  int32_t precision = kScaleDigits;
  /// Stores `v`, cut to this number's precision (towards zero).
  void set(Fixed v);
};

struct DateTimeImpl : fmx::DateTime {
  int64_t day = 1;      // 0001-01-01 is day 1
  Fixed secs = 0;       // seconds since midnight, scaled like FixPt, in [0, 86400)
  /// Sets day and time from seconds since 0001-01-01 00:00:00 (scaled).
  void setTotal(Fixed total);
};

struct QuadCharImpl : fmx::QuadChar {
  uint32_t type = 0;
};

struct BinaryDataImpl : fmx::BinaryData {
  struct Stream {
    uint32_t type;
    std::vector<char> bytes;
  };
  std::vector<Stream> streams;
};

struct LocaleImpl : fmx::Locale {
  std::string name = "en_US";
};

struct DataImpl : fmx::Data {
  TextImpl text;        // the value's text form
  LocaleImpl locale;
  FixPtImpl number;
  DateTimeImpl timeStamp;
  BinaryDataImpl binary;
  void copyFrom(const DataImpl& other);
};

struct DataVectImpl : fmx::DataVect {
  std::vector<std::unique_ptr<DataImpl>> items;
};

inline TextImpl& Impl(fmx::Text* t) { return *static_cast<TextImpl*>(t); }
inline const TextImpl& Impl(const fmx::Text* t) { return *static_cast<const TextImpl*>(t); }
inline FixPtImpl& Impl(fmx::FixPt* t) { return *static_cast<FixPtImpl*>(t); }
inline const FixPtImpl& Impl(const fmx::FixPt* t) { return *static_cast<const FixPtImpl*>(t); }
inline DateTimeImpl& Impl(fmx::DateTime* t) { return *static_cast<DateTimeImpl*>(t); }
inline const DateTimeImpl& Impl(const fmx::DateTime* t) { return *static_cast<const DateTimeImpl*>(t); }
inline QuadCharImpl& Impl(fmx::QuadChar* t) { return *static_cast<QuadCharImpl*>(t); }
inline const QuadCharImpl& Impl(const fmx::QuadChar* t) { return *static_cast<const QuadCharImpl*>(t); }
inline BinaryDataImpl& Impl(fmx::BinaryData* t) { return *static_cast<BinaryDataImpl*>(t); }
inline const BinaryDataImpl& Impl(const fmx::BinaryData* t) { return *static_cast<const BinaryDataImpl*>(t); }
inline const LocaleImpl& Impl(const fmx::Locale* t) { return *static_cast<const LocaleImpl*>(t); }
inline DataImpl& Impl(fmx::Data* t) { return *static_cast<DataImpl*>(t); }
inline const DataImpl& Impl(const fmx::Data* t) { return *static_cast<const DataImpl*>(t); }
inline DataVectImpl& Impl(fmx::DataVect* t) { return *static_cast<DataVectImpl*>(t); }
inline const DataVectImpl& Impl(const fmx::DataVect* t) { return *static_cast<const DataVectImpl*>(t); }

/// Replaces a text's units by `units`.
void AssignUnits(TextImpl& text, const char16_t* units, size_t n);

/// Decimal text of a scaled fixed-point value, without trailing zeros ("12.7", "-3").
std::string FormatFixed(Fixed value);

/// Reads a decimal number (blanks, sign, digits, optional fraction) from the start
/// of `s`; false when there are no digits.
bool ParseFixed(const std::string& s, Fixed& value);

}  // namespace memhost

#endif  // XPTOOLKIT_MEMHOST_INTERNAL_H
