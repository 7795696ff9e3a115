#include <gtest/gtest.h>

#include <clocale>
#include <string>

#include "StringTesting.h"
#include "foundation/LcUString.h"
#include "foundation/LcUStringPtr.h"

TEST(LcUString, NullAndEmptyAreDifferentStates) {
  LcUString s;
  EXPECT_TRUE(s.IsNull());
  EXPECT_EQ(0, s.Length());
  EXPECT_EQ(0, s.Capacity());

  s.Clear();  // A null string becomes empty with a minimum buffer.
  EXPECT_FALSE(s.IsNull());
  EXPECT_EQ(0, s.Length());
  EXPECT_EQ(2, s.Capacity());  // 4 bytes of UTF-16

  s.Assign(u"abc");
  s.Assign(nullptr, 0);
  EXPECT_TRUE(s.IsNull());
  EXPECT_EQ(0, s.Capacity());
}

TEST(LcUString, CapacityFollowsTheAllocatorRounding) {
  struct Case {
    int32_t reserve;
    int32_t narrowCapacity;
  };
  // Requests of n + 1 bytes: below 5 round to 4, then powers of two to 512,
  // then the medium top sizes, the exact size, the region and powers of two.
  const Case cases[] = {{0, 4},        {3, 4},        {4, 8},           {511, 512},       {512, 1016},
                        {1016, 2032},  {16255, 16256}, {16256, 32720},  {32720, 65536},   {65536, 131072}};
  for (const Case& c : cases) {
    LcUStringA s;
    EXPECT_EQ(c.narrowCapacity, s.Reserve(c.reserve)) << c.reserve;
    EXPECT_EQ(0, s.Length());
    EXPECT_EQ('\0', s.Get()[0]);
  }
}

TEST(LcUString, ReserveRules) {
  LcUString s(u"hello");
  int32_t cap = s.Capacity();
  EXPECT_EQ(0, s.Reserve(-1));  // negative with a buffer: nothing
  EXPECT_EQ(cap, s.Reserve(cap - 1));
  EXPECT_EQ(u"hello", Text(s));
  int32_t grown = s.Reserve(cap);
  EXPECT_GT(grown, cap);
  EXPECT_EQ(u"hello", Text(s));  // contents kept
}

TEST(LcUString, SetLengthRescansOrClamps) {
  LcUString s;
  s.SetLength(5);
  EXPECT_EQ(0, s.Length());  // null buffer

  s.Reserve(10);
  char16_t* b = s.GetBuffer();
  b[0] = 'x';
  b[1] = 'y';
  b[2] = 0;
  s.SetLength(-1);
  EXPECT_EQ(u"xy", Text(s));

  s.SetLength(1);
  EXPECT_EQ(u"x", Text(s));

  // No terminator anywhere: one is forced at the end of the capacity.
  for (int32_t i = 0; i < s.Capacity(); ++i) b[i] = 'z';
  s.SetLength(-1);
  EXPECT_LT(s.Length(), s.Capacity());
  EXPECT_EQ(0, b[s.Length()]);

  s.SetLength(100000);
  EXPECT_LT(s.Length(), s.Capacity());
}

TEST(LcUString, AssignReusesOrReplacesTheBuffer) {
  LcUString s(u"a longer text here");
  const char16_t* before = s.Get();
  s.Assign(u"short");
  EXPECT_EQ(before, s.Get());  // fits: the buffer is reused
  s.Assign(s.Get());           // own buffer: no-op
  EXPECT_EQ(u"short", Text(s));
  s.Assign(u"abcdef", 3);
  EXPECT_EQ(u"abc", Text(s));
  s.Assign(s.Get() + 1, 2);  // overlapping source
  EXPECT_EQ(u"bc", Text(s));
}

TEST(LcUString, AppendCopySwapAndCompare) {
  LcUString a(u"foo");
  a.Append(u"bar");
  a.Append(char16_t('!'));
  a.Append(a.Get(), 3);  // from its own buffer, across a reallocation
  EXPECT_EQ(u"foobar!foo", Text(a));

  LcUString b(a);
  EXPECT_TRUE(a == b);
  EXPECT_NE(a.Get(), b.Get());

  LcUString c(u"x");
  const char16_t* cb = c.Get();
  a.Swap(c);
  EXPECT_EQ(cb, a.Get());
  EXPECT_EQ(u"foobar!foo", Text(c));

  LcUString moved(std::move(c));
  EXPECT_TRUE(c.IsNull());
  EXPECT_EQ(10, moved.Length());
}

