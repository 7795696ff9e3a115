#pragma once
#include "filestream/LcUSizedObject.h"
#include "foundation/LcUFileLock.h"
#include "foundation/LcUString.h"

// What the local cache gives an open: where the local copy lies, whether
// it is to be streamed into, and the entry's lock, which the caller takes
// over and holds while it uses the copy.
class LcUCacheFile {
public:
  LcUCacheFile() = default;
  ~LcUCacheFile() { LcUSizedObject::Delete(lock); }
  LcUCacheFile(const LcUCacheFile&) = delete;
  LcUCacheFile& operator=(const LcUCacheFile&) = delete;

  // Hands the lock over; null for a temporary copy.
  LcUFileLock* TakeLock() {
    LcUFileLock* taken = lock;
    lock = nullptr;
    return taken;
  }

  LcUString path;
  bool stream = false;
  LcUFileLock* lock = nullptr;
  LcUString statePath;
  bool loadState = false;
  // The copy is the caller's alone and goes when it is done with it.
  bool temporary = false;
};
