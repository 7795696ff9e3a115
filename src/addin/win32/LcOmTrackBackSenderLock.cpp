#include "addin/LcOmTrackBackSenderLock.h"

#include <windows.h>

#include <string>

#include "addin/LcOmTrackBackChannel.h"

// A named mutex of the session: one that its holder left behind by ending
// comes back abandoned, and is held all the same.
LcOmTrackBackSenderLock::LcOmTrackBackSenderLock(int timeoutMs) {
  std::string name = std::string("Local\\") + LcOmTrackBackChannel::kWindowTitle;
  HANDLE mutex = CreateMutexA(nullptr, FALSE, name.c_str());
  if (!mutex) return;
  handle = reinterpret_cast<intptr_t>(mutex);
  DWORD waited = WaitForSingleObject(mutex, DWORD(timeoutMs));
  held = waited == WAIT_OBJECT_0 || waited == WAIT_ABANDONED;
}

LcOmTrackBackSenderLock::~LcOmTrackBackSenderLock() {
  if (handle == -1) return;
  HANDLE mutex = reinterpret_cast<HANDLE>(handle);
  if (held) ReleaseMutex(mutex);
  CloseHandle(mutex);
}
