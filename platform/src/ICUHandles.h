// Ownership of ICU's C handles: each closes with its own call when its holder goes.
#ifndef XPPLATFORM_SRC_ICUHANDLES_H
#define XPPLATFORM_SRC_ICUHANDLES_H

#include <unicode/ucnv.h>
#include <unicode/udat.h>

#include <memory>

namespace xpcf {

struct ConverterCloser {
  void operator()(UConverter* converter) const { ucnv_close(converter); }
};
struct DateFormatCloser {
  void operator()(UDateFormat* format) const { udat_close(format); }
};

using ConverterHandle = std::unique_ptr<UConverter, ConverterCloser>;
using DateFormatHandle = std::unique_ptr<UDateFormat, DateFormatCloser>;

}  // namespace xpcf

#endif
