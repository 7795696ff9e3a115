#pragma once
#include <cstddef>
#include <cstdint>
#include <vector>

#include "filestream/LcUFileMetaData.h"
#include "foundation/LcUAllocator.h"
#include "foundation/LcUString.h"

// One entry found by a scan of the cache: a folder with a description.
class LcUCacheEntry {
public:
  using Files = std::vector<LcUString, LcUAllocator<LcUString>>;

  // The files of an entry beside its data.
  static const char16_t kDescriptionName[];
  static const char16_t kStateName[];
  static const char16_t kLockName[];

  // Whether a state file's bytes show every block of a file of `size`
  // bytes present.
  static bool IsCompleteState(const uint8_t* data, size_t length, uint64_t size);
  // The data file has exactly `size` bytes and the state file shows every
  // block present.
  static bool IsComplete(const char16_t* dataPath, const char16_t* statePath, uint64_t size);

  LcUString directory;
  LcUString descriptionPath;
  int64_t bytes = 0;
  Files files;
  // Of the description, seconds since 1970.
  int64_t time = 0;
  bool locked = false;
  // Filled by the listing of a URL's entries only.
  LcUString dataPath;
  LcUFileMetaData info;
};
