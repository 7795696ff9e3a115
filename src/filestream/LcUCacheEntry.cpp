#include "filestream/LcUCacheEntry.h"

#include "environment/LcUSysFile.h"
#include "filestream/LcUFileURLRemote.h"

const char16_t LcUCacheEntry::kDescriptionName[] = u"data.twcacheinfo";
const char16_t LcUCacheEntry::kStateName[] = u"data.streamdata";
const char16_t LcUCacheEntry::kLockName[] = u"data.lock";

bool LcUCacheEntry::IsCompleteState(const uint8_t* data, size_t length, uint64_t size) {
  LcUFileURLRemote remote(size, true);
  return size == 0 || (remote.Apply(data, length) && !remote.Lacks());
}

bool LcUCacheEntry::IsComplete(const char16_t* dataPath, const char16_t* statePath, uint64_t size) {
  int64_t onDisk = 0;
  if (!LcUSysFile::GetSize(dataPath, onDisk) || uint64_t(onDisk) != size) return false;
  LcUFileURLRemote remote(size, true);
  return size == 0 || (remote.Load(statePath) && !remote.Lacks());
}
