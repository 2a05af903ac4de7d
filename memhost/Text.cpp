// The in-memory host's text operations: UTF-16 units in a gap buffer, a style,
// and conversion to and from bytes in the host's encodings.
#include <unicode/uchar.h>

#include <algorithm>
#include <cstring>
#include <mutex>

#include "Encodings.h"
#include "Internal.h"

using fmx::HostErrorRecord;
using fmx::Text;

namespace memhost {
namespace {

constexpr uint32_t kNotFound = 0xFFFFFFFF;
// Text sizes are 32-bit unit counts; one unit stays free for "to the end".
constexpr size_t kMaxUnits = 0xFFFFFFFE;

// Simple case folding per UTF-16 unit, so that positions never move. Built once:
// a find that ignores case then costs a table look-up per unit.
const char16_t* FoldTable() {
  static std::unique_ptr<char16_t[]> table;
  static std::once_flag once;
  std::call_once(once, [] {
    table.reset(new char16_t[0x10000]);
    for (UChar32 c = 0; c < 0x10000; ++c) {
      UChar32 f = u_foldCase(c, U_FOLD_CASE_DEFAULT);
      table[c] = static_cast<char16_t>(f <= 0xFFFF ? f : c);
    }
  });
  return table.get();
}

void CheckGrowth(const TextImpl& t, size_t added) {
  if (added > kMaxUnits - t.units.size()) throw std::bad_alloc();
}

// Clips (pos, size) to the text: the host's rule for ranges that run past the end.
void Clip(size_t textSize, uint32_t& pos, uint32_t& size) {
  if (pos > textSize) pos = static_cast<uint32_t>(textSize);
  if (size > textSize - pos) size = static_cast<uint32_t>(textSize - pos);
}

// Texts the toolkit makes for a moment (one character to append, a fragment to
// search for) come from a small per-thread pool instead of the heap.
struct TextPool {
  static constexpr size_t kMaxPooled = 16;
  static constexpr size_t kMaxPooledUnits = 1024;
  TextImpl* free[kMaxPooled] = {};
  size_t count = 0;
  ~TextPool() {
    while (count > 0) delete free[--count];
  }
};

thread_local TextPool gTextPool;

std::u16string& Scratch() {
  thread_local std::u16string scratch;
  scratch.clear();
  return scratch;
}

void CheckEncoding(int32_t encoding) {
  if (!IsHostEncoding(encoding)) throw HostFailure();
}

void Decode(TextImpl& t, const char* bytes, size_t n, int32_t encoding) {
  CheckEncoding(encoding);
  std::u16string& units = Scratch();
  DecodeBytes(encoding, bytes, n, units);
  AssignUnits(t, units.data(), units.size());
}

// Copies a range of `src` into `dst` at `pos`; src may be dst itself.
void CopyRange(TextImpl& dst, size_t at, const TextImpl& src, uint32_t pos, uint32_t size) {
  CheckGrowth(dst, size);
  if (&dst == &src) {
    std::u16string& tmp = Scratch();
    tmp.resize(size);
    src.units.copyOut(pos, size, tmp.data());
    dst.units.insert(at, tmp.data(), size);
  } else {
    dst.units.insert(at, const_cast<TextImpl&>(src).units.contiguous(pos, size), size);
  }
}

template <class Fold>
uint32_t FindForward(const TextImpl& hayText, const TextImpl& needleText, uint32_t pos, Fold fold) {
  size_t n = hayText.units.size();
  size_t m = needleText.units.size();
  if (m == 0 || m > n || pos > n - m) return kNotFound;
  std::u16string& needle = Scratch();
  needle.resize(m);
  needleText.units.copyOut(0, m, needle.data());
  for (char16_t& u : needle) u = fold(u);
  // The gap moves to `pos` at most: a left-to-right series of find and edit keeps
  // it next to the last edit, so each find costs only the distance it scans.
  const char16_t* hay = const_cast<TextImpl&>(hayText).units.contiguous(pos, n - pos);
  const char16_t first = needle[0];
  for (size_t i = 0, last = n - pos - m; i <= last; ++i) {
    if (fold(hay[i]) != first) continue;
    size_t k = 1;
    while (k < m && fold(hay[i + k]) == needle[k]) ++k;
    if (k == m) return static_cast<uint32_t>(pos + i);
  }
  return kNotFound;
}

}  // namespace

void AssignUnits(TextImpl& text, const char16_t* units, size_t n) {
  if (n > kMaxUnits) throw std::bad_alloc();
  text.units.clear();
  text.units.append(units, n);
}

uint32_t StyleOf(const fmx::Text& text) { return Impl(&text).style; }

void SetStyle(fmx::Text& text, uint32_t style) { Impl(&text).style = style; }

}  // namespace memhost

