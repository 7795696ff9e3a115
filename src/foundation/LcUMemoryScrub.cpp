#include "foundation/LcUMemoryScrub.h"

#include <cstring>

#include "foundation/LcUSysMemory.h"

bool LcUMemoryScrub::Verify(const void* block, uint64_t from, uint64_t to, unsigned char expected, int shown) {
  const unsigned char* bytes = static_cast<const unsigned char*>(block);
  for (uint64_t i = from; i < to; ++i)
    if (bytes[i] != expected) {
      LcUSysMemory::DebugOutput("Memory block at %x has value %x at offset %d, expected %x",
                                unsigned(reinterpret_cast<uintptr_t>(block)), unsigned(bytes[i]),
                                shown < 0 ? int(i) : shown, unsigned(expected));
      return false;
    }
  return true;
}

void LcUMemoryScrub::OnAlloc(void* block, uint64_t requested, uint64_t blockSize, bool check) {
  // The first 8 bytes held the free-list link; the offset shown is always 8.
  if (check && blockSize != 8) Verify(block, 8, blockSize, eFREED, 8);
  unsigned char* bytes = static_cast<unsigned char*>(block);
  std::memset(bytes, eFRESH, requested);
  std::memset(bytes + requested, eGUARD, blockSize - requested);
}

void LcUMemoryScrub::OnFree(void* block, uint64_t requested, uint64_t blockSize, bool check) {
  if (check) Verify(block, requested, blockSize, eGUARD, -1);
  std::memset(block, eFREED, blockSize);
}
