#include "foundation/LcUCriticalSection.h"

#include "foundation/LcULock.h"

LcUCriticalSection::LcUCriticalSection() {
  if (pthread_mutex_init(&word, nullptr) != 0) LcULock::Report(8, this, u"LcUCriticalSection::LcUCriticalSection");
}

LcUCriticalSection::~LcUCriticalSection() {
  if (pthread_mutex_destroy(&word) != 0) LcULock::Report(9, this, u"LcUCriticalSection::~LcUCriticalSection");
}

void LcUCriticalSection::Lock() {
  pthread_mutex_lock(&word);
}

void LcUCriticalSection::Unlock() {
  pthread_mutex_unlock(&word);
}

bool LcUCriticalSection::TryLock() {
  return pthread_mutex_trylock(&word) == 0;
}
