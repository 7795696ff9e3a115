#pragma once
#include "foundation/LcUActionQueue.h"

// The download workers. Each worker reads through the connection of its
// own index, made when a file opens, so a worker needs nothing of its own
// at its start or end.
class LcUInternetActionQueue : public LcUActionQueue {
public:
  using LcUActionQueue::LcUActionQueue;
  void ThreadStart(int32_t) override {}
  void ThreadEnd(int32_t) override {}
};
