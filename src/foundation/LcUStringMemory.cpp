#include "foundation/LcUStringMemory.h"

#include <cstdio>
#include <cstdlib>

#include "foundation/LcUSysError.h"

namespace {
// The top block sizes and the exact size of the sized allocator with the
// usual 4096-byte page and 65536-byte region.
constexpr uint64_t kMediumTops[] = {1016, 2032, 4064, 8128, 16256};
constexpr uint64_t kExactSize = 32720;
constexpr uint64_t kRegionSize = 65536;
constexpr uint64_t kBadSize = 0x7FF00000;

uint64_t NextPowerOfTwo(uint64_t n) {
  uint64_t p = 1;
  while (p < n) {
    if (p > (~uint64_t(0) >> 1)) return 0;
    p <<= 1;
  }
  return p;
}
}  // namespace

uint64_t LcUStringMemory::GoodSize(uint64_t size) {
  if (size < 5) return 4;
  if (size <= 512) return NextPowerOfTwo(size);
  if (size <= 16256) {
    for (uint64_t top : kMediumTops)
      if (top >= size) return top;
  }
  if (size < kRegionSize) return size <= kExactSize ? kExactSize : kRegionSize;
  return NextPowerOfTwo(size);
}

void* LcUStringMemory::Alloc(uint64_t size, uint64_t* granted) {
  if (size == 0) return nullptr;
  if (size > kBadSize) {
    char text[64];
    std::snprintf(text, sizeof(text), "LcUMemory: Bad size %d\n", int(size));
    LcUSysError::Log(text);
    LcUSysError::Fatal();
  }
  uint64_t good = GoodSize(size);
  void* block = std::malloc(good);
  if (block && granted) *granted = good;
  return block;
}

void LcUStringMemory::Free(void* block, uint64_t size) {
  (void)size;
  std::free(block);
}
