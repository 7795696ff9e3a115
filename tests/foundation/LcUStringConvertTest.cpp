#include <gtest/gtest.h>

#include <string>

#include "StringTesting.h"
#include "foundation/LcUString.h"
#include "foundation/LcUSysCodePage.h"

TEST(LcUStringConvert, NullFreesAndEmptyGivesEmpty) {
  LcUString w(u"old");
  LcUStringA a("old");
  EXPECT_TRUE(LcUString::AsciiToWide(nullptr, w));
  EXPECT_TRUE(w.IsNull());
  EXPECT_TRUE(LcUString::WideToMultiByte(nullptr, a));
  EXPECT_TRUE(a.IsNull());
  EXPECT_TRUE(LcUString::UTF8ToUTF16(nullptr, -1, w));
  EXPECT_TRUE(LcUString::UTF16ToUTF8(nullptr, a, true));

  EXPECT_TRUE(LcUString::AsciiToWide("", w));
  EXPECT_EQ(u"", Text(w));
  EXPECT_TRUE(LcUString::MultiByteToWide("", w));
  EXPECT_EQ(u"", Text(w));
  EXPECT_TRUE(LcUString::WideToMultiByte(u"", a));
  EXPECT_EQ("", Text(a));
  EXPECT_TRUE(LcUString::WideToAscii(u"", a));
  EXPECT_EQ("", Text(a));
  EXPECT_TRUE(LcUString::UTF8ToUTF16("", -1, w));
  EXPECT_EQ(u"", Text(w));
  EXPECT_TRUE(LcUString::UTF16ToUTF8(u"", a, false));
  EXPECT_EQ("", Text(a));
}

TEST(LcUStringConvert, FailureTextLandsInTheTarget) {
  LcUString w;
  LcUStringA a;
  EXPECT_FALSE(LcUString::AsciiToWide("caf\xC3\xA9", w));
  EXPECT_EQ(u"ASCIITOWCS INTERNAL FAILURE!", Text(w));
  EXPECT_TRUE(LcUString::AsciiToWide("plain", w));
  EXPECT_EQ(u"plain", Text(w));

  EXPECT_FALSE(LcUString::WideToAscii(u"caf\xE9", a));
  EXPECT_EQ("NOT AN ASCII STRING", Text(a));

  EXPECT_FALSE(LcUString::MultiByteToWide("bad \xC3\x28", w, LcUSysCodePage::kUTF8));
  EXPECT_EQ(u"MBSTOWCS CONVERSION FAILED!", Text(w));
  EXPECT_TRUE(LcUString::MultiByteToWide("caf\xC3\xA9", w, LcUSysCodePage::kUTF8));
  EXPECT_EQ(u"caf\xE9", Text(w));
}

TEST(LcUStringConvert, MultiByteRoundTripThroughTheProcessCodePage) {
  LcUStringA a;
  LcUString w;
  EXPECT_TRUE(LcUString::WideToMultiByte(u"Gearloft caf\xE9", a));
  EXPECT_TRUE(LcUString::MultiByteToWide(a.Get(), w));
  EXPECT_EQ(u"Gearloft caf\xE9", Text(w));
}

TEST(LcUStringConvert, UTF8DecoderReplacementRules) {
  struct Case {
    const char* name;
    std::string bytes;
    std::u16string expected;
    bool ok;
  };
  const Case cases[] = {
      {"ascii", "abc", u"abc", true},
      {"two byte", "\xC3\xA9", u"\xE9", true},
      {"three byte", "\xE2\x82\xAC", u"\x20AC", true},
      {"four byte", "\xF0\x9F\x98\x80", u"\xD83D\xDE00", true},
      {"truncated at end", "\xE2\x82", u"\xFFFD\xFFFD", false},
      {"overlong nul", "\xC0\x80", u"\xFFFD", false},
      {"overlong three", "\xE0\x80\xAF", u"\xFFFD", false},
      {"above max", "\xF4\x90\x80\x80", u"\xFFFD", false},
      {"U+FFFE", "\xEF\xBF\xBE", u"\xFFFD", false},
      {"U+FFFF", "\xEF\xBF\xBF", u"\xFFFD", false},
      {"surrogate kept", "\xED\xA0\x80", u"\xD800", true},
      {"lone continuation", "a\x80" "b", u"a\xFFFD" "b", false},
      {"bad lead", "\xF8\x88\x80\x80\x80", u"\xFFFD\xFFFD\xFFFD\xFFFD\xFFFD", false},
      {"offending byte swallowed", "\xE2" "AB" "c", u"\xFFFD" "Bc", false},
      {"second continuation bad", "\xE2\x82" "Ac", u"\xFFFD" "c", false},
      {"lead at end", "ab\xC3", u"ab\xFFFD", false},
  };
  for (const Case& c : cases) {
    LcUString w;
    EXPECT_EQ(c.ok, LcUString::UTF8ToUTF16(c.bytes.c_str(), int32_t(c.bytes.size()), w)) << c.name;
    EXPECT_EQ(c.expected, Text(w)) << c.name;
    EXPECT_EQ(c.ok, LcUString::IsValidUTF8(c.bytes.c_str())) << c.name;
  }
}

