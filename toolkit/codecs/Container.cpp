// The binary container text: container values to one printable text and back.
#include "codecs/Container.h"

#include <algorithm>
#include <cstdint>
#include <memory>

#include "codecs/Base64.h"
#include "codecs/HexText.h"
#include "text/ResultCodes.h"
#include "text/TextCore.h"

namespace {

constexpr char kOpenTag[] = "<VARN_BINARY_CONTAINER10>";
constexpr unsigned int kOpenTagLength = sizeof kOpenTag - 1;
constexpr char kCloseTag[] = "</VARN_BINARY_CONTAINER10>";
constexpr char kSeparator[] = "\r<- ->\r";
constexpr unsigned int kSeparatorLength = sizeof kSeparator - 1;
// Texts this short after the open tag count as empty. The number has always been
// 38; it is not derived from the field sizes and must not be "corrected".
constexpr unsigned int kShortestBody = 38;
constexpr uint32_t kMostStreams = 100;
// The hex writer never holds more than this much of a stream at once.
constexpr uint32_t kHexChunk = 1024;
constexpr int kBase64LineLength = 72;
constexpr unsigned int kNotFound = 0xFFFFFFFF;
constexpr fmx::Text::Encoding kAscii = fmx::Text::kEncoding_ASCII_Mac;

// Number fields are four bytes, most significant first, as hex text.
void AppendHex8(uint32_t value, fmx::TextAutoPtr& out) {
  char bytes[4] = {static_cast<char>(value >> 24), static_cast<char>(value >> 16), static_cast<char>(value >> 8),
                   static_cast<char>(value)};
  fmx::TextAutoPtr hex;
  XP7_BlockToHexTxt(bytes, sizeof bytes, hex);
  out->AppendText(*hex);
}

// False when fewer than four whole pairs are left before textSize.
bool ReadHex8(fmx::TextAutoPtr& text, unsigned int textSize, unsigned int* position, uint32_t* value) {
  unsigned char bytes[4];
  unsigned int produced = 0;
  XP7_HexTxtToBlock(text, textSize, 0, position, sizeof bytes, bytes, &produced);
  if (produced != sizeof bytes) return false;
  *value = uint32_t(bytes[0]) << 24 | uint32_t(bytes[1]) << 16 | uint32_t(bytes[2]) << 8 | bytes[3];
  return true;
}

// The fields both variants write alike: open tag and count, and per stream its
// type and size.
void AppendCount(int32_t count, fmx::TextAutoPtr& out) {
  XP7_AppendCStrToTxt(kOpenTag, out, kAscii);
  AppendHex8(static_cast<uint32_t>(count), out);
}

uint32_t AppendTypeAndSize(const fmx::BinaryData& data, int32_t stream, fmx::TextAutoPtr& out) {
  // Cleared first: a stream whose type the host cannot tell then reads as 0.
  QuadCharHolder type;
  type->SetMacType(0);
  data.GetType(stream, *type);
  AppendHex8(type->GetMacType(), out);
  const uint32_t size = data.GetSize(stream);
  AppendHex8(size, out);
  return size;
}

// The container a writer works on, or null for an index past the list. An index
// equal to the count is past it too, though the guard has always let it by.
const fmx::BinaryData* ContainerAt(const fmx::DataVect& params, const unsigned int* index) {
  if (*index >= params.Size()) return nullptr;
  return &params.AtAsBinaryData(*index);
}

// Both readers: the open tag is cut out of the text wherever it stands, the count
// (0 to 100) is read from position 0, then `readStream(textSize, separator, &position)`
// reads each stream from position 8 on; the first result other than 0 ends the read.
template <class ReadStream>
int ReadContainerText(fmx::TextAutoPtr& text, ReadStream readStream) {
  fmx::TextAutoPtr tag;
  XP7_CStrToTxt(kOpenTag, tag, kAscii);
  const unsigned int at = text->FindIgnoringCase(*tag, 0);
  if (at == kNotFound) return 0;
  text->DeleteText(at, kOpenTagLength);
  const unsigned int textSize = text->GetSize();
  if (textSize < kShortestBody) return 0;
  unsigned int position = 0;
  uint32_t count = 0;
  if (!ReadHex8(text, textSize, &position, &count) || count > kMostStreams) return kXP_ParamErr;
  fmx::TextAutoPtr separator;
  XP7_CStrToTxt(kSeparator, separator, kAscii);
  position = 8;
  for (uint32_t stream = 0; stream < count; ++stream) {
    const int result = readStream(textSize, *separator, &position);
    if (result != 0) return result;
  }
  return 0;
}

// The base64 alphabet value of a byte, or -1.
int Sextet(unsigned char c) {
  if (c < 43 || c > 122) return -1;
  const char entry = XP7_Base64DecodeTable[c - 43];
  return entry == '$' ? -1 : entry - 62;
}

}  // namespace