TEST(LcUString, IndexedStoreOfNulRecomputesLength) {
  LcUString s(u"abcdef");
  s.SetAt(3, 'X');
  EXPECT_EQ(u"abcXef", Text(s));
  s.SetAt(2, 0);
  EXPECT_EQ(2, s.Length());
  s.SetAt(-1, 'q');
  s.SetAt(1000, 'q');
  EXPECT_EQ(u"ab", Text(s));
}

TEST(LcUString, EqualityAndOrdering) {
  using W = LcUStringBase<char16_t>;
  const char16_t* n = nullptr;
  EXPECT_TRUE(W::Equal(n, n));
  EXPECT_FALSE(W::Equal(n, u""));
  EXPECT_FALSE(W::Equal(u"", n));
  EXPECT_TRUE(W::Equal(u"", u""));
  EXPECT_TRUE(W::Equal(u"abc", u"abc"));
  EXPECT_FALSE(W::Equal(u"abc", u"abd"));
  EXPECT_TRUE(W::Equal(u"abcX", u"abcY", 3));
  EXPECT_FALSE(W::Equal(u"abc", u"abd", 3));

  EXPECT_EQ(0, W::Compare(n, n));
  EXPECT_LT(W::Compare(n, u""), 0);
  EXPECT_GT(W::Compare(u"", n), 0);
  EXPECT_LT(W::Compare(u"abc", u"abd"), 0);
  EXPECT_GT(W::Compare(u"\xE9", u"z"), 0);  // units compare unsigned

  EXPECT_EQ(0, W::CompareNoCase(u"", u""));
  EXPECT_EQ(0, W::CompareNoCase(u"HeLLo", u"hello"));
  EXPECT_LT(W::CompareNoCase(n, u"a"), 0);
  EXPECT_LT(W::CompareNoCase(u"apple", u"BANANA"), 0);

  using A = LcUStringBase<char>;
  EXPECT_GT(A::Compare("\xE9", "z"), 0);  // bytes compare unsigned too
}

TEST(LcUString, PrefixSuffixAndSearch) {
  using W = LcUStringBase<char16_t>;
  EXPECT_TRUE(W::StartsWith(u"camera", u"cam"));
  EXPECT_FALSE(W::StartsWith(u"camera", u""));
  EXPECT_FALSE(W::StartsWith(u"", u""));
  EXPECT_FALSE(W::StartsWith(nullptr, u"a"));
  EXPECT_FALSE(W::StartsWith(u"ca", u"cam"));

  EXPECT_TRUE(W::EndsWith(u"part.gam", u".gam"));
  EXPECT_FALSE(W::EndsWith(u"part.gam", u".GAM"));  // case-sensitive
  EXPECT_FALSE(W::EndsWith(u"am", u".gam"));
  EXPECT_FALSE(W::EndsWith(u"x", u""));

  const char16_t* text = u"one two two";
  EXPECT_EQ(text + 4, W::FindSubstring(text, u"two"));
  EXPECT_EQ(nullptr, W::FindSubstring(text, u""));
  EXPECT_EQ(nullptr, W::FindSubstring(u"", u"a"));
  EXPECT_EQ(nullptr, W::FindSubstring(text, u"three"));

  LcUString s(text);
  EXPECT_EQ(8, s.Find(u"two", 5));
  EXPECT_EQ(-1, s.Find(u"one", 1));
  EXPECT_EQ(3, s.FindChar(' '));
}

TEST(LcUString, HashSignExtendsNarrowAndZeroExtendsWide) {
  EXPECT_EQ(0u, LcUStringBase<char>::Hash(nullptr));
  EXPECT_EQ(0u, LcUStringBase<char16_t>::Hash(u""));
  EXPECT_EQ(uint32_t(('a' * 5) + 'b'), LcUStringBase<char>::Hash("ab"));
  // 0xE9 as a byte is -23; as a unit it is 233.
  EXPECT_EQ(uint32_t(-23), LcUStringBase<char>::Hash("\xE9"));
  EXPECT_EQ(233u, LcUStringBase<char16_t>::Hash(u"\xE9"));
  EXPECT_EQ(uint32_t('a') * 5u - 23u, LcUStringBase<char>::Hash("a\xE9"));
}

