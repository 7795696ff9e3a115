#include <gtest/gtest.h>

#include "EnvironmentTesting.h"

using EnvironmentTesting::Narrow;

// One table for both platforms: the path algebra never asks the system.
namespace {
std::string Text(const char16_t* text) {
  return Narrow(LcUString(text));
}

TEST(LcUSysFilePath, RootsAndComponents) {
  struct Case {
    const char16_t* path;
    int32_t root;  // 0: not absolute
    int32_t parent;
    int32_t components;
  };
  const Case cases[] = {
      {u"", 0, 0, 0},
      {u"/", 1, 1, 0},
      {u"/usr", 1, 1, 1},
      {u"/usr/lib", 1, 4, 2},
      {u"C:\\", 3, 3, 0},
      {u"C:\\a", 3, 3, 1},
      {u"c:/a/b", 3, 4, 2},
      {u"C:\\a\\b\\\\", 3, 4, 2},
      {u"C:\\a\\\\b", 3, 4, 2},
      {u"C:", 0, 0, 1},
      {u"C:x", 0, 0, 1},
      {u"\\\\srv\\share", 2, 5, 2},
      {u"\\\\srv\\share\\x", 2, 11, 3},
      {u"\\x", 0, 0, 1},
      {u"a\\b", 0, 1, 2},
      {u"a/b/c/", 0, 3, 3},
      {u"a", 0, 0, 1},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(Text(c.path));
    int32_t root = -1;
    EXPECT_EQ(LcUSysFile::IsAbsolute(c.path, root), c.root != 0);
    EXPECT_EQ(root, c.root);
    EXPECT_EQ(LcUSysFile::GetParentLength(c.path, LcUString::Len(c.path)), c.parent);
    EXPECT_EQ(LcUSysFile::CountComponents(c.path), c.components);
  }
}

TEST(LcUSysFilePath, JoinAndResolve) {
  LcUString out;
  struct JoinCase {
    const char16_t *a, *b;
    bool forward;
    const char16_t* joined;
  };
  const JoinCase joins[] = {
      {u"a/", u"/b", false, u"a/b"}, {u"a", u"b", false, u"a\\b"},  {u"a", u"b", true, u"a/b"},
      {u"", u"b", false, u"b"},      {u"a", u"", false, u"a"},      {u"a\\", u"\\\\b", false, u"a\\\\b"},
  };
  for (const JoinCase& c : joins) {
    LcUSysFile::Join(c.a, c.b, out, c.forward);
    EXPECT_EQ(Narrow(out), Text(c.joined)) << Text(c.a) << " + " << Text(c.b);
  }
  LcUSysFile::Join3(u"a", nullptr, u"c", out);
  EXPECT_EQ(Narrow(out), "a\\c");
  LcUSysFile::Join4(u"C:\\", u"x", u"y/", u"z", out);
  EXPECT_EQ(Narrow(out), "C:\\x\\y/z");
  out.Assign(u"tail");
  LcUSysFile::Join(u"head", out.Get(), out);
  EXPECT_EQ(Narrow(out), "head\\tail");

  struct ResolveCase {
    const char16_t *base, *relative, *resolved;  // null: fails
  };
  const ResolveCase resolves[] = {
      {u"C:\\x\\y", u"..\\z", u"C:\\x\\z"},
      {u"C:\\x", u".\\y\\.\\z", u"C:\\x\\y\\z"},
      {u"C:\\x\\", u"a//b", u"C:\\x\\a\\b"},
      {u"C:\\x\\y", u"\\z", u"C:\\z"},
      {u"\\\\srv\\share", u"/b", u"\\\\b"},
      {u"/usr/lib", u"../bin", u"/usr/bin"},
      {u"/usr/lib", u"/etc", u"/etc"},
      {u"C:\\", u"..", nullptr},
      {u"C:\\x", u"../../y", nullptr},
      {u"x\\y", u"z", nullptr},
      {u"", u"z", nullptr},
  };
  for (const ResolveCase& c : resolves) {
    out.Assign(u"stale");
    EXPECT_EQ(LcUSysFile::Resolve(c.base, c.relative, out), c.resolved != nullptr) << Text(c.base);
    EXPECT_EQ(Narrow(out), c.resolved ? Text(c.resolved) : "") << Text(c.base) << " + " << Text(c.relative);
  }
  LcUString longName(u"C:\\");
  for (int i = 0; i < 1024; ++i) longName.Append(char16_t('n'));
  EXPECT_FALSE(LcUSysFile::Resolve(u"C:\\", longName.Get() + 3, out));
  out.Assign(u"..\\z");
  EXPECT_TRUE(LcUSysFile::Resolve(u"C:\\x\\y", out.Get(), out));
  EXPECT_EQ(Narrow(out), "C:\\x\\z");
}

TEST(LcUSysFilePath, MakeRelative) {
  struct Case {
    const char16_t *base, *path;
    bool forward;
    const char16_t* relative;  // null: no common root
  };
  const Case cases[] = {
      {u"C:\\a\\b", u"C:\\a\\c\\d", false, u"..\\c\\d"},
      {u"C:\\a\\b", u"C:\\a\\b", false, u""},
      {u"C:\\a", u"C:\\a\\b\\c", false, u"b\\c"},
      {u"C:\\a\\b\\c", u"C:\\a", false, u"..\\.."},
      {u"C:\\A", u"C:\\a\\b", false, u"..\\a\\b"},
      {u"C:\\a\\b\\", u"C:/a/c", false, u"..\\c"},
      {u"/x/y", u"/x/z", true, u"../z"},
      {u"C:\\a", u"D:\\a", false, nullptr},
      {u"C:\\a", u"\\\\srv\\a", false, nullptr},
      {u"x", u"C:\\x", false, nullptr},
  };
  LcUString out;
  for (const Case& c : cases) {
    SCOPED_TRACE(Text(c.base) + " -> " + Text(c.path));
    EXPECT_EQ(LcUSysFile::MakeRelative(c.base, c.path, out, c.forward), c.relative != nullptr);
    EXPECT_EQ(Narrow(out), c.relative ? Text(c.relative) : "");
  }
}

TEST(LcUSysFilePath, CanonicaliseAndNames) {
  struct Canonical {
    const char16_t *path, *canonical;
  };
  const Canonical canonicals[] = {
      {u"  C:\\x\\  ", u"C:\\x"}, {u"C:\\\\", u"C:\\"}, {u"/", u"/"},
      {u"/usr/", u"/usr"},        {u"\\\\", u"\\\\"},   {u"a\\b/", u"a\\b"},
  };
  LcUString out;
  for (const Canonical& c : canonicals) {
    LcUSysFile::Canonicalise(c.path, out);
    EXPECT_EQ(Narrow(out), Text(c.canonical)) << Text(c.path);
  }

  struct Split {
    const char16_t *path, *dir, *file, *ext;
  };
  const Split splits[] = {
      {u"C:/dir/sub/name.tar.gz", u"C:/dir/sub", u"name.tar", u"gz"},
      {u"name", u"", u"name", u""},
      {u"C:\\a.b\\c", u"C:\\a.b", u"c", u""},
      {u"C:\\x", u"C:\\", u"x", u""},
      {u" /usr/lib/ ", u"/usr", u"lib", u""},
  };
  LcUString dir, file, ext;
  for (const Split& c : splits) {
    LcUSysFile::Split(c.path, &dir, &file, &ext);
    EXPECT_EQ(Narrow(dir) + "|" + Narrow(file) + "|" + Narrow(ext),
              Text(c.dir) + "|" + Text(c.file) + "|" + Text(c.ext));
  }
  LcUSysFile::GetDirectory(u"/usr/lib/x.so", &dir, &file);
  EXPECT_EQ(Narrow(dir) + "|" + Narrow(file), "/usr/lib|x.so");
  LcUSysFile::GetDirectory(u"/x", &dir, nullptr);
  EXPECT_EQ(Narrow(dir), "/");
  LcUSysFile::StripExtension(u"C:\\d.x\\f.txt", out);
  EXPECT_EQ(Narrow(out), "C:\\d.x\\f");
  LcUSysFile::StripExtension(u"C:\\d.x\\f", out);
  EXPECT_EQ(Narrow(out), "C:\\d.x\\f");
  LcUSysFile::SplitExtension(u"archive.tar.gz", &file, &ext);
  EXPECT_EQ(Narrow(file) + "|" + Narrow(ext), "archive.tar|gz");

  for (const char16_t* ext : {u".txt", u"txt"}) {
    LcUSysFile::SetExtension(u"a", ext, out);
    EXPECT_EQ(Narrow(out), "a.txt");
  }
  LcUSysFile::SetExtension(u"a", u"", out);
  EXPECT_EQ(Narrow(out), "a");

  struct HasCase {
    const char16_t *path, *ext;
    bool has;
  };
  const HasCase has[] = {
      {u"a.NAME", u".name", true}, {u"dir.d\\file", nullptr, true}, {u"a.txt", nullptr, false},
      {u"a.txt", u"tx", false},    {u"a", u"txt", false},           {u"a.Txt", u"TXT", true},
      {u"a", nullptr, true},       {u"a", u"", false},              {u"a", u".", false},
  };
  for (const HasCase& c : has)
    EXPECT_EQ(LcUSysFile::HasExtension(c.path, c.ext), c.has) << Text(c.path) << " " << (c.ext ? Text(c.ext) : "null");
}

TEST(LcUSysFilePath, FileNamesSearchPathsAndPatterns) {
  LcUString out;
  EXPECT_TRUE(LcUSysFile::SanitiseFileName(u"a:b*c?\"<>|\\/.txt", out));
  EXPECT_EQ(Narrow(out), "a_b_c" + std::string(7, '_') + ".txt");
  EXPECT_FALSE(LcUSysFile::SanitiseFileName(u"plain name.txt", out));
  EXPECT_EQ(Narrow(out), "plain name.txt");

  LcUSysFile::JoinSearchPath(u"a", u"b", out);
  EXPECT_EQ(Narrow(out), "a;b");
  LcUSysFile::JoinSearchPath(u"", u"b", out);
  EXPECT_EQ(Narrow(out), "b");
  LcUSysFile::JoinSearchPath(u"a", nullptr, out);
  EXPECT_EQ(Narrow(out), "a");

  struct Pattern {
    const char16_t *name, *pattern;
    bool matches;
  };
  const Pattern patterns[] = {
      {u"file.TXT", u"*.txt", true},      {u"file.txt", u"*.doc;*.txt", true}, {u"file.txt", u"*.doc; *.txt", true},
      {u"file", u"*.*", true},            {u"file.txt", u"f?le.*", true},      {u"fle.txt", u"f?le.*", false},
      {u"abc", u"a*c", true},             {u"abcd", u"a*c", false},            {u"aXbXc", u"a*b*c", true},
      {u"abc", u"*b*", true},             {u"a", u"", false},                  {u"file.txt.bak", u"*.txt", false},
      {u"ABC", u"abc", true},             {u"abc", u"abc;", true},             {u"abc", u"x;y;?bc", true},
  };
  for (const Pattern& c : patterns)
    EXPECT_EQ(LcUSysFile::MatchesPattern(c.name, c.pattern), c.matches) << Text(c.name) << " ~ " << Text(c.pattern);
}
}  // namespace

