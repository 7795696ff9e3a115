#include <gtest/gtest.h>

#include <sys/resource.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include "../../ErrorTesting.h"
#include "foundation/LcUAllocator.h"
#include "foundation/LcUError.h"
#include "foundation/LcUMemory.h"
#include "foundation/LcUSysError.h"
#include "foundation/LcUSysMemory.h"
#include "foundation/LcUThread.h"

using ErrorTesting::ChildChecks;
using ErrorTesting::Logged;
using ErrorTesting::LogText;

// Every case fills the address space with reservations, so each runs in a
// child; sanitizers keep shadow mappings that such a child would starve.
namespace {
// Takes the whole free address space in reservations, largest first.
class AddressSpaceHog {
public:
  AddressSpaceHog() { held.reserve(eMAX_HELD); }
  ~AddressSpaceHog() { ReleaseAll(); }
  // Before any check: reports need memory.
  void ReleaseAll() {
    while (ReleaseOne()) {
    }
  }
  // Without the handler: the reservations' own bookkeeping allocates, and
  // the handler would release reservations under its lock.
  void Fill() {
    GrowStack();
    WarmHeap();
    LcUOutOfMemoryHandler handler = LcUMemory::SetOutOfMemoryHandler(nullptr);
    for (uint64_t size = uint64_t(1) << 46; size >= 65536 && held.size() < held.capacity();) {
      if (void* space = LcUSysMemory::Reserve(nullptr, size, 0))
        held.push_back(space);
      else
        size /= 2;
    }
    LcUMemory::SetOutOfMemoryHandler(handler);
  }
  bool ReleaseOne() {
    if (held.empty()) return false;
    LcUSysMemory::Free(held.front());
    held.erase(held.begin());
    return true;
  }

private:
  static constexpr size_t eMAX_HELD = 512;
  // Leaves freed small blocks in the heap for the bookkeeping of each
  // reservation, which the heap can no longer grow for.
  static void WarmHeap() {
    std::vector<char*> blocks;
    blocks.reserve(eMAX_HELD * 2);
    for (size_t i = 0; i < blocks.capacity(); ++i) blocks.push_back(new char[48]);
    for (char* b : blocks) delete[] b;
  }
  // The stack cannot grow once the space below it is taken: take its room
  // for the checks and reports ahead.
  static void GrowStack() {
    volatile char room[1 << 20];
    room[0] = 0;
    room[sizeof(room) - 1] = 0;
  }
  std::vector<void*> held;
};

AddressSpaceHog* hog = nullptr;
struct Call {
  uint64_t size;
  uint32_t tryOnly;
};
Call calls[16];
int callCount = 0;
// Answers of the handler, in turn: 0 declines, 1 frees space and retries.
const int* answers = nullptr;
int answerCount = 0;

int Handler(uint64_t size, uint32_t tryOnly) {
  if (callCount < 16) calls[callCount] = {size, tryOnly};
  int answer = callCount < answerCount ? answers[callCount] : 0;
  ++callCount;
  // Allocating here would deadlock if the allocator's lock were held.
  LcUMemory::Free(LcUMemory::Alloc(24, 8, 1), 24, 8);
  return answer && hog->ReleaseOne();
}

template <int N>
void Start(const int (&script)[N]) {
  LcUMemory::Initialize();
  static AddressSpaceHog space;
  hog = &space;
  answers = script;
  answerCount = N;
  callCount = 0;
  LcUMemory::SetOutOfMemoryHandler(Handler);
  // Keeps a region of the handler's own size in place.
  static void* keeper = LcUMemory::Alloc(24, 8, 0);
  (void)keeper;
}

void ExpectCall(ChildChecks& checks, int index, uint64_t size, uint32_t tryOnly) {
  checks.Expect(callCount > index && calls[index].size == size && calls[index].tryOnly == tryOnly,
                "handler call " + std::to_string(index) + " with " + std::to_string(size) + ", " +
                    std::to_string(tryOnly));
}

template <typename F>
void InChild(F body) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "the sanitizers' own mappings need the space this takes";
#endif
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        ChildChecks checks;
        body(checks);
        checks.Finish();
      },
      testing::ExitedWithCode(0), "");
}
}  // namespace

