#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "ErrorTesting.h"
#include "foundation/LcUActionQueue.h"
#include "foundation/LcULock.h"
#include "foundation/LcUSemaphore.h"
#include "foundation/LcUThread.h"

namespace {
// What happened to every action of a test, by action id.
struct Tally {
  explicit Tally(int count) : deletes(new std::atomic<int>[size_t(count)]()), size(count) {}
  std::atomic<int> executed{0}, finished{0}, running{0}, maxRunning{0};
  std::atomic<bool> finishOffThread{false};
  std::thread::id finisher = std::this_thread::get_id();
  std::unique_ptr<std::atomic<int>[]> deletes;
  int size;

  bool EachDeletedOnce() const {
    for (int i = 0; i < size; ++i)
      if (deletes[size_t(i)] != 1) return false;
    return true;
  }
};

class CountingAction : public LcUAction {
public:
  CountingAction(Tally& tally, int id, bool needsFinish = true, bool deleteOnFinish = true)
      : tally(tally), id(id), needsFinish(needsFinish), deleteOnFinish(deleteOnFinish) {}
  ~CountingAction() override { ++tally.deletes[size_t(id)]; }

  void Execute(int32_t) override {
    int now = ++tally.running;
    for (int seen = tally.maxRunning; now > seen && !tally.maxRunning.compare_exchange_weak(seen, now);) {
    }
    ++tally.executed;
    --tally.running;
  }
  bool Finish() override {
    if (std::this_thread::get_id() != tally.finisher) tally.finishOffThread = true;
    ++tally.finished;
    return deleteOnFinish;
  }
  bool NeedsFinish() override { return needsFinish; }

  Tally& tally;
  int id;
  bool needsFinish, deleteOnFinish;
};

// Holds a worker in Execute until opened.
class GateAction : public LcUAction {
public:
  void Execute(int32_t) override {
    entered.Release();
    open.Wait();
  }
  bool Finish() override { return true; }
  LcUSemaphore entered, open;
};

class LcUActionQueueTest : public testing::Test {
protected:
  void SetUp() override { LcUActionQueue::Initialize(); }
  void TearDown() override { LcUActionQueue::Terminate(); }
};

// Lets other threads run for a span of wall time. A count of yields would
// do on an idle machine but takes minutes on a busy one, where each yield
// may wait out another process's time slice.
void LetOthersRun(std::chrono::milliseconds span) {
  auto until = std::chrono::steady_clock::now() + span;
  while (std::chrono::steady_clock::now() < until) std::this_thread::yield();
}

// Spins until a probe is refused: Stop has set refusing by then.
void WaitUntilRefusing(LcUActionQueue& queue, Tally& tally, int probeId) {
  for (;;) {
    CountingAction* probe = new CountingAction(tally, probeId);
    if (!queue.AddAction(probe)) {
      delete probe;
      return;
    }
    std::this_thread::yield();
  }
}
}  // namespace

TEST_F(LcUActionQueueTest, StartsItsComponentsAndStopsThemInReverse) {
  EXPECT_EQ(LcUActionQueue::component.initCount, 1);
  EXPECT_STREQ(LcUThread::component.name, "LcUThread");
  EXPECT_STREQ(LcULock::component.name, "LcULock");
  std::vector<std::string> order;
  for (LcUComponent* c = &LcUActionQueue::component; c; c = c->next)
    if (c == &LcUThread::component || c == &LcULock::component) order.push_back(c->name);
  EXPECT_EQ(order, (std::vector<std::string>{"LcUThread", "LcULock"}));
  EXPECT_GE(LcUThread::component.initCount, 1);
  EXPECT_GE(LcULock::component.initCount, 1);
  // The console echo logs the chain's stops in their order.
  LcUSysError::SetConsole(true);
  std::string stops = ErrorTesting::Logged([] { LcUActionQueue::Terminate(); });
  LcUSysError::SetConsole(false);
  EXPECT_NE(stops.find("Term: LcUActionQueueTerm: LcULockTerm: LcUThread"), std::string::npos) << stops;
  EXPECT_EQ(LcUThread::component.initCount, 0);
  EXPECT_EQ(LcULock::component.initCount, 0);
  LcUActionQueue::Initialize();
}

