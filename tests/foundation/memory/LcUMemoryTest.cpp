#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <new>
#include <random>
#include <string>
#include <vector>

#include "../ArenaTesting.h"
#include "../ErrorTesting.h"
#include "foundation/LcUDeletable.h"
#include "foundation/LcUMemory.h"
#include "foundation/LcUMemoryPool.h"
#include "foundation/LcUString.h"
#include "foundation/LcUStringPtr.h"
#include "foundation/LcUSysError.h"

using ErrorTesting::Logged;
using ErrorTesting::LogText;

namespace {

class LcUMemoryTest : public testing::Test {
protected:
  void SetUp() override { ASSERT_TRUE(LcUMemory::Initialize()); }
  void TearDown() override {
    EXPECT_EQ(LcUMemory::GetArenaBytes(), 0u);
    EXPECT_EQ(LcUMemory::GetMallocBytes(), 0u);
    EXPECT_EQ(LcUMemory::GetRegionBytes(), 0u);
    LcUMemory::Terminate();
  }
};

struct MediumRow {
  uint64_t blockSize, lowest, regionBytes, pageBytes, blocksPerRegion;
};
}  // namespace

TEST_F(LcUMemoryTest, MediumTablesHaveTheListedArenas) {
  const MediumRow rows[] = {
      {520, 513, 65536, 65536, 125},    {544, 537, 65536, 16384, 120},    {904, 897, 65536, 8192, 72},
      {1016, 1001, 65536, 8192, 64},    {1056, 1025, 65536, 65536, 62},   {4224, 4097, 131072, 131072, 31},
      {4352, 4225, 65536, 65536, 15},   {8448, 8193, 262144, 262144, 31}, {16256, 15361, 65536, 16384, 4},
  };
  for (const MediumRow& row : rows) {
    SCOPED_TRACE(row.blockSize);
    // Every size of the group selects the arena: the lowest and the top.
    EXPECT_EQ(LcUMemory::GetNextArenaSize(row.lowest - 1), row.blockSize);
    EXPECT_EQ(LcUMemory::GetArenaRegionBytes(row.blockSize), row.regionBytes);
    std::vector<void*> blocks;
    do {
      blocks.push_back(LcUMemory::Alloc(row.lowest, 8, 0));
      ASSERT_NE(blocks.back(), nullptr);
      if (blocks.size() == 1) { EXPECT_EQ(LcUMemory::GetArenaCommittedBytes(row.lowest), row.pageBytes); }
    } while (LcUMemory::GetArenaReservedBytes(row.blockSize) == row.regionBytes);
    EXPECT_EQ(blocks.size() - 1, row.blocksPerRegion);
    EXPECT_EQ(LcUMemory::GetArenaBytes(), blocks.size() * row.blockSize);
    for (void* block : blocks) LcUMemory::Free(block, row.blockSize, 8);
    EXPECT_EQ(LcUMemory::GetArenaReservedBytes(row.blockSize), 0u);
  }
}

TEST_F(LcUMemoryTest, WalkingTheArenasFindsEveryTier) {
  int medium = 0, small = 0;
  std::vector<uint64_t> above;
  for (uint64_t n = LcUMemory::GetNextArenaSize(0); n; n = LcUMemory::GetNextArenaSize(n)) {
    if (n <= 512) ++small;
    else if (n <= 16256) ++medium;
    else above.push_back(n);
  }
  EXPECT_EQ(small, 128);
  EXPECT_EQ(medium, 131);
  EXPECT_EQ(above, std::vector<uint64_t>({32720}));
}

TEST_F(LcUMemoryTest, GoodSizeWastesNothingInItsTier) {
  const std::pair<uint64_t, uint64_t> cases[] = {
      {0, 4},         {4, 4},         {5, 8},         {500, 512},      {512, 512},       {513, 1016},
      {1017, 2032},   {2033, 4064},   {4065, 8128},   {8129, 16256},   {16256, 16256},   {16257, 32720},
      {32720, 32720}, {32721, 65536}, {65536, 65536}, {65537, 131072}, {uint64_t(1) << 63, uint64_t(1) << 63},
      {(uint64_t(1) << 63) + 1, 0},
  };
  for (auto [n, good] : cases) EXPECT_EQ(LcUMemory::GoodSize(n), good) << n;
}

