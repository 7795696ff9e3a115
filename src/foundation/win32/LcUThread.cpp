#include "foundation/LcUThread.h"

#include <process.h>
#include <windows.h>

// Other priorities than 0 start suspended, so the thread never runs at the
// wrong one.
bool LcUThread::Launch(LcUThreadFunction function, void* argument, int32_t platformPriority) {
  unsigned flags = platformPriority ? CREATE_SUSPENDED : 0;
  handle = reinterpret_cast<void*>(_beginthreadex(nullptr, 0, function, argument, flags, nullptr));
  if (!handle) return false;
  if (platformPriority && (!SetThreadPriority(handle, platformPriority) || ResumeThread(handle) != 1)) {
    CloseHandle(handle);
    handle = nullptr;
    return false;
  }
  return true;
}

bool LcUThread::Join() {
  bool waited = WaitForSingleObject(handle, INFINITE) == WAIT_OBJECT_0;
  bool closed = CloseHandle(handle) != 0;
  handle = nullptr;
  return waited && closed;
}

void LcUThread::Release() {
  CloseHandle(handle);
  handle = nullptr;
}

int32_t LcUThread::CountProcessors() {
  SYSTEM_INFO system;
  GetSystemInfo(&system);
  return int32_t(system.dwNumberOfProcessors);
}
