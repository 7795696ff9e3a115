#include <cstring>

#include "FileURLTesting.h"
#include "foundation/LcUPage.h"
#include "foundation/LcUPageOutObserver.h"
#include "foundation/LcUPageOutProgress.h"
#include "options/LcUExOptionSet.h"
#include "options/LcUOption.h"
#include "options/LcUOptionLock.h"

namespace {
class FileURLMemory : public FileURLTest {
protected:
  // Reads blocks 0 to count - 1 one after another, so that each is
  // released when the next is read.
  void ReadBlocks(LcUFileURLFile* file, uint32_t count) {
    engine->PrepareRead(file, 0, uint64_t(count) * B);
    for (uint32_t i = 0; i <= count; ++i) {
      uint8_t out[8];
      ASSERT_EQ(0, engine->Read(file, LcUFileURLImpl::eBLOCKING, uint64_t(i % count) * B, out, sizeof out)) << i;
    }
  }
  // Starts the component again, as a later start in the same process.
  void Restart() {
    LcUFileProtocolRegistry::GetInstance()->Unregister(u"rtest");
    LcUFileURL::Terminate();
    ASSERT_TRUE(LcUFileURL::Initialize());
    InstallAppInfo();
    engine = LcUFileURL::GetInstance();
    ASSERT_TRUE(LcUFileProtocolRegistry::GetInstance()->Register(u"rtest", protocol));
    engine->SetClock([] { return now.load(); });
  }
};

// Says enough after `limit` freed units.
struct CountingProgress : LcUPageOutProgress {
  explicit CountingProgress(int32_t limit) : limit(limit) {}
  int32_t Check(int32_t flag) override { return ++checks >= limit; }
  int32_t limit;
  int32_t checks = 0;
};

const char* const kModePath = "general.file_streaming.cache_mode";
}  // namespace

TEST_F(FileURLMemory, OwnCachingKeepsBlocksUntilMemoryIsShort) {
  std::vector<uint8_t> data = Pattern(8 * B);
  std::u16string path = MakeFile(u"cached.bin", data);
  LcUFileURLFile* file = OpenRead(path);
  ASSERT_NE(nullptr, file);
  ASSERT_TRUE(engine->IsOwnCaching());
  engine->SetMemoryTest([] { return false; });
  ReadBlocks(file, 8);
  // Pass 1 gives back every clean block: all but the reader's, past the target.
  CountingProgress all(100);
  EXPECT_EQ(0, engine->PageOut(0, 0, 0, 1, &all));
  EXPECT_EQ(7, all.checks);
  ReadBlocks(file, 8);
  CountingProgress two(2);
  EXPECT_EQ(0, engine->PageOut(0, 0, 0, 1, &two));
  EXPECT_EQ(2, two.checks) << "it stops when told";
  EXPECT_EQ(1, two.done);
  // Short of memory, the next release trims the clean list to the target.
  engine->SetMemoryTest([] { return true; });
  ReadBlocks(file, 8);
  CountingProgress rest(100);
  EXPECT_EQ(0, engine->PageOut(0, 0, 0, 1, &rest));
  EXPECT_LE(rest.checks, LcUFileURLImpl::eMIN_BUFFER_TARGET);
  CountingProgress other(100);
  EXPECT_EQ(0, engine->PageOut(0, 0, 0, 3, &other));
  EXPECT_EQ(0, other.checks) << "only passes 1 and 8 act";
  engine->SetMemoryTest(nullptr);
  engine->Close(file);
}

