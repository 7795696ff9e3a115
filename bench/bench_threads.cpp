// LcUCriticalSection against std::mutex, and LcUActionQueue against a plain
// std::thread pool around a std::mutex and std::condition_variable queue,
// in one run. Prints each case's throughput ratio (ours / std) at the end.
#include <benchmark/benchmark.h>

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "BenchRatioReporter.h"
#include "foundation/LcUActionQueue.h"
#include "foundation/LcUCriticalSection.h"

namespace {
constexpr int eWORKERS = 4;
constexpr int eCAPACITY = 1024;
constexpr int64_t eACTIONS = 1000000;

// The same small job on both sides: a little arithmetic, its result summed
// on the calling thread.
uint64_t Work(uint64_t seed) {
  uint64_t x = seed;
  for (int i = 0; i < 16; ++i) x = x * 6364136223846793005ull + 1442695040888963407ull;
  return x;
}

LcUCriticalSection oursLock;
std::mutex stdLock;
uint64_t shared = 0;

template <typename Lock>
void LockUnlock(benchmark::State& state, Lock& lock, void (Lock::*acquire)(), void (Lock::*release)()) {
  for (auto _ : state) {
    (lock.*acquire)();
    benchmark::DoNotOptimize(++shared);
    (lock.*release)();
  }
  state.SetItemsProcessed(state.iterations());
}

void OursLock(benchmark::State& state) {
  LockUnlock(state, oursLock, &LcUCriticalSection::Lock, &LcUCriticalSection::Unlock);
}

void StdLock(benchmark::State& state) {
  LockUnlock(state, stdLock, &std::mutex::lock, &std::mutex::unlock);
}

class SmallAction : public LcUAction {
public:
  SmallAction(uint64_t seed, uint64_t& sum) : value(seed), sum(sum) {}
  void Execute(int32_t) override { value = Work(value); }
  bool Finish() override {
    sum += value;
    return true;
  }

private:
  uint64_t value;
  uint64_t& sum;
};

void OursQueue(benchmark::State& state) {
  uint64_t sum = 0;
  for (auto _ : state) {
    LcUActionQueue queue(eCAPACITY, eWORKERS, false, true);
    for (int64_t i = 0; i < eACTIONS; ++i) {
      queue.AddAction(new SmallAction(uint64_t(i), sum));
      if ((i & (eCAPACITY - 1)) == 0) queue.ProcessFinished();
    }
    while (queue.WaitForAction()) queue.ProcessFinished();
    queue.ProcessFinished();
    queue.Stop(false);
  }
  benchmark::DoNotOptimize(sum);
  state.SetItemsProcessed(state.iterations() * eACTIONS);
}

// The plain pool: a bounded queue of jobs in, a list of done jobs out.
struct Job {
  uint64_t value;
};

class PlainPool {
public:
  PlainPool() {
    for (int i = 0; i < eWORKERS; ++i) workers.emplace_back([this] { Run(); });
  }
  ~PlainPool() {
    {
      std::lock_guard<std::mutex> guard(lock);
      stopping = true;
    }
    notEmpty.notify_all();
    for (std::thread& worker : workers) worker.join();
  }
  void Add(Job* job) {
    {
      std::lock_guard<std::mutex> guard(doneLock);
      ++outstanding;
    }
    std::unique_lock<std::mutex> guard(lock);
    notFull.wait(guard, [this] { return pending.size() < size_t(eCAPACITY); });
    pending.push_back(job);
    notEmpty.notify_one();
  }
  // Runs the completions on the calling thread; false once nothing is left.
  bool Complete(uint64_t& sum, bool wait) {
    std::vector<Job*> ready;
    {
      std::unique_lock<std::mutex> guard(doneLock);
      if (wait) doneChanged.wait(guard, [this] { return !done.empty() || outstanding == 0; });
      ready.swap(done);
    }
    for (Job* job : ready) {
      sum += job->value;
      delete job;
    }
    std::lock_guard<std::mutex> guard(doneLock);
    return outstanding != 0 || !done.empty();
  }

private:
  void Run() {
    for (;;) {
      Job* job;
      {
        std::unique_lock<std::mutex> guard(lock);
        notEmpty.wait(guard, [this] { return stopping || !pending.empty(); });
        if (pending.empty()) return;
        job = pending.front();
        pending.pop_front();
        notFull.notify_one();
      }
      job->value = Work(job->value);
      std::lock_guard<std::mutex> guard(doneLock);
      done.push_back(job);
      --outstanding;
      doneChanged.notify_one();
    }
  }

  std::mutex lock, doneLock;
  std::condition_variable notEmpty, notFull, doneChanged;
  std::deque<Job*> pending;
  std::vector<Job*> done;
  int64_t outstanding = 0;  // guarded by doneLock
  bool stopping = false;
  std::vector<std::thread> workers;
};

void StdQueue(benchmark::State& state) {
  uint64_t sum = 0;
  for (auto _ : state) {
    PlainPool pool;
    for (int64_t i = 0; i < eACTIONS; ++i) {
      pool.Add(new Job{uint64_t(i)});
      if ((i & (eCAPACITY - 1)) == 0) pool.Complete(sum, false);
    }
    while (pool.Complete(sum, true)) {
    }
  }
  benchmark::DoNotOptimize(sum);
  state.SetItemsProcessed(state.iterations() * eACTIONS);
}
}  // namespace

int main(int argc, char** argv) {
  LcUActionQueue::Initialize();
  benchmark::RegisterBenchmark("ours/lock_uncontended", OursLock);
  benchmark::RegisterBenchmark("std/lock_uncontended", StdLock);
  benchmark::RegisterBenchmark("ours/lock_contended", OursLock)->Threads(2)->UseRealTime();
  benchmark::RegisterBenchmark("std/lock_contended", StdLock)->Threads(2)->UseRealTime();
  benchmark::RegisterBenchmark("ours/queue_1M_actions", OursQueue)->Unit(benchmark::kMillisecond)->UseRealTime();
  benchmark::RegisterBenchmark("std/queue_1M_actions", StdQueue)->Unit(benchmark::kMillisecond)->UseRealTime();
  benchmark::Initialize(&argc, argv);
  BenchRatioReporter reporter("std", "items_per_second");
  benchmark::RunSpecifiedBenchmarks(&reporter);
  reporter.PrintRatios({"lock_uncontended", "lock_contended/real_time/threads:2", "queue_1M_actions/real_time"});
  benchmark::Shutdown();
  LcUActionQueue::Terminate();
  return 0;
}
