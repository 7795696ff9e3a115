#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>

#include "../ArenaTesting.h"
#include "../ErrorTesting.h"
#include "foundation/LcUMemory.h"
#include "foundation/LcUMemoryPool.h"

// The switches are read once at start, so every case starts the allocator
// in a child process of its own, after setting them.
using ErrorTesting::ChildChecks;
using ErrorTesting::LogText;

namespace {
void StartWith(const char* setting) {
  static std::string kept[8];
  static int used = 0;
  kept[used] = setting;
  putenv(&kept[used++][0]);
}

bool Mentions(const std::string& text) {
  return LogText().find(text) != std::string::npos;
}

std::string Hex(const void* p) {
  char text[32];
  std::snprintf(text, sizeof(text), "%x", unsigned(reinterpret_cast<uintptr_t>(p)));
  return text;
}

void ScrubAndCheck() {
  StartWith("TW_SCRUB_MEMORY=1");
  StartWith("TW_CHECK_MEMORY=yes");
  LcUMemory::Initialize();
}
}  // namespace

TEST(LcUMemoryCheckDeathTest, WritePastTheRequestedSizeIsReportedOnFree) {
  EXPECT_EXIT(
      {
        ScrubAndCheck();
        ChildChecks checks;
        auto* block = static_cast<unsigned char*>(LcUMemory::Alloc(12, 4, 0));
        checks.Expect(block[0] == 0xCD && block[11] == 0xCD && block[12] == 0xFD && block[15] == 0xFD, "fill");
        block[13] = 0x11;
        LcUMemory::Free(block, 12, 4);
        checks.Expect(Mentions("Memory block at " + Hex(block) + " has value 11 at offset 13, expected fd"), LogText());
        checks.Finish();
      },
      testing::ExitedWithCode(0), "");
}

TEST(LcUMemoryCheckDeathTest, WriteIntoAFreedBlockIsReportedOnTheNextAlloc) {
  EXPECT_EXIT(
      {
        ScrubAndCheck();
        ChildChecks checks;
        // Keeps the region alive when the block goes.
        void* keeper = LcUMemory::Alloc(64, 8, 0);
        auto* block = static_cast<unsigned char*>(LcUMemory::Alloc(64, 8, 0));
        LcUMemory::Free(block, 64, 8);
        checks.Expect(block[8] == 0xDD && block[63] == 0xDD, "freed fill");
        block[40] = 0x22;
        void* again = LcUMemory::Alloc(64, 8, 0);
        checks.Expect(again == block, "freed block comes back first");
        checks.Expect(Mentions("Memory block at " + Hex(block) + " has value 22 at offset 8, expected dd"), LogText());
        LcUMemory::Free(again, 64, 8);
        LcUMemory::Free(keeper, 64, 8);
        checks.Finish();
      },
      testing::ExitedWithCode(0), "");
}

TEST(LcUMemoryCheckDeathTest, DamagedFreeListsAndWrongArenasAreReported) {
  EXPECT_EXIT(
      {
        ScrubAndCheck();
        ChildChecks checks;
        auto* first = static_cast<char*>(LcUMemory::Alloc(64, 8, 0));
        void* second = LcUMemory::Alloc(64, 8, 0);
        checks.Expect(LcUMemory::CheckMemory(), "sound before damage");
        LcUMemory::Free(first, 64, 8);
        char* link = *reinterpret_cast<char**>(first);
        *reinterpret_cast<char**>(first) = first - 28;
        checks.Expect(!LcUMemory::CheckMemory(), "damage found");
        checks.Expect(Mentions("Free Block " + Hex(first - 28) + " , size 64, on page "), LogText());
        checks.Expect(Mentions("points into middle of block\n"), LogText());
        *reinterpret_cast<char**>(first) = link;
        LcUMemory::Free(second, 32, 8);
        void* secondRegion = reinterpret_cast<void*>(reinterpret_cast<uintptr_t>(second) & ~uintptr_t(0xFFFF));
        checks.Expect(Mentions("Dealloc: Block " + Hex(second) + " lies in region " + Hex(secondRegion) +
                               " which is not in arena "),
                      LogText());
        checks.Expect(LcUMemory::GetArenaUsedBlocks(64) == 1, "wrong free ignored");
        LcUMemory::Free(second, 64, 8);
        // A region with nothing left to give is still the arena's own: size
        // 520 has 125 blocks in a single-page region.
        size_t logged = LogText().size();
        void* full[125];
        for (void*& b : full) b = LcUMemory::Alloc(520, 8, 0);
        checks.Expect(LcUMemory::GetArenaReservedBytes(520) == 65536, "one full region");
        for (void* b : full) LcUMemory::Free(b, 520, 8);
        checks.Expect(LcUMemory::GetArenaUsedBlocks(520) == 0 && LcUMemory::GetArenaReservedBytes(520) == 0,
                      "every block of the full region given back");
        checks.Expect(LogText().size() == logged, LogText().substr(logged));
        checks.Finish();
      },
      testing::ExitedWithCode(0), "");
}