TEST_F(FileURLMemory, PassEightWritesTheDirtyBlocks) {
  std::u16string path = MakeFile(u"dirty.bin", std::vector<uint8_t>(4 * B));
  LcUFileURLFile* file = engine->Open(path.c_str(), nullptr, LcUFileURLFile::eOPEN_WRITE, 3);
  ASSERT_NE(nullptr, file);
  engine->SetMemoryTest([] { return false; });
  std::vector<uint8_t> data = Pattern(4 * B, 11);
  ASSERT_EQ(0, engine->Write(file, LcUFileURLImpl::eBLOCKING, 0, data.data(), uint32_t(data.size())));
  // Block 3 is the writer's; the other three wait on the dirty list.
  engine->PrepareRead(file, 0, 1);
  CountingProgress progress(100);
  EXPECT_EQ(1, engine->PageOut(0, 0, 0, 8, &progress));
  std::vector<uint8_t> disk = ReadDisk(path);
  ASSERT_EQ(4u * B, disk.size());
  EXPECT_EQ(0, std::memcmp(disk.data(), data.data(), 3 * B)) << "written while open";
  engine->Close(file);
  EXPECT_EQ(data, ReadDisk(path));
}

// The mode in force at a first start is 0, whatever the option will say.
TEST_F(FileURLMemory, TheComponentDefinesItsCacheModeOption) {
  ASSERT_TRUE(LcUOption::Initialize());
  LcUSysError::SetTraceLevel(5);
  int32_t mode = -1;
  ASSERT_TRUE(LcUOption::TryGetInt32(kModePath, mode));
  EXPECT_EQ(0, mode);
  EXPECT_EQ(!LcUPage::IsAddressSpaceBound(), engine->IsOwnCaching());
  size_t before = LogText().size();
  Restart();
  EXPECT_EQ(1u, Count(LogText().substr(before), engine->IsOwnCaching() ? "LcUFileURL- Own Caching=1"
                                                                         : "LcUFileURL- Own Caching=0"));
  LcUFileProtocolRegistry::GetInstance()->Unregister(u"rtest");
  LcUFileURL::Terminate();
  EXPECT_FALSE(LcUOption::TryGetInt32(kModePath, mode)) << "gone with the component";
  ASSERT_TRUE(LcUFileURL::Initialize());
  InstallAppInfo();
  engine = LcUFileURL::GetInstance();
  ASSERT_TRUE(LcUFileProtocolRegistry::GetInstance()->Register(u"rtest", protocol));
  LcUOption::Terminate();
}

// A saved mode takes effect at the start after the one that defined it.
TEST_F(FileURLMemory, ASavedCacheModeTellsFromTheNextStart) {
  ASSERT_TRUE(LcUOption::Initialize());
  {
    LcUOptionLock lock;
    int32_t i = -1;
    LcUOptionSet* set = LcUOption::FindOption(LcUOption::GetPresentRoot(), kModePath, i);
    ASSERT_GE(i, 0);
    EXPECT_EQ(1, set->GetLevel(i));
    EXPECT_EQ(8u, set->GetDefineFlags(i));
  }
  LcUExOptionSet* saved = new LcUExOptionSet;
  saved->AddRef();
  LcUOption::DefineInt32(saved, kModePath, 2);
  LcUOption::SetSavedOptions(saved);
  Restart();
  int32_t mode = -1;
  ASSERT_TRUE(LcUOption::TryGetInt32(kModePath, mode));
  EXPECT_EQ(2, mode);
  EXPECT_EQ(!LcUPage::IsAddressSpaceBound(), engine->IsOwnCaching()) << "built before the option was read";
  Restart();
  EXPECT_FALSE(engine->IsOwnCaching());
  // The mode lives on from start to start; a saved 0 brings it back.
  LcUOption::SetInt32(saved, kModePath, 0);
  LcUOption::SetSavedOptions(saved);
  Restart();
  Restart();
  EXPECT_EQ(!LcUPage::IsAddressSpaceBound(), engine->IsOwnCaching());
  LcUOption::SetSavedOptions(nullptr);
  saved->Release();
  LcUOption::Terminate();
}

