#include "foundation/LcUStringMemory.h"

#include "foundation/LcUMemory.h"

namespace {
// Strings are started before use and bring the allocator up with them. One
// that allocates while the allocator is down (a static, or a program that
// never starts the strings) starts it on its own; that start is never undone.
void EnsureAllocator() {
  if (LcUMemory::component.initCount == 0) LcUMemory::Initialize();
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
  if (!block) return;
  LcUMemory::Free(block, GoodSize(size), 8);
}
