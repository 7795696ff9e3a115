#include <gtest/gtest.h>

#include <string>

#include "filestream/LcUURL.h"

namespace {
// Null stands for an absent field, which must differ from an empty one.
void ExpectField(const char* name, const LcUString& actual, const char16_t* expected) {
  SCOPED_TRACE(name);
  if (!expected) {
    EXPECT_TRUE(actual.IsNull());
    return;
  }
  ASSERT_FALSE(actual.IsNull());
  EXPECT_EQ(std::u16string(expected), std::u16string(actual.Get(), size_t(actual.Length())));
}

std::u16string Str(const LcUString& s) {
  return s.IsNull() ? std::u16string(u"<null>") : std::u16string(s.Get(), size_t(s.Length()));
}

struct ParseCase {
  const char16_t* text;
  bool valid;
  const char16_t *scheme, *host, *user, *password;
  int32_t port;
  const char16_t *path, *params, *query, *fragment;
};

const ParseCase kParseCases[] = {
    {u"http://user:pw@h:8080/p;x?y#z", true, u"http", u"h", u"user", u"pw", 8080, u"/p", u";x", u"?y", u"#z"},
    {u"http://h/p", true, u"http", u"h", nullptr, nullptr, 80, u"/p", nullptr, nullptr, nullptr},
    {u"http://h", true, u"http", u"h", nullptr, nullptr, 80, nullptr, nullptr, nullptr, nullptr},
    {u"file:///c:/a", true, u"file", u"", nullptr, nullptr, 0, u"/c:/a", nullptr, nullptr, nullptr},
    {u"http://h:0/p", true, u"http", u"h", nullptr, nullptr, 80, u"/p", nullptr, nullptr, nullptr},
    {u"http://h:-3/p", true, u"http", u"h", nullptr, nullptr, 80, u"/p", nullptr, nullptr, nullptr},
    {u"https://h:x/p", true, u"https", u"h", nullptr, nullptr, 443, u"/p", nullptr, nullptr, nullptr},
    {u"ftp://u@h/", true, u"ftp", u"h", u"u", nullptr, 21, u"/", nullptr, nullptr, nullptr},
    {u"ssh://:@h", true, u"ssh", u"h", u"", u"", 22, nullptr, nullptr, nullptr, nullptr},
    {u"TELNET://a:b@c@d:9", true, u"TELNET", u"c@d", u"a", u"b", 9, nullptr, nullptr, nullptr, nullptr},
    {u"telnet://h:99999999999", true, u"telnet", u"h", nullptr, nullptr, 2147483647, nullptr, nullptr, nullptr,
     nullptr},
    {u"c://x/y", true, u"c", u"x", nullptr, nullptr, 0, u"/y", nullptr, nullptr, nullptr},
    {u"C:\\dir\\file", true, nullptr, nullptr, nullptr, nullptr, 0, u"C:\\dir\\file", nullptr, nullptr, nullptr},
    {u"mailto:x", true, nullptr, nullptr, nullptr, nullptr, 0, u"mailto:x", nullptr, nullptr, nullptr},
    {u"abc:def", true, nullptr, nullptr, nullptr, nullptr, 0, u"abc:def", nullptr, nullptr, nullptr},
    {u"http:/x", true, nullptr, nullptr, nullptr, nullptr, 0, u"http:/x", nullptr, nullptr, nullptr},
    {u"a b://x", true, nullptr, nullptr, nullptr, nullptr, 0, u"a b://x", nullptr, nullptr, nullptr},
    {u"http://", true, u"http", nullptr, nullptr, nullptr, 0, u"//", nullptr, nullptr, nullptr},
    {u"//h/x", true, nullptr, u"h", nullptr, nullptr, 0, u"/x", nullptr, nullptr, nullptr},
    {u"/p?q;r", true, nullptr, nullptr, nullptr, nullptr, 0, u"/p", nullptr, u"?q;r", nullptr},
    {u"/p;r?q#f?g", true, nullptr, nullptr, nullptr, nullptr, 0, u"/p", u";r", u"?q", u"#f?g"},
    {u"#only", true, nullptr, nullptr, nullptr, nullptr, 0, u"", nullptr, nullptr, u"#only"},
    {u"", true, nullptr, nullptr, nullptr, nullptr, 0, u"", nullptr, nullptr, nullptr},
    {u":x", false, nullptr, nullptr, nullptr, nullptr, 0, nullptr, nullptr, nullptr, nullptr},
    {u"://h/p", false, nullptr, nullptr, nullptr, nullptr, 0, nullptr, nullptr, nullptr, nullptr},
};
}  // namespace

