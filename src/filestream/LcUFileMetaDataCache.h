#pragma once
#include <cstdint>

#include "environment/LcUTimer.h"
#include "filestream/LcUFileMetaData.h"
#include "foundation/LcUCriticalSection.h"
#include "foundation/LcUString.h"

// The last answer about one URL, good for a lifetime: the opens that
// follow one another on a file ask the server only once.
class LcUFileMetaDataCache {
public:
  explicit LcUFileMetaDataCache(uint32_t lifetimeSeconds) : lifetime(lifetimeSeconds) {}
  LcUFileMetaDataCache(const LcUFileMetaDataCache&) = delete;
  LcUFileMetaDataCache& operator=(const LcUFileMetaDataCache&) = delete;

  // True, with metadata filled, for the same URL text within the lifetime.
  bool Lookup(const char16_t* url, LcUFileMetaData& metadata);
  // Replaces the entry and starts its lifetime.
  void Store(const char16_t* url, const LcUFileMetaData& metadata);

private:
  uint32_t lifetime;
  LcUCriticalSection lock;
  LcUTimer timer;
  LcUString url;
  LcUFileMetaData metadata;
};
