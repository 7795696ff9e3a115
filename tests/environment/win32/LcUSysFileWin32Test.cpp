#include "EnvironmentTesting.h"

using namespace EnvironmentTesting;

namespace {
class LcUSysFileWin32 : public TempFolderTest {};

TEST_F(LcUSysFileWin32, ExecuteWaitsForTheProgram) {
  LcUString marker = In(u"marker file");
  LcUString parameters = Wide("/c echo 2> \"" + Narrow(marker) + "\"");
  ASSERT_TRUE(LcUSysFile::Execute(u"cmd.exe", parameters.Get(), true));
  EXPECT_TRUE(LcUSysFile::Exists(marker.Get()));
  EXPECT_FALSE(LcUSysFile::Execute(In(u"no-such-program.exe").Get(), nullptr, true));
}

TEST_F(LcUSysFileWin32, ShellFolders) {
  LcUString path;
  for (int kind = 0; kind < 4; ++kind) {
    EXPECT_TRUE(LcUSysFile::GetShellFolder(kind, path)) << kind;
    EXPECT_TRUE(LcUSysFile::IsAbsolute(path.Get())) << Narrow(path);
  }
  EXPECT_FALSE(LcUSysFile::GetShellFolder(7, path));
}
}  // namespace
