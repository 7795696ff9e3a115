#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "foundation/LcUFileLock.h"

namespace {
// A folder both processes of a death test find again; one per test, so that
// tests running side by side don't meet.
std::string Folder() {
  std::filesystem::path folder = std::filesystem::current_path() /
                                 ("filelock-" + std::string(testing::UnitTest::GetInstance()->current_test_info()->name()));
  std::filesystem::create_directories(folder);
  return folder.string();
}

// Exit code 2 if the child got the lock, 3 if not; it leaves no file behind.
[[noreturn]] void TryInChild(const std::string& folder) {
  LcUFileLock other(folder.c_str(), "data.lock");
  bool taken = other.TryLock();
  other.Unlock();
  std::_Exit(taken ? 2 : 3);
}
}  // namespace

TEST(LcUFileLockTest, OneHolderPerFileAndUnlockLetsGo) {
  std::string folder = Folder();
  LcUFileLock first(folder.c_str(), "data.lock");
  LcUFileLock second((folder + "/").c_str(), "data.lock");
  EXPECT_FALSE(first.Unlock());
  ASSERT_TRUE(first.TryLock());
  EXPECT_TRUE(first.IsHeld());
  EXPECT_TRUE(std::filesystem::exists(folder + "/data.lock"));
  EXPECT_FALSE(second.TryLock());
  EXPECT_FALSE(first.TryLock());
  EXPECT_TRUE(first.Unlock());
  EXPECT_FALSE(std::filesystem::exists(folder + "/data.lock"));
  {
    LcUFileLock third(folder.c_str(), "data.lock");
    EXPECT_TRUE(third.TryLock());
  }
  EXPECT_FALSE(std::filesystem::exists(folder + "/data.lock"));
  std::filesystem::remove_all(folder);
}

TEST(LcUFileLockTest, MissingDirectoryFails) {
  LcUFileLock lock((Folder() + "/absent").c_str(), "data.lock");
  EXPECT_FALSE(lock.TryLock());
  EXPECT_FALSE(lock.IsHeld());
}

// The child re-runs the test from its start, where the parent's lock is
// already held by the parent.
TEST(LcUFileLockDeathTest, ASecondProcessIsExcluded) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  std::string folder = Folder();
  LcUFileLock lock(folder.c_str(), "data.lock");
  bool held = lock.TryLock();
  EXPECT_EXIT(TryInChild(folder), testing::ExitedWithCode(3), "");
  EXPECT_TRUE(held);
  EXPECT_TRUE(lock.Unlock());
}

TEST(LcUFileLockDeathTest, ASecondProcessTakesAReleasedLock) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  std::string folder = Folder();
  {
    LcUFileLock lock(folder.c_str(), "data.lock");
    EXPECT_TRUE(lock.TryLock());
  }
  EXPECT_EXIT(TryInChild(folder), testing::ExitedWithCode(2), "");
  LcUFileLock again(folder.c_str(), "data.lock");
  EXPECT_TRUE(again.TryLock());
}
