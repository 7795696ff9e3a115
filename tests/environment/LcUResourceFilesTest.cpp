#include <gtest/gtest.h>

#include <set>
#include <string>

#include "ResourceTest.h"
#include "environment/LcUResourceSectionHandle.h"
#include "environment/LcUSysLocale.h"

using namespace EnvironmentTesting;

namespace {
constexpr uint32_t kAll = 0x1FF;

// The nine search directories as folders d0 to d8 of the test's folder.
class LcUResourceFiles : public ResourceTest {
protected:
  void SetUp() override {
    ResourceTest::SetUp();
    // Two languages to walk, the regional one first, whatever the machine's.
    LcUSysLocale::SetOverrideLanguage(u"de-AT");
    LcUSysLocale::GetLanguage(0);
    for (int index = 0; index < LcUResource::eDIR_COUNT; ++index) {
      LcUString dir = Dir(index);
      ASSERT_TRUE(LcUSysFile::CreateDirectories(dir.Get()));
      LcUResource::SetSearchDir(index, dir.Get());
    }
  }
  void TearDown() override {
    for (int index = 0; index < LcUResource::eDIR_COUNT; ++index) LcUResource::SetSearchDir(index, u"");
    ResourceTest::TearDown();
  }
  LcUString Dir(int index) const {
    std::u16string name = u"d";
    name += char16_t('0' + index);
    return In(name.c_str());
  }
  // Writes d<index>/relative, making its folders.
  LcUString Put(int index, const char16_t* relative, const std::string& bytes = "x") const {
    LcUString path, folder;
    LcUSysFile::Join(Dir(index).Get(), relative, path);
    LcUSysFile::GetDirectory(path.Get(), &folder, nullptr);
    EXPECT_TRUE(LcUSysFile::CreateDirectories(folder.Get()));
    EXPECT_TRUE(WriteFile(path, bytes));
    return path;
  }
  // The tests write '/', the joins '\\': paths compare with one separator.
  static std::string Canon(const LcUString& path) {
    std::string text = Narrow(path);
    for (char& c : text)
      if (c == '/') c = '\\';
    return text;
  }
};

TEST_F(LcUResourceFiles, LowerIndexWinsAmongSelectedDirectories) {
  LcUString inSite = Put(LcUResource::eDIR_SITE, u"data/f.txt");
  LcUString inApp = Put(LcUResource::eDIR_APP, u"data/f.txt");
  LcUString out;
  size_t before = LogText().size();
  ASSERT_TRUE(LcUResource::FindDataFile(u"data", u"f.txt", out, kAll));
  EXPECT_EQ(Canon(out), Canon(inSite));
  EXPECT_EQ(LogText().substr(before), "LcUResource::FindDataFile found " + Narrow(out) + "\n");
  ASSERT_TRUE(LcUResource::FindDataFile(u"data", u"f.txt", out, kAll & ~(1u << LcUResource::eDIR_SITE)));
  EXPECT_EQ(Canon(out), Canon(inApp));
  LcUString name(u"f.txt");
  ASSERT_TRUE(LcUResource::FindDataFile(u"data", name.Get(), name, kAll)) << "out aliases name";
  EXPECT_EQ(Canon(name), Canon(inSite));
  out = u"kept";
  EXPECT_FALSE(LcUResource::FindDataFile(u"data", u"none.txt", out, kAll));
  EXPECT_FALSE(LcUResource::FindDataFile(u"data", u"f.txt", out, 1u << LcUResource::eDIR_INSTALL));
}

TEST_F(LcUResourceFiles, UserFoldersAreMadeOnlyWhenSelected) {
  LcUString out, user, local;
  LcUSysFile::Join(Dir(0).Get(), u"made", user);
  LcUSysFile::Join(Dir(1).Get(), u"made", local);
  LcUResource::FindDataFile(u"made", u"f.txt", out, 1u << LcUResource::eDIR_SITE);
  EXPECT_FALSE(LcUSysFile::Exists(user.Get()));
  LcUResource::FindDataFile(u"made", u"f.txt", out, 1u << LcUResource::eDIR_LOCAL);
  EXPECT_FALSE(LcUSysFile::Exists(user.Get()));
  EXPECT_TRUE(LcUSysFile::IsDirectory(local.Get()));
  LcUResource::FindDataFile(u"made", u"f.txt", out, kAll);
  EXPECT_TRUE(LcUSysFile::IsDirectory(user.Get()));
}

TEST_F(LcUResourceFiles, InheritedHitMakesItsTargetAFolder) {
  LcUString old = Put(LcUResource::eDIR_USER_INHERIT, u"data/old.txt");
  LcUString out, target;
  ASSERT_TRUE(LcUResource::FindDataFile(u"data", u"old.txt", out, kAll));
  EXPECT_EQ(Canon(out), Canon(old)) << "the copy can't land on the folder made for it";
  LcUSysFile::Join3(Dir(0).Get(), u"data", u"old.txt", target);
  EXPECT_TRUE(LcUSysFile::IsDirectory(target.Get()));

  Put(LcUResource::eDIR_LOCAL_INHERIT, u"top.txt");
  ASSERT_TRUE(LcUResource::FindDataFile(nullptr, u"top.txt", out, 1u << LcUResource::eDIR_LOCAL_INHERIT));
  LcUSysFile::Join(Dir(1).Get(), u"top.txt", target);
  EXPECT_TRUE(LcUSysFile::IsDirectory(target.Get()));
}

TEST_F(LcUResourceFiles, LanguageOutranksDirectory) {
  LcUString first = Put(LcUResource::eDIR_INSTALL, u"de-AT/loc.txt");
  Put(LcUResource::eDIR_USER, u"de-DE/loc.txt");
  LcUString out, language;
  ASSERT_TRUE(LcUResource::FindLocalisedDataFile(nullptr, u"loc.txt", out, 0x3F));
  EXPECT_EQ(Canon(out), Canon(first));
  Put(LcUResource::eDIR_SITE, u"de-DE/sub/deep.txt");
  ASSERT_TRUE(LcUResource::FindLocalisedDataFile(u"sub", u"deep.txt", out, kAll));
  EXPECT_TRUE(LcUResource::FindLanguageOfFile(u"loc.txt", language));
  EXPECT_EQ(Narrow(language), "de-AT");
  Put(LcUResource::eDIR_PROJECT, u"de-DE/only.txt");
  EXPECT_TRUE(LcUResource::FindLanguageOfFile(u"only.txt", language));
  EXPECT_EQ(Narrow(language), "de-DE");
  Put(LcUResource::eDIR_USER_APP_SHARED, u"de-AT/shared.txt");
  EXPECT_FALSE(LcUResource::FindLanguageOfFile(u"shared.txt", language)) << "the shared folder is left out";
}

TEST_F(LcUResourceFiles, LocalisedFileOfOneFolder) {
  LcUString folder = In(u"res"), path, found, out(u"stale");
  LcUSysFile::Join3(folder.Get(), u"de-DE", u"strings.txt", path);
  ASSERT_TRUE(LcUSysFile::CreateDirectories(In(u"res/de-DE").Get()));
  ASSERT_TRUE(WriteFile(path, "x"));
  size_t before = LogText().size();
  ASSERT_TRUE(LcUResource::FindLocalisedFile(folder.Get(), u"strings.txt", found));
  EXPECT_EQ(Canon(found), Canon(path));
  EXPECT_EQ(LogText().substr(before), "LcUResource::FindLocalisedFile found " + Narrow(found) + "\n");
  EXPECT_FALSE(LcUResource::FindLocalisedFile(folder.Get(), u"none.txt", out));
  EXPECT_TRUE(out.IsEmpty());
  EXPECT_EQ(LcUResource::LoadLocalisedLibrary(u"none", folder.Get()), nullptr);
  LcUString notALibrary;
  LcUSysFile::SetExtension(In(u"res/de-DE/fake").Get(), u"dll", notALibrary);
  WriteFile(notALibrary, "not a library");
  LcUSysFile::SetExtension(In(u"res/de-DE/fake").Get(), u"so", notALibrary);
  WriteFile(notALibrary, "not a library");
  EXPECT_EQ(LcUResource::LoadLocalisedLibrary(u"fake", folder.Get()), nullptr);
}

TEST_F(LcUResourceFiles, SectionGivesEachNameOnceFromTheLowestIndex) {
  LcUString b = Put(LcUResource::eDIR_USER, u"sec/b");
  Put(LcUResource::eDIR_USER, u"sec/a");
  Put(LcUResource::eDIR_SITE, u"sec/b");
  LcUString c = Put(LcUResource::eDIR_SITE, u"sec/c");
  Put(LcUResource::eDIR_APP, u"other/e");
  std::set<std::string> paths;
  std::string logged = "?";
  size_t before = LogText().size();
  for (LcUResourceSectionHandle files(u"sec", kAll); files.IsValid(); files.Next()) {
    LcUString path;
    files.GetPath(path);
    EXPECT_TRUE(paths.insert(Canon(path)).second) << Narrow(path);
    if (Canon(path) == Canon(c)) logged = "LcUResourceSectionHandle: found " + Narrow(path) + "\n";
  }
  EXPECT_EQ(paths.size(), 3u);
  EXPECT_EQ(paths.count(Canon(b)), 1u);
  EXPECT_EQ(paths.count(Canon(c)), 1u);
  EXPECT_NE(LogText().find(logged, before), std::string::npos);

  LcUResourceSectionHandle siteOnly(u"sec", 1u << LcUResource::eDIR_SITE);
  ASSERT_TRUE(siteOnly.IsValid());
  LcUResourceSectionHandle none(u"sec", 1u << LcUResource::eDIR_INSTALL);
  EXPECT_FALSE(none.IsValid());
  EXPECT_FALSE(none.Next());
}

TEST_F(LcUResourceFiles, NameFolderFirstLanguageWins) {
  LcUString folder = In(u"names");
  for (const char* part : {"de-AT", "de-DE"})
    ASSERT_TRUE(LcUSysFile::CreateDirectories(In(Wide(std::string("names/") + part).Get()).Get()));
  WriteFile(In(u"names/de-AT/a.name"), "k=us\n");
  WriteFile(In(u"names/de-DE/a.name"), "k=en\nonly.en=no\n");
  WriteFile(In(u"names/de-DE/b.NAME"), "j=${k}\n");
  WriteFile(In(u"names/de-DE/c.txt"), "t=text\n");
  LcUResource::LoadNameFolder(folder.Get(), "pre.");
  EXPECT_EQ(Text("pre.k"), "us");
  EXPECT_EQ(Text("pre.only.en"), "<absent>") << "de-DE's a.name is not read";
  EXPECT_EQ(Text("pre.j"), "${k}");
  EXPECT_EQ(Text("pre.t"), "<absent>");
  LcUResource::LoadNameFolder(In(u"nowhere").Get(), nullptr);
  EXPECT_TRUE(reports().empty());
}
}  // namespace
