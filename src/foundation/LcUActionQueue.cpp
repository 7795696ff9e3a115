#include "foundation/LcUActionQueue.h"

#include "foundation/LcULock.h"
#include "foundation/LcUMemory.h"
#include "foundation/LcUSysError.h"

LcUComponent LcUActionQueue::component;

bool LcUActionQueue::Initialize() {
  if (LcUSysError::RegisterComponent(&component, "LcUActionQueue") != 1) return true;
  LcUMemory::Initialize();
  LcUThread::Initialize();
  LcULock::Initialize();
  return true;
}

void LcUActionQueue::Terminate() {
  if (LcUSysError::UnregisterComponent(&component) != 1) return;
  LcULock::Terminate();
  LcUThread::Terminate();
  LcUMemory::Terminate();
}

LcUActionQueue::LcUActionQueue(int32_t maxActions, int32_t threadCount, bool refuseWhenFull, bool startThreads)
    : maxActions(maxActions), threadCount(threadCount), refuseWhenFull(refuseWhenFull) {
  if (startThreads) Start();
}

LcUActionQueue::~LcUActionQueue() {
  Stop(false);
}

void LcUActionQueue::Start() {
  stopped = paused = refusing = false;
  if (threadCount <= 0) return;
  for (int32_t i = 0; i < threadCount; ++i) {
    workers.emplace_back(i, this);
    workers.back().thread.Create(RunWorker, &workers.back(), 0);
  }
}

uint32_t LcUActionQueue::RunWorker(void* argument) {
  Worker* record = static_cast<Worker*>(argument);
  record->queue->ThreadStart(record->index);
  record->queue->Run(record->index);
  record->queue->ThreadEnd(record->index);
  return 0;
}

void LcUActionQueue::Run(int32_t threadIndex) {
  for (;;) {
    lock.Lock();
    while (actions.empty() && !stopped && !paused) notEmpty.Wait(lock);
    if (paused) {
      resumed.Wait(lock);
      lock.Unlock();
      continue;
    }
    if (stopped) break;
    LcUAction* action = actions.front();
    actions.pop_front();
    if (!refuseWhenFull && int32_t(actions.size()) == maxActions - 1) notFull.WakeAll();
    // Every waiter for the emptied queue and the finished action is woken:
    // WaitForEmpty and Stop, Pause and WaitForAction may wait side by side.
    if (actions.empty()) empty.WakeAll();
    ++activeCount;
    lock.Unlock();

    action->Execute(threadIndex);
    if (action->NeedsFinish()) {
      finishedLock.Lock();
      finished.push_back(action);
      finishedLock.Unlock();
    } else {
      delete action;
    }

    lock.Lock();
    --activeCount;
    actionDone.WakeAll();
    lock.Unlock();
  }
  lock.Unlock();
}

// An add that waited may find the queue stopped or refusing by then; its
// action is queued all the same, beyond capacity, and deleted at Stop.
bool LcUActionQueue::AddAction(LcUAction* action) {
  if (!action) return false;
  lock.Lock();
  if ((IsFull() && refuseWhenFull) || stopped || refusing) {
    lock.Unlock();
    return false;
  }
  while (IsFull() && !stopped && !refusing) notFull.Wait(lock);
  actions.push_back(action);
  notEmpty.Wake();
  lock.Unlock();
  return true;
}

void LcUActionQueue::Pause() {
  lock.Lock();
  if (!paused) {
    paused = true;
    notEmpty.WakeAll();
    notFull.WakeAll();
    while (activeCount != 0) actionDone.Wait(lock);
  }
  lock.Unlock();
}

// The caller holds lock.
void LcUActionQueue::ClearPaused() {
  if (!paused) return;
  paused = false;
  resumed.WakeAll();
}

void LcUActionQueue::Resume() {
  lock.Lock();
  ClearPaused();
  lock.Unlock();
}

void LcUActionQueue::Refuse() {
  lock.Lock();
  refusing = true;
  notFull.WakeAll();
  lock.Unlock();
}

void LcUActionQueue::Accept() {
  lock.Lock();
  refusing = false;
  lock.Unlock();
}

int32_t LcUActionQueue::GetSize() {
  lock.Lock();
  int32_t size = int32_t(actions.size());
  lock.Unlock();
  return size;
}

bool LcUActionQueue::FindAction(Predicate predicate, void* context) {
  lock.Lock();
  bool found = false;
  for (LcUAction* action : actions) {
    if (predicate(action, context)) {
      found = true;
      break;
    }
  }
  lock.Unlock();
  return found;
}

void LcUActionQueue::RemoveAll(ActionList& out, bool stayPaused) {
  if (!stayPaused) Pause();
  lock.Lock();
  out.insert(out.end(), actions.begin(), actions.end());
  if (!actions.empty()) {
    actions.clear();
    empty.WakeAll();
    notFull.WakeAll();
  }
  if (!stayPaused) ClearPaused();
  lock.Unlock();
}

void LcUActionQueue::WaitForEmpty() {
  lock.Lock();
  while (!actions.empty()) empty.Wait(lock);
  lock.Unlock();
  Pause();
  Resume();
}

bool LcUActionQueue::WaitForAction() {
  lock.Lock();
  bool busy = !actions.empty() || activeCount != 0;
  if (busy) actionDone.Wait(lock);
  lock.Unlock();
  return busy;
}

bool LcUActionQueue::ProcessFinished() {
  finishedLock.Lock();
  finished.swap(processing);
  finishedLock.Unlock();
  bool any = !processing.empty();
  for (LcUAction* action : processing)
    if (action && action->Finish()) delete action;
  processing.clear();
  return any;
}

void LcUActionQueue::Stop(bool waitForEmpty) {
  lock.Lock();
  if (stopped) {
    lock.Unlock();
    return;
  }
  refusing = true;
  if (waitForEmpty)
    while (!actions.empty()) empty.Wait(lock);
  stopped = true;
  notEmpty.WakeAll();
  notFull.WakeAll();
  lock.Unlock();

  for (Worker& worker : workers)
    if (worker.thread.IsRunning()) worker.thread.WaitForCompletion();
  workers.clear();
  // Other callers may still be looking at the queue: empty it under the lock.
  lock.Lock();
  ActionList left(actions.begin(), actions.end());
  actions.clear();
  lock.Unlock();
  for (LcUAction* action : left) delete action;
}
