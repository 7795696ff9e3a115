#include <gtest/gtest.h>

#include <set>
#include <string>

#include "EnvironmentTesting.h"
#include "environment/LcUResource.h"
#include "environment/LcUSysFileIterator.h"
#include "environment/LcUSysNativeFile.h"

using namespace EnvironmentTesting;

namespace {
class LcUSysFileOps : public TempFolderTest {};

TEST_F(LcUSysFileOps, ReservesFillsAndMeasures) {
  LcUString reserved = In(u"reserved.bin"), filled = In(u"filled.bin");
  int64_t size = -1;
  ASSERT_TRUE(LcUSysFile::Truncate(reserved.Get(), 12345));
  EXPECT_TRUE(LcUSysFile::GetSize(reserved.Get(), size));
  EXPECT_EQ(size, 12345);
  EXPECT_FALSE(LcUSysFile::Truncate(reserved.Get(), 1)) << "creation is 'new'";
  ASSERT_TRUE(LcUSysFile::Fill(filled.Get(), 8192 * 2 + 7));
  EXPECT_TRUE(LcUSysFile::GetSize(filled.Get(), size));
  EXPECT_EQ(size, 8192 * 2 + 7);
  EXPECT_TRUE(LcUSysFile::Flush(filled.Get()));
  EXPECT_FALSE(LcUSysFile::Flush(In(u"missing").Get()));
  EXPECT_FALSE(LcUSysFile::GetSize(In(u"missing").Get(), size));
  EXPECT_TRUE(LcUSysFile::IsReadable(filled.Get()));
  EXPECT_TRUE(LcUSysFile::IsWritable(filled.Get()));
  EXPECT_FALSE(LcUSysFile::IsReadable(In(u"missing").Get()));
}

TEST_F(LcUSysFileOps, CopiesRenamesAndDeletes) {
  LcUString a = In(u"a.txt"), b = In(u"b.txt"), c = In(u"c.txt");
  ASSERT_TRUE(WriteFile(a, "alpha"));
  ASSERT_TRUE(WriteFile(b, "beta"));
  EXPECT_FALSE(LcUSysFile::Copy(a.Get(), b.Get(), true));
  EXPECT_TRUE(LcUSysFile::Copy(a.Get(), b.Get(), false));
  int64_t size = 0;
  EXPECT_TRUE(LcUSysFile::GetSize(b.Get(), size));
  EXPECT_EQ(size, 5);
  EXPECT_FALSE(LcUSysFile::Rename(a.Get(), b.Get())) << "an existing target stays";
  EXPECT_TRUE(LcUSysFile::Rename(a.Get(), c.Get()));
  EXPECT_FALSE(LcUSysFile::Exists(a.Get()));

  LcUString locked = In(u"read-only.txt");
  ASSERT_TRUE(WriteFile(locked, "x", LcUSysFileHandle::ePERMISSION_READ));
  EXPECT_FALSE(LcUSysFile::Delete(locked.Get(), false));
  EXPECT_TRUE(LcUSysFile::Exists(locked.Get()));
  EXPECT_TRUE(LcUSysFile::Delete(locked.Get(), true));
  EXPECT_FALSE(LcUSysFile::Exists(locked.Get()));
  EXPECT_FALSE(LcUSysFile::Delete(In(u"missing").Get(), true));
}

TEST_F(LcUSysFileOps, ListsAndRemovesTrees) {
  LcUString tree = In(u"tree"), deep = In(u"tree/one/two");
  ASSERT_TRUE(LcUSysFile::CreateDirectories(deep.Get()));
  EXPECT_TRUE(LcUSysFile::CreateDirectories(deep.Get())) << "an existing folder counts as made";
  LcUString path;
  LcUSysFile::Join(tree.Get(), u"file.txt", path);
  ASSERT_TRUE(WriteFile(path, "x"));
  LcUSysFile::Join(deep.Get(), u"leaf.txt", path);
  ASSERT_TRUE(WriteFile(path, "x", LcUSysFileHandle::ePERMISSION_READ));

  std::set<std::string> seen;
  LcUSysFileEntry* kept = nullptr;
  for (LcUSysFileIterator entries(tree.Get()); entries.IsValid(); entries.Next()) {
    LcUString name;
    entries.GetName(name);
    entries.GetPath(path);
    seen.insert(Narrow(name) + (entries.IsDirectory() ? "/" : ""));
    EXPECT_TRUE(LcUSysFile::Exists(path.Get()));
    if (!kept) kept = entries.GetEntry();
  }
  EXPECT_EQ(seen, (std::set<std::string>{"file.txt", "one/"}));
  ASSERT_NE(kept, nullptr);
  EXPECT_FALSE(kept->GetName().IsEmpty()) << "an entry outlives its iterator";
  kept->Release();
  EXPECT_FALSE(LcUSysFileIterator(In(u"missing").Get()).IsValid());

  EXPECT_FALSE(LcUSysFile::Remove(tree.Get(), false, false)) << "not empty";
  EXPECT_TRUE(LcUSysFile::RemoveContents(tree.Get()));
  EXPECT_TRUE(LcUSysFile::IsDirectory(tree.Get()));
  EXPECT_FALSE(LcUSysFileIterator(tree.Get()).IsValid());
  ASSERT_TRUE(LcUSysFile::CreateDirectories(deep.Get()));
  EXPECT_TRUE(LcUSysFile::Remove(tree.Get(), false, true));
  EXPECT_FALSE(LcUSysFile::Exists(tree.Get()));
}

TEST_F(LcUSysFileOps, ComparesTimes) {
  LcUString older = In(u"older"), newer = In(u"newer"), missing = In(u"missing");
  ASSERT_TRUE(WriteFile(older, "1"));
  int64_t modified = 0, accessed = 0;
  ASSERT_TRUE(LcUSysFile::GetTimes(older.Get(), modified, accessed));
  // Whole seconds on some file systems: make the difference unmistakable.
  int64_t before = modified;
  do {
    ASSERT_TRUE(WriteFile(newer, "2"));
    ASSERT_TRUE(LcUSysFile::GetTimes(newer.Get(), modified, accessed));
  } while (modified <= before);
  EXPECT_TRUE(LcUSysFile::IsNewerThan(newer.Get(), older.Get()));
  EXPECT_FALSE(LcUSysFile::IsNewerThan(older.Get(), newer.Get()));
  EXPECT_TRUE(LcUSysFile::IsNewerThan(missing.Get(), older.Get()));
  EXPECT_FALSE(LcUSysFile::IsNewerThan(older.Get(), missing.Get()));
  EXPECT_FALSE(LcUSysFile::IsNewerThan(nullptr, older.Get()));
  EXPECT_FALSE(LcUSysFile::IsNewerThan(folder.Get(), older.Get())) << "a folder isn't a disk file";
}

TEST_F(LcUSysFileOps, TemporaryNames) {
  LcUString name, file;
  ASSERT_TRUE(LcUSysFile::MakeTempName(folder.Get(), u"abcdefghijklmnopqrstuvwxyz01234", u"tmp", name));
  LcUString dir, base;
  LcUSysFile::GetDirectory(name.Get(), &dir, &base);
  EXPECT_EQ(dir, folder);
  // prefix cut to 30, "_", the process id, "_", two 4-wide hex numbers, ".tmp"
  std::string text = Narrow(base);
  const std::string prefix = "abcdefghijklmnopqrstuvwxyz0123_";
  ASSERT_EQ(text.rfind(prefix, 0), 0u) << text;
  size_t idEnd = text.find('_', prefix.size());
  ASSERT_NE(idEnd, std::string::npos) << text;
  EXPECT_EQ(text.find_first_not_of("0123456789", prefix.size()), idEnd) << text;
  EXPECT_EQ(text.substr(idEnd + 1).size(), 8u + 4u) << text;
  EXPECT_TRUE(LcUSysFile::HasExtension(name.Get(), u"tmp"));
  EXPECT_FALSE(LcUSysFile::Exists(name.Get()));

  ASSERT_TRUE(LcUSysFile::MakeTempFile(folder.Get(), nullptr, nullptr, 100, file));
  int64_t size = 0;
  EXPECT_TRUE(LcUSysFile::GetSize(file.Get(), size));
  EXPECT_EQ(size, 100);
  LcUSysFile::GetDirectory(file.Get(), nullptr, &base);
  EXPECT_EQ(Narrow(base).rfind("file_", 0), 0u);
  EXPECT_FALSE(LcUSysFile::HasExtension(file.Get(), u"tmp"));

  EXPECT_FALSE(LcUSysFile::MakeTempName(In(u"missing").Get(), nullptr, nullptr, name));
  EXPECT_TRUE(name.IsEmpty());

  LcUSysFile::SetTempFolderOverride(folder.Get());
  EXPECT_TRUE(LcUSysFile::MakeTempName(nullptr, u"o", nullptr, name));
  LcUSysFile::GetDirectory(name.Get(), &dir, nullptr);
  EXPECT_EQ(dir, folder);
  LcUSysFile::SetTempFolderOverride(In(u"missing").Get());
  EXPECT_TRUE(LcUSysFile::MakeTempName(nullptr, u"o", nullptr, name));
  LcUSysFile::GetDirectory(name.Get(), &dir, nullptr);
  EXPECT_NE(dir, folder) << "an override that isn't there is passed over";
  LcUSysFile::SetTempFolderOverride(nullptr);
}

TEST_F(LcUSysFileOps, EnsuresDirectoriesAndTellsTheUser) {
  LcUString made = In(u"made/below");
  EXPECT_FALSE(LcUSysFile::EnsureDirectory(u""));
  EXPECT_TRUE(LcUSysFile::EnsureDirectory(made.Get()));
  EXPECT_TRUE(LcUSysFile::IsDirectory(made.Get()));
  EXPECT_TRUE(LcUSysFile::EnsureDirectory(made.Get()));

  LcUString blocker = In(u"blocker"), blocked;
  ASSERT_TRUE(WriteFile(blocker, "x"));
  LcUSysFile::Join(blocker.Get(), u"sub", blocked);
  EXPECT_FALSE(LcUSysFile::EnsureDirectory(blocked.Get()));
  std::string expected = "Failed to create directory: " + Narrow(blocked) +
                         ".  Please ask your administrator to ensure you have full permissions to this folder.";
  EXPECT_NE(LogText().find(expected), std::string::npos);

  LcUString found;
  LcUString list;
  LcUSysFile::JoinSearchPath(In(u"missing").Get(), folder.Get(), list);
  EXPECT_TRUE(LcUSysFile::FindInSearchPath(list.Get(), u"made/./below", found));
  EXPECT_TRUE(LcUSysFile::IsDirectory(found.Get()));
  EXPECT_FALSE(LcUSysFile::FindInSearchPath(list.Get(), u"nowhere", found));
  EXPECT_TRUE(found.IsEmpty());
}

TEST_F(LcUSysFileOps, DirectoryMessagesComeFromTheStringTable) {
  LcUString blocker = In(u"blocker"), blocked, table = In(u"messages.name");
  ASSERT_TRUE(WriteFile(blocker, "x"));
  LcUSysFile::Join(blocker.Get(), u"sub", blocked);
  // A table's text is no format: stray directives come out as written.
  ASSERT_TRUE(WriteFile(table, "lcufileutils_failed_to_create_dir=Kein Ordner %s (%d %n)\n"));
  LcUResource::Initialize();
  ASSERT_TRUE(LcUResource::LoadNameFile(table.Get(), nullptr));
  EXPECT_FALSE(LcUSysFile::EnsureDirectory(blocked.Get()));
  LcUResource::Terminate();
  EXPECT_NE(LogText().find("Kein Ordner " + Narrow(blocked) + " (%d %n)"), std::string::npos) << LogText();
}

TEST_F(LcUSysFileOps, NativeFileSizesAndExcludes) {
  LcUString path = In(u"native.bin");
  LcUSysNativeFile file;
  ASSERT_TRUE(file.Open(path.Get(), LcUSysFileHandle::eACCESS_READ_WRITE, LcUSysFileHandle::eCREATE_NEW, 0,
                        LcUSysNativeFile::eHINT_SEQUENTIAL, 4096));
  int64_t size = 0;
  EXPECT_TRUE(LcUSysFile::GetSize(path.Get(), size));
  EXPECT_EQ(size, 4096);
  LcUSysNativeFile second;
  // On Linux the lock is advisory: it stops only an opener that locks too.
  EXPECT_FALSE(second.Open(path.Get(), LcUSysFileHandle::eACCESS_READ, LcUSysFileHandle::eOPEN_EXISTING,
                           LcUSysNativeFile::eSHARE_READ, 0, 0))
      << "the first shares nothing";
  EXPECT_TRUE(file.Sync());
  EXPECT_TRUE(file.Close());
  EXPECT_TRUE(second.Open(path.Get(), LcUSysFileHandle::eACCESS_READ, LcUSysFileHandle::eOPEN_EXISTING,
                          LcUSysNativeFile::eSHARE_READ, LcUSysNativeFile::eHINT_DELETE_ON_CLOSE, 0));
  EXPECT_TRUE(second.Close());
  EXPECT_FALSE(LcUSysFile::Exists(path.Get()));
  EXPECT_FALSE(file.Open(folder.Get(), LcUSysFileHandle::eACCESS_READ, LcUSysFileHandle::eOPEN_EXISTING, 3, 0, 0));
}

TEST_F(LcUSysFileOps, ProcessPaths) {
  LcUString path;
  EXPECT_TRUE(LcUSysFile::GetCurrentDirectory(path));
  EXPECT_TRUE(LcUSysFile::IsDirectory(path.Get()));
  ASSERT_TRUE(LcUSysFile::GetExecutablePath(path));
  EXPECT_TRUE(LcUSysFile::Exists(path.Get()));
  LcUString module;
  ASSERT_TRUE(LcUSysFile::GetModulePath(reinterpret_cast<const void*>(static_cast<bool (*)(const char16_t*)>(&LcUSysFile::Exists)), module));
  EXPECT_EQ(module, path) << "the file layer is linked into the program";
  EXPECT_FALSE(LcUSysFile::GetEnvironment(u"TW_SURELY_NOT_SET_ANYWHERE", path));
  EXPECT_TRUE(LcUSysFile::GetEnvironment(u"PATH", path));
  EXPECT_FALSE(path.IsEmpty());
}
}  // namespace
