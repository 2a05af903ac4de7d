// ICU converters as the independent oracle of the encoding tests.
#ifndef XPTOOLKIT_TESTS_ICUORACLE_H
#define XPTOOLKIT_TESTS_ICUORACLE_H

#include <unicode/ucnv.h>

#include <memory>
#include <string>

namespace testing_icu {

struct ConverterCloser {
  void operator()(UConverter* converter) const { ucnv_close(converter); }
};
using Converter = std::unique_ptr<UConverter, ConverterCloser>;

/// A converter that reports unmappable characters instead of substituting them;
/// null when ICU has no converter of that name.
inline Converter OpenStrict(const char* name) {
  UErrorCode error = U_ZERO_ERROR;
  Converter converter(ucnv_open(name, &error));
  if (U_FAILURE(error)) return nullptr;
  ucnv_setToUCallBack(converter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &error);
  ucnv_setFromUCallBack(converter.get(), UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &error);
  return U_SUCCESS(error) ? std::move(converter) : nullptr;
}

/// ICU's reading of `bytes`, or U+FFFD when it has no character for them.
inline std::u16string IcuDecode(UConverter* converter, const std::string& bytes) {
  char16_t units[8];
  UErrorCode error = U_ZERO_ERROR;
  int32_t length = ucnv_toUChars(converter, units, 8, bytes.data(), static_cast<int32_t>(bytes.size()), &error);
  return U_SUCCESS(error) ? std::u16string(units, length) : std::u16string(1, u'\uFFFD');
}

/// ICU's bytes for `text`, or "?" when it has none. ICU silently drops an unmappable
/// default-ignorable character (soft hyphen, joiners); the host writes "?" for it as for any other.
inline std::string IcuEncode(UConverter* converter, const std::u16string& text) {
  char bytes[8];
  UErrorCode error = U_ZERO_ERROR;
  int32_t length = ucnv_fromUChars(converter, bytes, 8, text.data(), static_cast<int32_t>(text.size()), &error);
  return U_SUCCESS(error) && length > 0 ? std::string(bytes, length) : std::string("?");
}

}  // namespace testing_icu

#endif  // XPTOOLKIT_TESTS_ICUORACLE_H