TEST(LcUString, Substring) {
  struct Case {
    int32_t from, to;
    const char16_t* expected;
  };
  const Case cases[] = {{0, 3, u"abc"}, {2, 6, u"cdef"}, {3, 3, u""}, {-1, 2, u""}, {1, 7, u""}, {4, 2, u""}};
  LcUString source(u"abcdef");
  for (const Case& c : cases) {
    LcUString target(u"old");
    LcUString::Substring(source, c.from, c.to, target);
    EXPECT_FALSE(target.IsNull());
    EXPECT_EQ(c.expected, Text(target)) << c.from << ".." << c.to;
  }
  LcUString null, target(u"x");
  LcUString::Substring(null, 0, 1, target);
  EXPECT_TRUE(target.IsNull());

  LcUString same(u"0123456789");
  LcUString::Substring(same, 4, 8, same);  // moves down in place
  EXPECT_EQ(u"4567", Text(same));
}

TEST(LcUString, TrimVariants) {
  LcUString w(u" \t text \r\n");
  w.Trim();
  EXPECT_EQ(u"text", Text(w));
  LcUString t(u"  keep lead  ");
  t.TrimTrailing();
  EXPECT_EQ(u"  keep lead", Text(t));
  LcUString set(u"name;;,");
  set.TrimTrailing(u";,");
  EXPECT_EQ(u"name", Text(set));

  LcUStringA a("\x0b\x0c value \x1c");
  a.Trim(true);  // exactly 9..13 and 32
  EXPECT_EQ("value \x1c", Text(a));
}

TEST(LcUString, ReplaceNeverRescansReplacedText) {
  struct Case {
    const char16_t* text;
    const char16_t* from;
    const char16_t* to;
    int32_t start;
    bool all;
    int32_t result;
    const char16_t* expected;
  };
  const Case cases[] = {
      {u"a-b-c", u"-", u"+", 0, true, 1, u"a+b+c"},
      {u"a-b-c", u"-", u"+", 0, false, 1, u"a+b-c"},
      {u"a-b-c", u"-", u"+", 2, true, 1, u"a-b+c"},  // text before start kept
      {u"aaa", u"a", u"aa", 0, true, 1, u"aaaaaa"},   // no re-examination
      {u"a-b", u"-", u"", 0, true, 1, u"ab"},         // empty deletes
      {u"a-b", u"-", nullptr, 0, true, 1, u"ab"},
      {u"a-b", u"", u"x", 0, true, 0, u"a-b"},
      {u"a-b", u"x", u"y", 0, true, 0, u"a-b"},
      {u"a-b", u"-", u"y", 5, true, 0, u"a-b"},
      {u"a-b", u"-", u"y", -1, true, 0, u"a-b"},
      {u"a-b", u"-", u"y", 2, true, 0, u"a-b"},  // no hit at or after start
  };
  for (const Case& c : cases) {
    LcUString s(c.text);
    EXPECT_EQ(c.result, s.Replace(c.from, c.to, c.start, c.all)) << static_cast<int>(&c - cases);
    EXPECT_EQ(c.expected, Text(s)) << static_cast<int>(&c - cases);
  }
  LcUString r(u"0123456");
  EXPECT_EQ(1, r.ReplaceRange(2, 5, u"xy"));
  EXPECT_EQ(u"01xy56", Text(r));
  EXPECT_EQ(0, r.ReplaceRange(4, 2, u"z"));
}

TEST(LcUString, FilterControlKeepsTabsAndNewlines) {
  LcUString w;
  LcUString::FilterControl(u"a\x01\tb\nc\r\x1f\xE9", w);
  EXPECT_EQ(u"a\tb\nc\r\xE9", Text(w));
  // The narrow form compares signed and so also drops bytes of 128 and above.
  LcUStringA a;
  LcUStringA::FilterControl("caf\xC3\xA9\x02!", a);
  EXPECT_EQ("caf!", Text(a));
  LcUStringA::FilterControl(nullptr, a);
  EXPECT_TRUE(a.IsNull());
}

// The case tables are the locale's: the environment switches a process
// still in "C" to the user's locale, which for these tests is a UTF-8 one.
const std::initializer_list<const char*> kUserLocales = {"C.UTF-8", "en_US.UTF-8", ""};

