#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include "ErrorTesting.h"
#include "foundation/LcUSysHeapReport.h"
#include "foundation/LcUSysMemory.h"

using ErrorTesting::Logged;
using ErrorTesting::LogText;

namespace {

uintptr_t Address(void* p) {
  return reinterpret_cast<uintptr_t>(p);
}

class LcUSysMemoryTest : public testing::Test {
protected:
  void SetUp() override { LcUSysMemory::Initialize(); }
  void TearDown() override { LcUSysMemory::Terminate(); }
};
}  // namespace

TEST_F(LcUSysMemoryTest, PageAndGranularityArePowersOfTwo) {
  uint32_t page = LcUSysMemory::GetPageSize();
  uint32_t granularity = LcUSysMemory::GetAllocationGranularity();
  EXPECT_EQ(page & (page - 1), 0u);
  EXPECT_EQ(granularity & (granularity - 1), 0u);
  EXPECT_GE(granularity, page);
}

TEST_F(LcUSysMemoryTest, ReservationsAreAlignedToTheirSize) {
  uint64_t granularity = LcUSysMemory::GetAllocationGranularity();
  for (uint64_t size : {granularity, uint64_t(131072), uint64_t(262144), uint64_t(1) << 20, uint64_t(1) << 22}) {
    void* region = LcUSysMemory::ReserveAligned(size, 0);
    ASSERT_NE(region, nullptr) << size;
    EXPECT_EQ(Address(region) & (size - 1), 0u) << size;
    EXPECT_TRUE(LcUSysMemory::Free(region));
  }
  void* plain = LcUSysMemory::Reserve(nullptr, 3 * granularity, 0);
  ASSERT_NE(plain, nullptr);
  EXPECT_EQ(Address(plain) % granularity, 0u);
  EXPECT_TRUE(LcUSysMemory::Free(plain));
}

// The release and re-reserve inside ReserveAligned races with other threads.
TEST_F(LcUSysMemoryTest, AlignedReservationsHoldWhileOthersReserve) {
  constexpr int eTHREADS = 4, eROUNDS = 64;
  std::vector<std::vector<void*>> regions(eTHREADS);
  std::vector<std::thread> threads;
  for (int t = 0; t < eTHREADS; ++t)
    threads.emplace_back([&, t] {
      for (int i = 0; i < eROUNDS; ++i) {
        uint64_t size = uint64_t(131072) << (i % 3);
        regions[t].push_back(LcUSysMemory::ReserveAligned(size, t % 2 ? -1 : 0));
        regions[t].push_back(LcUSysMemory::Reserve(nullptr, 65536, 0));
      }
    });
  for (std::thread& thread : threads) thread.join();
  for (auto& list : regions)
    for (size_t i = 0; i < list.size(); ++i) {
      ASSERT_NE(list[i], nullptr);
      if (i % 2 == 0) {
        EXPECT_EQ(Address(list[i]) & ((uint64_t(131072) << (i / 2 % 3)) - 1), 0u);
      }
      EXPECT_TRUE(LcUSysMemory::Free(list[i]));
    }
}

TEST_F(LcUSysMemoryTest, CommittedMemoryIsWritableAndComesBackZeroed) {
  uint64_t size = 4 * LcUSysMemory::GetAllocationGranularity();
  char* region = static_cast<char*>(LcUSysMemory::Alloc(size, 0, true));
  ASSERT_NE(region, nullptr);
  std::memset(region, 0x5A, size_t(size));
  uint32_t page = LcUSysMemory::GetPageSize();
  EXPECT_TRUE(LcUSysMemory::Decommit(region, page));
  EXPECT_TRUE(LcUSysMemory::Commit(region, page));
  EXPECT_EQ(region[0], 0);
  EXPECT_EQ(region[page - 1], 0);
  EXPECT_EQ(region[page], 0x5A);
  EXPECT_TRUE(LcUSysMemory::Free(region));
}

// The message's "%d" shows the size's low 32 bits.
TEST_F(LcUSysMemoryTest, ImpossibleSizesFailWithTheirMessage) {
  uint64_t huge = (uint64_t(1) << 62) + 0x10000;
  std::string log = Logged([&] { EXPECT_EQ(LcUSysMemory::Alloc(huge, 0, false), nullptr); });
  EXPECT_NE(log.find("LcUSysMemory::Reserve: Failed to reserve size 65536\n"), std::string::npos) << log;
  EXPECT_EQ(LcUSysMemory::ReserveCommitted(huge), nullptr);
  // An aligned reservation first asks for twice the size less the
  // granularity; its failure goes back to the caller, the process goes on.
  log = Logged([] { EXPECT_EQ(LcUSysMemory::ReserveAligned(uint64_t(1) << 62, 0), nullptr); });
  EXPECT_EQ(log, "LcUSysMemory::Reserve: Failed to reserve size -65536\n");
}

