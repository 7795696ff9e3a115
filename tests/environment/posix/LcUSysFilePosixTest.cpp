#include <sys/stat.h>

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>

#include "EnvironmentTesting.h"
#include "environment/LcUResource.h"
#include "environment/LcUSysLocale.h"

using namespace EnvironmentTesting;

namespace {
// What a Linux program is given: the file layer's separators are its own.
std::string Native(const LcUString& path) {
  std::string text = Narrow(path);
  for (char& c : text)
    if (c == '\\') c = '/';
  return text;
}

class LcUSysFilePosix : public TempFolderTest {};

TEST_F(LcUSysFilePosix, DeniedPathStillExists) {
  LcUString closed = In(u"closed"), inside;
  ASSERT_TRUE(LcUSysFile::CreateDirectories(closed.Get()));
  LcUSysFile::Join(closed.Get(), u"file", inside);
  ASSERT_TRUE(WriteFile(inside, "x"));
  ASSERT_EQ(chmod(Native(closed).c_str(), 0), 0);
  EXPECT_TRUE(LcUSysFile::Exists(inside.Get()));
  EXPECT_FALSE(LcUSysFile::Exists(In(u"closed-not-there/file").Get()));
  chmod(Native(closed).c_str(), 0700);
}

TEST_F(LcUSysFilePosix, ALocalisedLibraryIsReadNotRun) {
  std::ifstream library(TW_RUNNING_LIBRARY, std::ios::binary);
  std::string bytes((std::istreambuf_iterator<char>(library)), std::istreambuf_iterator<char>());
  ASSERT_FALSE(bytes.empty());
  ASSERT_TRUE(LcUSysFile::CreateDirectories(In(u"res/de-AT").Get()));
  ASSERT_TRUE(WriteFile(In(u"res/de-AT/strings.so"), bytes));
  LcUResource::Initialize();
  LcUSysLocale::SetOverrideLanguage(u"de-AT");
  const void* loaded = LcUResource::LoadLocalisedLibrary(u"strings", In(u"res").Get());
  LcUSysLocale::SetOverrideLanguage(nullptr);
  LcUResource::Terminate();
  ASSERT_NE(loaded, nullptr);
  EXPECT_EQ(std::memcmp(loaded, "\x7F" "ELF", 4), 0);
  EXPECT_EQ(std::getenv("TW_TEST_LIBRARY_RAN"), nullptr);
}

TEST_F(LcUSysFilePosix, ExecuteSplitsParametersAsWindowsDoes) {
  LcUString marker = In(u"marker file");
  // $0 is the marker; "two words" must arrive as one argument.
  LcUString parameters = Wide("-c \"echo $# > \\\"$0\\\"\" \"" + Native(marker) + "\" \"two words\" three");
  ASSERT_TRUE(LcUSysFile::Execute(u"sh", parameters.Get(), true));
  int64_t size = 0;
  ASSERT_TRUE(LcUSysFile::GetSize(marker.Get(), size));
  EXPECT_EQ(size, 2);
  EXPECT_FALSE(LcUSysFile::Execute(In(u"no-such-program").Get(), nullptr, true));
}

TEST_F(LcUSysFilePosix, ShellFoldersFollowXdg) {
  LcUString path;
  setenv("XDG_CONFIG_HOME", "/xdg/config", 1);
  EXPECT_TRUE(LcUSysFile::GetShellFolder(LcUSysFile::eFOLDER_APPDATA, path));
  EXPECT_EQ(Narrow(path), "/xdg/config");
  unsetenv("XDG_CONFIG_HOME");
  EXPECT_TRUE(LcUSysFile::GetShellFolder(LcUSysFile::eFOLDER_APPDATA, path));
  EXPECT_EQ(Narrow(path), std::string(getenv("HOME")) + "/.config");
  EXPECT_FALSE(LcUSysFile::GetShellFolder(7, path));
}
}  // namespace