int XP7_GetBinaryAsHxtTxtFromVect(const fmx::DataVect& params, fmx::TextAutoPtr& out, unsigned int* index) {
  const fmx::BinaryData* data = ContainerAt(params, index);
  if (data == nullptr) return 0;
  const int32_t count = data->GetCount();
  if (count < 1) return 0;
  AppendCount(count, out);
  fmx::TextAutoPtr hex;
  char chunk[kHexChunk];
  for (int32_t stream = 0; stream < count; ++stream) {
    const uint32_t size = AppendTypeAndSize(*data, stream, out);
    fmx::errcode error = 0;
    for (uint32_t offset = 0; offset < size;) {
      const uint32_t amount = std::min(kHexChunk, size - offset);
      error = data->GetData(stream, offset, amount, chunk);
      if (error != 0) break;
      XP7_BlockToHexTxt(chunk, amount, hex);
      out->AppendText(*hex);
      offset += amount;
    }
    // The separator goes out even after a failed read, the close tag does not:
    // a reader then sees a text that ends after this stream.
    XP7_AppendCStrToTxt(kSeparator, out, kAscii);
    if (error != 0) return error;
  }
  XP7_AppendCStrToTxt(kCloseTag, out, kAscii);
  return 0;
}

int XP7_GetFMBinaryDataAsBase64TxtFromVect(const fmx::DataVect& params, fmx::TextAutoPtr& out, unsigned int* index) {
  const fmx::BinaryData* data = ContainerAt(params, index);
  if (data == nullptr) return 0;
  const int32_t count = data->GetCount();
  if (count < 1) return 0;
  AppendCount(count, out);
  for (int32_t stream = 0; stream < count; ++stream) {
    // This variant puts the separator before each stream, the hex one after it.
    XP7_AppendCStrToTxt(kSeparator, out, kAscii);
    const uint32_t size = AppendTypeAndSize(*data, stream, out);
    // A fresh text per stream, gone once copied: a large stream's text is then
    // held twice only while it is appended.
    fmx::TextAutoPtr encoded;
    unsigned int encodedLength = 0;
    // The encoder only reads the container; its signature predates const.
    const int error = XP7_FMBinaryDataToBase64Txt(const_cast<fmx::BinaryData&>(*data), stream, size, kBase64LineLength,
                                                  encoded, &encodedLength);
    AppendHex8(encodedLength, out);
    out->AppendText(*encoded);
    if (error != 0) return error;
  }
  XP7_AppendCStrToTxt(kCloseTag, out, kAscii);
  return 0;
}

int XP7_HxtTxtToBinary(fmx::TextAutoPtr& text, fmx::BinaryDataAutoPtr& container) {
  return ReadContainerText(text, [&](unsigned int textSize, const fmx::Text& separator, unsigned int* position) {
    uint32_t type = 0, size = 0;
    if (!ReadHex8(text, textSize, position, &type) || !ReadHex8(text, textSize, position, &size)) {
      return int{kXP_ParamErr};
    }
    QuadCharHolder typeCode;
    typeCode->SetMacType(type);
    // Only the pairs the text still holds can be decoded, so a forged size costs
    // no more memory than the text itself; the stream gets what was decoded.
    const uint32_t pairsLeft = *position < textSize ? (textSize - *position) / 2 : 0;
    const uint32_t wanted = std::min(size, pairsLeft);
    std::unique_ptr<unsigned char[]> bytes(new unsigned char[wanted + 1ULL]);
    unsigned int produced = 0;
    XP7_HexTxtToBlock(text, textSize, 0, position, wanted, bytes.get(), &produced);
    const fmx::errcode added = container->Add(*typeCode, produced, bytes.get());
    bytes.reset();
    const unsigned int found = text->FindIgnoringCase(separator, *position);
    if (found == kNotFound) return int{kXP_ParamErr};
    *position = found + kSeparatorLength;
    return int{added};
  });
}

