#pragma once
#include <cstdint>

#include "foundation/LcUCriticalSection.h"

// Waits always pair with an LcUCriticalSection held by the waiter. Wakes
// may be spurious: waiters re-check what they wait for.
class LcUCondition {
public:
  LcUCondition();
  ~LcUCondition();
  LcUCondition(const LcUCondition&) = delete;
  LcUCondition& operator=(const LcUCondition&) = delete;

  void Wait(LcUCriticalSection& lock);
  // False when the time ran out.
  bool Wait(LcUCriticalSection& lock, uint32_t milliseconds);
  void Wake();
  void WakeAll();

private:
#ifdef _WIN32
  void* word;  // a CONDITION_VARIABLE
#else
  pthread_cond_t word;
#endif
};
