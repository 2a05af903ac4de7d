// Host texts in tests: their units as a std::u16string, and back.
#ifndef XPTOOLKIT_TESTS_HOSTTEXT_H
#define XPTOOLKIT_TESTS_HOSTTEXT_H

#include <string>

#include "text/HostValues.h"

namespace testing_host {

/// Every UTF-16 unit of `t`.
inline std::u16string Units(const fmx::Text& t) {
  std::u16string s(t.GetSize(), u'\0');
  t.GetUnicode(reinterpret_cast<unsigned short*>(s.data()), 0, t.GetSize());
  return s;
}

inline std::u16string Units(fmx::TextAutoPtr& t) { return Units(*t); }

/// Replaces `t` by exactly the units of `s`.
inline void Set(fmx::TextAutoPtr& t, const std::u16string& s) {
  t->AssignUnicodeWithLength(reinterpret_cast<const unsigned short*>(s.data()), static_cast<uint32_t>(s.size()));
}

}  // namespace testing_host

#endif  // XPTOOLKIT_TESTS_HOSTTEXT_H