// An arena that needs a region, a large block and a heap block each fail,
// go to the handler with their size outside the lock, and succeed on retry.
TEST(LcUMemoryOutOfMemoryTest, HandlerRetriesArenaRegionAndHeap) {
  InChild([](ChildChecks& checks) {
    static const int script[] = {1, 1, 1};
    Start(script);
    hog->Fill();
    void* arena = LcUMemory::Alloc(508, 4, 0);
    hog->ReleaseAll();
    checks.Expect(arena != nullptr, "arena block after the retry");
    ExpectCall(checks, 0, 508, 0);

    hog->Fill();
    const uint64_t large = uint64_t(16) << 20;
    void* region = LcUMemory::Alloc(large, 8, 0);
    hog->ReleaseAll();
    checks.Expect(region && reinterpret_cast<uintptr_t>(region) % 65536 == 0, "a region after the retry");
    ExpectCall(checks, 1, large, 1);

    hog->Fill();
    const uint64_t heapSize = 3000000;
    void* heap = LcUMemory::Alloc(heapSize, 8, 0);
    hog->ReleaseAll();
    checks.Expect(heap != nullptr, "heap block after the retry");
    ExpectCall(checks, 2, heapSize, 0);
    checks.Expect(callCount == 3, "one call each");

    LcUMemory::Free(arena, 508, 4);
    LcUMemory::Free(region, large, 8);
    LcUMemory::Free(heap, heapSize, 8);
    checks.Expect(LcUMemory::GetArenaBytes() == 24 && LcUMemory::GetRegionBytes() == 0 &&
                      LcUMemory::GetMallocBytes() == 0,
                  "every counter back to zero");
  });
}

// A refused region falls back to the heap, whose own failure the handler
// then sees with the padded size.
TEST(LcUMemoryOutOfMemoryTest, RefusedRegionFallsBackToTheHeap) {
  InChild([](ChildChecks& checks) {
    static const int script[] = {0, 1};
    Start(script);
    hog->Fill();
    const uint64_t large = uint64_t(16) << 20;
    auto* block = static_cast<unsigned char*>(LcUMemory::Alloc(large, 8, 0));
    hog->ReleaseAll();
    ExpectCall(checks, 0, large, 1);
    ExpectCall(checks, 1, large + 16, 0);
    checks.Expect(block && reinterpret_cast<uintptr_t>(block) % 65536 != 0, "a heap block off the boundary");
    checks.Expect(block && (block[-1] == 8 || block[-1] == 16), "its offset byte");
    checks.Expect(LcUMemory::GetRegionBytes() == 0 && LcUMemory::GetMallocBytes() >= large + 16,
                  "counted as heap bytes");
    LcUMemory::Free(block, large, 8);
    checks.Expect(LcUMemory::GetMallocBytes() == 0, "given back through the offset");
  });
}

// A declined move leaves the old block where it was, contents and all.
TEST(LcUMemoryOutOfMemoryTest, FailedReallocKeepsTheOldBlock) {
  InChild([](ChildChecks& checks) {
    static const int script[] = {0, 0};
    Start(script);
    auto* block = static_cast<char*>(LcUMemory::Alloc(100, 8, 0));
    std::memset(block, 'k', 100);
    hog->Fill();
    uint64_t arenaBytes = LcUMemory::GetArenaBytes();
    void* moved = LcUMemory::Realloc(block, 100, 3000000, 8);
    hog->ReleaseAll();
    checks.Expect(moved == nullptr, "the move fails");
    checks.Expect(callCount == 1, "after asking the handler");
    checks.Expect(block[0] == 'k' && block[99] == 'k', "the contents stay");
    checks.Expect(LcUMemory::GetArenaBytes() == arenaBytes && LcUMemory::GetMallocBytes() == 0, "counters stay");
    LcUMemory::Free(block, 100, 8);
  });
}

namespace {
// Private writable memory beyond a little more than what is in use is
// refused: making a reservation writable then fails, as a commit does when
// the system has no memory to back it. Reservations themselves still work.
void LimitData(uint64_t headroom) {
  rlimit limit;
  getrlimit(RLIMIT_DATA, &limit);
  limit.rlim_cur = rlim_t(LcUSysMemory::GetProcessPrivateMemoryUsage() + headroom);
  setrlimit(RLIMIT_DATA, &limit);
}

void UnlimitData() {
  rlimit limit;
  getrlimit(RLIMIT_DATA, &limit);
  limit.rlim_cur = limit.rlim_max;
  setrlimit(RLIMIT_DATA, &limit);
}

uint64_t ReservedBytes() {
  uint64_t p, m, i, reserved, f, largest;
  LcUSysMemory::GetAddressSpaceUsage(p, m, i, reserved, f, largest);
  return reserved;
}
}  // namespace