TEST(LcUURLTest, ParsesEveryFieldNullOrEmpty) {
  for (const ParseCase& c : kParseCases) {
    SCOPED_TRACE(std::string(c.text, c.text + std::u16string(c.text).size()));
    LcUURLParts parts;
    ASSERT_EQ(c.valid, LcUURL::Parse(c.text, parts));
    if (!c.valid) continue;
    ExpectField("scheme", parts.scheme, c.scheme);
    ExpectField("host", parts.host, c.host);
    ExpectField("user", parts.user, c.user);
    ExpectField("password", parts.password, c.password);
    EXPECT_EQ(c.port, parts.port);
    ExpectField("path", parts.path, c.path);
    ExpectField("params", parts.params, c.params);
    ExpectField("query", parts.query, c.query);
    ExpectField("fragment", parts.fragment, c.fragment);
  }
}

TEST(LcUURLTest, NullAndOverlongTextsAreInvalid) {
  LcUURLParts parts;
  EXPECT_FALSE(LcUURL::Parse(nullptr, parts));
  std::u16string text(8191, u'a');
  EXPECT_TRUE(LcUURL::Parse(text.c_str(), parts));
  EXPECT_EQ(8191, parts.path.Length());
  text += u'a';
  EXPECT_FALSE(LcUURL::Parse(text.c_str(), parts));
  EXPECT_FALSE(LcUURL(text.c_str(), false).IsValid());
}

TEST(LcUURLTest, KeepsTextPartsAndRequestPath) {
  LcUURL url(u"http://user:pw@h:8080/p;x?y#z", false);
  ASSERT_TRUE(url.IsValid());
  EXPECT_EQ(u"http://user:pw@h:8080/p;x?y#z", Str(url.GetText()));
  EXPECT_EQ(u"/p;x?y#z", Str(url.GetRequestPath()));
  EXPECT_EQ(u"h", Str(url.GetParts().host));
  EXPECT_EQ(u"/q", Str(LcUURL(u"ftp://h/q", false).GetRequestPath()));
}

TEST(LcUURLTest, ComposesPortsOnlyWhereTheyDifferFromTheDefault) {
  const struct {
    const char16_t* text;
    const char16_t* composed;
  } cases[] = {
      {u"http://h:80/p", u"http://h/p"},
      {u"http://h:8080/p", u"http://h:8080/p"},
      {u"HTTPS://h:443", u"HTTPS://h"},
      {u"c://x:5/y", u"c://x:5/y"},
      {u"//h:5/x", u"//h/x"},
      {u"ftp://u@h/", u"ftp://u@h/"},
      {u"ssh://:@h", u"ssh://:@h"},
      {u"http://user:pw@h:8080/p;x?y#z", u"http://user:pw@h:8080/p;x?y#z"},
      {u"file:///c:/a", u"file:///c:/a"},
      {u"/p;r?q#f", u"/p;r?q#f"},
  };
  for (const auto& c : cases) {
    LcUURLParts parts;
    ASSERT_TRUE(LcUURL::Parse(c.text, parts));
    LcUString out;
    LcUURL::Compose(parts, out);
    EXPECT_EQ(std::u16string(c.composed), Str(out));
  }
}

TEST(LcUURLTest, DefaultPortsIgnoreCase) {
  EXPECT_EQ(21, LcUURL::GetDefaultPort(u"FTP"));
  EXPECT_EQ(22, LcUURL::GetDefaultPort(u"ssh"));
  EXPECT_EQ(23, LcUURL::GetDefaultPort(u"Telnet"));
  EXPECT_EQ(80, LcUURL::GetDefaultPort(u"http"));
  EXPECT_EQ(443, LcUURL::GetDefaultPort(u"hTTps"));
  EXPECT_EQ(0, LcUURL::GetDefaultPort(u"file"));
  EXPECT_EQ(0, LcUURL::GetDefaultPort(nullptr));
}

