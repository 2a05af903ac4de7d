// Base64 of byte blocks, host texts and container streams, and base64 text back
// to host text as plain, hex or bin text.
#include "codecs/Base64.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "codecs/BinText.h"
#include "codecs/HexPair.h"
#include "codecs/HexText.h"
#include "encoding/LegacyTables.h"
#include "text/ResultCodes.h"
#include "text/TextCore.h"

const char XP7_Base64Alphabet[65] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

// The classic table of the public-domain decoder, "+" (43) to "z" (122).
const char XP7_Base64DecodeTable[80] = {
    '|', '$', '$', '$', '}', 'r', 's', 't', 'u', 'v', 'w',  'x', 'y', 'z', '{', '$',  // + , - . / 0-9 :
    '$', '$', '$', '$', '$', '$', '>', '?', '@', 'A', 'B',  'C', 'D', 'E', 'F', 'G',  // ; < = > ? @ A-J
    'H', 'I', 'J', 'K', 'L', 'M', 'N', 'O', 'P', 'Q', 'R',  'S', 'T', 'U', 'V', 'W',  // K-Z
    '$', '$', '$', '$', '$', '$', 'X', 'Y', 'Z', '[', '\\', ']', '^', '_', '`', 'a',  // [ \ ] ^ _ ` a-j
    'b', 'c', 'd', 'e', 'f', 'g', 'h', 'i', 'j', 'k', 'l',  'm', 'n', 'o', 'p', 'q',  // k-z
};

namespace {

constexpr unsigned int kMaxTextOutput = 0x7FFFFFFA;
constexpr unsigned int kNoMapping = 0xFFFFFFFF;

// The four characters of a group of up to three bytes (n of them present).
void EncodeGroup(const unsigned char b[3], unsigned int n, char out[4]) {
  out[0] = XP7_Base64Alphabet[b[0] >> 2];
  out[1] = XP7_Base64Alphabet[((b[0] << 4) & 0x30) | (b[1] >> 4)];
  out[2] = n >= 2 ? XP7_Base64Alphabet[((b[1] << 2) & 0x3C) | (b[2] >> 6)] : '=';
  out[3] = n == 3 ? XP7_Base64Alphabet[b[2] & 0x3F] : '=';
}

// Both characters of every 12-bit value, the first in the low byte: one lookup
// covers half a group, so the block encoder runs without a branch per byte.
struct PairTable {
  uint16_t pairs[4096];
};

// The alphabet once more, as arithmetic: the exported table is no constant
// expression to every compiler.
constexpr unsigned int AlphabetChar(unsigned int sextet) {
  return sextet < 26    ? 'A' + sextet
         : sextet < 52  ? 'a' + sextet - 26
         : sextet < 62  ? '0' + sextet - 52
         : sextet == 62 ? '+'
                        : '/';
}

constexpr PairTable MakePairTable() {
  PairTable t{};
  for (unsigned int v = 0; v < 4096; ++v) {
    t.pairs[v] = static_cast<uint16_t>(AlphabetChar(v >> 6) | AlphabetChar(v & 63) << 8);
  }
  return t;
}

constexpr PairTable kPairs = MakePairTable();

// One load and one store where the compiler tells the byte order and has a byte
// swap (GCC and Clang on every Mac and PC); byte by byte elsewhere, which holds
// on any byte order.
#if defined(__BYTE_ORDER__) && __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
inline uint64_t LoadBigEndian64(const unsigned char* p) {
  uint64_t v;
  std::memcpy(&v, p, sizeof v);
  return __builtin_bswap64(v);
}

inline void StoreLittleEndian32(unsigned char* p, uint32_t w) { std::memcpy(p, &w, sizeof w); }

inline void StoreLittleEndian64(unsigned char* p, uint64_t w) { std::memcpy(p, &w, sizeof w); }
#else
inline uint64_t LoadBigEndian64(const unsigned char* p) {
  return uint64_t{p[0]} << 56 | uint64_t{p[1]} << 48 | uint64_t{p[2]} << 40 | uint64_t{p[3]} << 32 |
         uint64_t{p[4]} << 24 | uint64_t{p[5]} << 16 | uint64_t{p[6]} << 8 | uint64_t{p[7]};
}

inline void StoreLittleEndian32(unsigned char* p, uint32_t w) {
  p[0] = static_cast<unsigned char>(w);
  p[1] = static_cast<unsigned char>(w >> 8);
  p[2] = static_cast<unsigned char>(w >> 16);
  p[3] = static_cast<unsigned char>(w >> 24);
}

inline void StoreLittleEndian64(unsigned char* p, uint64_t w) {
  StoreLittleEndian32(p, static_cast<uint32_t>(w));
  StoreLittleEndian32(p + 4, static_cast<uint32_t>(w >> 32));
}
#endif

// Encodes `groups` groups from `src` into `dst`; the last one is short (and
// padded) when `src` runs out before it is whole. Returns the end of the output.
unsigned char* EncodeGroups(const unsigned char*& src, const unsigned char* end, unsigned long groups,
                            unsigned char* dst) {
  const unsigned char* s = src;
  const unsigned long whole = std::min<unsigned long>(groups, static_cast<unsigned long>(end - s) / 3);
  const unsigned char* const stop = s + whole * 3;
  // Two groups from one 8-byte load, of which the last 2 bytes are not used.
  for (; stop - s >= 8; s += 6, dst += 8) {
    const uint64_t v = LoadBigEndian64(s);
    StoreLittleEndian64(dst, uint64_t{kPairs.pairs[v >> 52]} | uint64_t{kPairs.pairs[(v >> 40) & 0xFFF]} << 16 |
                                 uint64_t{kPairs.pairs[(v >> 28) & 0xFFF]} << 32 |
                                 uint64_t{kPairs.pairs[(v >> 16) & 0xFFF]} << 48);
  }
  for (; s < stop; s += 3, dst += 4) {
    const unsigned int v = static_cast<unsigned int>(s[0]) << 16 | static_cast<unsigned int>(s[1]) << 8 | s[2];
    StoreLittleEndian32(dst, kPairs.pairs[v >> 12] | uint32_t{kPairs.pairs[v & 0xFFF]} << 16);
  }
  if (groups > whole) {
    const unsigned int n = static_cast<unsigned int>(end - s);
    const unsigned char b[3] = {s[0], n >= 2 ? s[1] : static_cast<unsigned char>(0), 0};
    EncodeGroup(b, n, reinterpret_cast<char*>(dst));
    s = end;
    dst += 4;
  }
  src = s;
  return dst;
}

// A character of plain or bin text as one Mac Roman byte, "*" when it has none.
unsigned char MacByte(unsigned int codePoint) {
  const unsigned int b = XP7_UniToFMP6MacAscii(codePoint, 0);
  return b == kNoMapping ? '*' : static_cast<unsigned char>(b);
}

// The value of a base64 character given as a Mac Roman byte, or -1.
int SextetOf(unsigned int byte) {
  if (byte < 43 || byte > 122 || XP7_Base64DecodeTable[byte - 43] == '$') return -1;
  return XP7_Base64DecodeTable[byte - 43] - 62;
}

}  // namespace

