#pragma once

#ifndef _WIN32
#include <pthread.h>
#endif

// A lock its owner may take again; each Lock needs its Unlock.
class LcURecursiveCriticalSection {
public:
  LcURecursiveCriticalSection();
  ~LcURecursiveCriticalSection();
  LcURecursiveCriticalSection(const LcURecursiveCriticalSection&) = delete;
  LcURecursiveCriticalSection& operator=(const LcURecursiveCriticalSection&) = delete;

  void Lock();
  void Unlock();
  bool TryLock();

private:
#ifdef _WIN32
  void* section[5];  // a CRITICAL_SECTION
#else
  pthread_mutex_t section;
#endif
};