TEST_F(LcUSysMemoryTest, TheWalkCoversTheWholeAddressSpace) {
  uint64_t p, m, i, r, f, largest;
  uint64_t sum = LcUSysMemory::GetAddressSpaceUsage(p, m, i, r, f, largest);
  EXPECT_EQ(sum, p + m + i + r + f);
  EXPECT_GE(sum, LcUSysMemory::GetTotalVirtual());
  EXPECT_GT(p, 0u);
  EXPECT_GT(i, 0u);
  EXPECT_LE(largest, f);
  EXPECT_LT(LcUSysMemory::CalcProcessAddressSpaceLimit(), sum);

  void* reserved = LcUSysMemory::Reserve(nullptr, uint64_t(64) << 20, 0);
  ASSERT_NE(reserved, nullptr);
  uint64_t r2;
  LcUSysMemory::GetAddressSpaceUsage(p, m, i, r2, f, largest);
  EXPECT_GE(r2, r + (uint64_t(64) << 20) / 2);
  LcUSysMemory::Free(reserved);
  EXPECT_GT(LcUSysMemory::GetProcessPrivateMemoryUsage(), 0u);
  EXPECT_GT(LcUSysMemory::GetTotalPhysical(), 0u);
}

TEST_F(LcUSysMemoryTest, StatisticsGoToTheLog) {
  std::string mem = Logged(LcUSysMemory::LogMemStats);
  EXPECT_EQ(mem.rfind("LcUSysMemory::LogMemStats (MB): private(", 0), 0u) << mem;
  std::string heaps = Logged(LcUSysMemory::LogHeapStats);
  EXPECT_EQ(heaps.rfind("Heap\tRgns\tCmt\tRsv\n", 0), 0u) << heaps;
  EXPECT_NE(heaps.find("PRC:\t"), std::string::npos);
  EXPECT_NE(heaps.find("TOT:\t"), std::string::npos);
  EXPECT_TRUE(LcUSysMemory::CheckMemory());
}

TEST(LcUSysHeapReportTest, SizesSwitchUnitAboveTheirLimits) {
  struct Case {
    uint64_t size;
    const char* text;
  } cases[] = {{0, "0"},           {10240, "10240"},        {10241, "10K"},
               {0xA00000, "10240K"}, {0xA00001, "10M"}, {uint64_t(5) << 30, "5120M"}};
  for (const Case& c : cases) {
    char text[32];
    LcUSysHeapReport::FormatSize(c.size, text, sizeof(text));
    EXPECT_STREQ(text, c.text) << c.size;
  }
}

TEST(LcUSysHeapReportTest, RowsAreLabelledAndSummed) {
  LcUSysHeapReport::Figures heaps[] = {{LcUSysHeapReport::ePROCESS, 2, 0xA00001, 100},
                                       {LcUSysHeapReport::eRUNTIME, 1, 20480, 0},
                                       {LcUSysHeapReport::eOTHER, 3, 1, 2}};
  std::string log = Logged([&] { LcUSysHeapReport::Log(heaps, 3); });
  EXPECT_EQ(log, "Heap\tRgns\tCmt\tRsv\nPRC:\t2\t10M\t100\nCRT:\t1\t20K\t0\n2:\t3\t1\t2\nTOT:\t6\t10M\t102\n");
}

TEST(LcUSysHeapReportTest, TooManyHeapsAreOnlyCounted) {
  std::vector<LcUSysHeapReport::Figures> heaps(101);
  EXPECT_EQ(Logged([&] { LcUSysHeapReport::Log(heaps.data(), 101); }), "Num Heaps=101\n");
  // Validating these would fault: none may be touched.
  std::vector<void*> handles(81, reinterpret_cast<void*>(uintptr_t(0x10)));
  EXPECT_EQ(Logged([&] { EXPECT_TRUE(LcUSysHeapReport::Check(handles.data(), 81)); }),
            "LcUMemory::CheckMemory: Too many heaps to validate\n");
}
