#include "foundation/LcUCondition.h"

#include <time.h>

#include "foundation/LcULock.h"

// Timed waits run on the monotonic clock, as the Windows ones do.
LcUCondition::LcUCondition() {
  pthread_condattr_t attributes;
  pthread_condattr_init(&attributes);
  pthread_condattr_setclock(&attributes, CLOCK_MONOTONIC);
  if (pthread_cond_init(&word, &attributes) != 0) LcULock::Report(4, this, u"LcUCondition::LcUCondition");
  pthread_condattr_destroy(&attributes);
}

LcUCondition::~LcUCondition() {
  if (pthread_cond_destroy(&word) != 0) LcULock::Report(7, this, u"LcUCondition::LcUCondition");
}

void LcUCondition::Wait(LcUCriticalSection& lock) {
  pthread_cond_wait(&word, &lock.word);
}

bool LcUCondition::Wait(LcUCriticalSection& lock, uint32_t milliseconds) {
  timespec until;
  clock_gettime(CLOCK_MONOTONIC, &until);
  until.tv_sec += milliseconds / 1000;
  until.tv_nsec += long(milliseconds % 1000) * 1000000;
  if (until.tv_nsec >= 1000000000) {
    until.tv_sec += 1;
    until.tv_nsec -= 1000000000;
  }
  return pthread_cond_timedwait(&word, &lock.word, &until) == 0;
}

void LcUCondition::Wake() {
  pthread_cond_signal(&word);
}

void LcUCondition::WakeAll() {
  pthread_cond_broadcast(&word);
}
