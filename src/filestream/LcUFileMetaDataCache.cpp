#include "filestream/LcUFileMetaDataCache.h"

#include "environment/LcUTime.h"

bool LcUFileMetaDataCache::Lookup(const char16_t* text, LcUFileMetaData& out) {
  lock.Lock();
  bool hit = !url.IsNull() && LcUString::Equal(url.Get(), text) && !LcUTime::HasExpired(timer);
  if (hit) out = metadata;
  lock.Unlock();
  return hit;
}

void LcUFileMetaDataCache::Store(const char16_t* text, const LcUFileMetaData& value) {
  lock.Lock();
  url = text;
  metadata = value;
  // A lifetime this long has no use for the fine clock.
  LcUTime::StartTimer(timer, int64_t(lifetime) * 1000000, 1000000);
  lock.Unlock();
}
