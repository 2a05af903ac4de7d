// Tests of the in-memory host's texts: the gap buffer against a plain string,
// ranges, finds, styles and byte output.
#include <gtest/gtest.h>

#include "../helpers/HostText.h"

#include <cstring>
#include <random>
#include <string>

#include "GapBuffer.h"
#include "MemHost.h"

namespace {

using testing_host::Units;
using testing_host::Set;

std::u16string Contents(const memhost::GapBuffer& b) {
  std::u16string s(b.size(), u'\0');
  b.copyOut(0, s.size(), s.data());
  return s;
}

TEST(GapBuffer, AgreesWithAPlainStringOverRandomEdits) {
  std::mt19937 rng(7);
  memhost::GapBuffer buffer;
  std::u16string reference;
  for (int step = 0; step < 20000; ++step) {
    size_t pos = reference.empty() ? 0 : rng() % (reference.size() + 1);
    switch (rng() % 4) {
      case 0:
      case 1: {
        std::u16string piece(rng() % 40, u'\0');
        for (char16_t& u : piece) u = static_cast<char16_t>(u'a' + rng() % 26);
        buffer.insert(pos, piece.data(), piece.size());
        reference.insert(pos, piece);
        break;
      }
      case 2: {
        if (rng() % 3 == 0) pos = 0;  // readers consume texts from the front
        size_t n = std::min<size_t>(rng() % 30, reference.size() - pos);
        buffer.erase(pos, n);
        reference.erase(pos, n);
        break;
      }
      default: {
        size_t n = std::min<size_t>(rng() % 50, reference.size() - pos);
        const char16_t* run = buffer.contiguous(pos, n);
        ASSERT_EQ(std::u16string(run, n), reference.substr(pos, n));
      }
    }
    ASSERT_EQ(buffer.size(), reference.size());
    if (!reference.empty()) {
      ASSERT_EQ(buffer.at(pos % reference.size()), reference[pos % reference.size()]);
    }
  }
  EXPECT_EQ(Contents(buffer), reference);
}

TEST(HostText, RangesRunningPastTheEndAreClipped) {
  fmx::TextAutoPtr t, part;
  Set(t, u"abcdef");
  part->SetText(*t, 4, 100);
  EXPECT_EQ(Units(*part), u"ef");
  part->AppendText(*t, 10, 2);
  EXPECT_EQ(Units(*part), u"ef");
  t->DeleteText(3, 0xFFFFFFFF);
  EXPECT_EQ(Units(*t), u"abc");
  t->DeleteText(7, 1);
  EXPECT_EQ(Units(*t), u"abc");
  t->InsertText(*part, 99);
  EXPECT_EQ(Units(*t), u"abcef");
}

TEST(HostText, TakesRangesOfItself) {
  fmx::TextAutoPtr t;
  Set(t, u"abcdef");
  t->AppendText(*t, 1, 2);
  EXPECT_EQ(Units(*t), u"abcdefbc");
  t->InsertText(*t, 0);
  EXPECT_EQ(Units(*t), u"abcdefbcabcdefbc");
  t->SetText(*t, 2, 3);
  EXPECT_EQ(Units(*t), u"cde");
}

TEST(HostText, FindsExactlyForwardAndBackward) {
  fmx::TextAutoPtr t, needle, empty;
  Set(t, u"abcabcABC");
  Set(needle, u"bc");
  EXPECT_EQ(t->Find(*needle, 0), 1u);
  EXPECT_EQ(t->Find(*needle, 2), 4u);
  EXPECT_EQ(t->Find(*needle, 5), 0xFFFFFFFFu);
  EXPECT_EQ(t->Find(*needle, 400), 0xFFFFFFFFu);
  EXPECT_EQ(t->FindPrev(*needle, 3), 1u);
  EXPECT_EQ(t->FindPrev(*needle, 4), 4u);
  EXPECT_EQ(t->FindPrev(*needle, 0xFFFFFFFF), 4u);
  EXPECT_EQ(t->FindPrev(*needle, 0), 0xFFFFFFFFu);
  EXPECT_EQ(t->Find(*empty, 0), 0xFFFFFFFFu);
}

TEST(HostText, FindIgnoringCaseFoldsEachUnitAndKeepsPositions) {
  fmx::TextAutoPtr t, needle;
  // U+03A3 GREEK CAPITAL LETTER SIGMA and U+03C2 GREEK SMALL LETTER FINAL SIGMA fold alike.
  Set(t, u"xx\u00C9T\u03A3 abc");
  Set(needle, u"\u00E9t\u03C2");
  EXPECT_EQ(t->FindIgnoringCase(*needle, 0), 2u);
  EXPECT_EQ(t->Find(*needle, 0), 0xFFFFFFFFu);
  Set(needle, u"ABC");
  EXPECT_EQ(t->FindIgnoringCase(*needle, 3), 6u);
}

TEST(HostText, SetTextCarriesTheStyleAndAnEmptiedTextKeepsIt) {
  fmx::TextAutoPtr styled, plain;
  Set(styled, u"bold");
  memhost::SetStyle(*styled, 7);
  plain->SetText(*styled, 0, 1);
  EXPECT_EQ(memhost::StyleOf(*plain), 7u);
  plain->DeleteText(0, 1);
  EXPECT_EQ(memhost::StyleOf(*plain), 7u);
  fmx::TextAutoPtr fresh;
  EXPECT_EQ(memhost::StyleOf(*fresh), 0u);
}

TEST(HostText, GetBytesTruncatesAndAlwaysTerminates) {
  fmx::TextAutoPtr t;
  t->Assign("hello world", fmx::Text::kEncoding_ASCII_Mac);
  char buf[8];
  std::memset(buf, 'x', sizeof buf);
  t->GetBytes(buf, 5, 0, 0xFFFFFFFF, fmx::Text::kEncoding_ASCII_Mac);
  EXPECT_STREQ(buf, "hello");
  t->GetBytes(buf, 7, 6, 3, fmx::Text::kEncoding_UTF8);
  EXPECT_STREQ(buf, "wor");
  t->GetBytes(buf, 0, 0, 0xFFFFFFFF, fmx::Text::kEncoding_UTF8);
  EXPECT_STREQ(buf, "");
}

TEST(HostText, AssignWithLengthKeepsNulBytes) {
  fmx::TextAutoPtr t;
  t->AssignWithLength("a\0b", 3, fmx::Text::kEncoding_ISO_8859_1);
  EXPECT_EQ(Units(*t), std::u16string(u"a\0b", 3));
}

TEST(HostText, UnknownEncodingIsAHostFailure) {
  fmx::TextAutoPtr t;
  EXPECT_THROW(t->Assign("x", static_cast<fmx::Text::Encoding>(4200)), std::exception);
  char buf[4];
  EXPECT_THROW(t->GetBytes(buf, 3, 0, 0xFFFFFFFF, static_cast<fmx::Text::Encoding>(37)), std::exception);
}

TEST(HostText, ComparesUnitsOnly) {
  fmx::TextAutoPtr a, b;
  Set(a, u"same");
  Set(b, u"same");
  memhost::SetStyle(*b, 3);
  EXPECT_TRUE(*a == *b);
  Set(b, u"Same");
  EXPECT_FALSE(*a == *b);
}

}  // namespace
