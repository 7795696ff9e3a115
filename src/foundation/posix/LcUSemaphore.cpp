#include "foundation/LcUSemaphore.h"

#include <cerrno>

#include "foundation/LcULock.h"

LcUSemaphore::LcUSemaphore() : valid(sem_init(&handle, 0, 0) == 0) {
  if (!valid) LcULock::Report(10, this, u"LcUSemaphore::LcUSemaphore");
}

LcUSemaphore::~LcUSemaphore() {
  if (valid && sem_destroy(&handle) != 0) LcULock::Report(13, this, u"LcUSemaphore::~LcUSemaphore");
}

bool LcUSemaphore::Wait() {
  if (!valid) return false;
  int result;
  while ((result = sem_wait(&handle)) != 0 && errno == EINTR) {
  }
  return result == 0;
}

bool LcUSemaphore::Release() {
  return valid && sem_post(&handle) == 0;
}