TEST_F(LcUMemoryTest, TierBoundariesCountInTheirCounters) {
  struct Case {
    uint64_t size;
    uint64_t arena, region;
    bool heap;
  };
  const Case cases[] = {{4, 4, 0, false},         {12, 12, 0, false},       {1017, 1056, 0, false},
                        {16256, 16256, 0, false}, {16257, 0, 0, true},      {16384, 0, 0, true},
                        {32720, 32720, 0, false}, {32721, 0, 0, true},      {65536, 0, 65536, false},
                        {131072, 0, 131072, false}, {8u << 20, 0, 8u << 20, false}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.size);
    void* block = LcUMemory::Alloc(c.size, 4, 0);
    ASSERT_NE(block, nullptr);
    std::memset(block, 0x5A, c.size);
    EXPECT_EQ(LcUMemory::GetArenaBytes(), c.arena);
    EXPECT_EQ(LcUMemory::GetRegionBytes(), c.region);
    EXPECT_EQ(LcUMemory::GetMallocBytes() >= c.size, c.heap);
    if (c.region) { EXPECT_EQ(reinterpret_cast<uintptr_t>(block) % LcUMemory::GetRegionSize(), 0u); }
    LcUMemory::Free(block, c.size, 4);
    EXPECT_EQ(LcUMemory::GetArenaBytes() + LcUMemory::GetRegionBytes() + LcUMemory::GetMallocBytes(), 0u);
  }
  EXPECT_EQ(LcUMemory::Alloc(0, 8, 0), nullptr);
  LcUMemory::Free(nullptr, 100, 8);
}

TEST_F(LcUMemoryTest, SmallSizesOfOneBlockSizeKeepTheirArenasApart) {
  void* four = LcUMemory::Alloc(4, 4, 0);
  void* eight = LcUMemory::Alloc(8, 8, 0);
  EXPECT_EQ(LcUMemory::GetArenaBytes(), 12u);
  EXPECT_EQ(LcUMemory::GetArenaUsedBlocks(4), 1u);
  EXPECT_EQ(LcUMemory::GetArenaUsedBlocks(8), 1u);
  // Blocks of both are 8 bytes, but in different regions.
  EXPECT_NE(reinterpret_cast<uintptr_t>(four) & ~uintptr_t(0xFFFF), reinterpret_cast<uintptr_t>(eight) & ~uintptr_t(0xFFFF));
  LcUMemory::Free(four, 4, 4);
  LcUMemory::Free(eight, 8, 8);
}

TEST_F(LcUMemoryTest, ReallocStaysWhereBothSizesShareAnArena) {
  struct Case {
    uint64_t from, to;
    uint32_t alignment;
    bool stays;
  };
  const Case cases[] = {{16000, 16100, 8, true}, {13, 16, 8, true},      {5, 8, 4, true},        {4, 8, 4, false},
                        {1017, 1056, 8, true},   {1016, 1017, 8, false}, {20000, 30000, 8, true}, {100, 20000, 8, false},
                        {20000, 70000, 8, false}, {70000, 300, 8, false}};
  for (const Case& c : cases) {
    SCOPED_TRACE(std::to_string(c.from) + " to " + std::to_string(c.to));
    auto* block = static_cast<unsigned char*>(LcUMemory::Alloc(c.from, c.alignment, 0));
    for (uint64_t i = 0; i < c.from; ++i) block[i] = static_cast<unsigned char>(i * 7);
    auto* moved = static_cast<unsigned char*>(LcUMemory::Realloc(block, c.from, c.to, c.alignment));
    ASSERT_NE(moved, nullptr);
    // The heap may or may not move a block; only the arenas promise to stay.
    if (c.from <= 16256) { EXPECT_EQ(moved == block, c.stays); }
    for (uint64_t i = 0; i < std::min(c.from, c.to); ++i) ASSERT_EQ(moved[i], static_cast<unsigned char>(i * 7)) << i;
    LcUMemory::Free(moved, c.to, c.alignment);
  }
  uint64_t size = 100;
  void* block = LcUMemory::ReallocGood(nullptr, size, 600, 8);
  EXPECT_EQ(size, 1016u);
  EXPECT_EQ(LcUMemory::Realloc(block, size, 0, 8), nullptr);
}

