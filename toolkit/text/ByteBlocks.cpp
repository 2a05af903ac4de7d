// Host text from and to counted byte blocks, NUL bytes included, in any host
// encoding and the toolkit's ByteValues.
#include "text/ByteBlocks.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <memory>

#include "encoding/UTF8.h"
#include "text/ResultCodes.h"
#include "text/TextCore.h"

namespace {

constexpr unsigned int kToEnd = 0xFFFFFFFF;

// Texts this long get the fixed cap instead of four bytes per unit: beyond it the
// product would no longer be a sensible single allocation.
constexpr unsigned int kCapFromUnits = 150000000;
constexpr unsigned int kCappedBufferSize = 600000010;

// What Native stands for, found once per process. 4299 means "not yet found";
// relaxed atomics because two first calls racing both store the same value.
constexpr int kNativeUnknown = 4299;
std::atomic<int> gNativeStandsFor{kNativeUnknown};

// The check before a UTF-8 block reaches the host. It lets overlong forms through
// on purpose and refuses encoded surrogates, stray continuation bytes, 0xF8-0xFF
// and sequences cut off by the end of the block.
bool IsWellFormedUTF8(const unsigned char* b, unsigned int size) {
  for (unsigned int i = 0; i < size;) {
    const unsigned char lead = b[i];
    unsigned int follow;
    if (lead < 0x80) {
      follow = 0;
    } else if ((lead & 0xE0) == 0xC0) {
      follow = 1;
    } else if (lead == 0xED && i + 1 < size && (b[i + 1] & 0xA0) == 0xA0) {
      return false;  // an encoded surrogate, 0xED 0xA0-0xBF
    } else if ((lead & 0xF0) == 0xE0) {
      follow = 2;
    } else if ((lead & 0xF8) == 0xF0) {
      follow = 3;
    } else {
      return false;  // a stray continuation byte, or 0xF8-0xFF
    }
    if (follow > size - i - 1) return false;
    for (unsigned int j = 1; j <= follow; ++j) {
      if ((b[i + j] & 0xC0) != 0x80) return false;
    }
    i += follow + 1;
  }
  return true;
}

// Encodes three probe characters in Native and recognises the encoding by their
// bytes. Hosts write unmappable characters differently (spaces, "?"), which the
// rows for the double-byte sets and ISO 8859-1 rely on.
int DetectNative() {
  const unsigned short probe[] = {0x00E8, 0x00B6, 0x0192, 0};  // è ¶ ƒ
  fmx::TextAutoPtr txt;
  txt->AssignUnicode(probe);
  char buf[10] = {};
  // Both calls share one buffer; only the Native bytes, written last, are tested.
  txt->GetBytes(buf, sizeof buf - 1, 0, kToEnd, fmx::Text::kEncoding_UTF8);
  txt->GetBytes(buf, sizeof buf - 1, 0, kToEnd, fmx::Text::kEncoding_Native);
  const unsigned char b0 = buf[0], b1 = buf[1], b2 = buf[2], b3 = buf[3];
  if (b0 == 0x20) {
    if (b1 == 0x20 && b2 == 0x20) return fmx::Text::kEncoding_ChineseTrad_Mac;
    if (b1 == 0xA2 && b2 == 0xD2) return fmx::Text::kEncoding_Korean_Mac;
    if (b1 == 0x81 && b2 == 0xF7) return fmx::Text::kEncoding_ShiftJIS_Mac;
  } else if (b0 == 0x8A) {
    if (b1 == 0xF4) return fmx::Text::kEncoding_ASCII_DOS;
  } else if (b0 == 0x8F) {
    if (b1 == 0x3F) return fmx::Text::kEncoding_Arabic_Mac;
    if (b1 == 0xA6) return fmx::Text::kEncoding_ASCII_Mac;
  } else if (b0 == 0xC3) {
    if (b1 == 0xA8 && b2 == 0xC2 && b3 == 0xB6) return fmx::Text::kEncoding_UTF8;
  } else if (b0 == 0xE8) {
    if (b1 == 0xB6 && b2 == 0x83) return fmx::Text::kEncoding_ASCII_Windows;
    if (b2 == 0x20) return fmx::Text::kEncoding_ISO_8859_1;
  }
  return fmx::Text::kEncoding_Native;
}

int NativeStandsFor() {
  int e = gNativeStandsFor.load(std::memory_order_relaxed);
  if (e == kNativeUnknown) {
    e = DetectNative();
    gNativeStandsFor.store(e, std::memory_order_relaxed);
  }
  return e;
}

// Bytes of `buf` before the first NUL at or after `from`, never past `end`.
unsigned int RunLength(const char* buf, unsigned int from, unsigned int end) {
  const void* nul = std::memchr(buf + from, 0, end - from);
  return nul == nullptr ? end - from : static_cast<unsigned int>(static_cast<const char*>(nul) - (buf + from));
}

// The byte count of a multi-byte encoding: the host's bytes end at a NUL, so the
// NULs the text itself holds are counted first and the runs between them added.
unsigned int LengthAcrossNuls(fmx::TextAutoPtr& txt, const char* buf, unsigned int bufSize) {
  fmx::TextAutoPtr nul;
  const unsigned short zero[1] = {0};
  nul->AssignUnicodeWithLength(zero, 1);
  unsigned int nuls = 0;
  for (unsigned int pos = txt->Find(*nul, 0); pos != kToEnd; pos = txt->Find(*nul, pos + 1)) ++nuls;
  const unsigned int end = bufSize - 1;  // the host's terminator is there at the latest
  unsigned int len = RunLength(buf, 0, end);
  for (; nuls > 0 && len < end; --nuls) {
    ++len;
    len += RunLength(buf, len, end);
  }
  return len;
}

}  // namespace

