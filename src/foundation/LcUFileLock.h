#pragma once
#include <cstdint>

#include "foundation/LcUString.h"

// A lock between processes that use the same directory: whoever created the
// file holds it. What a failed TryLock means is the caller's to decide.
class LcUFileLock {
public:
  LcUFileLock(const char16_t* directory, const char16_t* fileName);
  LcUFileLock(const char* directory, const char* fileName);
  ~LcUFileLock();
  LcUFileLock(const LcUFileLock&) = delete;
  LcUFileLock& operator=(const LcUFileLock&) = delete;

  bool TryLock();
  bool Unlock();
  bool IsHeld() const { return held; }
  const LcUString& GetPath() const { return path; }

private:
  void SetPath(const char16_t* directory, const char16_t* fileName);
  // Platform: whether the file is there, and its exclusive creation.
  bool Exists() const;
  bool CreateExclusive();
  void CloseAndDelete();

  LcUString path;
  intptr_t handle = -1;
  bool held = false;
};