TEST(LcUURLTest, PercentTableIsExactlyElevenCharacters) {
  LcUString out;
  LcUURL::Encode(u" \"<>{}|^[]`%#a\\", out);
  EXPECT_EQ(u"%20%22%3C%3E%7B%7D%7C%5E%5B%5D%60%#a\\", Str(out));
  LcUString back;
  LcUURL::Decode(out.Get(), false, back);
  EXPECT_EQ(u" \"<>{}|^[]`%#a\\", Str(back));
  LcUURL::Decode(u"%5b%5B%25%41a\\b", false, out);
  EXPECT_EQ(u"%5b[%25%41a\\b", Str(out));
  LcUURL::Decode(u"a\\b%5C", true, out);
  EXPECT_EQ(u"a/b%5C", Str(out));
  LcUURL::Encode(u"http://h/a b", out);
  EXPECT_EQ(u"http://h/a%20b", Str(out));
}

TEST(LcUURLTest, NormalisesLocalPathsAndCaseOfSchemeAndHostOnly) {
  const struct {
    const char16_t* text;
    const char16_t* normalised;
  } cases[] = {
      {u"http://h/a b", u"http://h/a b"},
      {u"http://h/a%20b", u"http://h/a b"},
      {u"c:\\a\\b.txt", u"file:///c:/a/b.txt"},
      {u"C:\\A\\B.txt", u"file:///C:/A/B.txt"},
      {u"C:/A%5BB%5d", u"file:///C:/A[B%5d"},
      {u"/tmp/x y", u"file:///tmp/x y"},
      {u"HTTP://Host.COM:80/A/B?Q#F", u"http://host.com/A/B?Q#F"},
      {u"http://h/a\\b", u"http://h/a/b"},
      {u"mailto:X", u"mailto:X"},
      {u"relative/Path", u"relative/Path"},
      {u"FILE:///X", u"file:///X"},
  };
  for (const auto& c : cases) {
    LcUURL url(c.text, true);
    EXPECT_TRUE(url.IsValid());
    EXPECT_EQ(std::u16string(c.normalised), Str(url.GetText()));
    // Normalising again changes nothing.
    EXPECT_TRUE(url.Normalise());
    EXPECT_EQ(std::u16string(c.normalised), Str(url.GetText()));
  }
  EXPECT_FALSE(LcUURL(u":x", true).IsValid());
  // The "file:///" in front can push a long path past the limit.
  std::u16string path = u"/" + std::u16string(8189, u'a');
  EXPECT_TRUE(LcUURL(path.c_str(), false).IsValid());
  EXPECT_FALSE(LcUURL(path.c_str(), true).IsValid());
}

TEST(LcUURLTest, LocalPathsAndPlainTexts) {
  const struct {
    const char16_t* text;
    const char16_t* local;
    const char16_t* plain;
  } cases[] = {
      {u"file:///c:/a/b.txt", u"c:/a/b.txt", u"c:/a/b.txt"},
      {u"file:///tmp/a b;p?q#f", u"/tmp/a b", u"/tmp/a%20b"},
      {u"FILE:///x", u"/x", u"/x"},
      {u"http://h/c:/x?q#f", u"c:/x?q#f", u"http://h/c:/x?q#f"},
      {u"http://h/p;a?b#c", u"/p;a?b#c", u"http://h/p;a?b#c"},
      {u"http://h/c:", u"c:", u"http://h/c:"},
      {u"/c:/x;p", u"/c:/x;p", u"/c:/x;p"},
      {u"http://h", u"", u"http://h"},
  };
  for (const auto& c : cases) {
    LcUURL url(c.text, false);
    ASSERT_TRUE(url.IsValid());
    LcUString out;
    url.GetLocalPath(out);
    EXPECT_EQ(std::u16string(c.local), Str(out));
    url.GetPlainText(out);
    EXPECT_EQ(std::u16string(c.plain), Str(out));
  }
  LcUString local;
  LcUURL(u"c:\\a\\b.txt", true).GetLocalPath(local);
  EXPECT_EQ(u"c:/a/b.txt", Str(local));
}

TEST(LcUURLTest, ComparesNormalisedTexts) {
  EXPECT_TRUE(LcUURL::Equal(u"HTTP://H:80/a", u"http://h/a", false));
  EXPECT_FALSE(LcUURL::Equal(u"http://h/A", u"http://h/a", false));
  EXPECT_TRUE(LcUURL::Equal(u"http://h/A", u"http://h/a", true));
  EXPECT_FALSE(LcUURL::Equal(u"http://h/A?X", u"http://h/a?x", true));
  EXPECT_TRUE(LcUURL::Equal(u"c:\\x y", u"file:///c:/x%20y", false));
}

