#pragma once
#include <cstdint>

// A unit of work for an LcUActionQueue: Execute runs on a worker, Finish on
// whichever thread calls ProcessFinished.
class LcUAction {
public:
  virtual ~LcUAction() = default;
  virtual void Execute(int32_t threadIndex) = 0;
  // True when the queue should delete the action.
  virtual bool Finish() = 0;
  // False: the worker deletes the action right after Execute.
  virtual bool NeedsFinish() { return true; }
};
