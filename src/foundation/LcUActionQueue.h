#pragma once
#include <cstdint>
#include <deque>
#include <vector>

#include "foundation/LcUAction.h"
#include "foundation/LcUAllocator.h"
#include "foundation/LcUComponent.h"
#include "foundation/LcUCondition.h"
#include "foundation/LcUCriticalSection.h"
#include "foundation/LcUThread.h"

// Worker threads running queued actions. The queue owns an action once
// AddAction returned true. Execute and Finish run with no queue lock held;
// lock and finishedLock are never held together. A paused worker waits for
// Resume alone: resume a paused queue before stopping it.
class LcUActionQueue {
public:
  static LcUComponent component;
  static bool Initialize();
  static void Terminate();

  typedef bool (*Predicate)(LcUAction* action, void* context);
  using ActionList = std::vector<LcUAction*, LcUAllocator<LcUAction*>>;

  LcUActionQueue(int32_t maxActions, int32_t threadCount, bool refuseWhenFull, bool startThreads);
  // Stops without waiting: pending actions are deleted unrun.
  virtual ~LcUActionQueue();
  LcUActionQueue(const LcUActionQueue&) = delete;
  LcUActionQueue& operator=(const LcUActionQueue&) = delete;

  void Start();
  // At capacity it blocks, or refuses when made to.
  bool AddAction(LcUAction* action);
  // Returns once no action runs and none will start.
  void Pause();
  void Resume();
  void Refuse();
  void Accept();
  int32_t GetSize();
  bool FindAction(Predicate predicate, void* context);
  // Appends the pending actions, oldest first, to out.
  void RemoveAll(ActionList& out, bool stayPaused);
  void WaitForEmpty();
  // False at once when nothing is pending or running.
  bool WaitForAction();
  // Runs Finish on the calling thread; true if there were any.
  bool ProcessFinished();
  void Stop(bool waitForEmpty);

protected:
  virtual void ThreadStart(int32_t threadIndex) {}
  virtual void ThreadEnd(int32_t threadIndex) {}

private:
  struct Worker {
    Worker(int32_t index, LcUActionQueue* queue) : index(index), queue(queue) {}
    LcUThread thread;
    int32_t index;
    LcUActionQueue* queue;
  };
  static uint32_t RunWorker(void* argument);
  void Run(int32_t threadIndex);
  bool IsFull() const { return int32_t(actions.size()) >= maxActions; }
  void ClearPaused();

  int32_t maxActions;
  int32_t threadCount;
  bool refuseWhenFull;
  LcUCriticalSection lock;
  std::deque<LcUAction*, LcUAllocator<LcUAction*>> actions;
  bool stopped = false;
  bool paused = false;
  bool refusing = false;
  int32_t activeCount = 0;
  LcUCriticalSection finishedLock;
  ActionList finished;
  ActionList processing;
  // A deque: workers never move once their threads run.
  std::deque<Worker, LcUAllocator<Worker>> workers;
  LcUCondition notEmpty, notFull, empty, actionDone, resumed;
};
