// Conversion of CFString characters from and to the encodings the toolkit names.
#include "CFStringInternal.h"
#include "ICUHandles.h"

#include <unicode/ucnv.h>
#include <unicode/ustring.h>
#include <unicode/utf16.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cstdint>
#include <unordered_map>

namespace {

enum class Form { SingleByte, UTF8, UTF16, UTF32 };
enum class Order { Marked, Big, Little };  // Marked: a byte order mark may say which

struct EncodingInfo {
  Form form;
  Order order;
};

std::optional<EncodingInfo> infoOf(CFStringEncoding encoding) {
  switch (encoding) {
    case kCFStringEncodingMacRoman:
    case kCFStringEncodingWindowsLatin1:
    case kCFStringEncodingISOLatin1:
    case kCFStringEncodingASCII: return EncodingInfo{Form::SingleByte, Order::Big};
    case kCFStringEncodingUTF8: return EncodingInfo{Form::UTF8, Order::Big};
    case kCFStringEncodingUTF16: return EncodingInfo{Form::UTF16, Order::Marked};
    case kCFStringEncodingUTF16BE: return EncodingInfo{Form::UTF16, Order::Big};
    case kCFStringEncodingUTF16LE: return EncodingInfo{Form::UTF16, Order::Little};
    case kCFStringEncodingUTF32: return EncodingInfo{Form::UTF32, Order::Marked};
    case kCFStringEncodingUTF32BE: return EncodingInfo{Form::UTF32, Order::Big};
    case kCFStringEncodingUTF32LE: return EncodingInfo{Form::UTF32, Order::Little};
    default: return std::nullopt;
  }
}

constexpr bool kHostIsBigEndian = __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__;
constexpr char16_t kNoCharacter = 0xFFFF;

// A single-byte encoding as a table in both directions, read once from ICU's converter;
// bytes the encoding leaves undefined map to kNoCharacter.
struct ByteTable {
  std::array<char16_t, 256> toUnicode{};
  std::unordered_map<char16_t, UInt8> fromUnicode;