void XP7_BlockToTxt(const char* block, unsigned int size, fmx::TextAutoPtr& txt, fmx::Text::Encoding enc,
                    unsigned char append) {
  // Size 0 leaves the text alone even when asked to replace: callers depend on it.
  if (size == 0) return;
  if (enc == ByteValues) {
    // Always appends, whatever `append` says; kept as callers know it.
    XP7_AppendBlockToUnicodeTxt(block, size, txt);
  } else if (append == 0) {
    txt->AssignWithLength(block, size, enc);
  } else {
    fmx::TextAutoPtr part;
    part->AssignWithLength(block, size, enc);
    txt->AppendText(*part);
  }
}

int XP7_AppendBlockToTxt(const char* block, unsigned int size, fmx::TextAutoPtr& txt, fmx::Text::Encoding enc,
                         unsigned char) {
  if (enc == fmx::Text::kEncoding_UTF8 && size > 0 &&
      !IsWellFormedUTF8(reinterpret_cast<const unsigned char*>(block), size)) {
    return kXP_MalformedUTF8;
  }
  if (size == 0) return 0;
  fmx::TextAutoPtr part;
  part->AssignWithLength(block, size, enc);
  if (part->GetSize() == 0) return kXP_DecodedToNothing;
  txt->AppendText(*part);
  return 0;
}

void XP7_AppendBlockToUnicodeTxt(const char* block, unsigned int size, fmx::TextAutoPtr& txt) {
  for (unsigned int i = 0; i < size; ++i) XP7_AppendUTF32CharToTxt(static_cast<unsigned char>(block[i]), txt);
}

int XP7_TxtToBuf(fmx::TextAutoPtr& txt, fmx::Text::Encoding enc, bool improved, char** buf, unsigned int* len) {
  if (buf == nullptr || len == nullptr) return kXP_ParamErr;
  *len = 0;
  *buf = nullptr;
  const unsigned int size = txt->GetSize();
  // Four bytes cover any unit in any host encoding, ten more the terminator.
  const bool capped = size >= kCapFromUnits;
  const unsigned int bufSize = capped ? kCappedBufferSize : size * 4 + 10;
  std::unique_ptr<char[]> bytes(new char[bufSize]);

  const int e = enc == fmx::Text::kEncoding_Native ? NativeStandsFor() : enc;
  const bool oneBytePerUnit =
      (e >= fmx::Text::kEncoding_ASCII_DOS && e <= fmx::Text::kEncoding_ISO_8859_1) || e == ByteValues;
  const bool countedAsUTF8 = e == fmx::Text::kEncoding_UTF8;
  unsigned int n = bufSize - 1;
  if (oneBytePerUnit) {
    n = size;
  } else if (countedAsUTF8) {
    fmx::TextAutoPtr utf8;
    XP7_TxtToUTF8Txt(txt, utf8);
    n = utf8->GetSize();
  }
  // Only texts past the cap can count more than the buffer holds; they were cut.
  n = std::min(n, bufSize - 1);
  // A count not taken from the bytes may exceed what the host writes (a surrogate
  // pair it writes as one "?"): the bytes reported start zeroed, never stale. A cut
  // text may hold more NULs than its bytes, so its count could run on: zeroed too.
  if (oneBytePerUnit || countedAsUTF8 || capped) std::memset(bytes.get(), 0, n + 1ULL);
  XP7_TxtToCStr(txt, 0, kToEnd, bufSize, improved, bytes.get(), enc);
  if (!oneBytePerUnit && !countedAsUTF8) n = LengthAcrossNuls(txt, bytes.get(), bufSize);
  *len = n;
  *buf = bytes.release();
  return 0;
}

void XP7_TxtToBlockN(fmx::TextAutoPtr& txt, fmx::Text::Encoding& enc, unsigned int max, unsigned char* block,
                     unsigned int* len) {
  *len = 0;
  if (txt->GetSize() == 0) return;
  char* raw = nullptr;
  unsigned int n = 0;
  const int err = XP7_TxtToBuf(txt, enc, true, &raw, &n);
  const std::unique_ptr<char[]> bytes(raw);
  if (err != 0) return;
  const unsigned int count = std::min(n, max);
  if (count > 0) std::memcpy(block, bytes.get(), count);
  *len = count;
}

void XP7_TxtToBlocPrevious(fmx::TextAutoPtr& txt, fmx::Text::Encoding& enc, unsigned int bufSize,
                           unsigned char* block, unsigned int* len) {
  const unsigned int size = txt->GetSize();
  txt->GetBytes(reinterpret_cast<char*>(block), bufSize, 0, size, enc);
  // Units, not bytes: the callers use single-byte encodings, where the two agree.
  *len = size;
}

void XP7_TxtToBlock_ASCII(fmx::TextAutoPtr& txt, unsigned int max, unsigned char* block, unsigned int* len) {
  *len = 0;
  const unsigned int size = txt->GetSize();
  const unsigned int n = std::min(size, max);
  for (unsigned int pos = 0; pos < n; ++pos) block[(*len)++] = XP7_GetOneByte(txt, size, pos);
}

void XP7_TxtToBlock_Varn_BytesOnly(fmx::TextAutoPtr& txt, unsigned int start, unsigned int length,
                                   unsigned char* block, unsigned int* len) {
  const unsigned int size = txt->GetSize();
  const unsigned int end =
      length == kToEnd ? size : static_cast<unsigned int>(std::min<unsigned long long>(0ULL + start + length, size));
  block[0] = 0;
  *len = 0;
  for (unsigned int pos = start; pos < end; ++pos) {
    if (XP7_GetOneByte_Checked(txt, size, pos, &block[*len])) ++*len;
  }
}
