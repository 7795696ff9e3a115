#pragma once
#include <cstdint>

#include "filestream/LcUSizedObject.h"
#include "foundation/LcUFileLock.h"
#include "foundation/LcUString.h"

// A whole local copy of a file handed to a caller, with the cache entry's
// lock held until it is released.
class LcULocalCopy {
public:
  LcULocalCopy(const LcUString& path, int32_t deleteOnRelease, LcUFileLock* lock)
      : path(path), deleteOnRelease(deleteOnRelease), lock(lock) {}
  ~LcULocalCopy() { LcUSizedObject::Delete(lock); }
  LcULocalCopy(const LcULocalCopy&) = delete;
  LcULocalCopy& operator=(const LcULocalCopy&) = delete;

  LcUString path;
  int32_t deleteOnRelease;
  LcUFileLock* lock;
};