TEST(LcUStringConvert, UTF8LengthAndNulEndTheScan) {
  LcUString w;
  EXPECT_TRUE(LcUString::UTF8ToUTF16("abcdef", 3, w));
  EXPECT_EQ(u"abc", Text(w));
  const char withNul[] = {'a', 'b', 0, 'c', 'd'};
  EXPECT_TRUE(LcUString::UTF8ToUTF16(withNul, 5, w));
  EXPECT_EQ(u"ab", Text(w));
  // A sequence cut short by the given length.
  EXPECT_FALSE(LcUString::UTF8ToUTF16("\xC3\xA9", 1, w));
  EXPECT_EQ(u"\xFFFD", Text(w));
  // Long ASCII stretches around non-ASCII take the fast path and the slow one.
  std::string mixed = std::string(40, 'x') + "\xC3\xA9" + std::string(33, 'y');
  EXPECT_TRUE(LcUString::UTF8ToUTF16(mixed.c_str(), -1, w));
  EXPECT_EQ(std::u16string(40, u'x') + u"\xE9" + std::u16string(33, u'y'), Text(w));
}

TEST(LcUStringConvert, UTF16ToUTF8SurrogateModes) {
  struct Case {
    std::u16string units;
    bool combine;
    std::string expected;
  };
  const Case cases[] = {
      {u"a\x7F", false, "a\x7F"},
      {u"\x80\x7FF", false, "\xC2\x80\xDF\xBF"},
      {u"\x800\xFFFF", false, "\xE0\xA0\x80\xEF\xBF\xBF"},
      {u"\xD83D\xDE00", true, "\xF0\x9F\x98\x80"},
      {u"\xD83D\xDE00", false, "\xED\xA0\xBD\xED\xB8\x80"},  // each unit on its own
      {u"\xDE00\xD83D", true, "\xED\xB8\x80\xED\xA0\xBD"},   // wrong order: not a pair
      {u"x\xD800", true, "x\xED\xA0\x80"},                    // unpaired at the end
  };
  for (const Case& c : cases) {
    LcUStringA a;
    EXPECT_TRUE(LcUString::UTF16ToUTF8(c.units.c_str(), a, c.combine));
    EXPECT_EQ(c.expected, Text(a));
  }
  std::u16string longText = std::u16string(37, u'a') + u"\x4E2D" + std::u16string(20, u'b');
  LcUStringA a;
  LcUString::UTF16ToUTF8(longText.c_str(), a, true);
  EXPECT_EQ(std::string(37, 'a') + "\xE4\xB8\xAD" + std::string(20, 'b'), Text(a));
}

TEST(LcUStringConvert, InvalidInputOfEveryShortLengthNeverBreaks) {
  // Every one- and two-byte sequence, with and without the terminator in view.
  for (int first = 1; first < 256; ++first) {
    for (int second = 0; second < 256; second += 7) {
      char bytes[3] = {char(first), char(second), 0};
      LcUString w;
      bool ok = LcUString::UTF8ToUTF16(bytes, -1, w);
      EXPECT_EQ(ok, LcUString::IsValidUTF8(bytes));
      EXPECT_LE(w.Length(), 2);
      LcUString::UTF8ToUTF16(bytes, 1, w);
      EXPECT_EQ(1, w.Length());
    }
  }
}

