// CFString: the encodings, conversions and formatting the toolkit relies on.
#include <gtest/gtest.h>

#include "platform/CFTestSupport.h"

#include <climits>
#include <cstdint>
#include <vector>

namespace {

std::u16string charsOf(CFStringRef string) {
  std::u16string chars(static_cast<size_t>(CFStringGetLength(string)), u'\0');
  CFStringGetCharacters(string, CFRangeMake(0, CFStringGetLength(string)), reinterpret_cast<UniChar*>(chars.data()));
  return chars;
}

CFHolder<CFStringRef> fromUTF16(const std::u16string& chars) {
  return own(CFStringCreateWithCharacters(nullptr, reinterpret_cast<const UniChar*>(chars.data()),
                                          static_cast<CFIndex>(chars.size())));
}

TEST(CFString, MacRomanUpperHalfRoundTripsThroughUnicode) {
  std::string bytes;
  for (int byte = 0x80; byte <= 0xFF; ++byte) bytes += static_cast<char>(byte);
  const auto string = own(CFStringCreateWithCString(nullptr, bytes.c_str(), kCFStringEncodingMacRoman));
  ASSERT_NE(string, nullptr);
  ASSERT_EQ(CFStringGetLength(string.get()), 128);
  // The current table: euro sign, Omega and the Apple logo.
  EXPECT_EQ(CFStringGetCharacterAtIndex(string.get(), 0xDB - 0x80), 0x20AC);
  EXPECT_EQ(CFStringGetCharacterAtIndex(string.get(), 0xBD - 0x80), 0x03A9);
  EXPECT_EQ(CFStringGetCharacterAtIndex(string.get(), 0xF0 - 0x80), 0xF8FF);
  EXPECT_EQ(CFStringGetCharacterAtIndex(string.get(), 0), 0x00C4);

  std::string back(129, '\0');
  ASSERT_TRUE(CFStringGetCString(string.get(), back.data(), 129, kCFStringEncodingMacRoman));
  EXPECT_EQ(back.substr(0, 128), bytes);
}

TEST(CFString, DecodesEachEncodingAndRejectsInvalidBytes) {
  struct Case {
    CFStringEncoding encoding;
    std::string bytes;
    std::optional<std::u16string> expected;
  };
  const std::vector<Case> cases = {
      {kCFStringEncodingUTF8, "Gr\xC3\xB6\xC3\x9F" "e \xF0\x9F\x98\x80", u"Größe \U0001F600"},
      {kCFStringEncodingUTF8, "bad \xC3", std::nullopt},
      {kCFStringEncodingUTF8, "\xED\xA0\x80", std::nullopt},  // an encoded surrogate
      {kCFStringEncodingASCII, "plain", u"plain"},
      {kCFStringEncodingASCII, "caf\xE9", std::nullopt},
      {kCFStringEncodingISOLatin1, "caf\xE9\xA4", u"café¤"},
      {kCFStringEncodingWindowsLatin1, "\x80\x93", u"€“"},
      {kCFStringEncodingMacRoman, "\x8E", u"é"},
      {kCFStringEncodingUTF16BE, std::string("\0A\x20\xAC", 4), u"A€"},
      {kCFStringEncodingUTF16LE, std::string("A\0\xAC\x20", 4), u"A€"},
      {kCFStringEncodingUTF16, std::string("\xFE\xFF\0A", 4), u"A"},  // the mark says big-endian
      {kCFStringEncodingUTF16, std::string("A\0B", 3), std::nullopt},
      {kCFStringEncodingUTF32LE, std::string("\x00\xF6\x01\x00", 4), u"\U0001F600"},
      {kCFStringEncodingUTF32BE, std::string("\0\0\xD8\0", 4), std::nullopt},
      {0x7FFF, "x", std::nullopt},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << "encoding 0x" << std::hex << c.encoding);
    const auto string = own(CFStringCreateWithBytes(nullptr, reinterpret_cast<const UInt8*>(c.bytes.data()),
                                                    static_cast<CFIndex>(c.bytes.size()), c.encoding, false));
    if (c.expected) {
      ASSERT_NE(string, nullptr);
      EXPECT_EQ(charsOf(string.get()), *c.expected);
    } else {
      EXPECT_EQ(string, nullptr);
    }
  }
  EXPECT_EQ(CFStringCreateWithCString(nullptr, nullptr, kCFStringEncodingUTF8), nullptr);
}

