#include "foundation/LcUMemory.h"

#include <cstdlib>
#include <cstring>
#include <new>

#include "foundation/LcUMemoryState.h"
#include "foundation/LcUSysError.h"
#include "foundation/LcUSysMemory.h"

LcUComponent LcUMemory::component;

namespace {
// Constant-initialised, so that a start from another file's static
// initialisation is never undone by this file's own.
union StateHolder {
  constexpr StateHolder() : unused() {}
  ~StateHolder() {}
  char unused;
  LcUMemoryState state;
};
StateHolder holder;
}  // namespace

LcUMemoryState& memoryState = holder.state;
std::atomic<bool> LcUMemory::exiting{false};

bool LcUMemory::SwitchSet(const char* name) {
  const char* value = std::getenv(name);
  return value && *value && std::strcmp(value, "0") != 0;
}

// Blocks freed by static destructors after this would give address space
// back through bookkeeping that may already be destroyed; the process is
// ending, so they are left where they are.
void LcUMemory::StopReleasing() {
  exiting.store(true, std::memory_order_relaxed);
}

bool LcUMemory::Initialize() {
  if (LcUSysError::RegisterComponent(&component, "LcUMemory") != 1) return true;
  static const bool registered = std::atexit(StopReleasing) == 0;
  (void)registered;
  LcUSysError::InitSysError();
  LcUSysMemory::Initialize();
  LcUMemoryState& s = *new (&holder.state) LcUMemoryState();
  s.scrub = SwitchSet("TW_SCRUB_MEMORY");
  s.check = SwitchSet("TW_CHECK_MEMORY");
  s.mediumEnabled = !SwitchSet("TW_DISABLE_MEDIUM_BLOCK_ALLOCATORS");
  s.pageSize = LcUSysMemory::GetPageSize();
  s.regionSize = LcUSysMemory::GetAllocationGranularity();
  s.largeLimit = s.regionSize * 128;
  BuildTables();
  return true;
}

void LcUMemory::Terminate() {
  LcUMemoryState& s = memoryState;
  if (component.initCount > 1) {
    LcUSysError::UnregisterComponent(&component);
    return;
  }
  if (component.initCount < 1) return;
  uint64_t arena = s.arenaBytes, heap = s.mallocBytes, regions = s.regionBytes;
  if (arena) LcUSysMemory::DebugOutput("%d arena bytes still allocated at LcUMemory::Terminate. Not terminating.", int(arena));
  if (heap) LcUSysMemory::DebugOutput("%d malloc bytes still allocated at LcUMemory::Terminate. Not terminating.", int(heap));
  if (regions)
    LcUSysMemory::DebugOutput("%d region bytes still allocated at LcUMemory::Terminate. Not terminating.", int(regions));
  if (arena || heap || regions) return;
  ReleaseArenas();
  s.~LcUMemoryState();
  LcUSysMemory::Terminate();
  LcUSysError::TermSysError();
  LcUSysError::UnregisterComponent(&component);
}

void LcUMemory::BadSize(uint64_t size) {
  LcUSysMemory::DebugOutput("LcUMemory: Bad size %d\n", int(size));
  LcUSysError::Fatal();
}

void* LcUMemory::ArenaAlloc(LcUMemoryArena* arena, uint64_t counted, uint64_t size, uint32_t tryOnly) {
  LcUMemoryState& s = memoryState;
  for (;;) {
    s.lock.Lock();
    void* block = arena->AllocBlock(s.scrub, s.check);
    if (block) LcUMemoryState::Add(s.arenaBytes, counted);
    s.lock.Unlock();
    if (block) return block;
    if (!Retry(size, tryOnly)) return nullptr;
  }
}

void* LcUMemory::Alloc(uint64_t size, uint32_t alignment, uint32_t tryOnly) {
  LcUMemoryState& s = memoryState;
  if (size == 0) return nullptr;
  if (!tryOnly && size > LcUMemoryState::eBAD_SIZE) BadSize(size);
  if (size <= LcUMemoryState::eSMALL_LIMIT) {
    uint64_t rounded;
    LcUMemoryArena* arena = s.SmallArena(size, alignment, rounded);
    return ArenaAlloc(arena, rounded, size, tryOnly);
  }
  if (size <= LcUMemoryState::eMEDIUM_LIMIT && s.mediumEnabled) {
    LcUMemoryArena* arena = s.MediumArena(size);
    return ArenaAlloc(arena, arena->blockSize, size, tryOnly);
  }
  if (size < s.largeLimit && size % s.regionSize != 0) {
    if (LcUMemoryArena* arena = ExactArena(size)) return ArenaAlloc(arena, size, size, tryOnly);
    return MallocAlloc(size, tryOnly);
  }
  return LargeAlloc(size, tryOnly);
}