TEST_F(LcUActionQueueTest, ManyProducersAgainstASmallBlockingQueue) {
  constexpr int ePRODUCERS = 4, ePER_PRODUCER = 2500, eTOTAL = ePRODUCERS * ePER_PRODUCER;
  Tally tally(eTOTAL);
  LcUActionQueue queue(3, 4, false, true);
  std::atomic<int> added{0};
  std::vector<std::thread> producers;
  for (int p = 0; p < ePRODUCERS; ++p)
    producers.emplace_back([&, p] {
      for (int i = 0; i < ePER_PRODUCER; ++i)
        if (queue.AddAction(new CountingAction(tally, p * ePER_PRODUCER + i))) ++added;
    });
  while (tally.finished < eTOTAL) {
    queue.WaitForAction();
    queue.ProcessFinished();
  }
  for (std::thread& producer : producers) producer.join();
  queue.Stop(true);
  EXPECT_EQ(added, eTOTAL);
  EXPECT_EQ(tally.executed, eTOTAL);
  EXPECT_FALSE(tally.finishOffThread);
  EXPECT_TRUE(tally.EachDeletedOnce());
  EXPECT_GT(tally.maxRunning, 0);
}

TEST_F(LcUActionQueueTest, AFullRefusingQueueRefusesAtOnce) {
  Tally tally(4);
  LcUActionQueue queue(2, 0, true, true);
  EXPECT_FALSE(queue.AddAction(nullptr));
  EXPECT_EQ(queue.GetSize(), 0);
  EXPECT_TRUE(queue.AddAction(new CountingAction(tally, 0)));
  EXPECT_TRUE(queue.AddAction(new CountingAction(tally, 1)));
  CountingAction* extra = new CountingAction(tally, 2);
  EXPECT_FALSE(queue.AddAction(extra));
  delete extra;
  queue.Refuse();
  extra = new CountingAction(tally, 3);
  EXPECT_FALSE(queue.AddAction(extra));
  delete extra;
  EXPECT_EQ(queue.GetSize(), 2);
}

// Only an add already waiting when Refuse comes can be true, so a true
// result proves that it blocked; it then owns the action beyond capacity.
TEST_F(LcUActionQueueTest, RefuseReleasesABlockedAdd) {
  bool added = false;
  for (int trial = 0; trial < 100 && !added; ++trial) {
    Tally tally(2);
    LcUActionQueue queue(1, 0, false, true);
    ASSERT_TRUE(queue.AddAction(new CountingAction(tally, 0)));
    std::atomic<bool> calling{false};
    CountingAction* blocked = new CountingAction(tally, 1);
    std::thread producer([&] {
      calling = true;
      added = queue.AddAction(blocked);
    });
    while (!calling) std::this_thread::yield();
    LetOthersRun(std::chrono::milliseconds(trial + 1));
    queue.Refuse();
    producer.join();
    EXPECT_EQ(queue.GetSize(), added ? 2 : 1);
    if (!added) delete blocked;
    queue.Stop(false);
    EXPECT_TRUE(tally.EachDeletedOnce());
    EXPECT_EQ(tally.executed, 0);
  }
  EXPECT_TRUE(added) << "the producer never blocked";
}

namespace {
// Polls with a deadline; a lost wake-up leaves the flag unset.
bool SetWithin(const std::atomic<bool>& flag) {
  auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
  while (!flag && std::chrono::steady_clock::now() < deadline) std::this_thread::yield();
  return flag;
}

// Runs call on a thread of its own, once it has been given time to block.
struct Waiter {
  template <typename F>
  explicit Waiter(F call)
      : thread([this, call] {
          calling = true;
          call();
          done = true;
        }) {
    while (!calling) std::this_thread::yield();
    LetOthersRun(std::chrono::milliseconds(20));
  }
  std::atomic<bool> calling{false}, done{false};
  std::thread thread;
};
}  // namespace

