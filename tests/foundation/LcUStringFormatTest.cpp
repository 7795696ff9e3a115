#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <string>

#include "StringTesting.h"
#include "foundation/LcUString.h"

// Locales with a decimal comma, where one is installed.
const std::initializer_list<const char*> kCommaLocales = {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8",
                                                          "German_Germany.1252", "de-DE"};

TEST(LcUStringFormat, NarrowAndWideConversions) {
  LcUStringA a;
  EXPECT_TRUE(a.Format("%d|%5s|%-4u|%03x|%.2f|%c|%%|%lld", -7, "ab", 9u, 10, 1.005, 'z', -1234567890123LL));
  EXPECT_EQ("-7|   ab|9   |00a|1.00|z|%|-1234567890123", Text(a));

  LcUString w;
  EXPECT_TRUE(w.Format(u"%s and %ls and %hs and %S", u"wide", u"also", "narrow", "other"));
  EXPECT_EQ(u"wide and also and narrow and other", Text(w));

  a.Format("%s/%ls/%.2ls", "n", u"w\xE9", u"xyz");
  EXPECT_EQ("n/w\xC3\xA9/xy", Text(a));  // wide text enters narrow text as UTF-8

  w.Format(u"%hs|%*d|%-*d|%.*s", "caf\xC3\xA9", 4, 7, 3, 1, 2, u"abc");
  EXPECT_EQ(u"caf\xE9|   7|1  |ab", Text(w));

  w.Format(u"%I64d %zu %hhd %hd", -5LL, size_t(12), 300, 70000);
  EXPECT_EQ(u"-5 12 44 4464", Text(w));

  a.Format("%ls", static_cast<const char16_t*>(nullptr));
  EXPECT_EQ("(null)", Text(a));
  a.Format("tail %");
  EXPECT_EQ("tail %", Text(a));
}

TEST(LcUStringFormat, NullFormatFreesTheString) {
  LcUString w(u"x");
  EXPECT_FALSE(w.Format(static_cast<const char16_t*>(nullptr)));
  EXPECT_TRUE(w.IsNull());
}

TEST(LcUStringFormat, GrowsByDoublingUntilTheTextFits) {
  std::string big(5000, 'q');
  LcUStringA a;
  a.Format("<%s>", big.c_str());
  EXPECT_EQ(5002, a.Length());
  EXPECT_EQ(8128, a.Capacity());
  LcUString w;
  w.Format(u"%hs", big.c_str());
  EXPECT_EQ(5000, w.Length());
  EXPECT_EQ(big, std::string(big.size(), char(w[4999])));
}

TEST(LcUStringFormat, StopsTruncatedPastTheGrowthLimit) {
  // Once the capacity has passed 0x6400000 units (at 2^27) the loop gives up
  // and keeps what fits.
  const size_t units = (size_t(1) << 27) + 1000;
  std::string big(units, 'k');
  LcUStringA a;
  EXPECT_TRUE(a.Format("%s", big.c_str()));
  EXPECT_GT(a.Capacity(), 0x6400000);
  EXPECT_EQ(a.Capacity() - 1, a.Length());
  EXPECT_LT(size_t(a.Length()), units);
}

TEST(LcUStringFormat, FormatFixed) {
  struct Case {
    double value;
    int decimals;
    bool adaptive;
    const char* expected;
  };
  const Case cases[] = {
      {0.000012345, 2, true, "0.000012"},  // two significant places past the zeros
      {0.0, 2, true, "0.00"},
      {0.5, 2, true, "0.50"},  // large enough: plain decimals
      {0.001, 2, true, "0.001"},  // trailing zeros stripped
      {-0.000042, 3, true, "-0.000042"},
      {-0.00042, 3, true, "-0.000"},  // not below 0.1 to the power decimals + 1
      {0.000012345, 2, false, "0.00"},
      {1e-15, 2, true, "0.00"},  // at or below 1e-14 stays plain
      {3.14159, 0, true, "3"},
  };
  for (const Case& c : cases) {
    LcUStringA a;
    a.FormatFixed(c.value, c.decimals, c.adaptive);
    EXPECT_EQ(c.expected, Text(a)) << c.value << " " << c.decimals;
  }
  LcUString w;
  w.FormatFixed(0.000012345, 2, true);
  EXPECT_EQ(u"0.000012", Text(w));
}

TEST(LcUStringFormat, FormatFloatCUsesAFullStopOnEveryLocale) {
  ScopedLocale comma(LC_NUMERIC, kCommaLocales);
  LcUStringA a;
  a.FormatFloatC(2.5, 3, 8);
  EXPECT_EQ("   2.500", Text(a));
  LcUString w;
  w.FormatFloatC(-0.25, 1, 0);
  EXPECT_EQ(u"-0.2", Text(w).substr(0, 4));
  if (comma.active) {
    a.Format("%.1f", 2.5);
    EXPECT_EQ("2,5", Text(a));  // the locale itself is back
  }
}

TEST(LcUStringNumbers, ToInt) {
  struct Case {
    const char* text;
    bool narrowOk;
    bool wideOk;
    int32_t value;
  };
  const Case cases[] = {
      {"42", true, true, 42},      {"  -17 ", true, true, -17}, {"0", true, true, 0},
      {"-0", true, false, 0},      {"+0", true, false, 0},      {"12abc", false, false, 0},
      {"", false, false, 0},       {"   ", false, false, 0},    {"abc", false, false, 0},
      {"00", true, true, 0},       {"99999999999", true, true, INT32_MAX},
  };
  for (const Case& c : cases) {
    int32_t narrow = -99, wide = -99;
    EXPECT_EQ(c.narrowOk, LcUStringA::ToInt(c.text, narrow)) << c.text;
    LcUString w;
    LcUString::AsciiToWide(c.text, w);
    EXPECT_EQ(c.wideOk, LcUString::ToInt(w.Get(), wide)) << c.text;
    if (c.narrowOk) {
      EXPECT_EQ(c.value, narrow) << c.text;
    }
    if (c.wideOk) {
      EXPECT_EQ(c.value, wide) << c.text;
    }
  }
  int32_t v = 0;
  EXPECT_FALSE(LcUString::ToInt(nullptr, v));
  EXPECT_FALSE(LcUString::ToInt(u"1\xE9", v));
}

TEST(LcUStringNumbers, ToDoubleAndToDoubleC) {
  double d = 0;
  EXPECT_TRUE(LcUString::ToDouble(u" 2.5 ", d));
  EXPECT_DOUBLE_EQ(2.5, d);
  EXPECT_FALSE(LcUString::ToDouble(u"2.5x", d));
  EXPECT_FALSE(LcUStringA::ToDouble("", d));
  EXPECT_TRUE(LcUStringA::ToDouble("-1e3", d));
  EXPECT_DOUBLE_EQ(-1000, d);

  // ToDoubleC reads with a full stop and accepts trailing garbage.
  ScopedLocale comma(LC_NUMERIC, kCommaLocales);
  EXPECT_TRUE(LcUString::ToDoubleC(u"1.75mm", d));
  EXPECT_DOUBLE_EQ(1.75, d);
  EXPECT_TRUE(LcUStringA::ToDoubleC("  3.5", d));
  EXPECT_DOUBLE_EQ(3.5, d);
  EXPECT_FALSE(LcUStringA::ToDoubleC("x", d));
  if (comma.active) {
    EXPECT_TRUE(LcUStringA::ToDouble("1,5", d));  // ToDouble follows the locale
    EXPECT_DOUBLE_EQ(1.5, d);
  }
}
