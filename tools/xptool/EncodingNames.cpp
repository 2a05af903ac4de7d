// Encoding names as the "-Encoding=" switches spell them, plus ByteValues.
#include "EncodingNames.h"

#include <strings.h>

#include "text/TextCore.h"

namespace xptool {

const std::vector<EncodingName>& EncodingNames() {
  using T = fmx::Text;
  static const std::vector<EncodingName> names = {
      {"Native", T::kEncoding_Native},
      {"UTF8", T::kEncoding_UTF8},
      {"UTF-8", T::kEncoding_UTF8},
      {"ASCII_DOS", T::kEncoding_ASCII_DOS},
      {"ASCII_Windows", T::kEncoding_ASCII_Windows},
      {"ASCII_Mac", T::kEncoding_ASCII_Mac},
      {"ISO_8859_1", T::kEncoding_ISO_8859_1},
      {"ShiftJIS_Mac", T::kEncoding_ShiftJIS_Mac},
      {"ShiftJIS_Win", T::kEncoding_ShiftJIS_Win},
      {"Korean_Mac", T::kEncoding_Korean_Mac},
      {"Korean_Win", T::kEncoding_Korean_Win},
      {"Korean_Johab", T::kEncoding_Korean_Johab},
      {"ChineseTrad_Mac", T::kEncoding_ChineseTrad_Mac},
      {"ChineseTrad_Win", T::kEncoding_ChineseTrad_Win},
      {"ChineseSimp_Mac", T::kEncoding_ChineseSimp_Mac},
      {"ChineseSimp_Win", T::kEncoding_ChineseSimp_Win},
      {"Cyrillic_Mac", T::kEncoding_Cyrillic_Mac},
      {"Cyrillic_Win", T::kEncoding_Cyrillic_Win},
      {"ISO_8859_5", T::kEncoding_ISO_8859_5},
      {"CentralEurope_Mac", T::kEncoding_CentralEurope_Mac},
      {"EasternEurope_Win", T::kEncoding_EasternEurope_Win},
      {"ISO_8859_2", T::kEncoding_ISO_8859_2},
      {"Turkish_Mac", T::kEncoding_Turkish_Mac},
      {"Turkish_Win", T::kEncoding_Turkish_Win},
      {"ISO_8859_3", T::kEncoding_ISO_8859_3},
      {"ISO_8859_9", T::kEncoding_ISO_8859_9},
      {"Baltic_Win", T::kEncoding_Baltic_Win},
      {"ISO_8859_4", T::kEncoding_ISO_8859_4},
      {"Arabic_Mac", T::kEncoding_Arabic_Mac},
      {"Arabic_Win", T::kEncoding_Arabic_Win},
      {"ISO_8859_6", T::kEncoding_ISO_8859_6},
      {"Greek_Mac", T::kEncoding_Greek_Mac},
      {"Greek_Win", T::kEncoding_Greek_Win},
      {"ISO_8859_7", T::kEncoding_ISO_8859_7},
      {"Hebrew_Mac", T::kEncoding_Hebrew_Mac},
      {"Hebrew_Win", T::kEncoding_Hebrew_Win},
      {"ISO_8859_8", T::kEncoding_ISO_8859_8},
      {"ISO_8859_15", T::kEncoding_ISO_8859_15},
      {"ByteValues", ByteValues},
  };
  return names;
}

bool ParseEncoding(const std::string& name, fmx::Text::Encoding& encoding) {
  for (const EncodingName& e : EncodingNames()) {
    if (strcasecmp(e.name, name.c_str()) == 0) {
      encoding = e.encoding;
      return true;
    }
  }
  return false;
}

}  // namespace xptool