TEST(LcUMemoryCheckDeathTest, CheckedPagesHandOutInTheSameOrder) {
  EXPECT_EXIT(
      {
        ScrubAndCheck();
        ChildChecks checks;
        std::string faults = ArenaTesting::HandOutOrderFaults();
        checks.Expect(faults.empty(), faults);
        checks.Expect(LogText().find("Memory") == std::string::npos, LogText());
        checks.Finish();
      },
      testing::ExitedWithCode(0), "");
}

TEST(LcUMemoryCheckDeathTest, SwitchCountsAsSetUnlessEmptyOrZero) {
  const std::pair<const char*, bool> cases[] = {{"TW_SCRUB_MEMORY=1", true},
                                                {"TW_SCRUB_MEMORY=0", false},
                                                {"TW_SCRUB_MEMORY=", false},
                                                {"TW_SCRUB_MEMORY=00", true}};
  for (auto [setting, scrubbed] : cases) {
    SCOPED_TRACE(setting);
    EXPECT_EXIT(
        {
          StartWith(setting);
          LcUMemory::Initialize();
          auto* block = static_cast<unsigned char*>(LcUMemory::Alloc(24, 8, 0));
          std::_Exit((block[0] == 0xCD) == scrubbed ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
  }
}

TEST(LcUMemoryCheckDeathTest, WithoutMediumArenasOnlyExactSizesStayInArenas) {
  EXPECT_EXIT(
      {
        StartWith("TW_DISABLE_MEDIUM_BLOCK_ALLOCATORS=1");
        LcUMemory::Initialize();
        ChildChecks checks;
        std::string walk;
        for (uint64_t n = LcUMemory::GetNextArenaSize(512); n; n = LcUMemory::GetNextArenaSize(n))
          walk += std::to_string(n) + " ";
        checks.Expect(walk == "1016 2040 4048 8144 16336 32720 ", walk);
        checks.Expect(LcUMemory::GoodSize(513) == 1016 && LcUMemory::GoodSize(16257) == 16336, "good sizes");
        void* exact = LcUMemory::Alloc(1016, 8, 0);
        void* heap = LcUMemory::Alloc(1000, 8, 0);
        checks.Expect(LcUMemory::GetArenaBytes() == 1016, "exact size in its arena");
        checks.Expect(LcUMemory::GetMallocBytes() >= 1000, "others on the heap");
        LcUMemory::Free(exact, 1016, 8);
        LcUMemory::Free(heap, 1000, 8);
        checks.Finish();
      },
      testing::ExitedWithCode(0), "");
}

TEST(LcUMemoryCheckDeathTest, PoolBlocksAreScrubbedAndCheckedLikeArenaBlocks) {
  EXPECT_EXIT(
      {
        ScrubAndCheck();
        ChildChecks checks;
        LcUMemoryPool pool;
        LcUMemory::InitPool(pool, 20, 1000, 4);
        auto* block = static_cast<unsigned char*>(LcUMemory::PoolAlloc(pool));
        checks.Expect(block[19] == 0xCD && block[20] == 0xFD, "fill");
        block[22] = 0;
        LcUMemory::PoolFree(pool, block);
        checks.Expect(Mentions("Memory block at " + Hex(block) + " has value 0 at offset 22, expected fd"), LogText());
        LcUMemory::PoolDestroy(pool);
        checks.Expect(LcUMemory::GetArenaBytes() == 0, "chunks given back");
        checks.Finish();
      },
      testing::ExitedWithCode(0), "");
}