TEST_F(LcUMemoryTest, HeapFallbackIsFoundByItsOffsetByte) {
  const uint64_t size = 8u << 20;
  for (unsigned char offset : {8, 16}) {
    auto* heap = static_cast<unsigned char*>(LcUMemory::MallocAlloc(size + 16, 0));
    heap[offset - 1] = offset;
    LcUMemory::Free(heap + offset, size, 8);
    EXPECT_EQ(LcUMemory::GetMallocBytes(), 0u);
  }
  auto* heap = static_cast<unsigned char*>(LcUMemory::MallocAlloc(size + 16, 0));
  heap[7] = 3;
  std::string log = Logged([&] { LcUMemory::Free(heap + 8, size, 8); });
  char expected[96];
  std::snprintf(expected, sizeof(expected), "Dealloc: Large Block %x not region aligned and has invalid offset 3",
                unsigned(reinterpret_cast<uintptr_t>(heap + 8)));
  EXPECT_EQ(log, expected);
  EXPECT_NE(LcUMemory::GetMallocBytes(), 0u);
  LcUMemory::MallocFree(heap);
}

// Size 36 has 16384-byte pages in 65536-byte regions.
TEST_F(LcUMemoryTest, RegionKeepsPageZeroUntilItEmpties) {
  const uint64_t size = 36, page = 16384;
  std::vector<void*> blocks;
  while (LcUMemory::GetArenaCommittedBytes(size) < 3 * page) blocks.push_back(LcUMemory::Alloc(size, 4, 0));
  EXPECT_EQ(LcUMemory::GetArenaReservedBytes(size), 65536u);
  // The newest block opened page 2; emptying it decommits the page.
  LcUMemory::Free(blocks.back(), size, 4);
  blocks.pop_back();
  EXPECT_EQ(LcUMemory::GetArenaCommittedBytes(size), 2 * page);
  // Emptying page 0 first keeps it, and page 1 with it.
  size_t pageZero = (page - 48) / 40;
  for (size_t i = 0; i < pageZero; ++i) LcUMemory::Free(blocks[i], size, 4);
  EXPECT_EQ(LcUMemory::GetArenaCommittedBytes(size), 2 * page);
  for (size_t i = pageZero; i + 1 < blocks.size(); ++i) LcUMemory::Free(blocks[i], size, 4);
  EXPECT_EQ(LcUMemory::GetArenaReservedBytes(size), 65536u);
  LcUMemory::Free(blocks.back(), size, 4);
  EXPECT_EQ(LcUMemory::GetArenaReservedBytes(size), 0u);
  EXPECT_EQ(LcUMemory::GetArenaUsedBlocks(size), 0u);
}

TEST_F(LcUMemoryTest, PagesHandOutHighestFirstAndFreedBlocksOnTop) {
  EXPECT_EQ(ArenaTesting::HandOutOrderFaults(), "");
}

TEST_F(LcUMemoryTest, TerminateWithABlockOutstandingLeavesEverythingWorking) {
  void* block = LcUMemory::Alloc(100, 8, 0);
  std::string log = Logged([] { LcUMemory::Terminate(); });
  EXPECT_NE(log.find("104 arena bytes still allocated at LcUMemory::Terminate. Not terminating."), std::string::npos)
      << log;
  void* other = LcUMemory::Alloc(3000, 8, 0);
  ASSERT_NE(other, nullptr);
  LcUMemory::Free(other, 3000, 8);
  LcUMemory::Free(block, 100, 8);
}