// A large block whose commit fails gives its reservation back before it
// tries the heap; a heap block that cannot grow stays as it was.
TEST(LcUMemoryOutOfMemoryTest, FailedCommitAndGrowthLeaveNothingBehind) {
  InChild([](ChildChecks& checks) {
    LcUMemory::Initialize();
    const uint64_t large = uint64_t(16) << 20, heapSize = 100000;
    auto* heap = static_cast<unsigned char*>(LcUMemory::Alloc(heapSize, 8, 0));
    std::memset(heap, 0x6B, heapSize);
    uint64_t mallocBytes = LcUMemory::GetMallocBytes();
    uint64_t reserved = ReservedBytes();
    LimitData(1 << 20);
    void* direct = LcUSysMemory::ReserveCommitted(large);
    void* block = LcUMemory::Alloc(large, 8, 0);
    void* grown = LcUMemory::Realloc(heap, heapSize, uint64_t(6) << 20, 8);
    UnlimitData();
    checks.Expect(direct == nullptr && block == nullptr, "the commits fail");
    checks.Expect(ReservedBytes() == reserved, "no reservation stays: " + std::to_string(ReservedBytes() - reserved));
    checks.Expect(LcUMemory::GetRegionBytes() == 0, "no region bytes");
    checks.Expect(grown == nullptr, "the heap block cannot grow");
    checks.Expect(heap[0] == 0x6B && heap[heapSize / 2] == 0x6B && heap[heapSize - 1] == 0x6B, "its contents stay");
    checks.Expect(LcUMemory::GetMallocBytes() == mallocBytes, "malloc bytes stay");
    LcUMemory::Free(heap, heapSize, 8);
    checks.Expect(LcUMemory::GetMallocBytes() == 0, "and it is given back whole");
  });
}

namespace {
std::string threadReport;
int threadReportSeverity = -1;
int TakeThreadReport(int severity, LcUComponent*, int32_t id, void*, const char16_t* message) {
  threadReportSeverity = severity * 100 + id;
  for (; *message; ++message) threadReport += char(*message);
  return 1;
}
}  // namespace

// With no address space left an aligned reservation fails to the caller,
// without ending the process, and a thread cannot get its stack.
TEST(LcUMemoryOutOfMemoryTest, ExhaustedSpaceFailsAlignedReservationsAndThreads) {
  InChild([](ChildChecks& checks) {
    static const int script[] = {0};
    Start(script);
    LcUThread::Initialize();
    LcUSysError::SetHandler(LcUError::eERROR, &LcUThread::component, 0, TakeThreadReport);
    hog->Fill();
    std::string log = Logged([] {});
    void* aligned = nullptr;
    bool created = true;
    int32_t countAfter = 0;
    {
      LcUThread thread;
      log = Logged([&] {
        aligned = LcUSysMemory::ReserveAligned(uint64_t(1) << 20, 0);
        created = thread.Create([](void*) -> uint32_t { return 0; }, nullptr, 0);
        countAfter = LcUThread::GetThreadCount();
      });
    }
    hog->ReleaseAll();
    checks.Expect(aligned == nullptr, "no aligned reservation");
    checks.Expect(log.find("LcUSysMemory::Reserve: Failed to reserve size 2031616\n") != std::string::npos, log);
    checks.Expect(log.find("ReserveAligned") == std::string::npos, "no retry was made: " + log);
    checks.Expect(!created, "no thread");
    checks.Expect(threadReport == "LcUThread::Create - Can't create thread" && threadReportSeverity == 0,
                  "the report: " + threadReport + " " + std::to_string(threadReportSeverity));
    checks.Expect(countAfter == 1, "the count is back to 1: " + std::to_string(countAfter));
  });
}

namespace {
std::atomic<bool> allocatedElsewhere{false};
using Bytes = std::vector<char, LcUAllocator<char>>;

// Runs at the fatal stop: the report is in the log and the allocator's lock
// is free for another thread, within a bound.
void CheckFatalStop() {
  hog->ReleaseAll();
  ChildChecks checks;
  std::string log = LogText();
  checks.Expect(log.find("LcUMemory: Out of memory for 3000000 bytes\n") != std::string::npos, log);
  std::thread other([] {
    LcUMemory::Free(LcUMemory::Alloc(24, 8, 0), 24, 8);
    allocatedElsewhere = true;
  });
  auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  while (!allocatedElsewhere && std::chrono::steady_clock::now() < deadline) std::this_thread::yield();
  checks.Expect(allocatedElsewhere, "the allocator's lock is free at the fatal stop");
  if (allocatedElsewhere)
    other.join();
  else
    other.detach();
  checks.Finish();
}
}  // namespace

// A standard container's request that fails is reported and ends the
// process the foundation's way, instead of throwing.
TEST(LcUMemoryOutOfMemoryTest, ContainerAllocatorFailureIsFatal) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "the sanitizers' own mappings need the space this takes";
#endif
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        static const int script[] = {0};
        Start(script);
        LcUSysError::SetFatalHook(CheckFatalStop);
        hog->Fill();
        try {
          Bytes bytes;
          bytes.reserve(3000000);
        } catch (...) {
          std::fputs("threw\n", stderr);
        }
        std::_Exit(2);
      },
      testing::ExitedWithCode(0), "");
}
