#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>

#include "ErrorTesting.h"
#include "foundation/LcUCondition.h"
#include "foundation/LcUCriticalSection.h"
#include "foundation/LcULock.h"
#include "foundation/LcURecursiveCriticalSection.h"
#include "foundation/LcUSemaphore.h"
#include "foundation/LcUSysError.h"
#include "foundation/LcUThread.h"

namespace {
class LcULockTest : public testing::Test {
protected:
  void SetUp() override {
    LcUThread::Initialize();
    LcULock::Initialize();
  }
  void TearDown() override {
    LcULock::Terminate();
    LcUThread::Terminate();
  }
};

// Runs a lambda on an LcUThread.
template <typename F>
struct Runner {
  F body;
  LcUThread thread;
  explicit Runner(F f, int32_t priority = 0) : body(f) {
    EXPECT_TRUE(thread.Create([](void* self) -> uint32_t { static_cast<Runner*>(self)->body(); return 0; }, this,
                              priority));
  }
  ~Runner() {
    if (thread.IsRunning()) thread.WaitForCompletion();
  }
};
}  // namespace

TEST_F(LcULockTest, CriticalSectionExcludesOtherThreads) {
  LcUCriticalSection lock;
  int64_t counter = 0;
  auto add = [&] {
    for (int i = 0; i < 20000; ++i) {
      lock.Lock();
      ++counter;
      lock.Unlock();
    }
  };
  {
    Runner a(add), b(add), c(add);
    add();
  }
  EXPECT_EQ(counter, 80000);

  lock.Lock();
  bool tried = true;
  { Runner other([&] { tried = lock.TryLock(); }); }
  EXPECT_FALSE(tried);
  lock.Unlock();
  EXPECT_TRUE(lock.TryLock());
  lock.Unlock();
}

TEST_F(LcULockTest, RecursiveSectionIsHeldUntilEveryLockIsUndone) {
  LcURecursiveCriticalSection lock;
  lock.Lock();
  EXPECT_TRUE(lock.TryLock());
  bool tried = true;
  lock.Unlock();
  { Runner other([&] { tried = lock.TryLock(); }); }
  EXPECT_FALSE(tried);
  lock.Unlock();
  { Runner other([&] {
      tried = lock.TryLock();
      if (tried) lock.Unlock();
    }); }
  EXPECT_TRUE(tried);
}

TEST_F(LcULockTest, ConditionHandsOverAndTimesOut) {
  LcUCriticalSection lock;
  LcUCondition ready;
  int stage = 0;
  {
    Runner other([&] {
      lock.Lock();
      stage = 1;
      ready.WakeAll();
      while (stage != 2) ready.Wait(lock);
      lock.Unlock();
    });
    lock.Lock();
    while (stage != 1) ready.Wait(lock);
    stage = 2;
    ready.Wake();
    lock.Unlock();
  }
  // Nobody wakes it, so only the time can end this wait.
  lock.Lock();
  EXPECT_FALSE(ready.Wait(lock, 1));
  lock.Unlock();
}

TEST_F(LcULockTest, SemaphoreCountsReleases) {
  LcUSemaphore semaphore;
  std::atomic<int> taken{0};
  {
    Runner consumer([&] {
      for (int i = 0; i < 1000; ++i) {
        semaphore.Wait();
        ++taken;
      }
    });
    for (int i = 0; i < 1000; ++i) EXPECT_TRUE(semaphore.Release());
  }
  EXPECT_EQ(taken, 1000);
}

TEST_F(LcULockTest, EveryPriorityInRangeRunsAndOthersFail) {
  for (int32_t priority = -3; priority <= 3; ++priority) {
    std::atomic<bool> ran{false};
    { Runner runner([&] { ran = true; }, priority); }
    EXPECT_TRUE(ran) << priority;
  }
  for (int32_t priority : {-4, 4}) {
    LcUThread thread;
    EXPECT_FALSE(thread.Create([](void*) -> uint32_t { return 0; }, nullptr, priority));
    EXPECT_FALSE(thread.IsRunning());
    EXPECT_EQ(LcUThread::GetThreadCount(), 1);
  }
}

TEST_F(LcULockTest, ThreadCountFollowsThreadsAndNeverFallsBelowOne) {
  EXPECT_EQ(LcUThread::GetThreadCount(), 1);
  EXPECT_EQ(LcUThread::GetMainThreadId(), LcUSysError::CurrentThreadId());
  EXPECT_GE(LcUThread::GetProcessorCount(), 1);
  LcUSemaphore go;
  auto wait = [&] { go.Wait(); };
  auto* first = new Runner<decltype(wait)>(wait);
  EXPECT_EQ(LcUThread::GetThreadCount(), 2);

  // A fresh start counts only itself, so the end of the older thread must
  // not take the count below 1.
  LcUThread::Terminate();
  EXPECT_EQ(LcUThread::GetThreadCount(), 1);
  LcUThread::Initialize();
  EXPECT_EQ(LcUThread::GetThreadCount(), 1);
  go.Release();
  delete first;
  EXPECT_EQ(LcUThread::GetThreadCount(), 1);
}

// Survived: logged, and no handler being set is no fatal stop.
TEST_F(LcULockTest, ThreadDestroyedWhileRunningIsLoggedAndSurvived) {
  static LcUSemaphore go;
  static std::atomic<bool> ended{false};
  auto* thread = new LcUThread;
  ASSERT_TRUE(thread->Create(
      [](void*) -> uint32_t {
        go.Wait();
        ended = true;
        return 0;
      },
      nullptr, 0));
  std::string log = ErrorTesting::Logged([&] { delete thread; });
  EXPECT_NE(log.find("LcUThread::~LcUThread - Thread still running"), std::string::npos) << log;
  go.Release();
  while (!ended) std::this_thread::yield();
}