// Each counter left over has its own line, in the order arena, malloc,
// region, as written with no line feed of their own.
TEST_F(LcUMemoryTest, TerminateNamesEachCounterLeftOver) {
  void* heap = LcUMemory::Alloc(20000, 8, 0);
  void* region = LcUMemory::Alloc(65536, 8, 0);
  void* arena = LcUMemory::Alloc(12, 4, 0);
  std::string expected = "12 arena bytes still allocated at LcUMemory::Terminate. Not terminating." +
                         std::to_string(LcUMemory::GetMallocBytes()) +
                         " malloc bytes still allocated at LcUMemory::Terminate. Not terminating."
                         "65536 region bytes still allocated at LcUMemory::Terminate. Not terminating.";
  EXPECT_EQ(Logged([] { LcUMemory::Terminate(); }), expected);
  LcUMemory::Free(arena, 12, 4);
  EXPECT_EQ(Logged([] { LcUMemory::Terminate(); }),
            std::to_string(LcUMemory::GetMallocBytes()) +
                " malloc bytes still allocated at LcUMemory::Terminate. Not terminating."
                "65536 region bytes still allocated at LcUMemory::Terminate. Not terminating.");
  LcUMemory::Free(heap, 20000, 8);
  EXPECT_EQ(Logged([] { LcUMemory::Terminate(); }),
            "65536 region bytes still allocated at LcUMemory::Terminate. Not terminating.");
  LcUMemory::Free(region, 65536, 8);
  EXPECT_EQ(LcUMemory::component.initCount, 1);
}

// The count of medium allocators is written at trace level 5 and above.
TEST_F(LcUMemoryTest, MediumAllocatorCountAtLevelFive) {
  int32_t level = LcUSysError::GetTraceLevel();
  for (int32_t trace : {4, 5}) {
    LcUMemory::Terminate();
    ASSERT_EQ(LcUMemory::component.initCount, 0);
    LcUSysError::SetTraceLevel(trace);
    std::string log = Logged([] { LcUMemory::Initialize(); });
    EXPECT_EQ(log, trace < 5 ? "" : "Created 131 medium block allocators\n") << trace;
  }
  LcUSysError::SetTraceLevel(level);
}

TEST_F(LcUMemoryTest, TotalCountsExternalBytesAndCallbacks) {
  static uint64_t reported = 1000;
  auto callback = [] { return reported; };
  LcUMemory::AddExternalBytes(50);
  ASSERT_TRUE(LcUMemory::AddUsageCallback(callback));
  void* block = LcUMemory::Alloc(64, 8, 0);
  EXPECT_EQ(LcUMemory::GetTotalBytes(), 1114u);
  LcUMemory::RemoveUsageCallback(callback);
  LcUMemory::RemoveExternalBytes(50);
  EXPECT_EQ(LcUMemory::GetTotalBytes(), 64u);
  LcUMemory::Free(block, 64, 8);
  // A callback left registered does not hold up Terminate.
  ASSERT_TRUE(LcUMemory::AddUsageCallback(callback));
}

namespace {
int handlerCalls = 0;
uint64_t handlerSizes[4];
int DeclineSecondCall(uint64_t size, uint32_t tryOnly) {
  if (handlerCalls < 4) handlerSizes[handlerCalls] = tryOnly ? ~size : size;
  return ++handlerCalls == 1;
}
}  // namespace

// operator new's failure path reaches the handler, which may ask for one
// more attempt; a refusal fails that request only, and the next one reaches
// the handler again.
TEST_F(LcUMemoryTest, OutOfMemoryHandlerServesOperatorNew) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "the sanitizer stops on impossible sizes before any handler";
#endif
  handlerCalls = 0;
  EXPECT_EQ(LcUMemory::SetOutOfMemoryHandler(DeclineSecondCall), nullptr);
  EXPECT_EQ(::operator new(size_t(1) << 62, std::nothrow), nullptr);
  EXPECT_EQ(handlerCalls, 2);
  EXPECT_EQ(::operator new(size_t(1) << 62, std::nothrow), nullptr);
  EXPECT_EQ(handlerCalls, 3) << "still connected after the refusal";
  // Each call hears the size asked for, as given, with tryOnly 0.
  const size_t odd = (size_t(1) << 62) + 12345;
  EXPECT_EQ(::operator new[](odd, std::nothrow), nullptr);
  EXPECT_EQ(handlerCalls, 4);
  const uint64_t asked[] = {uint64_t(1) << 62, uint64_t(1) << 62, uint64_t(1) << 62, odd};
  for (int i = 0; i < 4; ++i) EXPECT_EQ(handlerSizes[i], asked[i]) << i;
  EXPECT_EQ(LcUMemory::SetOutOfMemoryHandler(nullptr), DeclineSecondCall);
  EXPECT_EQ(::operator new(size_t(1) << 62, std::nothrow), nullptr);
  EXPECT_EQ(handlerCalls, 4);
}