int XP7_Base64TxtToFMBinaryData(fmx::TextAutoPtr& text, fmx::BinaryDataAutoPtr& container) {
  return ReadContainerText(text, [&](unsigned int textSize, const fmx::Text& separator, unsigned int* position) {
    const unsigned int found = text->FindIgnoringCase(separator, *position);
    if (found == kNotFound) return int{kXP_ParamErr};
    *position = found + kSeparatorLength;
    uint32_t type = 0, size = 0, encodedLength = 0;
    if (!ReadHex8(text, textSize, position, &type) || !ReadHex8(text, textSize, position, &size) ||
        !ReadHex8(text, textSize, position, &encodedLength)) {
      return int{kXP_ParamErr};
    }
    return XP7_AddOneFMBinaryData(text, textSize, position, encodedLength, size, type, container);
  });
}

int XP7_AddOneFMBinaryData(fmx::TextAutoPtr& text, unsigned int textSize, unsigned int* position,
                           unsigned int encodedLength, unsigned int size, unsigned int type,
                           fmx::BinaryDataAutoPtr& container) {
  if (uint64_t(*position) + encodedLength > textSize) return kXP_ParamErr;
  // Four characters give at most three bytes; a size the range cannot reach fails
  // below in any case, so it is refused before a buffer of that size is made.
  if (uint64_t(size) > (uint64_t(encodedLength) + 3) / 4 * 3) {
    *position += encodedLength;
    return kXP_ParamErr;
  }
  const uint64_t capacity = uint64_t(size) + 4;
  std::unique_ptr<unsigned char[]> bytes(new unsigned char[capacity]);
  uint64_t produced = 0;
  unsigned int sextets[4] = {0, 0, 0, 0};
  int gathered = 0;
  auto emit = [&](int n) {
    const uint32_t group = sextets[0] << 18 | sextets[1] << 12 | sextets[2] << 6 | sextets[3];
    for (int k = 0; k < n; ++k, ++produced) {
      if (produced < capacity) bytes[produced] = static_cast<unsigned char>(group >> (16 - 8 * k));
    }
  };
  unsigned short units[4096];
  for (unsigned int done = 0; done < encodedLength;) {
    const unsigned int run = std::min<unsigned int>(encodedLength - done, sizeof units / sizeof units[0]);
    text->GetUnicode(units, *position, run);
    for (unsigned int k = 0; k < run; ++k, ++done) {
      const int value = Sextet(static_cast<unsigned char>(units[k]));
      // The range ends with the CR LF the writer puts after the last line, so its
      // last character is never data; a range cut short loses a sextet here.
      if (value < 0 || done == encodedLength - 1) continue;
      sextets[gathered++] = static_cast<unsigned int>(value);
      if (gathered == 4) {
        emit(3);
        gathered = 0;
      }
    }
    *position += run;
  }
  if (gathered > 1) {
    std::fill(sextets + gathered, sextets + 4, 0u);
    emit(gathered - 1);
  }
  if (produced != size) return kXP_ParamErr;
  QuadCharHolder typeCode;
  typeCode->SetMacType(type);
  return container->Add(*typeCode, size, bytes.get());
}

int XP7_GetBinaryData(fmx::BinaryData& data, int streamIndex, char** bytes, unsigned int* size) {
  const uint32_t streamSize = data.GetSize(streamIndex);
  std::unique_ptr<char[]> buffer(streamSize > 0 ? new char[streamSize] : nullptr);
  const fmx::errcode error = data.GetData(streamIndex, 0, streamSize, buffer.get());
  if (error != 0) return error;
  *bytes = buffer.release();
  *size = streamSize;
  return 0;
}