void LcUMemory::Free(void* block, uint64_t size, uint32_t alignment) {
  LcUMemoryState& s = memoryState;
  if (!block) return;
  if (size > LcUMemoryState::eBAD_SIZE) BadSize(size);
  LcUMemoryArena* arena = nullptr;
  uint64_t counted = size;
  if (size <= LcUMemoryState::eSMALL_LIMIT) {
    arena = s.SmallArena(size, alignment, counted);
  } else if (size <= LcUMemoryState::eMEDIUM_LIMIT && s.mediumEnabled) {
    arena = s.MediumArena(size);
    counted = arena->blockSize;
  } else if (size < s.largeLimit && size % s.regionSize != 0) {
    arena = ExactArena(size);
    if (!arena) {
      MallocFree(block);
      return;
    }
  } else {
    if (!exiting.load(std::memory_order_relaxed)) LargeFree(block, size);
    return;
  }
  if (exiting.load(std::memory_order_relaxed)) return;
  s.lock.Lock();
  arena->FreeBlock(block, s.scrub, s.check);
  LcUMemoryState::Sub(s.arenaBytes, counted);
  s.lock.Unlock();
}

void* LcUMemory::Realloc(void* block, uint64_t oldSize, uint64_t newSize, uint32_t alignment) {
  LcUMemoryState& s = memoryState;
  if (oldSize == newSize) return block;
  if (newSize == 0) {
    Free(block, oldSize, alignment);
    return nullptr;
  }
  if (!block) return Alloc(newSize, alignment, 0);
  if (oldSize > LcUMemoryState::eBAD_SIZE) BadSize(oldSize);
  if (newSize > LcUMemoryState::eBAD_SIZE) BadSize(newSize);
  if (oldSize <= LcUMemoryState::eSMALL_LIMIT && newSize <= LcUMemoryState::eSMALL_LIMIT) {
    uint64_t a, b;
    s.SmallArena(oldSize, alignment, a);
    s.SmallArena(newSize, alignment, b);
    if (a == b) return block;
  }
  auto inMedium = [&](uint64_t n) {
    return n > LcUMemoryState::eSMALL_LIMIT && n <= LcUMemoryState::eMEDIUM_LIMIT && s.mediumEnabled;
  };
  if (inMedium(oldSize) && inMedium(newSize) && s.MediumArena(oldSize) == s.MediumArena(newSize)) return block;
  auto onHeap = [&](uint64_t n) {
    return n > LcUMemoryState::eMEDIUM_LIMIT && n < s.largeLimit && n % s.regionSize != 0 && !ExactArena(n);
  };
  if (onHeap(oldSize) && onHeap(newSize)) return MallocRealloc(block, newSize, 0);
  void* moved = Alloc(newSize, alignment, 0);
  if (!moved) return nullptr;
  std::memcpy(moved, block, oldSize < newSize ? oldSize : newSize);
  Free(block, oldSize, alignment);
  return moved;
}

void* LcUMemory::ReallocGood(void* block, uint64_t& size, uint64_t newSize, uint32_t alignment) {
  uint64_t good = GoodSize(newSize);
  void* result = Realloc(block, size, good, alignment);
  if (result) size = good;
  return result;
}

void LcUMemory::ReleaseArenas() {
  LcUMemoryState& s = memoryState;
  for (LcUMemoryState::Callback* c = s.callbacks; c;) {
    LcUMemoryState::Callback* next = c->next;
    s.small[3]->FreeBlock(c, s.scrub, s.check);
    c = next;
  }
  s.callbacks = nullptr;
  // Small, medium and exact arenas lie in creation order.
  for (int i = 0; i < s.arenaCount; ++i) s.arenas[i].ReleaseAll();
}