// The narrow forms answer as the wide ones on the same text, read as UTF-8;
// text that isn't UTF-8 gives false or an empty result.
TEST(LcUSysFilePath, NarrowFormsAnswerAsTheWideOnes) {
  struct Case {
    const char *a, *b;
  };
  const Case cases[] = {
      {"C:\\M\xC3\xBCller\\x.Txt", "..\\y"}, {"/usr/lib/", "z.so"}, {"rel/a.b", "/c"},
      {"\\\\host\\share", "d"},             {"", "txt"},           {"C:\\", nullptr},
  };
  for (const Case& c : cases) {
    const std::string label = std::string(c.a) + " " + (c.b ? c.b : "null");
    LcUString a, b, wide, narrow, wide2, narrow2, wide3, narrow3;
    ASSERT_TRUE(LcUString::UTF8ToUTF16(c.a, -1, a));
    if (c.b) {
      ASSERT_TRUE(LcUString::UTF8ToUTF16(c.b, -1, b));
    }
    const char16_t* wideB = c.b ? b.Get() : nullptr;

    EXPECT_EQ(LcUSysFile::IsAbsolute(a.Get()), LcUSysFile::IsAbsolute(c.a)) << label;
    LcUSysFile::Join(a.Get(), wideB, wide, true);
    LcUSysFile::Join(c.a, c.b, narrow, true);
    EXPECT_EQ(Narrow(wide), Narrow(narrow)) << label;
    EXPECT_EQ(LcUSysFile::Resolve(a.Get(), wideB, wide), LcUSysFile::Resolve(c.a, c.b, narrow)) << label;
    EXPECT_EQ(Narrow(wide), Narrow(narrow)) << label;
    EXPECT_EQ(LcUSysFile::MakeRelative(a.Get(), wideB, wide), LcUSysFile::MakeRelative(c.a, c.b, narrow)) << label;
    EXPECT_EQ(Narrow(wide), Narrow(narrow)) << label;
    LcUSysFile::Canonicalise(a.Get(), wide);
    LcUSysFile::Canonicalise(c.a, narrow);
    EXPECT_EQ(Narrow(wide), Narrow(narrow)) << label;
    LcUSysFile::Split(a.Get(), &wide, &wide2, &wide3);
    LcUSysFile::Split(c.a, &narrow, &narrow2, &narrow3);
    EXPECT_EQ(Narrow(wide) + "|" + Narrow(wide2) + "|" + Narrow(wide3),
              Narrow(narrow) + "|" + Narrow(narrow2) + "|" + Narrow(narrow3))
        << label;
    LcUSysFile::GetDirectory(a.Get(), &wide, &wide2);
    LcUSysFile::GetDirectory(c.a, &narrow, &narrow2);
    EXPECT_EQ(Narrow(wide) + "|" + Narrow(wide2), Narrow(narrow) + "|" + Narrow(narrow2)) << label;
    LcUSysFile::SetExtension(a.Get(), c.b ? wideB : u"", wide);
    LcUSysFile::SetExtension(c.a, c.b ? c.b : "", narrow);
    EXPECT_EQ(Narrow(wide), Narrow(narrow)) << label;
    EXPECT_EQ(LcUSysFile::HasExtension(a.Get(), wideB), LcUSysFile::HasExtension(c.a, c.b)) << label;
  }
  // Spot checks that the two sides did work, not merely agree.
  LcUString out, dir, file, ext;
  EXPECT_TRUE(LcUSysFile::Resolve("C:\\M\xC3\xBCller\\x.Txt", "..\\y", out));
  EXPECT_EQ(u"C:\\M\u00FCller\\y", std::u16string(out.Get()));
  LcUSysFile::Split("C:\\M\xC3\xBCller\\x.Txt", &dir, &file, &ext);
  EXPECT_EQ(u"C:\\M\u00FCller|x|Txt", std::u16string(dir.Get()) + u"|" + file.Get() + u"|" + ext.Get());
  EXPECT_TRUE(LcUSysFile::HasExtension("a.TXT", ".txt"));
  EXPECT_TRUE(LcUSysFile::HasExtension("a", nullptr));

  // Bytes that aren't UTF-8 name nothing.
  const char* const bad = "C:\\\xFF\xFE";
  out.Assign(u"stale");
  dir.Assign(u"stale");
  file.Assign(u"stale");
  ext.Assign(u"stale");
  EXPECT_FALSE(LcUSysFile::IsAbsolute(bad));
  EXPECT_FALSE(LcUSysFile::HasExtension(bad, nullptr));
  EXPECT_FALSE(LcUSysFile::Resolve(bad, "x", out));
  EXPECT_TRUE(out.IsEmpty());
  out.Assign(u"stale");
  EXPECT_FALSE(LcUSysFile::MakeRelative("C:\\a", bad, out));
  EXPECT_TRUE(out.IsEmpty());
  out.Assign(u"stale");
  LcUSysFile::Join("a", bad, out);
  EXPECT_TRUE(out.IsEmpty());
  out.Assign(u"stale");
  LcUSysFile::SetExtension("a", bad, out);
  EXPECT_TRUE(out.IsEmpty());
  LcUSysFile::Split(bad, &dir, &file, &ext);
  EXPECT_TRUE(dir.IsEmpty() && file.IsEmpty() && ext.IsEmpty());
}
