// Tests of base64: the standard vectors, the line and room rules of each
// encoder, the decoder's tolerance, round trips in every mode, host failures.
#include <gtest/gtest.h>

#include "../helpers/HostText.h"

#include <cstring>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "../helpers/HostFaults.h"
#include "MemHost.h"
#include "codecs/Base64.h"
#include "codecs/BinText.h"
#include "codecs/HexText.h"
#include "text/TextCore.h"

namespace {

using testing_host::Units;
using testing_host::Set;

constexpr fmx::Text::Encoding kMac = fmx::Text::kEncoding_ASCII_Mac;
const std::string kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

std::u16string U16(const std::string& s) { return std::u16string(s.begin(), s.end()); }

// An encoder of its own, bit by bit, to hold the toolkit's group tables against.
std::string Reference(const std::string& bytes) {
  std::string out;
  unsigned int bits = 0, buffer = 0;
  for (unsigned char b : bytes) {
    buffer = (buffer << 8 | b) & 0xFFFF;
    for (bits += 8; bits >= 6;) out += kAlphabet[(buffer >> (bits -= 6)) & 63];
  }
  if (bits > 0) out += kAlphabet[(buffer << (6 - bits)) & 63];
  return out.append((4 - out.size() % 4) % 4, '=');
}

// `encoded` in lines of `groups` groups, each followed by `eol` except, without
// `lastEol`, the last one.
std::string Lines(const std::string& encoded, size_t groups, const std::string& eol, bool lastEol) {
  std::string out;
  for (size_t at = 0; at < encoded.size(); at += groups * 4) {
    out += encoded.substr(at, groups * 4);
    if (lastEol || at + groups * 4 < encoded.size()) out += eol;
  }
  return out;
}

// The text encoder's lines: a full line always ends with a CR, the last, shorter
// one only with `last`; below 4 characters there are no full lines.
std::string CRLines(const std::string& encoded, unsigned int lineLength, bool last) {
  if (lineLength < 4) return last ? encoded + "\r" : encoded;
  return Lines(encoded, lineLength / 4, "\r", last || encoded.size() % (lineLength / 4 * 4) == 0);
}

std::string RandomBytes(std::mt19937& random, size_t length) {
  std::string bytes(length, '\0');
  for (char& b : bytes) b = static_cast<char>(random());
  return bytes;
}

TEST(Base64, TablesFollowTheAlphabet) {
  ASSERT_EQ(std::string(XP7_Base64Alphabet), kAlphabet);
  for (int byte = 43; byte <= 122; ++byte) {
    const size_t index = kAlphabet.find(static_cast<char>(byte));
    const char entry = XP7_Base64DecodeTable[byte - 43];
    EXPECT_EQ(entry, index == std::string::npos ? '$' : static_cast<char>(index + 62)) << byte;
  }
}

// RFC 4648, section 10, base64 and base16: they hold the reference encoder (which
// the other tests hold every encoder against), hex text, and both decoders.
TEST(Base64, StandardVectorsEncodeAndDecode) {
  const char* vectors[][3] = {{"", "", ""},
                              {"f", "Zg==", "66"},
                              {"fo", "Zm8=", "666F"},
                              {"foo", "Zm9v", "666F6F"},
                              {"foob", "Zm9vYg==", "666F6F62"},
                              {"fooba", "Zm9vYmE=", "666F6F6261"},
                              {"foobar", "Zm9vYmFy", "666F6F626172"}};
  for (const auto& [plain, base64, base16] : vectors) {
    EXPECT_EQ(Reference(plain), base64);
    fmx::TextAutoPtr hex, encoded, decoded, decodedHex;
    XP7_BlockToHexTxt(const_cast<char*>(plain), static_cast<unsigned int>(std::strlen(plain)), hex);
    EXPECT_EQ(Units(hex), U16(base16));
    XP7_TxtToBase64Txt(hex, 2, kMac, 0, encoded, false);
    EXPECT_EQ(Units(encoded), U16(base64));
    XP7_Base64TxtToTxt(encoded, 0, kMac, 0, decoded);
    XP7_Base64TxtToTxt(encoded, 0, kMac, 2, decodedHex);
    EXPECT_EQ(Units(decoded), U16(plain));
    EXPECT_EQ(Units(decodedHex), U16(base16));
  }
}

// Many block lengths at every line length: CR LF lines of whole groups, and the
// output fits a buffer of exactly the size the rules ask for, and not one byte less.
TEST(Base64, EncodeBlockLinesAndRoomMatchTheDesign) {
  std::mt19937 random(10);
  for (int lineLength = -1; lineLength <= 80; ++lineLength) {
    for (size_t n : {size_t(0), size_t(1), size_t(2), size_t(3), size_t(random() % 100), size_t(1000)}) {
      std::string bytes = RandomBytes(random, n);
      const std::string expected =
          lineLength > 0 ? Lines(Reference(bytes), std::max(lineLength / 4, 1), "\r\n", true) : Reference(bytes);
      // A spare byte after the last group, unless a CR LF follows it.
      const size_t room = expected.size() + (lineLength > 0 || n == 0 ? 0 : 1);
      std::vector<unsigned char> out(room + 4, '#');
      unsigned long length = 99;
      auto* in = reinterpret_cast<unsigned char*>(bytes.data());
      ASSERT_EQ(XP7_Base64_EncodeBlock(in, n, out.data(), room, &length, lineLength), 0) << n << "/" << lineLength;
      EXPECT_EQ(std::string(out.begin(), out.begin() + length), expected) << n << "/" << lineLength;
      if (n == 0) continue;
      std::fill(out.begin(), out.end(), '#');
      EXPECT_EQ(XP7_Base64_EncodeBlock(in, n, out.data(), room - 1, &length, lineLength), -416);
      EXPECT_EQ(length, 0u);
      // The groups that fit are written, nothing past the room.
      if (room > 6) {
        EXPECT_EQ(std::string(out.begin(), out.begin() + 4), expected.substr(0, 4));
      }
      EXPECT_EQ(std::string(out.begin() + room - 1, out.end()), "#####") << n << "/" << lineLength;
    }
  }
}

TEST(Base64, TxtToBase64TxtReadsEachModeAndBreaksWithCR) {
  fmx::TextAutoPtr text, out;
  Set(text, u"4D616E");
  Set(out, u"kept");
  EXPECT_EQ(XP7_TxtToBase64Txt(text, 2, fmx::Text::kEncoding_ISO_8859_1, 0, out, true), -50);
  EXPECT_EQ(XP7_AppendTxtToBase64Txt(text, 2, fmx::Text::kEncoding_ISO_8859_1, 0, out, true), -50);
  EXPECT_EQ(Units(out), u"kept");
  const struct {
    std::u16string text;
    short mode;
    std::string bytes;
  } cases[] = {
      {u"4D616", 2, "Ma"},  // a lone last digit is passed over
      {u"a\\0b", 4, std::string("a\0b", 3)},
      {u"\\\\\\x\\", 4, "\\\\x\\"},  // "\x" is no escape; a last backslash stands for itself
      {u"a\\0b", 0, "a\\0b"},
      {u"\u00E9\u20AC\u0100\U0001F600", 0, "\x8E\xDB**"},  // Mac 0x8E and 0xDB; U+0100 and U+1F600 have no byte
  };
  for (const auto& c : cases) {
    Set(text, c.text);
    Set(out, u"kept");
    EXPECT_EQ(XP7_TxtToBase64Txt(text, c.mode, kMac, 0, out, false), 0);
    EXPECT_EQ(Units(out), u"kept" + U16(Reference(c.bytes))) << c.mode;
  }
}

TEST(Base64, FMBinaryDataToBase64TxtEndsEveryLineWithCRLF) {
  fmx::BinaryDataAutoPtr data;
  QuadCharHolder type('J', 'P', 'E', 'G');
  char stream[] = "foobar123";
  data->Add(*type, 9, stream);
  fmx::TextAutoPtr out;
  unsigned int length = 99;
  const struct {
    int lineLength;
    unsigned int size;
    std::string expected;
  } cases[] = {
      {0, 6, "Zm9v\r\nYmFy\r\n"},  // below 4 every group is a line
      {8, 9, "Zm9vYmFy\r\nMTIz\r\n"},
  };
  for (const auto& c : cases) {
    Set(out, u"old");
    EXPECT_EQ(XP7_FMBinaryDataToBase64Txt(*data, 0, c.size, c.lineLength, out, &length), 0);
    EXPECT_EQ(Units(out), U16(c.expected));
    EXPECT_EQ(length, c.expected.size());
  }
  // A stream shorter than claimed: the read error ends it, with what was written.
  EXPECT_EQ(XP7_FMBinaryDataToBase64Txt(*data, 0, 12, 12, out, &length), memhost::kRangeError);
  EXPECT_EQ(Units(out), u"Zm9vYmFyMTIz\r\n");
  EXPECT_EQ(length, 14u);
}

TEST(Base64, DecoderSkipsWhatIsNoBase64AndDropsALoneSextet) {
  const struct {
    std::u16string text;
    unsigned short mode;
    unsigned char plain;
    std::u16string expected;
  } cases[] = {
      {u"T=W\r\nF\u00E9u", 0, 0, u"Man"},
      {u"TQ", 0, 0, u"M"},  // padding is not needed
      {u"T", 0, 0, u""},
      {u"AP8=", 2, 0, u"00FF"},
      {u"AP8=", 4, 0, u"\\0\u02C7"},  // Mac 0xFF: U+02C7 CARON
      {u"AP8=", 4, 1, std::u16string(u"\0\u02C7", 2)},
  };
  for (const auto& c : cases) {
    fmx::TextAutoPtr text, out;
    Set(text, c.text);
    Set(out, u">");
    EXPECT_EQ(XP7_Base64TxtToTxt(text, c.plain, kMac, c.mode, out), 0);
    EXPECT_EQ(Units(out), u">" + c.expected);
    EXPECT_EQ(XP7_Base64TxtToTxt(text, c.plain, fmx::Text::kEncoding_UTF8, c.mode, out), -50);
    EXPECT_EQ(Units(out), u">" + c.expected);
  }
}

// Random bytes as hex text, bin text and plain Mac Roman text at every line
// length: standard base64 in CR lines, and back to the same text.
TEST(Base64, HostTextsRoundTripInEveryModeAndLineLength) {
  std::mt19937 random(2045);
  for (unsigned int lineLength = 0; lineLength <= 80; ++lineLength) {
    const std::string bytes = RandomBytes(random, lineLength % 23 + 14);
    const bool last = lineLength % 2 == 1;
    const std::string expected = CRLines(Reference(bytes), lineLength, last);
    fmx::TextAutoPtr hex, bin, plain;
    XP7_BlockToHexTxt(const_cast<char*>(bytes.data()), static_cast<unsigned int>(bytes.size()), hex);
    XP7_BlockToBinTxt(const_cast<char*>(bytes.data()), static_cast<unsigned int>(bytes.size()), bin, kMac);
    for (char b : bytes) XP7_AppendCharToTxt(b, plain, kMac);
    for (auto [mode, source] : {std::make_pair(2, &hex), std::make_pair(4, &bin), std::make_pair(0, &plain)}) {
      fmx::TextAutoPtr encoded, decoded;
      ASSERT_EQ(XP7_AppendTxtToBase64Txt(*source, static_cast<short>(mode), kMac, lineLength, encoded, last), 0);
      ASSERT_EQ(Units(encoded), U16(expected)) << "mode " << mode << ", line length " << lineLength;
      XP7_Base64TxtToTxt(encoded, 0, kMac, static_cast<unsigned short>(mode), decoded);
      EXPECT_EQ(Units(decoded), Units(*source)) << "mode " << mode << ", line length " << lineLength;
    }
  }
}

// Fails each host call in turn: the failure leaves as its exception, no host
// value is left behind, and the appending encoder adds nothing.
TEST(Base64, HostFailuresLeaveAsExceptionsWithoutLeaks) {
  fmx::TextAutoPtr bin, encoded, out;
  Set(bin, u"a\\0\u00E9\\\\b");
  Set(encoded, u"YQDpXGI=");
  fmx::BinaryDataAutoPtr data;
  QuadCharHolder type('J', 'P', 'E', 'G');
  data->Add(*type, 4, const_cast<char*>("abcd"));
  unsigned int length = 0;
  const std::function<void()> samples[] = {
      [&] { XP7_AppendTxtToBase64Txt(bin, 4, kMac, 4, out, true); },
      [&] { XP7_Base64TxtToTxt(encoded, 0, kMac, 4, out); },
      [&] { XP7_Base64TxtToTxt(encoded, 0, kMac, 2, out); },
      [&] { XP7_FMBinaryDataToBase64Txt(*data, 0, 4, 0, out, &length); },
  };
  for (int32_t code : {1, 2}) {
    for (size_t sample = 0; sample < std::size(samples); ++sample) {
      SCOPED_TRACE(sample);
      Set(out, u"before");
      const auto unchanged = [&](bool threw) {
        if (threw && sample == 0) {
          EXPECT_EQ(Units(out), u"before");
        }
        Set(out, u"before");
      };
      EXPECT_GT(testing_host::SweepHostFaults(code, samples[sample], unchanged), 3);
    }
  }
}

}  // namespace
