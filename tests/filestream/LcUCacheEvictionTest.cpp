#include <filesystem>
#include <set>

#include "CacheTesting.h"
#include "environment/LcUSession.h"
#include "options/LcUExOptionSet.h"
#include "options/LcUOption.h"

namespace {
// Entries just under 1 MiB each, so that a limit in MiB falls between them.
constexpr size_t kEntrySize = 16 * 65536 - 4096;

class CacheEviction : public CacheTest {
protected:
  // Four complete entries, the first the oldest; their folders.
  std::vector<std::u16string> MakeEntries() {
    std::vector<std::u16string> entries;
    for (const char16_t* name : {u"e0.bin", u"e1.bin", u"e2.bin", u"e3.bin"}) {
      std::u16string url = Remote(name, kEntrySize);
      Stream(url, 0, kEntrySize);
      entries.push_back(EntryOf(url));
    }
    auto now = std::filesystem::file_time_type::clock::now();
    for (size_t i = 0; i < entries.size(); ++i)
      std::filesystem::last_write_time(Narrow(entries[i] + u"/data.twcacheinfo"),
                                       now - std::chrono::hours(10 - int(i)));
    return entries;
  }

  static std::u16string Parent(const std::u16string& path) { return path.substr(0, path.find_last_of(u"/\\")); }
};
}  // namespace

TEST_F(CacheEviction, OldestFirstUntilWithinTheLimitSparingTheNewestAndTheLocked) {
  const struct {
    int64_t maxSize;
    int32_t minInactive;
    std::set<size_t> locked;
    std::set<size_t> survivors;
  } cases[] = {
      {2, 1, {}, {2, 3}},
      {2, 1, {0}, {0, 3}},  // the locked one counts towards the total
      {0, 2, {}, {2, 3}},
      {0, 0, {}, {}},
      {0, 0, {1, 2}, {1, 2}},
      {1024, 0, {}, {0, 1, 2, 3}},
      {0, 3, {0}, {0, 1, 2, 3}},  // no more inactive entries than are to stay
      {0, 2, {3}, {1, 2, 3}},     // the locked are not among those spared
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.maxSize << " MiB, " << c.minInactive << " spared");
    std::vector<std::u16string> entries = MakeEntries();
    for (size_t i : c.locked) WriteText(entries[i] + u"/data.lock", "");
    cache->Evict(c.maxSize, c.minInactive);
    for (size_t i = 0; i < entries.size(); ++i) {
      bool kept = c.survivors.count(i) != 0;
      EXPECT_EQ(kept, Exists(entries[i] + u"/data.twcacheinfo")) << i;
      EXPECT_EQ(kept, Exists(Parent(entries[i]))) << "an emptied folder goes, its leaf too: " << i;
    }
    EXPECT_TRUE(Exists(Root()));
    for (size_t i : c.locked) LcUSysFile::Delete((entries[i] + u"/data.lock").c_str(), true);
    cache->Evict(0, 0);
    EXPECT_TRUE(Names(Root()).empty());
  }
}

TEST_F(CacheEviction, TheOptionsSetTheLimits) {
  std::vector<std::u16string> entries = MakeEntries();
  cache->Evict();
  EXPECT_EQ(4u, Names(Root()).size()) << "1024 MiB and 3 spared";
  ASSERT_TRUE(LcUOption::SetInt32("general.localcache.max_size", 1));
  ASSERT_TRUE(LcUOption::SetInt32("general.localcache.min_inactive_files", 1));
  cache->Evict();
  EXPECT_EQ(std::vector<std::u16string>{u"e3.bin"}, Names(Root()));
}

TEST_F(CacheEviction, ALinkInsideTheCacheIsNeverFollowed) {
  std::u16string user = PathOf(u"user");
  ASSERT_TRUE(LcUSysFile::CreateDirectories(user.c_str()));
  // It looks like an entry from inside.
  WriteText(user + u"/data.twcacheinfo", "{}");
  WriteText(user + u"/data_.bin", "mine");
  std::vector<std::u16string> entries = MakeEntries();
  std::error_code error;
  std::filesystem::create_directory_symlink(Narrow(user), Narrow(Root() + u"/linked"), error);
  std::filesystem::create_directory_symlink(Narrow(user), Narrow(entries[0] + u"/inner"), error);
  if (error) GTEST_SKIP() << "no symbolic links here: " << error.message();
  cache->Evict(0, 0);
  EXPECT_EQ("mine", Text(user + u"/data_.bin"));
  EXPECT_EQ("{}", Text(user + u"/data.twcacheinfo"));
  EXPECT_FALSE(Exists(entries[1]));
  EXPECT_FALSE(Exists(entries[0] + u"/data_.bin")) << "the entry around a link still goes";
}

TEST_F(CacheEviction, EmptyOnNextStartEmptiesTheCacheOnceAndClearsItself) {
  MakeEntries();
  // Held, so that the restart keeps this test's data folder and options.
  ASSERT_TRUE(LcUSession::Initialize());
  ASSERT_TRUE(LcUOption::Initialize());
  const char* path = "general.localcache.empty_on_next_start";
  LcUExOptionSet* saved = new LcUExOptionSet;
  saved->AddRef();
  ASSERT_TRUE(LcUOption::DefineBoolean(saved, path, true));
  int32_t i = -1;
  for (LcUOptionSet* set = LcUOption::FindOption(saved, path, i); set; set = set->parent) {
    set->SetState(i, 0);
    if (set->parent) i = set->parent->Find(set->name.Get());
  }
  LcUFileProtocolRegistry::GetInstance()->Unregister(u"rtest");
  LcUFileURL::Terminate();
  LcUOption::SetSavedOptions(saved);
  saved->Release();
  ASSERT_TRUE(LcUFileURL::Initialize());
  engine = LcUFileURL::GetInstance();
  ASSERT_TRUE(LcUFileProtocolRegistry::GetInstance()->Register(u"rtest", protocol));
  EXPECT_TRUE(Names(Root()).empty());
  bool empty = true;
  ASSERT_TRUE(LcUOption::TryGetBoolean(path, empty));
  EXPECT_FALSE(empty);
  LcUOption::SetSavedOptions(nullptr);
  LcUOption::Terminate();
  LcUSession::Terminate();
}