using namespace memhost;

extern "C" {

Text* FM_Text_Constructor1(HostErrorRecord& err) {
  return Run("FM_Text_Constructor1", err, [] {
    TextPool& pool = gTextPool;
    if (pool.count == 0) return static_cast<Text*>(Born(new TextImpl));
    TextImpl* t = pool.free[--pool.count];
    t->units.clear();
    t->style = 0;
    return static_cast<Text*>(Born(t));
  });
}

void FM_Text_Delete(Text* self, HostErrorRecord& err) {
  TextImpl* t = static_cast<TextImpl*>(self);
  TextPool& pool = gTextPool;
  if (t != nullptr && pool.count < TextPool::kMaxPooled && t->units.capacity() <= TextPool::kMaxPooledUnits) {
    pool.free[pool.count++] = t;
    self = nullptr;
    --detail::gLiveValues;
  }
  Dies("FM_Text_Delete", static_cast<TextImpl*>(self), err);
}

uint32_t FM_Text_GetSize(const Text* self, HostErrorRecord& err) {
  return Run("FM_Text_GetSize", err, [&] { return static_cast<uint32_t>(Impl(self).units.size()); });
}

void FM_Text_Assign(Text* self, const char* s, int32_t encoding, HostErrorRecord& err) {
  Run("FM_Text_Assign", err, [&] {
    if (s == nullptr) throw HostFailure();
    // Most strings the toolkit assigns are one character long: count those inline.
    size_t n = 0;
    while (n < 8 && s[n] != '\0') ++n;
    if (n == 8) n += std::strlen(s + 8);
    Decode(Impl(self), s, n, encoding);
  });
}

void FM_Text_AssignWithLength(Text* self, const char* s, uint32_t length, int32_t encoding,
                              HostErrorRecord& err) {
  Run("FM_Text_AssignWithLength", err, [&] {
    if (s == nullptr && length > 0) throw HostFailure();
    Decode(Impl(self), s, length, encoding);
  });
}

void FM_Text_AssignUnicode(Text* self, const uint16_t* s, HostErrorRecord& err) {
  Run("FM_Text_AssignUnicode", err, [&] {
    if (s == nullptr) throw HostFailure();
    size_t n = 0;
    while (s[n] != 0) ++n;
    AssignUnits(Impl(self), reinterpret_cast<const char16_t*>(s), n);
  });
}

void FM_Text_AssignUnicodeWithLength(Text* self, const uint16_t* s, uint32_t length, HostErrorRecord& err) {
  Run("FM_Text_AssignUnicodeWithLength", err, [&] {
    if (s == nullptr && length > 0) throw HostFailure();
    AssignUnits(Impl(self), reinterpret_cast<const char16_t*>(s), length);
  });
}

void FM_Text_SetText(Text* self, const Text* other, uint32_t position, uint32_t size, HostErrorRecord& err) {
  Run("FM_Text_SetText", err, [&] {
    TextImpl& dst = Impl(self);
    const TextImpl& src = Impl(other);
    Clip(src.units.size(), position, size);
    if (&dst == &src) {
      // A range of itself: cut away what lies around it.
      dst.units.erase(position + size, dst.units.size() - position - size);
      dst.units.erase(0, position);
    } else {
      dst.units.clear();
      CopyRange(dst, 0, src, position, size);
    }
    dst.style = src.style;
  });
}

void FM_Text_AppendText(Text* self, const Text* other, uint32_t position, uint32_t size, HostErrorRecord& err) {
  Run("FM_Text_AppendText", err, [&] {
    TextImpl& dst = Impl(self);
    const TextImpl& src = Impl(other);
    Clip(src.units.size(), position, size);
    CopyRange(dst, dst.units.size(), src, position, size);
  });
}

void FM_Text_InsertText(Text* self, const Text* other, uint32_t position, HostErrorRecord& err) {
  Run("FM_Text_InsertText", err, [&] {
    TextImpl& dst = Impl(self);
    const TextImpl& src = Impl(other);
    size_t at = std::min<size_t>(position, dst.units.size());
    CopyRange(dst, at, src, 0, static_cast<uint32_t>(src.units.size()));
  });
}

void FM_Text_DeleteText(Text* self, uint32_t position, uint32_t size, HostErrorRecord& err) {
  Run("FM_Text_DeleteText", err, [&] {
    TextImpl& t = Impl(self);
    Clip(t.units.size(), position, size);
    t.units.erase(position, size);
  });
}

uint32_t FM_Text_Find(const Text* self, const Text* other, uint32_t position, HostErrorRecord& err) {
  return Run("FM_Text_Find", err,
             [&] { return FindForward(Impl(self), Impl(other), position, [](char16_t u) { return u; }); });
}

uint32_t FM_Text_FindIgnoringCase(const Text* self, const Text* other, uint32_t position, HostErrorRecord& err) {
  return Run("FM_Text_FindIgnoringCase", err, [&] {
    const char16_t* fold = FoldTable();
    return FindForward(Impl(self), Impl(other), position, [fold](char16_t u) { return fold[u]; });
  });
}

uint32_t FM_Text_FindPrev(const Text* self, const Text* other, uint32_t position, HostErrorRecord& err) {
  return Run("FM_Text_FindPrev", err, [&]() -> uint32_t {
    TextImpl& hayText = const_cast<TextImpl&>(Impl(self));
    const TextImpl& needleText = Impl(other);
    size_t n = hayText.units.size();
    size_t m = needleText.units.size();
    if (m == 0 || m > n) return kNotFound;
    size_t last = std::min<size_t>(position, n - m);
    std::u16string& needle = Scratch();
    needle.resize(m);
    needleText.units.copyOut(0, m, needle.data());
    const char16_t* hay = hayText.units.contiguous(0, last + m);
    for (size_t i = last + 1; i-- > 0;) {
      if (std::equal(needle.begin(), needle.end(), hay + i)) return static_cast<uint32_t>(i);
    }
    return kNotFound;
  });
}

void FM_Text_GetUnicode(const Text* self, uint16_t* s, uint32_t position, uint32_t size, HostErrorRecord& err) {
  Run("FM_Text_GetUnicode", err, [&] {
    const TextImpl& t = Impl(self);
    Clip(t.units.size(), position, size);
    if (size == 1) {  // the toolkit's most frequent call: one unit into a local
      *s = t.units.at(position);
      return;
    }
    t.units.copyOut(position, size, reinterpret_cast<char16_t*>(s));
  });
}

void FM_Text_GetBytes(const Text* self, char* buffer, uint32_t bufferSize, uint32_t position, uint32_t size,
                      int32_t encoding, HostErrorRecord& err) {
  Run("FM_Text_GetBytes", err, [&] {
    CheckEncoding(encoding);
    if (buffer == nullptr) throw HostFailure();
    TextImpl& t = const_cast<TextImpl&>(Impl(self));
    Clip(t.units.size(), position, size);
    size_t written = EncodeUnits(encoding, t.units.contiguous(position, size), size, buffer, bufferSize);
    buffer[written] = '\0';
  });
}

bool FM_Text_operatorEQ(const Text* self, const Text* other, HostErrorRecord& err) {
  return Run("FM_Text_operatorEQ", err, [&] {
    TextImpl& a = const_cast<TextImpl&>(Impl(self));
    TextImpl& b = const_cast<TextImpl&>(Impl(other));
    size_t n = a.units.size();
    if (n != b.units.size()) return false;
    if (&a == &b) return true;
    return std::equal(a.units.contiguous(0, n), a.units.contiguous(0, n) + n, b.units.contiguous(0, n));
  });
}

}  // extern "C"