// Each dirty block is tried once a pass, so a file that refuses writes
// cannot hold the pass.
TEST_F(FileURLMemory, AWriteThatKeepsFailingEndsThePassAllTheSame) {
  std::vector<uint8_t> data = Pattern(2 * B);
  std::u16string path = MakeFile(u"readonly.bin", data);
  // Open for reading only: the local file refuses every write.
  LcUFileURLFile* file = OpenRead(path);
  ASSERT_NE(nullptr, file);
  engine->SetMemoryTest([] { return false; });
  uint8_t patch[10] = {};
  ASSERT_EQ(0, engine->Write(file, LcUFileURLImpl::eBLOCKING, 0, patch, sizeof patch));
  uint8_t out[4];
  ASSERT_EQ(0, engine->Read(file, LcUFileURLImpl::eBLOCKING, B, out, sizeof out));
  CountingProgress progress(100);
  EXPECT_EQ(1, engine->PageOut(0, 0, 0, 8, &progress));
  engine->Close(file);
  EXPECT_EQ(data, ReadDisk(path));
}

TEST_F(FileURLMemory, AFileFourTimesTheAllocLimitStreamsWithinIt) {
  ASSERT_TRUE(engine->IsOwnCaching());
  uint64_t limit = LcUMemory::GetTotalBytes() + 48 * B;
  uint64_t size = 4 * limit;
  std::vector<uint8_t> data = Pattern(size_t(size));
  std::u16string path = MakeFile(u"large.bin", data);
  LcUFileURLFile* file = OpenRead(path);
  ASSERT_NE(nullptr, file);
  LcUPage::SetAllocLimit(limit);
  uint64_t peak = 0;
  std::vector<uint8_t> out(B);
  bool same = true;
  for (uint64_t offset = 0; offset < size; offset += B) {
    uint32_t length = uint32_t(std::min<uint64_t>(B, size - offset));
    engine->PrepareRead(file, offset, length);
    ASSERT_EQ(0, engine->Read(file, LcUFileURLImpl::eBLOCKING, offset, out.data(), length)) << offset;
    same = same && std::memcmp(out.data(), data.data() + offset, length) == 0;
    peak = std::max(peak, LcUMemory::GetTotalBytes());
  }
  LcUPage::SetAllocLimit(0);
  engine->Close(file);
  EXPECT_TRUE(same);
  EXPECT_LE(peak, limit);
  EXPECT_FALSE(LcUPage::IsOutOfMemory());
}

TEST_F(FileURLMemory, TakingABufferPastTheLimitGivesCleanBlocksBack) {
  std::vector<uint8_t> data = Pattern(24 * B);
  LcUFileURLFile* file = OpenRead(MakeFile(u"kept.bin", data));
  ASSERT_NE(nullptr, file);
  uint64_t limit = LcUMemory::GetTotalBytes() + 40 * B;
  LcUPage::SetAllocLimit(limit);
  ReadBlocks(file, 16);
  // Something else takes memory past the limit; the next buffer taken
  // makes the cache give back what it keeps.
  void* other = LcUMemory::Alloc(30 * B, 16, 0);
  ASSERT_GT(LcUMemory::GetTotalBytes(), limit);
  struct Observer : LcUPageOutObserver {
    int32_t OnPageOutBegin() override { return 0; }
    void OnPageOutEnd(int32_t result) override { results.push_back(result); }
    std::vector<int32_t> results;
  } observer;
  LcUPage::AddObserver(&observer);
  uint8_t out[8];
  engine->PrepareRead(file, 20 * B, sizeof out);
  ASSERT_EQ(0, engine->Read(file, LcUFileURLImpl::eBLOCKING, 20 * B, out, sizeof out));
  LcUPage::RemoveObserver(&observer);
  EXPECT_LT(LcUMemory::GetTotalBytes(), limit);
  ASSERT_FALSE(observer.results.empty());
  EXPECT_EQ(LcUPage::eSUCCEEDED, observer.results.front());
  EXPECT_EQ(0, std::memcmp(out, data.data() + 20 * B, sizeof out));
  LcUMemory::Free(other, 30 * B, 16);
  LcUPage::SetAllocLimit(0);
  engine->Close(file);
}
