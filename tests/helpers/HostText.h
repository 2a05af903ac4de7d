// Host texts in tests: their units as a std::u16string, and back; their UTF-8 bytes;
// 0-terminated UTF-16 strings.
#ifndef XPTOOLKIT_TESTS_HOSTTEXT_H
#define XPTOOLKIT_TESTS_HOSTTEXT_H

#include <string>
#include <vector>

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

/// The UTF-8 bytes of `t`, up to a first NUL.
inline std::string Utf8(const fmx::Text& t) {
  std::vector<char> bytes(4 * t.GetSize() + 1);
  t.GetBytes(bytes.data(), static_cast<uint32_t>(bytes.size() - 1), 0, 0xFFFFFFFF, fmx::Text::kEncoding_UTF8);
  return bytes.data();
}

/// Makes `d` the text of the UTF-8 bytes `utf8`.
inline void SetText(fmx::Data& d, const std::string& utf8) {
  fmx::TextAutoPtr t;
  t->Assign(utf8.c_str(), fmx::Text::kEncoding_UTF8);
  fmx::LocaleAutoPtr locale;
  d.SetAsText(*t, *locale);
}

/// The units of a 0-terminated UTF-16 string.
inline std::u16string UniStr(const unsigned short* s) { return reinterpret_cast<const char16_t*>(s); }

}  // namespace testing_host

#endif  // XPTOOLKIT_TESTS_HOSTTEXT_H