TEST_F(LcUMemoryTest, RandomMixAcrossAllTiersKeepsContents) {
  struct Live {
    unsigned char* block;
    uint64_t size;
    uint32_t alignment;
    unsigned char fill;
  };
  std::mt19937_64 random(7);
  std::vector<Live> live;
  const uint64_t limits[] = {512, 16256, 40000, 200000, 9u << 20};
  auto randomSize = [&] {
    // Mostly arena sizes; the heap and region sizes are slow to fill.
    uint64_t roll = random() % 1000;
    uint64_t limit = limits[roll < 970 ? roll % 2 : roll < 995 ? 2 + roll % 2 : 4];
    return 1 + random() % limit;
  };
  auto check = [](const Live& l) {
    for (uint64_t i : {uint64_t(0), l.size / 2, l.size - 1}) ASSERT_EQ(l.block[i], l.fill);
  };
  // Enough to reach every tier many times over, and few enough that a busy
  // machine under Wine or a sanitizer still finishes well inside the timeout.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  const int operations = 50000;
#else
  const int operations = 200000;
#endif
  for (int op = 0; op < operations; ++op) {
    uint64_t choice = random() % 10;
    if (live.size() < 2000 && (choice < 5 || live.empty())) {
      Live l{nullptr, randomSize(), random() % 2 ? 8u : 4u, static_cast<unsigned char>(op)};
      l.block = static_cast<unsigned char*>(LcUMemory::Alloc(l.size, l.alignment, 0));
      ASSERT_NE(l.block, nullptr);
      std::memset(l.block, l.fill, l.size);
      live.push_back(l);
    } else {
      size_t at = random() % live.size();
      Live& l = live[at];
      check(l);
      if (choice < 8) {
        uint64_t to = randomSize();
        l.block = static_cast<unsigned char*>(LcUMemory::Realloc(l.block, l.size, to, l.alignment));
        ASSERT_NE(l.block, nullptr);
        for (uint64_t i : {uint64_t(0), std::min(l.size, to) - 1}) ASSERT_EQ(l.block[i], l.fill);
        l.size = to;
        std::memset(l.block, l.fill, l.size);
      } else {
        LcUMemory::Free(l.block, l.size, l.alignment);
        live[at] = live.back();
        live.pop_back();
      }
    }
    if (op % 250000 == 0) { ASSERT_TRUE(LcUMemory::CheckMemory()); }
  }
  for (Live& l : live) {
    check(l);
    LcUMemory::Free(l.block, l.size, l.alignment);
  }
  EXPECT_TRUE(LcUMemory::CheckMemory());
}

TEST_F(LcUMemoryTest, PoolHandsOutChunkBlocksAndGivesChunksBackOnDestroy) {
  LcUMemoryPool pool;
  LcUMemory::InitPoolForBlocks(pool, 20, 4);
  EXPECT_EQ(pool.blockSize, 24u);
  EXPECT_EQ(pool.chunkBytes, LcUMemory::GoodSize(24 * 256));
  uint64_t perChunk = pool.chunkBytes / pool.blockSize;
  std::vector<unsigned char*> blocks;
  for (uint64_t i = 0; i < perChunk + 1; ++i) blocks.push_back(static_cast<unsigned char*>(LcUMemory::PoolAlloc(pool)));
  // A new chunk is filled even without scrubbing, and bumped in order.
  EXPECT_EQ(blocks[1][0], 0xDD);
  EXPECT_EQ(blocks[1] - blocks[0], 24);
  EXPECT_EQ(pool.usedBlocks, perChunk + 1);
  EXPECT_EQ(LcUMemory::GetArenaBytes(), 2 * (pool.chunkBytes + 16));
  LcUMemory::PoolFree(pool, blocks[5]);
  EXPECT_EQ(LcUMemory::PoolAlloc(pool), blocks[5]);
  LcUMemory::PoolDestroy(pool);
  EXPECT_EQ(pool.usedBlocks, 0u);
}

namespace {
struct Sized : LcUDeletable {
  char payload[32];
};
}  // namespace