  explicit ByteTable(const char* icuName) {
    toUnicode.fill(kNoCharacter);
    UErrorCode status = U_ZERO_ERROR;
    xpcf::ConverterHandle converter(ucnv_open(icuName, &status));
    if (U_FAILURE(status)) return;
    ucnv_setToUCallBack(converter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
    for (int byte = 0; byte < 256; ++byte) {
      const char source = static_cast<char>(byte);
      UChar target[2];
      status = U_ZERO_ERROR;
      ucnv_reset(converter.get());
      const int32_t length = ucnv_toUChars(converter.get(), target, 2, &source, 1, &status);
      if (U_SUCCESS(status) && length == 1) {
        toUnicode[static_cast<size_t>(byte)] = target[0];
        fromUnicode.emplace(target[0], static_cast<UInt8>(byte));
      }
    }
  }
};

// Only called for the single-byte encodings of infoOf.
const ByteTable& byteTable(CFStringEncoding encoding) {
  switch (encoding) {
    case kCFStringEncodingMacRoman: {
      // ICU's current Mac OS Roman: 0xDB is the euro sign and 0xF0 the Apple logo, as in
      // Apple's own table since Mac OS 8.5.
      static const ByteTable macRoman("macintosh");
      return macRoman;
    }
    case kCFStringEncodingWindowsLatin1: {
      static const ByteTable windowsLatin1("windows-1252");
      return windowsLatin1;
    }
    case kCFStringEncodingISOLatin1: {
      static const ByteTable latin1("ISO-8859-1");
      return latin1;
    }
    default: {
      static const ByteTable ascii("US-ASCII");
      return ascii;
    }
  }
}

bool bigEndianFor(Order order, bool external) {
  switch (order) {
    case Order::Big: return true;
    case Order::Little: return false;
    case Order::Marked: return external || kHostIsBigEndian;
  }
  return true;
}

std::uint32_t readUnit(const unsigned char* p, size_t size, bool bigEndian) {
  std::uint32_t value = 0;
  for (size_t i = 0; i < size; ++i) {
    const size_t shift = bigEndian ? (size - 1 - i) * 8 : i * 8;
    value |= static_cast<std::uint32_t>(p[i]) << shift;
  }
  return value;
}

void writeUnit(UInt8* p, std::uint32_t value, size_t size, bool bigEndian) {
  for (size_t i = 0; i < size; ++i) {
    const size_t shift = bigEndian ? (size - 1 - i) * 8 : i * 8;
    p[i] = static_cast<UInt8>(value >> shift);
  }
}

std::optional<std::u16string> decodeUnits(std::string_view bytes, Form form, Order order, bool external) {
  const size_t unitSize = form == Form::UTF16 ? 2 : 4;
  if (bytes.size() % unitSize != 0) return std::nullopt;
  const auto* p = reinterpret_cast<const unsigned char*>(bytes.data());
  size_t count = bytes.size() / unitSize;
  bool bigEndian = bigEndianFor(order, external);
  if (order == Order::Marked && count > 0) {
    const std::uint32_t bom = 0xFEFF;
    if (readUnit(p, unitSize, true) == bom) {
      bigEndian = true;
    } else if (readUnit(p, unitSize, false) == bom) {
      bigEndian = false;
    }
    if (readUnit(p, unitSize, bigEndian) == bom) {
      p += unitSize;
      --count;
    }
  }
  std::u16string text;
  text.reserve(count);
  for (size_t i = 0; i < count; ++i, p += unitSize) {
    const std::uint32_t unit = readUnit(p, unitSize, bigEndian);
    if (form == Form::UTF16) {
      text.push_back(static_cast<char16_t>(unit));
    } else if (unit > 0x10FFFF || U_IS_SURROGATE(unit)) {
      return std::nullopt;
    } else if (unit > 0xFFFF) {
      text.push_back(static_cast<char16_t>(U16_LEAD(unit)));
      text.push_back(static_cast<char16_t>(U16_TRAIL(unit)));
    } else {
      text.push_back(static_cast<char16_t>(unit));
    }
  }
  return text;
}

// The bytes of one character; an empty result means the encoding lacks it.
struct CharBytes {
  std::array<UInt8, 4> bytes{};
  size_t count = 0;
};

CharBytes encodeChar(UChar32 c, bool unpaired, const EncodingInfo& info, CFStringEncoding encoding, bool bigEndian) {
  CharBytes out;
  switch (info.form) {
    case Form::SingleByte: {
      if (c > 0xFFFF || unpaired) break;
      const auto& table = byteTable(encoding).fromUnicode;
      const auto found = table.find(static_cast<char16_t>(c));
      if (found != table.end()) {
        out.bytes[0] = found->second;
        out.count = 1;
      }
      break;
    }
    case Form::UTF8: {
      if (unpaired) break;
      UBool error = false;
      int32_t length = 0;
      U8_APPEND(out.bytes.data(), length, 4, c, error);
      if (!error) out.count = static_cast<size_t>(length);
      break;
    }
    case Form::UTF16:
      // UTF-16 carries whatever the string holds, unpaired surrogates included.
      if (c > 0xFFFF) {
        writeUnit(out.bytes.data(), U16_LEAD(c), 2, bigEndian);
        writeUnit(out.bytes.data() + 2, U16_TRAIL(c), 2, bigEndian);
        out.count = 4;
      } else {
        writeUnit(out.bytes.data(), static_cast<std::uint32_t>(c), 2, bigEndian);
        out.count = 2;
      }
      break;
    case Form::UTF32:
      if (unpaired) break;
      writeUnit(out.bytes.data(), static_cast<std::uint32_t>(c), 4, bigEndian);
      out.count = 4;
      break;
  }
  return out;
}

}  // namespace

namespace xpcf {

std::optional<std::u16string> decode(std::string_view bytes, CFStringEncoding encoding, bool external) {
  const auto info = infoOf(encoding);
  if (!info) return std::nullopt;
  switch (info->form) {
    case Form::SingleByte: {
      const ByteTable& table = byteTable(encoding);
      std::u16string text(bytes.size(), u'\0');
      for (size_t i = 0; i < bytes.size(); ++i) {
        const char16_t c = table.toUnicode[static_cast<unsigned char>(bytes[i])];
        if (c == kNoCharacter) return std::nullopt;
        text[i] = c;
      }
      return text;
    }
    case Form::UTF8: {
      if (bytes.size() > static_cast<size_t>(INT32_MAX)) return std::nullopt;
      UErrorCode status = U_ZERO_ERROR;
      int32_t length = 0;
      u_strFromUTF8(nullptr, 0, &length, bytes.data(), static_cast<int32_t>(bytes.size()), &status);
      if (status != U_BUFFER_OVERFLOW_ERROR && U_FAILURE(status)) return std::nullopt;
      std::u16string text(static_cast<size_t>(length), u'\0');
      status = U_ZERO_ERROR;
      u_strFromUTF8(text.data(), length, nullptr, bytes.data(), static_cast<int32_t>(bytes.size()), &status);
      if (U_FAILURE(status)) return std::nullopt;
      return text;
    }
    case Form::UTF16:
    case Form::UTF32: return decodeUnits(bytes, info->form, info->order, external);
  }
  return std::nullopt;
}

EncodeResult encode(std::u16string_view text, CFStringEncoding encoding, UInt8 lossByte, bool external,
                    UInt8* buffer, CFIndex maxBufLen) {
  EncodeResult result;
  const auto info = infoOf(encoding);
  if (!info) return result;
  const bool bigEndian = bigEndianFor(info->order, false);
  // Only the forms whose order a mark must tell get one; BE and LE say it in their name.
  if (external && info->order == Order::Marked && info->form != Form::UTF8) {
    const CharBytes mark = encodeChar(0xFEFF, false, *info, encoding, bigEndian);
    if (buffer != nullptr && static_cast<CFIndex>(mark.count) > maxBufLen) return result;
    if (buffer != nullptr) std::copy_n(mark.bytes.begin(), mark.count, buffer);
    result.bytesUsed = static_cast<CFIndex>(mark.count);
  }
  size_t i = 0;
  while (i < text.size()) {
    UChar32 c = text[i];
    size_t units = 1;
    bool unpaired = false;
    if (U16_IS_LEAD(c) && i + 1 < text.size() && U16_IS_TRAIL(text[i + 1])) {
      c = U16_GET_SUPPLEMENTARY(c, text[i + 1]);
      units = 2;
    } else if (U16_IS_SURROGATE(c)) {
      unpaired = true;
    }
    CharBytes out = encodeChar(c, unpaired, *info, encoding, bigEndian);
    if (out.count == 0) {
      if (lossByte == 0) break;
      out.bytes[0] = lossByte;
      out.count = 1;
    }
    if (buffer != nullptr) {
      if (result.bytesUsed + static_cast<CFIndex>(out.count) > maxBufLen) break;
      std::copy_n(out.bytes.begin(), out.count, buffer + result.bytesUsed);
    }
    result.bytesUsed += static_cast<CFIndex>(out.count);
    result.unitsConverted += static_cast<CFIndex>(units);
    i += units;
  }
  return result;
}

bool isEncodingAvailable(CFStringEncoding encoding) {
  return infoOf(encoding).has_value();
}

CFIndex maxBytesPerUnit(CFStringEncoding encoding) {
  const auto info = infoOf(encoding);
  if (!info) return 0;
  switch (info->form) {
    case Form::SingleByte: return 1;
    case Form::UTF8: return 3;  // a pair of units takes 4 bytes, 2 per unit
    case Form::UTF16: return 2;
    case Form::UTF32: return 4;  // an unpaired unit takes a whole 4-byte character
  }
  return 0;
}

}  // namespace xpcf