// Wide case goes unit by unit through the whole UTF-16 range, not just ASCII.
TEST(LcUString, CaseConversionBeyondAscii) {
  ScopedLocale locale(LC_CTYPE, kUserLocales);
  if (!locale.active) GTEST_SKIP() << "no locale with case tables beyond ASCII";
  struct Case {
    const char16_t *mixed, *upper, *lower;
  } cases[] = {
      {u"Mixed Case 123", u"MIXED CASE 123", u"mixed case 123"},
      // Latin-1: the letters pair up, the signs between them do not.
      {u"\u00e0\u00e9\u00ee\u00f5\u00fe \u00c0\u00c9\u00ce\u00d5\u00de", u"\u00c0\u00c9\u00ce\u00d5\u00de \u00c0\u00c9\u00ce\u00d5\u00de",
       u"\u00e0\u00e9\u00ee\u00f5\u00fe \u00e0\u00e9\u00ee\u00f5\u00fe"},
      {u"\u00d7\u00f7\u00aa\u00ba", u"\u00d7\u00f7\u00aa\u00ba", u"\u00d7\u00f7\u00aa\u00ba"},
      // Sharp s has no one-unit capital and stays; y with diaeresis leaves Latin-1.
      {u"stra\u00dfe", u"STRA\u00dfE", u"stra\u00dfe"},
      {u"\u00ff", u"\u0178", u"\u00ff"},
      // Greek: capital sigma lowers to the plain one wherever it stands, since
      // each unit is mapped alone.
      {u"\u0391\u03b2\u03b3\u03a9\u03c3\u03a3", u"\u0391\u0392\u0393\u03a9\u03a3\u03a3", u"\u03b1\u03b2\u03b3\u03c9\u03c3\u03c3"},
      // Cyrillic, with the letters outside the main block.
      {u"\u041c\u043e\u0441\u043a\u0432\u0430 \u0451\u0401\u0456", u"\u041c\u041e\u0421\u041a\u0412\u0410 \u0401\u0401\u0406",
       u"\u043c\u043e\u0441\u043a\u0432\u0430 \u0451\u0451\u0456"},
      // No case: digits, CJK, and the halves of a surrogate pair.
      {u"7\u4e2d\u6587\U0001F600", u"7\u4e2d\u6587\U0001F600", u"7\u4e2d\u6587\U0001F600"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::u16string(c.mixed).size());
    LcUString upper(c.mixed), lower(c.mixed);
    upper.ToUpper();
    EXPECT_EQ(c.upper, Text(upper));
    lower.ToLower();
    EXPECT_EQ(c.lower, Text(lower));
  }
  // Final sigma is already lower case. Its capital differs between runtimes,
  // so only the lowering is pinned.
  LcUString finalSigma(u"\u03c2");
  finalSigma.ToLower();
  EXPECT_EQ(u"\u03c2", Text(finalSigma));
  // The comparison without case folds each unit the same way.
  EXPECT_EQ(LcUString::CompareNoCase(u"\u00c0\u00e9 \u041c\u043e", u"\u00e0\u00c9 \u043c\u041e"), 0);
  EXPECT_NE(LcUString::CompareNoCase(u"\u03c2", u"\u03a3"), 0);
  EXPECT_LT(LcUString::CompareNoCase(u"\u00e9a", u"\u00c9B"), 0);
}

// A narrow text in UTF-8 keeps its multibyte sequences whole. Where the
// narrow code page is a single-byte one, those bytes are letters of it.
#ifndef _WIN32
TEST(LcUString, NarrowCaseLeavesUtf8SequencesWhole) {
  ScopedLocale locale(LC_CTYPE, kUserLocales);
  LcUStringA s("caf\xc3\xa9 \xce\xa3x");
  s.ToUpper();
  EXPECT_EQ("CAF\xc3\xa9 \xce\xa3X", Text(s));
  s.ToLower();
  EXPECT_EQ("caf\xc3\xa9 \xce\xa3x", Text(s));
}
#endif

TEST(LcUStringPtr, CompactFormsCopyAndClear) {
  LcUStringPtr p(u"text");
  EXPECT_EQ(sizeof(void*), sizeof(p));
  LcUStringPtr q(p);
  EXPECT_NE(p.Get(), q.Get());
  EXPECT_EQ(4, q.Length());
  q.ClearPtr();
  EXPECT_FALSE(q.IsNull());
  EXPECT_EQ(0, q.Length());
  q.Assign(nullptr);
  EXPECT_TRUE(q.IsNull());

  LcUStringPtrA a("narrow");
  a = "other";
  EXPECT_STREQ("other", a.Get());
  a.Assign("abcdef", 2);
  EXPECT_STREQ("ab", a.Get());
}