TEST_F(LcUMemoryTest, DeletableGoesBackToTheArenaOfItsSize) {
  LcUDeletable* object = new Sized;
  EXPECT_EQ(LcUMemory::GetArenaBytes(), sizeof(Sized));
  EXPECT_EQ(LcUMemory::GetArenaUsedBlocks(sizeof(Sized)), 1u);
  delete object;
  EXPECT_EQ(LcUMemory::GetArenaUsedBlocks(sizeof(Sized)), 0u);
}

// A heap request that can't be met comes back null under the sanitizers
// too, as the try-only paths expect of the platform heap.
#ifdef __SANITIZE_ADDRESS__
extern "C" const char* __asan_default_options() {
  return "allocator_may_return_null=1";
}
#endif
#ifdef __SANITIZE_THREAD__
extern "C" const char* __tsan_default_options() {
  return "allocator_may_return_null=1";
}
#endif

// The message shows the size's low 32 bits as a signed number.
TEST(LcUMemoryDeathTest, SizesAboveTheLimitAreFatal) {
  LcUMemory::Initialize();
  LcUSysError::SetFatalHook(ErrorTesting::LogToStderr);
  EXPECT_DEATH(LcUMemory::Alloc(0x7FF00001, 8, 0), "LcUMemory: Bad size 2146435073\n");
  EXPECT_DEATH(LcUMemory::Alloc(0x1FFFFFFF0ull, 8, 0), "LcUMemory: Bad size -16\n");
  int local = 0;
  EXPECT_DEATH(LcUMemory::Free(&local, 0x80000000ull, 8), "LcUMemory: Bad size -2147483648\n");
  EXPECT_DEATH(LcUMemory::Realloc(&local, 8, 0x7FF00001, 8), "LcUMemory: Bad size 2146435073\n");
  // A try-only request is not checked: it simply fails.
  EXPECT_EQ(LcUMemory::Alloc(uint64_t(1) << 62, 8, 1), nullptr);
  LcUSysError::SetFatalHook(nullptr);
  LcUMemory::Terminate();
}

// Strings bring the allocator up and take it down again: a stop in order
// leaves no component in the chain and nothing to report.
TEST(LcUMemoryLifecycleTest, StringsStartAndStopTheAllocator) {
  ASSERT_EQ(LcUMemory::component.initCount, 0);
  ASSERT_TRUE(LcUString::Initialize());
  EXPECT_EQ(LcUMemory::component.initCount, 1);
  {
    LcUString text(u"held while up");
    EXPECT_GT(LcUMemory::GetArenaBytes(), 0u);
  }
  std::string log = Logged([] { LcUString::Terminate(); });
  EXPECT_EQ(LcUMemory::component.initCount, 0);
  EXPECT_EQ(LcUSysError::component.initCount, 0);
  EXPECT_EQ(log.find("still"), std::string::npos) << log;

  // A block left over is reported, and the allocator stays up for it.
  ASSERT_TRUE(LcUString::Initialize());
  void* block = LcUMemory::Alloc(40, 8, 0);
  log = Logged([] { LcUString::Terminate(); });
  EXPECT_NE(log.find("40 arena bytes still allocated at LcUMemory::Terminate. Not terminating."), std::string::npos)
      << log;
  EXPECT_EQ(LcUMemory::component.initCount, 1);
  LcUMemory::Free(block, 40, 8);
  LcUMemory::Terminate();
  EXPECT_EQ(LcUMemory::component.initCount, 0);
}

