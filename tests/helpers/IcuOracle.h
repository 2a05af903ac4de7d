// ICU converters as the independent oracle of the encoding tests.
#ifndef XPTOOLKIT_TESTS_ICUORACLE_H
#define XPTOOLKIT_TESTS_ICUORACLE_H

#include <unicode/ucnv.h>

#include <memory>

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

}  // namespace testing_icu

#endif  // XPTOOLKIT_TESTS_ICUORACLE_H