TEST(CFString, GetBytesConvertsWholeCharactersWithinTheLimit) {
  const auto string = fromUTF16(u"a\u00E9\u20AC\U0001F600");  // 1, 2, 3 and 4 UTF-8 bytes
  const CFRange all = CFRangeMake(0, CFStringGetLength(string.get()));
  struct Case {
    CFStringEncoding encoding;
    UInt8 lossByte;
    CFIndex maxBufLen;
    CFIndex expectedUnits;
    std::string expectedBytes;
  };
  const std::vector<Case> cases = {
      {kCFStringEncodingUTF8, 0, 100, 5, "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"},
      {kCFStringEncodingUTF8, 0, 5, 2, "a\xC3\xA9"},  // the euro sign would not fit whole
      {kCFStringEncodingUTF8, 0, 6, 3, "a\xC3\xA9\xE2\x82\xAC"},
      {kCFStringEncodingASCII, '?', 100, 5, "a???"},  // the pair is one character
      {kCFStringEncodingASCII, 0, 100, 1, "a"},       // no loss byte: stops
      {kCFStringEncodingMacRoman, 255, 100, 5, "a\x8E\xDB\xFF"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::Message() << "encoding 0x" << std::hex << c.encoding << " max " << std::dec << c.maxBufLen);
    std::string buffer(static_cast<size_t>(c.maxBufLen), '\0');
    CFIndex used = -1;
    EXPECT_EQ(CFStringGetBytes(string.get(), all, c.encoding, c.lossByte, false,
                               reinterpret_cast<UInt8*>(buffer.data()), c.maxBufLen, &used),
              c.expectedUnits);
    EXPECT_EQ(buffer.substr(0, static_cast<size_t>(used)), c.expectedBytes);
  }

  // Measuring without a buffer ignores the limit; a bad range converts nothing.
  CFIndex used = 0;
  EXPECT_EQ(CFStringGetBytes(string.get(), all, kCFStringEncodingUTF8, 255, false, nullptr, 3, &used), 5);
  EXPECT_EQ(used, 10);
  EXPECT_EQ(CFStringGetBytes(string.get(), CFRangeMake(3, 9), kCFStringEncodingUTF8, 255, false, nullptr, 0, &used), 0);
  EXPECT_EQ(used, 0);

  // The external form of UTF-16 starts with a byte order mark.
  UInt8 utf16[4] = {};
  ASSERT_EQ(CFStringGetBytes(string.get(), CFRangeMake(0, 1), kCFStringEncodingUTF16, 0, true, utf16, 4, &used), 1);
  EXPECT_EQ(used, 4);
  const auto back = own(CFStringCreateWithBytes(nullptr, utf16, 4, kCFStringEncodingUTF16, true));
  EXPECT_EQ(charsOf(back.get()), u"a");
}

TEST(CFString, GetCStringNeedsRoomForTheTerminatorAndEveryCharacter) {
  const auto string = fromUTF16(u"ab\u0100");
  char buffer[8];
  EXPECT_FALSE(CFStringGetCString(string.get(), buffer, sizeof buffer, kCFStringEncodingMacRoman));
  EXPECT_FALSE(CFStringGetCString(string.get(), buffer, 4, kCFStringEncodingUTF8));
  ASSERT_TRUE(CFStringGetCString(string.get(), buffer, 5, kCFStringEncodingUTF8));
  EXPECT_STREQ(buffer, "ab\xC4\x80");
  EXPECT_EQ(CFStringGetMaximumSizeForEncoding(10, kCFStringEncodingUTF8), 30);
  EXPECT_EQ(CFStringGetMaximumSizeForEncoding(LONG_MAX, kCFStringEncodingUTF16), kCFNotFound);
}

TEST(CFString, FormatsOneIntegerConversion) {
  struct Case {
    const char* format;
    int value;
    const char* expected;
  };
  const std::vector<Case> cases = {
      {"MSG_%d", 131, "MSG_131"}, {"%05d", -42, "-0042"},  {"[%-4u]", 7, "[7   ]"},
      {"%+i", 5, "+5"},           {"%#x|%%", 255, "0xff|%"}, {"%.3o", 8, "010"},
      {"%X", 48879, "BEEF"},      {"%c!", 'A', "A!"},      {"%hhd", 300, "44"},
      {"Größe %d", 2, "Größe 2"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.format);
    const auto format = cfstring(c.format);
    const auto string = own(CFStringCreateWithFormat(nullptr, nullptr, format.get(), c.value));
    EXPECT_EQ(utf8(string.get()), c.expected);
  }
  const auto wide = own(CFStringCreateWithFormat(nullptr, nullptr, CFSTR("%ld %llu %zu %*d"), LONG_MIN,
                                                 18446744073709551615ULL, static_cast<size_t>(3), 4, 9));
  EXPECT_EQ(utf8(wide.get()), "-9223372036854775808 18446744073709551615 3    9");
  EXPECT_EQ(CFStringCreateWithFormat(nullptr, nullptr, CFSTR("%s"), "text"), nullptr);
}

TEST(CFString, ConstantStringsAreUniqueAndOutliveRelease) {
  CFStringRef constant = CFSTR("constant text");
  EXPECT_EQ(constant, CFSTR("constant text"));
  CFRelease(constant);
  CFRelease(constant);
  EXPECT_EQ(utf8(constant), "constant text");

  const auto made = cfstring("constant text");
  EXPECT_NE(made.get(), constant);
  EXPECT_TRUE(CFEqual(made.get(), constant));
  EXPECT_EQ(CFHash(made.get()), CFHash(constant));
  EXPECT_EQ(CFGetRetainCount(made.get()), 1);
  CFRetain(made.get());
  EXPECT_EQ(CFGetRetainCount(made.get()), 2);
  CFRelease(made.get());
  CFRelease(nullptr);  // Apple's contract forbids it; here it must not crash
}

TEST(CFString, ComparesLiterallyOrIgnoringCase) {
  EXPECT_EQ(CFStringCompare(CFSTR("Apple"), CFSTR("apple"), 0), kCFCompareLessThan);
  EXPECT_EQ(CFStringCompare(CFSTR("STRASSE"), CFSTR("straße"), kCFCompareCaseInsensitive), kCFCompareEqualTo);
  EXPECT_EQ(CFStringCompare(CFSTR("b"), CFSTR("A"), kCFCompareCaseInsensitive), kCFCompareGreaterThan);
}

}  // namespace
