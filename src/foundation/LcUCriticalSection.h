#pragma once

#ifndef _WIN32
#include <pthread.h>
#endif

// A non-recursive lock: a thread that takes it twice deadlocks. It records
// no owner.
class LcUCriticalSection {
public:
  LcUCriticalSection();
  ~LcUCriticalSection();
  LcUCriticalSection(const LcUCriticalSection&) = delete;
  LcUCriticalSection& operator=(const LcUCriticalSection&) = delete;

  void Lock();
  void Unlock();
  bool TryLock();

private:
  friend class LcUCondition;
#ifdef _WIN32
  void* word;  // an SRWLOCK
#else
  pthread_mutex_t word;
#endif
};
