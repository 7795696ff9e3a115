#pragma once
#include "foundation/LcUActionQueue.h"

// The download workers. Each worker reads through the connection of its
// own index, made when a file opens, so a worker needs nothing of its own
// at its start or end. The workers start once the queue is whole and end
// before it goes, so that none calls into a queue half built or half gone.
class LcUInternetActionQueue : public LcUActionQueue {
public:
  LcUInternetActionQueue(int32_t maxActions, int32_t threadCount, bool refuseWhenFull)
      : LcUActionQueue(maxActions, threadCount, refuseWhenFull, false) {
    Start();
  }
  ~LcUInternetActionQueue() override { Stop(false); }

protected:
  void ThreadStart(int32_t) override {}
  void ThreadEnd(int32_t) override {}
};
