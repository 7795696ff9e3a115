#pragma once
#include <cstdint>

// The strings' sized allocation: Alloc and Free(size) with the rounding of
// the sized allocator's GoodSize, so capacities stay the same when the
// strings move onto it.
class LcUStringMemory {
public:
  // Returns null on failure; *granted receives the rounded size.
  static void* Alloc(uint64_t size, uint64_t* granted);
  static void Free(void* block, uint64_t size);
  static uint64_t GoodSize(uint64_t size);
};
