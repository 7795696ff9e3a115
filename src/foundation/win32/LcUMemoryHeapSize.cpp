#include <malloc.h>

#include "foundation/LcUMemory.h"

uint64_t LcUMemory::HeapBlockSize(void* block) {
  return _msize(block);
}