TEST(LcUURLTest, ResolvesAsRfc1808) {
  const struct {
    const char16_t* base;
    const char16_t* relative;
    const char16_t* result;
  } cases[] = {
      {u"http://h/a/b/x", u"../c", u"http://h/a/c"},
      {u"http://h/a/b/x", u"c", u"http://h/a/b/c"},
      {u"http://h/a/b/x", u"./c/./d", u"http://h/a/b/c/d"},
      {u"http://h/a/b/x", u"c/../../d", u"http://h/a/d"},
      {u"http://h/a/b/x", u"..", u"http://h/a/"},
      {u"http://h/a/b/x", u".", u"http://h/a/b/"},
      {u"http://h/a/b/x", u"../../../c", u"http://h/../c"},
      {u"http://h/a/b/x", u"../../../../c/..", u"http://h/../../"},
      {u"http://h/a/b/x", u"https://o/z", u"https://o/z"},
      // Params, query and fragment come from the base only with an empty path.
      {u"http://h/a/b/x;p?q#f", u"g", u"http://h/a/b/g"},
      {u"http://h/a/b/x;p?q#f", u"g?y", u"http://h/a/b/g?y"},
      {u"http://h/a/b/x;p?q#f", u"?y", u"http://h/a/b/x;p?y"},
      {u"http://h/a/b/x;p?q#f", u";z", u"http://h/a/b/x;z"},
      {u"http://h/a/b/x;p?q#f", u"#g", u"http://h/a/b/x;p?q#g"},
      {u"http://u:p@h:81/a", u"b", u"http://u:p@h:81/b"},
      {u"http://h", u"c", u"http://h/c"},
      {u"file:///c:/a/b.txt", u"d.txt", u"c:/a/d.txt"},
      {u"file:///tmp/a/b", u"x y", u"/tmp/a/x%20y"},
      {u"", u"rel", u"rel"},
      {u"http://h/a", u"", u"http://h/a"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.relative, c.relative + std::u16string(c.relative).size()));
    LcUString out;
    EXPECT_TRUE(LcUURL::Resolve(c.base, c.relative, out));
    EXPECT_EQ(std::u16string(c.result), Str(out));
  }
}

TEST(LcUURLTest, RebasesWithinOneScheme) {
  LcUString out;
  EXPECT_TRUE(LcUURL::Rebase(u"http://h/a/b/x.html", u"http://h/a/c/y.html?q#f", u"http://n/r/s.html", out));
  EXPECT_EQ(u"http://n/c/y.html?q#f", Str(out));
  EXPECT_TRUE(LcUURL::Rebase(u"file:///c:/d/m.txt", u"c:\\d\\sub\\t.txt", u"file:///e:/n/m.txt", out));
  EXPECT_EQ(u"e:/n/sub/t.txt", Str(out));
  EXPECT_FALSE(LcUURL::Rebase(u"http://h/a/x", u"ftp://h/a/y", u"http://n/", out));
  EXPECT_TRUE(out.IsEmpty());
  EXPECT_FALSE(LcUURL::Rebase(u"", u"http://h/a/y", u"http://n/", out));
  EXPECT_FALSE(LcUURL::Rebase(nullptr, u"http://h/a/y", u"http://n/", out));
}

TEST(LcUURLTest, LeafNamesFallBackToHostThenInput) {
  const struct {
    const char16_t* url;
    const char16_t* leaf;
  } cases[] = {
      {u"http://h/a/b.txt", u"b.txt"},
      {u"http://h/a/b.txt?q", u"b.txt?q"},
      {u"file:///c:/a/b%20c.txt", u"b c.txt"},
      {u"c:\\a\\d.txt", u"d.txt"},
      {u"http://H/", u"h"},
      {u"http://h", u"h"},
      {u"file:///", u"file:///"},
      {u":bad", u":bad"},
  };
  for (const auto& c : cases) {
    LcUString out;
    LcUURL::GetLeafName(c.url, out);
    EXPECT_EQ(std::u16string(c.leaf), Str(out));
  }
}
