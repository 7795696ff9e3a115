#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "filestream/LcUCacheEntry.h"
#include "filestream/LcUFileURLRemote.h"
#include "foundation/LcUMemory.h"

// An entry's state file of any bytes, against the size its description
// gives (taken from the first bytes, cut so the bit array stays small): it
// is complete only when it names that size and every block is set.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static bool started = LcUMemory::Initialize();
  (void)started;
  uint64_t total = 0;
  for (size_t i = 0; i < 8 && i < size; ++i) total |= uint64_t(data[i]) << (8 * i);
  total &= (uint64_t(1) << 28) - 1;
  bool complete = LcUCacheEntry::IsCompleteState(data, size, total);
  if (total == 0) {
    if (!complete) std::abort();
    return 0;
  }
  LcUFileURLRemote remote(total, true);
  bool applied = remote.Apply(data, size);
  if (complete != (applied && remote.downloadedCount == remote.blockCount)) std::abort();
  if (complete && remote.totalSize != total) std::abort();
  return 0;
}
