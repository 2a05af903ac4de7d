// Encoding names as the "-Encoding=" switches spell them, plus ByteValues.
#ifndef XPTOOL_ENCODINGNAMES_H
#define XPTOOL_ENCODINGNAMES_H

#include <string>
#include <vector>

#include "text/HostValues.h"

namespace xptool {

struct EncodingName {
  const char* name;
  fmx::Text::Encoding encoding;
};

/// Every name in host order: the 37 host encodings, the spelling UTF-8, ByteValues.
const std::vector<EncodingName>& EncodingNames();

/// The encoding of `name`, compared without ASCII case; false for an unknown name.
bool ParseEncoding(const std::string& name, fmx::Text::Encoding& encoding);

}  // namespace xptool

#endif  // XPTOOL_ENCODINGNAMES_H
