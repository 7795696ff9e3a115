#include <cstdlib>
#include <new>

#include "foundation/LcUMemory.h"
#include "foundation/LcUMemoryState.h"
#include "foundation/LcUSysError.h"
#include "foundation/LcUSysMemory.h"

namespace {
constexpr unsigned char eNEAR_OFFSET = 8, eFAR_OFFSET = 16;
}

// The heap is asked outside the lock, so that a failure can go to the
// handler, which may free memory through this allocator, and be retried.
void* LcUMemory::MallocAlloc(uint64_t size, uint32_t tryOnly) {
  LcUMemoryState& s = memoryState;
  if (!tryOnly && size > LcUMemoryState::eBAD_SIZE) BadSize(size);
  void* block;
  while (!(block = std::malloc(size)))
    if (!Retry(size, tryOnly)) return nullptr;
  uint64_t measure = HeapBlockSize(block);
  s.lock.Lock();
  LcUMemoryState::Add(s.mallocBytes, measure);
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
  uint64_t before = HeapBlockSize(block);
  void* moved;
  while (!(moved = std::realloc(block, size)))
    if (!Retry(size, tryOnly)) return nullptr;
  uint64_t after = HeapBlockSize(moved);
  s.lock.Lock();
  LcUMemoryState::Sub(s.mallocBytes, before);
  LcUMemoryState::Add(s.mallocBytes, after);
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
  void* block = LcUSysMemory::ReserveCommitted(size);
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
    if (!Retry(size, 1)) break;
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

bool LcUMemory::Retry(uint64_t size, uint32_t tryOnly) {
  LcUOutOfMemoryHandler handler = memoryState.handler;
  return handler && handler(size, tryOnly) != 0;
}

// A declined request fails the way the runtime's new fails without a
// handler; the handler stays installed for the next one. Without ours, a
// new-handler set through the runtime is honoured.
bool LcUMemory::NewFailed(uint64_t size) {
  if (memoryState.handler.load()) return Retry(size, 0);
  std::new_handler runtime = std::get_new_handler();
  if (!runtime) return false;
  runtime();
  return true;
}

void LcUMemory::OutOfMemory(uint64_t size) {
  LcUSysMemory::DebugOutput("LcUMemory: Out of memory for %d bytes\n", int(size));
  LcUSysError::Fatal();
}

LcUOutOfMemoryHandler LcUMemory::SetOutOfMemoryHandler(LcUOutOfMemoryHandler handler) {
  return memoryState.handler.exchange(handler);
}