// The code points at every boundary of both encodings, each way.
TEST(LcUStringConvert, BoundaryCodePointsBothWays) {
  struct Case {
    std::u16string units;
    std::string bytes;
  };
  const Case cases[] = {
      {u"\x7F", "\x7F"},
      {u"\x80", "\xC2\x80"},
      {u"\x7FF", "\xDF\xBF"},
      {u"\x800", "\xE0\xA0\x80"},
      {u"\xD7FF", "\xED\x9F\xBF"},
      {u"\xE000", "\xEE\x80\x80"},
      {u"\xFFFD", "\xEF\xBF\xBD"},
      {u"\xD800\xDC00", "\xF0\x90\x80\x80"},   // U+10000
      {u"\xD800\xDFFF", "\xF0\x90\x8F\xBF"},   // U+103FF
      {u"\xDBFF\xDC00", "\xF4\x8F\xB0\x80"},   // U+10FC00
      {u"\xDBFF\xDFFF", "\xF4\x8F\xBF\xBF"},   // U+10FFFF
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(testing::PrintToString(c.bytes));
    LcUStringA a;
    EXPECT_TRUE(LcUString::UTF16ToUTF8(c.units.c_str(), a, true));
    EXPECT_EQ(c.bytes, Text(a));
    LcUString w;
    EXPECT_TRUE(LcUString::UTF8ToUTF16(c.bytes.c_str(), -1, w));
    EXPECT_EQ(c.units, Text(w));
  }
  // Encoded surrogates decode as they are; each stands alone in encoding.
  const Case alone[] = {
      {u"\xD800", "\xED\xA0\x80"},
      {u"\xDBFF", "\xED\xAF\xBF"},
      {u"\xDC00", "\xED\xB0\x80"},
      {u"\xDFFF", "\xED\xBF\xBF"},
      {u"\xDBFF\xE000", "\xED\xAF\xBF\xEE\x80\x80"},
      {u"\xD7FF\xDC00", "\xED\x9F\xBF\xED\xB0\x80"},
      {u"\xFFFF", "\xEF\xBF\xBF"},
  };
  for (const Case& c : alone) {
    SCOPED_TRACE(testing::PrintToString(c.bytes));
    LcUStringA a;
    EXPECT_TRUE(LcUString::UTF16ToUTF8(c.units.c_str(), a, true));
    EXPECT_EQ(c.bytes, Text(a));
  }
  for (const char* bytes : {"\xED\xA0\x80", "\xED\xAF\xBF", "\xED\xB0\x80", "\xED\xBF\xBF"}) {
    LcUString w;
    EXPECT_TRUE(LcUString::UTF8ToUTF16(bytes, -1, w));
    EXPECT_EQ(1, w.Length());
  }
  // Refused when decoding: U+FFFE, U+FFFF, beyond U+10FFFF, and overlong
  // forms of the largest value below each boundary.
  for (const char* bytes : {"\xEF\xBF\xBE", "\xEF\xBF\xBF", "\xF4\x90\x80\x80", "\xC1\xBF", "\xE0\x9F\xBF",
                            "\xF0\x8F\xBF\xBF"}) {
    SCOPED_TRACE(testing::PrintToString(std::string(bytes)));
    LcUString w;
    EXPECT_FALSE(LcUString::UTF8ToUTF16(bytes, -1, w));
    EXPECT_EQ(u"\xFFFD", Text(w));
  }
}

// Each conversion's measuring failure is its own text.
TEST(LcUStringConvert, EveryFailureTextOfTheTable) {
  LcUString w;
  LcUStringA a;
  // Only UTF-8 refuses a lone surrogate; other code pages write a '?'.
  if (LcUSysCodePage::GetACP() == LcUSysCodePage::kUTF8) {
    EXPECT_FALSE(LcUString::WideToMultiByte(u"lone \xD800", a));
    EXPECT_EQ("WCSTOMBS CONVERSION FAILED!", Text(a));
  }
  EXPECT_FALSE(LcUString::MultiByteToWide("\xFF", w, LcUSysCodePage::kUTF8));
  EXPECT_EQ(u"MBSTOWCS CONVERSION FAILED!", Text(w));
  EXPECT_FALSE(LcUString::AsciiToWide("\x80", w));
  EXPECT_EQ(u"ASCIITOWCS INTERNAL FAILURE!", Text(w));
  EXPECT_FALSE(LcUString::WideToAscii(u"\x80", a));
  EXPECT_EQ("NOT AN ASCII STRING", Text(a));
}
