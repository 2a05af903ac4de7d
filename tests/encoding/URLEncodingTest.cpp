// Tests of percent-encoding: the unreserved set of RFC 3986, host text through
// UTF-8, and plain bytes as they stand.
#include <gtest/gtest.h>

#include "../helpers/HostText.h"

#include <cctype>
#include <memory>
#include <string>

#include "encoding/URLEncoding.h"
#include "text/TextCore.h"

namespace {

using testing_host::Units;
using testing_host::Set;

std::u16string URLEncoded(const std::u16string& s) {
  fmx::TextAutoPtr in, out;
  Set(in, s);
  Set(out, u"replaced");
  XP7_TxtToURLEncodedTxt(in, out);
  return Units(out);
}

TEST(URLEncoding, ExactlyTheUnreservedCharactersGoUnescaped) {
  int unescaped = 0;
  for (int c = 0; c < 256; ++c) {
    const bool unreserved = (c < 128 && std::isalnum(c)) || c == '-' || c == '.' || c == '_' || c == '~';
    EXPECT_EQ(XP7_CharNeedsURLEncoding(static_cast<unsigned char>(c)), !unreserved) << c;
    unescaped += !XP7_CharNeedsURLEncoding(static_cast<unsigned char>(c));
  }
  EXPECT_EQ(unescaped, 66);
}

TEST(URLEncoding, TextIsEscapedAsUTF8WithUpperCaseDigits) {
  EXPECT_EQ(URLEncoded(u"a b&c+"), u"a%20b%26c%2B");      // a space is never "+"
  EXPECT_EQ(URLEncoded(u"\u00E9"), u"%C3%A9");             // U+00E9 LATIN SMALL LETTER E WITH ACUTE
  EXPECT_EQ(URLEncoded(u"\U0001F600"), u"%F0%9F%98%80");  // U+1F600 GRINNING FACE
  EXPECT_EQ(URLEncoded(std::u16string(u"\0\n", 2)), u"%00%0A");
  const std::u16string kept = u"AZaz09-._~";
  EXPECT_EQ(URLEncoded(kept), kept);
  EXPECT_EQ(URLEncoded(u""), u"");
}

TEST(URLEncoding, CStringBytesAreEscapedAsTheyStandAndTheFirstArgumentIgnored) {
  struct Case {
    const char* source;
    const char* escaped;
  };
  const Case cases[] = {{"\xE9", "%E9"}, {"", ""}, {"a b/~", "a%20b%2F~"}, {"\xC3\xA9", "%C3%A9"}};
  for (const Case& c : cases) {
    for (const char* ignored : {static_cast<const char*>(nullptr), "a b", "\xE9"}) {
      const std::unique_ptr<char[]> out(XP7_CreateURLEncodedStr(ignored, c.source));
      EXPECT_STREQ(out.get(), c.escaped);
    }
  }
}

}  // namespace
