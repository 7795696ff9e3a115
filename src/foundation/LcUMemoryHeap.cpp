#include <cstdlib>
#include <new>

#include "foundation/LcUMemory.h"
#include "foundation/LcUMemoryState.h"
#include "foundation/LcUSysMemory.h"

namespace {
constexpr unsigned char eNEAR_OFFSET = 8, eFAR_OFFSET = 16;
}

void* LcUMemory::MallocAlloc(uint64_t size, uint32_t tryOnly) {
  LcUMemoryState& s = memoryState;
  if (!tryOnly && size > LcUMemoryState::eBAD_SIZE) BadSize(size);
  // The new-mode value pairs this call's tryOnly with the new-handler.
  s.lock.Lock();
  s.newMode = tryOnly;
  void* block = std::malloc(size);
  s.newMode = 0;
  if (block) LcUMemoryState::Add(s.mallocBytes, HeapBlockSize(block));
  s.lock.Unlock();
  return block;
}

void* LcUMemory::MallocRealloc(void* block, uint64_t size, uint32_t tryOnly) {
  LcUMemoryState& s = memoryState;
  if (!block) return MallocAlloc(size, tryOnly);
  if (size == 0) {
    MallocFree(block);
    return nullptr;
  }
  if (!tryOnly && size > LcUMemoryState::eBAD_SIZE) BadSize(size);
  s.lock.Lock();
  uint64_t before = HeapBlockSize(block);
  s.newMode = tryOnly;
  void* moved = std::realloc(block, size);
  s.newMode = 0;
  if (moved) {
    LcUMemoryState::Sub(s.mallocBytes, before);
    LcUMemoryState::Add(s.mallocBytes, HeapBlockSize(moved));
  }
  s.lock.Unlock();
  return moved;
}

void LcUMemory::MallocFree(void* block) {
  LcUMemoryState& s = memoryState;
  if (!block) return;
  s.lock.Lock();
  LcUMemoryState::Sub(s.mallocBytes, HeapBlockSize(block));
  s.lock.Unlock();
  std::free(block);
}

void* LcUMemory::RegionAlloc(uint64_t size) {
  LcUMemoryState& s = memoryState;
  void* block = LcUSysMemory::Alloc(size, 0, false);
  if (!block) return nullptr;
  s.lock.Lock();
  LcUMemoryState::Add(s.regionBytes, size);
  s.lock.Unlock();
  return block;
}

void LcUMemory::RegionFree(void* block, uint64_t size) {
  LcUMemoryState& s = memoryState;
  if (!block) return;
  s.lock.Lock();
  LcUMemoryState::Sub(s.regionBytes, size);
  s.lock.Unlock();
  LcUSysMemory::Free(block);
}

// Free tells regions from heap blocks by alignment, so a heap fallback is
// offset by 8 or 16 to miss the region boundary and records which.
void* LcUMemory::LargeAlloc(uint64_t size, uint32_t tryOnly) {
  LcUMemoryState& s = memoryState;
  for (;;) {
    if (void* block = RegionAlloc(size)) return block;
    LcUOutOfMemoryHandler handler = s.handler;
    if (!handler || !handler(size, 1)) break;
  }
  unsigned char* heap = static_cast<unsigned char*>(MallocAlloc(size + 16, tryOnly));
  if (!heap) return nullptr;
  unsigned char offset = eNEAR_OFFSET;
  if (reinterpret_cast<uintptr_t>(heap + offset) % s.regionSize == 0) offset = eFAR_OFFSET;
  heap[offset - 1] = offset;
  return heap + offset;
}

void LcUMemory::LargeFree(void* block, uint64_t size) {
  LcUMemoryState& s = memoryState;
  if (reinterpret_cast<uintptr_t>(block) % s.regionSize == 0) {
    RegionFree(block, size);
    return;
  }
  unsigned char* bytes = static_cast<unsigned char*>(block);
  unsigned char offset = bytes[-1];
  if (offset != eNEAR_OFFSET && offset != eFAR_OFFSET) {
    LcUSysMemory::DebugOutput("Dealloc: Large Block %x not region aligned and has invalid offset %d",
                              unsigned(reinterpret_cast<uintptr_t>(block)), int(offset));
    return;
  }
  MallocFree(bytes - offset);
}

void LcUMemory::NewHandlerThunk() {
  LcUMemoryState& s = memoryState;
  LcUOutOfMemoryHandler handler = s.handler;
  if (handler && handler(0, s.newMode)) return;
  // Declined: without a handler the runtime's new reports the failure itself.
  std::set_new_handler(nullptr);
}

LcUOutOfMemoryHandler LcUMemory::SetOutOfMemoryHandler(LcUOutOfMemoryHandler handler) {
  LcUOutOfMemoryHandler previous = memoryState.handler.exchange(handler);
  std::set_new_handler(handler ? &NewHandlerThunk : nullptr);
  return previous;
}