// Size 36: 40-byte blocks, four 16384-byte pages to a 65536-byte region.
// Each damage is made for real in a live region, seen with its message,
// and undone.
// Each damage has its own text, with the figures of the region or page.
// Size 36 has 40-byte blocks in four 16384-byte pages (mask e) of a region.
TEST_F(LcUMemoryTest, CheckMemoryReportsEachDamageOfARegion) {
  struct Region {
    uintptr_t next, prev;
    uint64_t freePagesMask, uncommittedPagesMask;
  };
  struct Page {
    uintptr_t freeList;
    uint32_t usedCount;
  };
  const size_t pageZero = (16384 - 48) / 40;
  std::vector<char*> blocks;
  // Page 0 full and one block on page 1, so that both are checked.
  for (size_t i = 0; i < pageZero + 1; ++i) blocks.push_back(static_cast<char*>(LcUMemory::Alloc(36, 4, 0)));
  LcUMemory::Free(blocks[1], 36, 4);
  auto* region = reinterpret_cast<Region*>(reinterpret_cast<uintptr_t>(blocks[0]) & ~uintptr_t(0xFFFF));
  auto* page = reinterpret_cast<Page*>(reinterpret_cast<char*>(region) + 32);
  auto* pageOne = reinterpret_cast<Page*>(reinterpret_cast<char*>(region) + 16384);
  ASSERT_EQ(page->freeList, reinterpret_cast<uintptr_t>(blocks[1]));
  ASSERT_EQ(pageOne->usedCount, 1u);
  uintptr_t first = reinterpret_cast<uintptr_t>(page) + 16;
  auto text = [](const char* format, auto... values) {
    char line[160];
    std::snprintf(line, sizeof(line), format, unsigned(values)...);
    return std::string(line);
  };
  uintptr_t at = reinterpret_cast<uintptr_t>(region), pageAt = reinterpret_cast<uintptr_t>(page);
  struct Damage {
    uint64_t* field;
    uint64_t value;
    std::string expected;
  };
  const Damage damages[] = {
      {reinterpret_cast<uint64_t*>(&region->next), region->next + 8,
       text("Memory Region %x has invalid next pointer %x\n", at, region->next + 8)},
      {reinterpret_cast<uint64_t*>(&region->prev), region->prev + 8,
       text("Memory Region %x has invalid prev pointer %x\n", at, region->prev + 8)},
      {&region->uncommittedPagesMask, region->uncommittedPagesMask | 1,
       text("Memory Region %x has invalid uncommited pages mask %x (at most e bits can be set)\n", at,
            region->uncommittedPagesMask | 1)},
      {&region->freePagesMask, region->freePagesMask | 16,
       text("Memory Region %x has invalid free pages mask %x (at most f bits can be set)\n", at,
            region->freePagesMask | 16)},
      {reinterpret_cast<uint64_t*>(&page->freeList) + 1, pageZero + 1,
       text("Memory Page %x , size 16352, block size 40 has invalid used blocks %d\n", pageAt, pageZero + 1)},
      {reinterpret_cast<uint64_t*>(&pageOne->freeList) + 1, (16384 - 16) / 40 + 1,
       text("Memory Page %x , size 16384, block size 40 has invalid used blocks %d\n",
            reinterpret_cast<uintptr_t>(pageOne), (16384 - 16) / 40 + 1)},
      {reinterpret_cast<uint64_t*>(blocks[1]), first - 40,
       text("Free Block %x , size 40, is out of range for page %x, size 16352\n", first - 40, pageAt)},
      {reinterpret_cast<uint64_t*>(blocks[1]), first + 4,
       text("Free Block %x , size 40, on page %x points into middle of block\n", first + 4, pageAt)},
  };
  EXPECT_TRUE(LcUMemory::CheckMemory());
  for (const Damage& d : damages) {
    SCOPED_TRACE(d.expected);
    uint64_t kept = *d.field;
    *d.field = d.value;
    bool good = true;
    std::string log = Logged([&] { good = LcUMemory::CheckMemory(); });
    *d.field = kept;
    EXPECT_FALSE(good);
    EXPECT_EQ(log, d.expected);
    EXPECT_TRUE(LcUMemory::CheckMemory());
  }
  for (size_t i = 0; i < blocks.size(); ++i)
    if (i != 1) LcUMemory::Free(blocks[i], 36, 4);
}

// The compact forms give back exactly what they took, as they recompute it.
TEST_F(LcUMemoryTest, CompactStringsGiveBackTheirExactSize) {
  {
    LcUStringPtr wide(u"seven u");
    LcUStringPtrA narrow("nine byte");
    // 16 and 10 bytes, each rounded to 16.
    EXPECT_EQ(LcUMemory::GetArenaBytes(), 32u);
    wide = u"a much longer text than before";
    narrow.ClearPtr();
    // 62 bytes rounded to 64, and one byte counted as an 8-aligned block.
    EXPECT_EQ(LcUMemory::GetArenaBytes(), 72u);
    LcUStringPtr copy(wide);
    wide.Free();
    EXPECT_EQ(LcUMemory::GetArenaBytes(), 72u);
  }
  EXPECT_EQ(LcUMemory::GetArenaBytes(), 0u);
}
