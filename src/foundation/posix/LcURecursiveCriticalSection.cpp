#include "foundation/LcURecursiveCriticalSection.h"

LcURecursiveCriticalSection::LcURecursiveCriticalSection() {
  pthread_mutexattr_t attributes;
  pthread_mutexattr_init(&attributes);
  pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE);
  pthread_mutex_init(&section, &attributes);
  pthread_mutexattr_destroy(&attributes);
}

LcURecursiveCriticalSection::~LcURecursiveCriticalSection() {
  pthread_mutex_destroy(&section);
}

void LcURecursiveCriticalSection::Lock() {
  pthread_mutex_lock(&section);
}

void LcURecursiveCriticalSection::Unlock() {
  pthread_mutex_unlock(&section);
}

bool LcURecursiveCriticalSection::TryLock() {
  return pthread_mutex_trylock(&section) == 0;
}
