#include "foundation/LcUSemaphore.h"

#include <windows.h>

#include "foundation/LcULock.h"

LcUSemaphore::LcUSemaphore() : handle(CreateSemaphoreW(nullptr, 0, 0xFFFFFFF, nullptr)) {
  if (!handle) LcULock::Report(10, this, u"LcUSemaphore::LcUSemaphore");
}

LcUSemaphore::~LcUSemaphore() {
  if (handle && !CloseHandle(handle)) LcULock::Report(13, this, u"LcUSemaphore::~LcUSemaphore");
}

bool LcUSemaphore::Wait() {
  return handle && WaitForSingleObject(handle, INFINITE) == WAIT_OBJECT_0;
}

bool LcUSemaphore::Release() {
  return handle && ReleaseSemaphore(handle, 1, nullptr) != 0;
}
