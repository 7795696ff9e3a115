#pragma once
#include <cstdint>

#include "foundation/LcUComponent.h"

#ifndef _WIN32
#include <pthread.h>
#endif

typedef uint32_t (*LcUThreadFunction)(void* argument);

// One thread. The component counts the library's threads, the one that
// started it included.
class LcUThread {
public:
  static LcUComponent component;
  static bool Initialize();
  static void Terminate();
  // 1 while the component is down; never below 1.
  static int32_t GetThreadCount();
  static uint32_t GetMainThreadId();
  static int32_t GetProcessorCount();

  LcUThread() = default;
  virtual ~LcUThread();
  LcUThread(const LcUThread&) = delete;
  LcUThread& operator=(const LcUThread&) = delete;

  // Priority -3 (lowest) to 3 (highest), 0 the default; the thread has its
  // priority before it runs.
  bool Create(LcUThreadFunction function, void* argument, int32_t priority);
  // Waits without limit, then lets the thread go.
  bool WaitForCompletion();
  bool IsRunning() const { return running; }

private:
  // The platform's own priority value; the platform maps it where it must.
  bool Launch(LcUThreadFunction function, void* argument, int32_t platformPriority);
  bool Join();
  // Lets a thread that is still running go on without this object.
  void Release();
  static int32_t CountProcessors();

#ifdef _WIN32
  void* handle = nullptr;
#else
  pthread_t handle{};
#endif
  bool running = false;
};