// Two waiters of one condition both see the event, whichever came first.
TEST_F(LcUActionQueueTest, NoWaiterMissesItsWakeUp) {
  {
    SCOPED_TRACE("Pause and WaitForAction see the one action finish");
    auto* queue = new LcUActionQueue(4, 1, false, true);
    GateAction* gate = new GateAction;
    ASSERT_TRUE(queue->AddAction(gate));
    gate->entered.Wait();
    Waiter waiting([&] { queue->WaitForAction(); });
    Waiter pausing([&] { queue->Pause(); });
    gate->open.Release();
    bool both = SetWithin(waiting.done) && SetWithin(pausing.done);
    EXPECT_TRUE(both);
    if (!both) {
      waiting.thread.detach();
      pausing.thread.detach();
      return;
    }
    waiting.thread.join();
    pausing.thread.join();
    queue->Resume();
    queue->ProcessFinished();
    delete queue;
  }
  {
    SCOPED_TRACE("WaitForEmpty and Stop(true) see the queue empty");
    Tally tally(1);
    auto* queue = new LcUActionQueue(4, 1, false, true);
    GateAction* gate = new GateAction;
    ASSERT_TRUE(queue->AddAction(gate));
    gate->entered.Wait();
    ASSERT_TRUE(queue->AddAction(new CountingAction(tally, 0)));
    Waiter emptying([&] { queue->WaitForEmpty(); });
    Waiter stopping([&] { queue->Stop(true); });
    gate->open.Release();
    bool both = SetWithin(emptying.done) && SetWithin(stopping.done);
    EXPECT_TRUE(both);
    if (!both) {
      emptying.thread.detach();
      stopping.thread.detach();
      return;
    }
    emptying.thread.join();
    stopping.thread.join();
    EXPECT_EQ(tally.executed, 1);
    queue->ProcessFinished();
    delete queue;
  }
}

// Emptying a full queue lets a producer waiting for room in.
TEST_F(LcUActionQueueTest, RemoveAllReleasesABlockedAdd) {
  for (bool stayPaused : {true, false}) {
    Tally tally(2);
    LcUActionQueue queue(1, 0, false, true);
    ASSERT_TRUE(queue.AddAction(new CountingAction(tally, 0)));
    std::atomic<bool> added{false};
    Waiter producer([&] { added = queue.AddAction(new CountingAction(tally, 1)); });
    LcUActionQueue::ActionList out;
    queue.RemoveAll(out, stayPaused);
    bool released = SetWithin(producer.done);
    EXPECT_TRUE(released) << stayPaused;
    if (!released) queue.Refuse();
    producer.thread.join();
    EXPECT_TRUE(added);
    ASSERT_EQ(out.size(), 1u);
    EXPECT_EQ(static_cast<CountingAction*>(out[0])->id, 0);
    delete out[0];
    EXPECT_EQ(queue.GetSize(), 1);
    queue.Stop(false);
    EXPECT_TRUE(tally.EachDeletedOnce());
  }
}

TEST_F(LcUActionQueueTest, PauseLeavesNoActionRunning) {
  constexpr int eTOTAL = 4000;
  Tally tally(eTOTAL);
  LcUActionQueue queue(eTOTAL, 4, false, true);
  for (int i = 0; i < eTOTAL; ++i) ASSERT_TRUE(queue.AddAction(new CountingAction(tally, i, false)));
  for (int round = 0; round < 20; ++round) {
    queue.Pause();
    int executed = tally.executed, size = queue.GetSize();
    EXPECT_EQ(tally.running, 0);
    LetOthersRun(std::chrono::milliseconds(1));
    EXPECT_EQ(tally.executed, executed);
    EXPECT_EQ(queue.GetSize(), size);
    queue.Resume();
  }
  queue.WaitForEmpty();
  EXPECT_EQ(tally.executed, eTOTAL);
  EXPECT_FALSE(queue.ProcessFinished());
  queue.Stop(false);
  EXPECT_TRUE(tally.EachDeletedOnce());
}