int XP7_Base64_EncodeBlock(unsigned char* in, unsigned long inLength, unsigned char* out, unsigned long outSize,
                           unsigned long* outLength, int lineLength) {
  *outLength = 0;
  if (inLength == 0) return 0;
  const unsigned char* src = in;
  const unsigned char* const end = in + inLength;
  const unsigned long totalGroups = inLength / 3 + (inLength % 3 != 0);
  const bool breaks = lineLength > 0;
  // A line length of 1 to 3 still breaks after every group.
  const unsigned long lineGroups = breaks ? std::max(lineLength / 4, 1) : totalGroups;
  unsigned char* dst = out;
  for (unsigned long remaining = totalGroups; remaining > 0;) {
    const unsigned long groups = std::min(lineGroups, remaining);
    const unsigned long pos = static_cast<unsigned long>(dst - out);
    // Every group wants a spare byte after its 4 characters. The last group of a
    // line wants room for its CR LF instead, so that a buffer with only the spare
    // byte left is refused rather than written past its end. Checked once per
    // line: if the line's last group fits, all of its groups do.
    if (pos + 4 * groups + (breaks ? 2 : 1) > outSize) {
      // The groups that fit are written, as a group-by-group encoder would.
      const unsigned long fitting = pos + 5 > outSize ? 0 : std::min(groups, (outSize - pos - 5) / 4 + 1);
      EncodeGroups(src, end, fitting, dst);
      return kXP_OutOfSpace;
    }
    dst = EncodeGroups(src, end, groups, dst);
    if (breaks) {
      dst[0] = '\r';
      dst[1] = '\n';
      dst += 2;
    }
    remaining -= groups;
  }
  *outLength = static_cast<unsigned long>(dst - out);
  return 0;
}

int XP7_TxtToBase64Txt(fmx::TextAutoPtr& text, short inputMode, fmx::Text::Encoding encoding, unsigned int lineLength,
                       fmx::TextAutoPtr& out, bool breakAfterLastLine) {
  if (encoding != fmx::Text::kEncoding_ASCII_Mac) return kXP_ParamErr;
  const unsigned int n = text->GetSize();
  if (n == 0) return 0;
  // Unsigned on purpose: below 4 characters a line never breaks inside the text.
  const unsigned int lastGroupOfLine = (lineLength >> 2) - 1;
  unsigned int written = 0;
  unsigned int groupsInLine = 0;
  for (unsigned int p = 0; p < n;) {
    unsigned char bytes[3] = {0, 0, 0};
    unsigned int read = 0;
    for (unsigned int slot = 0; slot < 3 && p < n; ++slot) {
      if (inputMode == 2) {
        // A lone last digit has no partner: it is passed over without a byte.
        if (n - p < 2) {
          p = n;
          break;
        }
        bytes[read++] = static_cast<unsigned char>(XP7_Get1HexTxtChar(text, p));
        p += 2;
        continue;
      }
      const unsigned int c = XP7_Get1UTF32Char(text, n, &p);
      if (inputMode == 4 && c == '\\' && p < n - 1) {
        unsigned int next = p + 1;
        const unsigned int escaped = XP7_Get1UTF32Char(text, n, &next);
        if (escaped == '0' || escaped == '\\') p = next;
        bytes[read++] = escaped == '0' ? 0x00 : 0x5C;
      } else {
        bytes[read++] = MacByte(c);
      }
      ++p;
    }
    if (read > 0) {
      if (written > kMaxTextOutput) return kXP_OutOfSpace;
      char group[4];
      EncodeGroup(bytes, read, group);
      for (char ch : group) XP7_AppendCharToTxt(ch, out, fmx::Text::kEncoding_ASCII_Mac);
      written += 4;
      ++groupsInLine;
    }
    // A single CR, the host's paragraph separator, breaks the lines here.
    if (groupsInLine > 0 && (groupsInLine > lastGroupOfLine || (p >= n && breakAfterLastLine))) {
      XP7_AppendCharToTxt('\r', out, fmx::Text::kEncoding_ASCII_Mac);
      ++written;
      groupsInLine = 0;
    }
  }
  return 0;
}

