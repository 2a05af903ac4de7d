// Tests of charset reinterpretation: web pages and XML files read with the wrong
// character set, repaired by a given encoding or by their own declaration.
#include <gtest/gtest.h>

#include "../helpers/HostText.h"

#include <string>

#include "MemHost.h"
#include "encoding/Reinterpret.h"

namespace {

using testing_host::Units;

using Enc = fmx::Text::Encoding;
constexpr Enc kMac = fmx::Text::kEncoding_ASCII_Mac;
constexpr Enc kUTF8 = fmx::Text::kEncoding_UTF8;
constexpr Enc kLatin1 = fmx::Text::kEncoding_ISO_8859_1;

std::u16string Read(const std::string& bytes, Enc enc) {
  fmx::TextAutoPtr t;
  t->AssignWithLength(bytes.data(), static_cast<uint32_t>(bytes.size()), enc);
  return Units(t);
}

TEST(Reinterpret, NewEncodingRepairsAMisreadPageAndDecodesOnlyAsManyBytesAsUnits) {
  const std::string page = "<p>Cr\xC3\xA8me br\xC3\xBBl\xC3\xA9" "e \xE2\x82\xAC 5</p>";  // UTF-8
  fmx::TextAutoPtr t;
  t->AssignWithLength(page.data(), static_cast<uint32_t>(page.size()), kMac);
  XP7_ReinterpretTxtUsingNewEncoding(t, kMac, kUTF8);
  EXPECT_EQ(Units(t), u"<p>Cr\u00E8me br\u00FBl\u00E9e \u20AC 5</p>");

  // Two units export as three UTF-8 bytes; only the first two are decoded again.
  t->Assign("\xC3\xA9" "a", kUTF8);
  XP7_ReinterpretTxtUsingNewEncoding(t, kUTF8, kLatin1);
  EXPECT_EQ(Units(t), u"\u00C3\u00A9");
}

TEST(Reinterpret, MetaTagOrXMLDeclarationChoosesTheEncoding) {
  struct Case {
    const char* name;
    std::string bytes;  // the document as it was sent
    Enc current;        // how the plug-in decoded it
    Enc repaired;       // the encoding it must end up decoded in
  };
  const std::string e = "\xC3\xA9";  // U+00E9 in UTF-8
  const Case cases[] = {
      {"meta tag", "<html><head><meta charset=\"utf-8\"></head><body>" + e + "</body></html>", kMac, kUTF8},
      {"already UTF-8", "<html><head><meta charset=\"utf-8\"></head>" + e, kUTF8, kUTF8},
      {"upper case", "<HTML><META HTTP-EQUIV=\"Content-Type\" CONTENT=\"text/html; CHARSET=UTF-8\">" + e, kMac,
       kUTF8},
      {"XML declaration", "<?xml version=\"1.0\" encoding=\"UTF-8\"?><menu>cr" + e + "me</menu>", kMac, kUTF8},
      {"unknown charset", "<?xml version=\"1.0\" encoding=\"windows-1252\"?><a>" + e + "</a>", kMac, kMac},
      {"no hyphen", "<meta charset=utf8><p>" + e, kMac, kMac},
      {"XML first", "<?xml version=\"1.0\"?><html><meta charset=\"utf-8\">" + e, kMac, kMac},
      {"keyword after the >", "<meta name=\"a\">charset=utf-8<meta charset=ISO-8859-1>caf\xE9", kMac, kLatin1},
      {"both names", "<meta charset=\"ISO-8859-1, utf-8\"><p>" + e, kMac, kUTF8},
      {"current declared first", "<meta charset=ISO-8859-1><meta charset=utf-8>" + e, kLatin1, kUTF8},
      {"ISO-8859-1", "<meta content=\"text/html; charset=iso-8859-1\"><p>caf\xE9", kMac, kLatin1},
      {"no closing >", "<meta charset=\"utf-8\" " + e, kMac, kMac},
  };
  for (const Case& c : cases) {
    fmx::TextAutoPtr t;
    t->AssignWithLength(c.bytes.data(), static_cast<uint32_t>(c.bytes.size()), c.current);
    XP7_ReinterpretTxtUsingCharsetMetaTag(t, c.current);
    EXPECT_EQ(Units(t), Read(c.bytes, c.repaired)) << c.name;
  }
}

TEST(Reinterpret, TwelveCharactersOrFewerAreNotSearched) {
  fmx::TextAutoPtr t;
  t->Assign("<meta utf-8>", kMac);
  memhost::InjectFault("FM_Text_FindIgnoringCase", 2);
  XP7_ReinterpretTxtUsingCharsetMetaTag(t, kMac);
  EXPECT_EQ(memhost::PendingFaults(), 1u);
  memhost::ClearFaults();
}

TEST(Reinterpret, Latin1FilterDropsWhatISO88591CannotHold) {
  const std::u16string text = std::u16string(u"A\u20AC\u00E9\0\U0001F600", 6);
  fmx::TextAutoPtr source, result;
  source->AssignUnicodeWithLength(reinterpret_cast<const unsigned short*>(text.data()), 6);
  for (Enc enc : {kLatin1, kUTF8}) {
    result->Assign("replaced", kMac);
    XP7_TxtToISO_8859_Codepage_Txt(source, result, enc);
    EXPECT_EQ(Units(result), enc == kLatin1 ? std::u16string(u"A\u00E9\0", 3) : text);
  }
}

}  // namespace
