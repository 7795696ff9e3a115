#include "foundation/LcUStringMemory.h"

#include "foundation/LcUMemory.h"

namespace {
// Strings can live in statics, before any start and after every stop, so
// the allocator is started on the first allocation and kept for the process.
void EnsureAllocator() {
  static const bool started = LcUMemory::Initialize();
  (void)started;
}
}  // namespace

uint64_t LcUStringMemory::GoodSize(uint64_t size) {
  EnsureAllocator();
  return LcUMemory::GoodSize(size);
}

void* LcUStringMemory::Alloc(uint64_t size, uint64_t* granted) {
  if (size == 0) return nullptr;
  uint64_t good = GoodSize(size);
  void* block = LcUMemory::Alloc(good, 8, 0);
  if (block && granted) *granted = good;
  return block;
}

// Callers give back either the granted size or the size they asked for;
// rounding both ways lands on the same block size.
void LcUStringMemory::Free(void* block, uint64_t size) {
  LcUMemory::Free(block, GoodSize(size), 8);
}
