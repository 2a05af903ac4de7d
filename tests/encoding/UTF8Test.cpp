// Tests of UTF-8 text: encoding against the host's own UTF-8, the lenient
// decoder on malformed input, the hex form, the C string copy, and host failures.
#include <gtest/gtest.h>

#include "../helpers/HostText.h"

#include <functional>
#include <iterator>
#include <random>
#include <string>

#include "../helpers/HostFaults.h"
#include "MemHost.h"
#include "encoding/Reinterpret.h"
#include "encoding/URLEncoding.h"
#include "encoding/UTF8.h"
#include "text/ByteBlocks.h"
#include "text/TextCore.h"

namespace {

using testing_host::Units;
using testing_host::Set;

// UTF-8 text of `bytes`: one character per byte.
std::u16string Chars(const std::string& bytes) {
  std::u16string s;
  for (unsigned char b : bytes) s += b;
  return s;
}

std::u16string Converted(void (*convert)(fmx::TextAutoPtr&, fmx::TextAutoPtr&), const std::u16string& s) {
  fmx::TextAutoPtr in, out;
  Set(in, s);
  Set(out, u"replaced");
  convert(in, out);
  return Units(out);
}

// Whole characters are held against the host's own UTF-8 in the random round trip below.
TEST(UTF8Text, EncodesEachCodePointAsItsBytes) {
  const std::pair<std::u16string, std::string> cases[] = {
      {std::u16string(1, u'\0'), std::string(1, '\0')},
      {u"\xDC00z", "~z"},                   // a lone low surrogate reads as gMyErrorChar
      {u"a\xD83D", "a\xED\xA0\xBD"},        // a high surrogate at the end reads as itself
  };
  for (const auto& [text, bytes] : cases) EXPECT_EQ(Converted(XP7_TxtToUTF8Txt, text), Chars(bytes));
}

// Malformed input after Markus Kuhn's UTF-8 decoder stress test, with the
// decoder's deliberate leniencies.
TEST(UTF8Text, DecoderIsLenientOnMalformedSequences) {
  const std::pair<std::string, std::u16string> cases[] = {
      {"\xA9\x80\xBF", u"\u00A9\u0080\u00BF"},  // Kuhn 3.1: stray continuation bytes read as Latin-1
      {"\xED\xA0\x80", u"\uFFFD"},              // Kuhn 5.1.1, an encoded surrogate
      {"\xF4\x90\x80\x80", u"\uFFFD"},          // U+110000, past the last code point
      {"\xF8\x88\x80\x80\x80", u"\uFFFD"},      // Kuhn 2.1.5, five-byte form
      {"\xFD\xBF\xBF\xBF\xBF\xBF", u"\uFFFD"},  // Kuhn 2.2.6, six-byte form
      {std::string("\xC0\x80", 2), std::u16string(1, u'\0')},  // Kuhn 4.3.1, overlong U+0000
      {"\xC0\xAF\xE0\x80\xAF\xF0\x80\x80\xAF\xF8\x80\x80\x80\xAF\xFC\x80\x80\x80\x80\xAF",
       u"/////"},                               // Kuhn 4.1, overlong solidus in every length
      {"\xC3\x41", u"\u0081"},                  // continuation bits are not checked
      {"A\xE2\x82", u"A"},                      // a cut final sequence is dropped
      {"A\xE9", u"A"},
      {"\xFE\xFE\xFF\xFF", u""},                // Kuhn 3.5.3: announce five bytes, none follow
  };
  for (const auto& [bytes, text] : cases) {
    EXPECT_EQ(Converted(XP7_UTF8TxtToTxt, Chars(bytes)), text) << testing::PrintToString(bytes);
  }
  EXPECT_EQ(Converted(XP7_UTF8TxtToTxt, u"\u0141\u00C3\u00A9"), u"?\u00E9");  // U+0141 reads as "?"
}

// Random text over all code points, pairs included: its UTF-8 text holds what
// the host itself writes as UTF-8 and decodes back, also from its hex form.
TEST(UTF8Text, RandomTextRoundTripsAndMatchesTheHostsUTF8) {
  std::mt19937 rng(20240611);
  std::uniform_int_distribution<unsigned int> anyCodePoint(0, 0x10FFFF), small(0, 0x7FF);
  for (int round = 0; round < 20; ++round) {
    fmx::TextAutoPtr text, utf8;
    for (int i = 0; i < 200; ++i) {
      const unsigned int cp = i % 2 ? anyCodePoint(rng) : small(rng);
      XP7_AppendUTF32CharToTxt(cp >= 0xD800 && cp <= 0xDFFF ? cp - 0x800 : cp, text);  // no surrogates
    }
    XP7_TxtToUTF8Txt(text, utf8);
    std::string hosts(utf8->GetSize() + 1, '\0');
    text->GetBytes(hosts.data(), utf8->GetSize(), 0, 0xFFFFFFFF, fmx::Text::kEncoding_UTF8);
    hosts.pop_back();
    ASSERT_EQ(Units(utf8), Chars(hosts));
    EXPECT_EQ(Converted(XP7_UTF8TxtToTxt, Units(utf8)), Units(text));

    std::u16string hex;
    for (unsigned char b : hosts) hex += {u"0123456789ABCDEF"[b >> 4], u"0123456789ABCDEF"[b & 15]};
    EXPECT_EQ(Converted(XP7_UTF8HexTxtToTxt, hex), Units(text));
  }
}

TEST(UTF8Text, HexFormCountsCharactersAgainstBytesAtTheEnd) {
  EXPECT_EQ(Converted(XP7_UTF8HexTxtToTxt, u"4100"), std::u16string(u"A\0", 2));
  EXPECT_EQ(Converted(XP7_UTF8HexTxtToTxt, u"41E2"), u"A");  // E2 needs two bytes, no character is left
  // E2 needs two bytes and two characters are left: they give 0x82, and the third
  // byte is read past the end, where the pair reader sees two invalid digits
  // (42 * 16 + 42 = 0x2CA, so 0xCA): E2 82 CA is U+20CA.
  EXPECT_EQ(Converted(XP7_UTF8HexTxtToTxt, u"E282"), u"\u20CA");
  // A lone last digit is dropped: the byte it starts ends past the text.
  EXPECT_EQ(Converted(XP7_UTF8HexTxtToTxt, u"414"), u"A");
}

TEST(UTF8Text, CStrCopyStopsAtTheBufferWithoutChecking) {
  fmx::TextAutoPtr t;
  Set(t, u"\u00C3\u00A9\u0100z");
  char buf[8] = {'x', 'x', 'x', 'x', 'x', 'x', 'x', 'x'};
  XP7_UTF8TxtToUTF8CStr(t, buf, 0);
  EXPECT_EQ(buf[0], 'x');
  XP7_UTF8TxtToUTF8CStr(t, buf, 1);
  EXPECT_EQ(std::string(buf, 2), std::string("\0x", 2));
  XP7_UTF8TxtToUTF8CStr(t, buf, 2);
  EXPECT_STREQ(buf, "\xC3");  // the sequence is cut
  XP7_UTF8TxtToUTF8CStr(t, buf, sizeof buf);
  EXPECT_STREQ(buf, "\xC3\xA9?z");
}

// Fails each host call of each sample in turn: the failure leaves as the host's
// exception, and no host value or buffer outlives the call.
TEST(UTF8Text, HostFailuresPassThroughWithoutLeaks) {
  const std::function<void(fmx::TextAutoPtr&)> samples[] = {
      [](fmx::TextAutoPtr& in) { fmx::TextAutoPtr out; XP7_UTF8TxtToTxt(in, out); },
      [](fmx::TextAutoPtr& in) { fmx::TextAutoPtr out; XP7_TxtToURLEncodedTxt(in, out); },
      [](fmx::TextAutoPtr& in) { XP7_ReinterpretTxtUsingCharsetMetaTag(in, fmx::Text::kEncoding_ASCII_Mac); },
      [](fmx::TextAutoPtr& in) {
        fmx::Text::Encoding enc = fmx::Text::kEncoding_UTF8;
        unsigned char block[64];
        unsigned int len;
        XP7_TxtToBlockN(in, enc, sizeof block, block, &len);
      },
  };
  for (const auto& sample : samples) {
    fmx::TextAutoPtr in;
    const auto reset = [&](bool) {
      in->Assign("<meta charset=utf-8>\xC3\xA9\xE2\x82\xAC", fmx::Text::kEncoding_ASCII_Mac);
    };
    reset(false);
    EXPECT_GT(testing_host::SweepHostFaults(2, [&] { sample(in); }, reset), 0) << &sample - samples;
  }
}

}  // namespace
