#pragma once

#ifndef _WIN32
#include <semaphore.h>
#endif

// Starts at 0; each Release lets one Wait through.
class LcUSemaphore {
public:
  LcUSemaphore();
  ~LcUSemaphore();
  LcUSemaphore(const LcUSemaphore&) = delete;
  LcUSemaphore& operator=(const LcUSemaphore&) = delete;

  bool Wait();
  bool Release();

private:
#ifdef _WIN32
  void* handle;
#else
  sem_t handle;
  bool valid;
#endif
};
