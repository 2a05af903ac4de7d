// Reading a host function's parameters one after another, splitting C strings into
// tokens, and rectangles from text.
#include "params/Parameters.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "text/TextCore.h"

namespace {

constexpr unsigned int kToEnd = 0xFFFFFFFF;
constexpr long kNoMoreTokens = -1;
constexpr char kGetBytesImprovedFailed[] = "VarnParamErr: XP7_GetBytesImproved failed";
// Rectangle texts come from layout fields and scripts: a few dozen bytes at most.
constexpr unsigned int kRectTextBuffer = 1000;
constexpr long kRectTokenSize = 1000;

bool IsThere(const fmx::DataVect& params, unsigned int index) { return index < params.Size(); }

// Four numbers "left top right bottom"; whatever is missing or not a number stays 0.
void ParseRect(char* text, Rect& out) {
  short* const fields[] = {&out.left, &out.top, &out.right, &out.bottom};
  char token[kRectTokenSize + 1];
  long position = 0;
  for (short* field : fields) {
    XP_GetNextCString(text, " ", token, kRectTokenSize, &position);
    *field = static_cast<short>(std::strtol(token, nullptr, 10));
  }
}

}  // namespace

void XP7_GetNextCStringFromVect(const fmx::DataVect& params, char* buffer, unsigned int bufferSize,
                                unsigned int* index, fmx::Text::Encoding enc) {
  buffer[0] = '\0';
  if (IsThere(params, *index)) {
    fmx::TextAutoPtr text;
    text->SetText(params.AtAsText(*index));
    if (enc != fmx::Text::kEncoding_Native) {
      XP7_TxtToCStr(text, 0, kToEnd, bufferSize, true, buffer, enc);
    } else if (bufferSize > 0 &&
               XP7_GetBytesImproved(text, buffer, bufferSize - 1, 0, kToEnd, fmx::Text::kEncoding_ASCII_Mac) != 0) {
      // Callers pass buffers of at least this size; the message goes in whole.
      std::memcpy(buffer, kGetBytesImprovedFailed, sizeof kGetBytesImprovedFailed);
    }
  }
  ++*index;
}

unsigned int XP7_GetNextUniStrFromVect(const fmx::DataVect& params, unsigned short* buffer,
                                       unsigned int bufferSize, unsigned int* index) {
  buffer[0] = 0;
  unsigned int copied = 0;
  if (IsThere(params, *index)) {
    fmx::TextAutoPtr text;
    text->SetText(params.AtAsText(*index));
    copied = XP7_TxtToUniStr(text, buffer, bufferSize);
  }
  ++*index;
  return copied;
}

int XP7_GetNextTxtFromVect(const fmx::DataVect& params, fmx::TextAutoPtr& out, unsigned int* index) {
  if (IsThere(params, *index)) {
    const fmx::Text& text = params.AtAsText(*index);
    out->SetText(text, 0, text.GetSize());
  } else {
    out->DeleteText(0, kToEnd);
  }
  ++*index;
  return 0;
}

int XP7_GetNextDateTimeFromVect(const fmx::DataVect& params, fmx::DateTimeAutoPtr& out, unsigned int* index) {
  if (IsThere(params, *index)) {
    const fmx::DateTime& timeStamp = params.AtAsTimeStamp(*index);
    out->SetDate(timeStamp);
    out->SetTime(timeStamp);
  }
  ++*index;
  return 0;
}

long XP7_GetNextlongFromVect(const fmx::DataVect& params, unsigned int* index) {
  fmx::FixPtAutoPtr number(0, 16);
  long result = 0;
  if (IsThere(params, *index)) {
    number->AssignFixPt(params.AtAsNumber(*index));
    result = number->AsLong();
  }
  ++*index;
  return result;
}

int XP7_GetNextRectFromVect(const fmx::DataVect& params, Rect& out, bool* empty, unsigned int* index) {
  out = Rect{0, 0, 0, 0};
  char text[kRectTextBuffer];
  XP7_GetNextCStringFromVect(params, text, sizeof text, index, fmx::Text::kEncoding_Native);
  *empty = text[0] == '\0';
  ParseRect(text, out);
  return 0;
}

int XP7_GetNativeRectFromTxt(fmx::TextAutoPtr& txt, Rect& out, bool* empty) {
  out = Rect{0, 0, 0, 0};
  char text[kRectTextBuffer];
  txt->GetBytes(text, kRectTextBuffer - 1, 0, kToEnd, fmx::Text::kEncoding_ASCII_Mac);
  if (empty != nullptr) *empty = text[0] == '\0';
  ParseRect(text, out);
  return 0;
}

int XP7_GetNextBinaryFromVect(const fmx::DataVect& params, fmx::BinaryDataAutoPtr& out, unsigned int* index) {
  if (IsThere(params, *index)) *out = params.AtAsBinaryData(*index);
  ++*index;
  return 0;
}

void XP_GetNextCString(char* source, const char* separator, char* token, long tokenSize, long* position) {
  token[0] = '\0';
  if (*position == kNoMoreTokens) return;
  const long s = static_cast<long>(std::strlen(separator));
  const long n = static_cast<long>(std::strlen(source));
  if (n <= *position) {
    *position = kNoMoreTokens;
    return;
  }
  const char* rest = source + *position;
  for (long k = 0; k <= n - *position - s; ++k) {
    if (std::memcmp(rest + k, separator, static_cast<std::size_t>(s)) != 0) continue;
    // A separator right at the cursor is an empty token: adjacent separators are
    // fields left blank, not one wider gap.
    const long copied = std::min(k, tokenSize);
    std::memcpy(token, rest, static_cast<std::size_t>(copied));
    token[copied] = '\0';
    *position += k + s;
    return;
  }
  const long copied = std::min(n - *position, tokenSize);
  std::memcpy(token, rest, static_cast<std::size_t>(copied));
  token[copied] = '\0';
  *position = kNoMoreTokens;
}