// Stop(false) deletes what is pending unrun; Stop(true) runs it all. Both
// refuse new actions while stopping.
TEST_F(LcUActionQueueTest, StopWithAndWithoutWaiting) {
  for (bool waitForEmpty : {false, true}) {
    constexpr int ePENDING = 50;
    Tally tally(ePENDING), probes(1);
    GateAction* gate = new GateAction;
    // Roomy, so that no probe blocks before Stop refuses it.
    LcUActionQueue queue(1 << 20, 1, false, true);
    ASSERT_TRUE(queue.AddAction(gate));
    gate->entered.Wait();
    for (int i = 0; i < ePENDING; ++i) ASSERT_TRUE(queue.AddAction(new CountingAction(tally, i)));
    std::thread stopper([&] { queue.Stop(waitForEmpty); });
    WaitUntilRefusing(queue, probes, 0);
    gate->open.Release();
    stopper.join();
    EXPECT_EQ(queue.GetSize(), 0);
    EXPECT_EQ(tally.executed, waitForEmpty ? ePENDING : 0) << waitForEmpty;
    queue.ProcessFinished();
    EXPECT_EQ(tally.finished, waitForEmpty ? ePENDING : 0);
    queue.Stop(true);
    for (int i = 0; i < ePENDING; ++i) EXPECT_EQ(tally.deletes[size_t(i)], 1) << i;
  }
}

TEST_F(LcUActionQueueTest, FinishDecidesWhoDeletes) {
  Tally tally(3);
  LcUActionQueue queue(10, 2, false, true);
  EXPECT_FALSE(queue.WaitForAction());
  CountingAction* kept = new CountingAction(tally, 0, true, false);
  queue.AddAction(kept);
  queue.AddAction(new CountingAction(tally, 1, true, true));
  queue.AddAction(new CountingAction(tally, 2, false));
  while (queue.WaitForAction()) {
  }
  queue.WaitForEmpty();
  EXPECT_TRUE(queue.ProcessFinished());
  EXPECT_FALSE(queue.ProcessFinished());
  EXPECT_EQ(tally.finished, 2);
  EXPECT_EQ(tally.deletes[0], 0);
  EXPECT_EQ(tally.deletes[1], 1);
  EXPECT_EQ(tally.deletes[2], 1);
  delete kept;
}

TEST_F(LcUActionQueueTest, PendingActionsCanBeFoundAndTakenOut) {
  constexpr int eTOTAL = 5;
  Tally tally(eTOTAL);
  LcUActionQueue queue(10, 0, false, false);
  for (int i = 0; i < eTOTAL; ++i) queue.AddAction(new CountingAction(tally, i));
  auto hasId = [](LcUAction* action, void* id) { return static_cast<CountingAction*>(action)->id == *static_cast<int*>(id); };
  int present = 3, absent = 7;
  EXPECT_TRUE(queue.FindAction(hasId, &present));
  EXPECT_FALSE(queue.FindAction(hasId, &absent));
  for (bool stayPaused : {true, false}) {
    LcUActionQueue::ActionList out;
    queue.RemoveAll(out, stayPaused);
    EXPECT_EQ(queue.GetSize(), 0);
    ASSERT_EQ(out.size(), stayPaused ? size_t(eTOTAL) : 0u);
    for (size_t i = 0; i < out.size(); ++i) EXPECT_EQ(static_cast<CountingAction*>(out[i])->id, int(i));
    for (LcUAction* action : out) delete action;
  }
  EXPECT_TRUE(tally.EachDeletedOnce());
}

TEST_F(LcUActionQueueTest, EveryWorkerStartsAndEndsOnItsOwnThread) {
  struct Hooked : LcUActionQueue {
    // Started here, so that the hooks never see unconstructed members.
    Hooked() : LcUActionQueue(4, 3, false, false) { Start(); }
    ~Hooked() override { Stop(false); }
    void ThreadStart(int32_t index) override { started |= 1 << index; }
    void ThreadEnd(int32_t index) override { ended |= 1 << index; }
    std::atomic<int> started{0}, ended{0};
  };
  int threads = LcUThread::GetThreadCount();
  Hooked* queue = new Hooked;
  EXPECT_EQ(LcUThread::GetThreadCount(), threads + 3);
  queue->Stop(false);
  EXPECT_EQ(queue->started, 7);
  EXPECT_EQ(queue->ended, 7);
  EXPECT_EQ(LcUThread::GetThreadCount(), threads);
  delete queue;
}
