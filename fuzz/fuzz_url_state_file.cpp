#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "filestream/LcUFileURLRemote.h"
#include "foundation/LcUMemory.h"

// A state file of any bytes, checked against a file of the size it names
// (cut so that its bit array stays small): applied or not, the state
// describes that file and no more.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static bool started = LcUMemory::Initialize();
  (void)started;
  std::vector<uint8_t> bytes(data, data + size);
  uint64_t total = 0;
  for (size_t i = 0; i < 8 && i < size; ++i) total |= uint64_t(bytes[i]) << (8 * i);
  total &= (uint64_t(1) << 30) - 1;
  for (size_t i = 0; i < 8 && i < size; ++i) bytes[i] = uint8_t(total >> (8 * i));
  LcUFileURLRemote remote(total, true);
  bool applied = remote.Apply(bytes.data(), bytes.size());
  if (remote.downloadedCount != remote.bits.CountSet() || remote.downloadedCount > remote.blockCount) std::abort();
  if (remote.blockCount && remote.tricklePosition >= remote.blockCount) std::abort();
  if (applied && (size <= 24 || remote.bits.Count() != remote.blockCount)) std::abort();
  if (!applied && remote.downloadedCount != 0) std::abort();
  return 0;
}