int XP7_AppendTxtToBase64Txt(fmx::TextAutoPtr& text, short inputMode, fmx::Text::Encoding encoding,
                             unsigned int lineLength, fmx::TextAutoPtr& out, bool breakAfterLastLine) {
  fmx::TextAutoPtr encoded;
  encoded->Assign("", fmx::Text::kEncoding_ASCII_Mac);
  const int result = XP7_TxtToBase64Txt(text, inputMode, encoding, lineLength, encoded, breakAfterLastLine);
  if (result == 0) out->AppendText(*encoded);
  return result;
}

int XP7_FMBinaryDataToBase64Txt(fmx::BinaryData& data, int streamIndex, unsigned int streamSize, int lineLength,
                                fmx::TextAutoPtr& out, unsigned int* outLength) {
  *outLength = 0;
  out->DeleteText(0, 0xFFFFFFFF);
  // Below 4 characters (0 too) every group is a line of its own.
  const int lineGroups = lineLength / 4;
  unsigned int written = 0;
  int groupsInLine = 0;
  for (unsigned long long offset = 0; offset < streamSize; offset += 3) {
    const unsigned int amount = static_cast<unsigned int>(std::min<unsigned long long>(3, streamSize - offset));
    unsigned char bytes[3] = {0, 0, 0};
    const fmx::errcode err = data.GetData(streamIndex, static_cast<uint32_t>(offset), amount, bytes);
    if (err != 0) {
      *outLength = written;
      return err;
    }
    char group[4];
    EncodeGroup(bytes, amount, group);
    for (char ch : group) XP7_AppendUTF32CharToTxt(static_cast<unsigned char>(ch), out);
    written += 4;
    if (++groupsInLine >= lineGroups || offset + amount >= streamSize) {
      XP7_AppendUTF32CharToTxt(13, out);
      XP7_AppendUTF32CharToTxt(10, out);
      written += 2;
      groupsInLine = 0;
    }
  }
  *outLength = written;
  return 0;
}

int XP7_Base64TxtToTxt(fmx::TextAutoPtr& text, unsigned char plain, fmx::Text::Encoding encoding,
                       unsigned short outputMode, fmx::TextAutoPtr& out) {
  if (encoding != fmx::Text::kEncoding_ASCII_Mac) return kXP_ParamErr;
  const bool hexOutput = outputMode == 2;
  const bool binOutput = outputMode == 4;
  const bool plainOutput = !binOutput || plain != 0;
  const unsigned int n = text->GetSize();
  if (n == 0) return 0;
  fmx::TextAutoPtr part;
  for (unsigned int p = 0; p < n;) {
    unsigned int sextets[4] = {0, 0, 0, 0};
    unsigned int k = 0;
    // Line breaks, blanks, padding and anything else not in the alphabet are
    // passed over without complaint.
    while (k < 4 && p < n) {
      const int v = SextetOf(XP7_UniToFMP6MacAscii(XP7_Get1UTF32Char(text, n, &p), 0));
      ++p;
      if (v >= 0) sextets[k++] = static_cast<unsigned int>(v);
    }
    if (k < 2) continue;  // a lone sextet makes no byte
    const unsigned int group = sextets[0] << 18 | sextets[1] << 12 | sextets[2] << 6 | sextets[3];
    char bytes[3] = {static_cast<char>(group >> 16), static_cast<char>(group >> 8), static_cast<char>(group)};
    const unsigned int count = k - 1;
    if (hexOutput) {
      XP7_BlockToHexTxt(bytes, count, part);
      out->AppendText(*part);
    } else if (plainOutput) {
      for (unsigned int i = 0; i < count; ++i) XP7_AppendCharToTxt(bytes[i], out, fmx::Text::kEncoding_ASCII_Mac);
    } else {
      XP7_BlockToBinTxt(bytes, count, part, fmx::Text::kEncoding_ASCII_Mac);
      out->AppendText(*part);
    }
  }
  return 0;
}
