#include <grp.h>
#include <pwd.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <ctime>

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

// Runs check in a child that has given up root for nobody, since root reads
// through any permission; its exit code is check's answer. -1 when the child
// couldn't be made or didn't end within the bound.
int AsNobody(int (*check)(const LcUString&, const LcUString&), const LcUString& a, const LcUString& b) {
  const passwd* nobody = getpwnam("nobody");
  if (!nobody) return -1;
  pid_t child = fork();
  if (child < 0) return -1;
  if (child == 0) {
    if (setgroups(0, nullptr) != 0 || setgid(nobody->pw_gid) != 0 || setuid(nobody->pw_uid) != 0) _exit(100);
    _exit(check(a, b));
  }
  int status = 0;
  for (int polls = 0; polls < 1000; ++polls) {  // 10 s at most
    if (waitpid(child, &status, WNOHANG) == child) return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    timespec pause = {0, 10 * 1000 * 1000};
    nanosleep(&pause, nullptr);
  }
  kill(child, SIGKILL);
  waitpid(child, &status, 0);
  return -1;
}

// 0 when a file behind a folder that can't be searched counts as there and a
// missing one beside it doesn't; 1 when the check ran with nothing denied.
int DeniedButThere(const LcUString& inside, const LcUString& missing) {
  struct stat info;
  if (stat(Native(inside).c_str(), &info) == 0 || errno != EACCES) return 1;
  return LcUSysFile::Exists(inside.Get()) && !LcUSysFile::Exists(missing.Get()) ? 0 : 2;
}

TEST_F(LcUSysFilePosix, DeniedPathStillExists) {
  LcUString closed = In(u"closed"), inside;
  ASSERT_TRUE(LcUSysFile::CreateDirectories(closed.Get()));
  LcUSysFile::Join(closed.Get(), u"file", inside);
  ASSERT_TRUE(WriteFile(inside, "x"));
  ASSERT_EQ(chmod(Native(closed).c_str(), 0), 0);
  const LcUString missing = In(u"closed-not-there/file");
  if (geteuid() != 0) {
    EXPECT_EQ(0, DeniedButThere(inside, missing));
  } else {
    // The way down to the closed folder must be open to nobody.
    for (std::string path = Native(folder); path.size() > 1; path.resize(path.rfind('/')))
      if (path.rfind("/tmp", 0) == 0 || path == Native(folder)) chmod(path.c_str(), 0755);
    int result = AsNobody(&DeniedButThere, inside, missing);
    if (result == -1 || result == 100) {
      chmod(Native(closed).c_str(), 0700);
      GTEST_SKIP() << "no unprivileged user to run the check as";
    }
    EXPECT_EQ(0, result);
  }
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
