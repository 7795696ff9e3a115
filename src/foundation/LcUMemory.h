#pragma once
#include <atomic>
#include <cstdint>

#include "foundation/LcUComponent.h"

struct LcUMemoryArena;
struct LcUMemoryPool;

// Non-zero asks for another attempt.
typedef int (*LcUOutOfMemoryHandler)(uint64_t size, uint32_t tryOnly);
// Bytes owned elsewhere that count in the total.
typedef uint64_t (*LcUMemoryUsageCallback)();

// The sized allocator under every foundation class: the caller gives a
// block's size and alignment back on Free, and the size alone selects the
// arena, heap or region that owns the block.
class LcUMemory {
public:
  static LcUComponent component;
  static bool Initialize();
  static void Terminate();

  static void* Alloc(uint64_t size, uint32_t alignment, uint32_t tryOnly);
  static void Free(void* block, uint64_t size, uint32_t alignment);
  static void* Realloc(void* block, uint64_t oldSize, uint64_t newSize, uint32_t alignment);
  static void* ReallocGood(void* block, uint64_t& size, uint64_t newSize, uint32_t alignment);

  static void* RegionAlloc(uint64_t size);
  static void RegionFree(void* block, uint64_t size);
  static void* MallocAlloc(uint64_t size, uint32_t tryOnly);
  static void* MallocRealloc(void* block, uint64_t size, uint32_t tryOnly);
  static void MallocFree(void* block);

  static uint64_t GoodSize(uint64_t size);
  static uint64_t GetNextArenaSize(uint64_t size);

  static uint64_t GetArenaCommittedBytes(uint64_t size);
  static uint64_t GetArenaReservedBytes(uint64_t size);
  static uint64_t GetArenaUsedBlocks(uint64_t size);
  static uint64_t GetArenaRegionBytes(uint64_t size);
  static uint64_t GetArenaBytes();
  static uint64_t GetMallocBytes();
  static uint64_t GetRegionBytes();
  static uint64_t GetTotalBytes();
  static uint64_t GetRegionSize();

  static void AddExternalBytes(uint64_t bytes);
  static void RemoveExternalBytes(uint64_t bytes);
  static bool AddUsageCallback(LcUMemoryUsageCallback callback);
  static void RemoveUsageCallback(LcUMemoryUsageCallback callback);
  static LcUOutOfMemoryHandler SetOutOfMemoryHandler(LcUOutOfMemoryHandler handler);

  // Chunk bytes pass through GoodSize.
  static void InitPool(LcUMemoryPool& pool, uint64_t size, uint64_t chunkBytes, uint32_t alignment);
  static void InitPoolForBlocks(LcUMemoryPool& pool, uint64_t size, uint32_t alignment);
  static void* PoolAlloc(LcUMemoryPool& pool);
  static void PoolFree(LcUMemoryPool& pool, void* block);
  static void PoolDestroy(LcUMemoryPool& pool);

  // False when an arena region or a process heap is damaged.
  static bool CheckMemory();

  // operator new's failure: true to try again.
  static bool NewFailed(uint64_t size);
  // Reports a request that may not fail but did, and ends the process.
  [[noreturn]] static void OutOfMemory(uint64_t size);

private:
  // Fills entries from table on; returns how many.
  static int BuildMediumTable(LcUMemoryArena** table, uint64_t step, uint64_t previous, uint64_t first,
                              uint64_t last, uint64_t regionBytes);
  static LcUMemoryArena* NewArena(uint64_t size, uint32_t alignment, uint64_t regionBytes);
  static void BuildTables();
  static LcUMemoryArena* ExactArena(uint64_t size);
  static LcUMemoryArena* ArenaOf(uint64_t size);
  static void* ArenaAlloc(LcUMemoryArena* arena, uint64_t counted, uint64_t size, uint32_t tryOnly);
  static void* LargeAlloc(uint64_t size, uint32_t tryOnly);
  static void LargeFree(void* block, uint64_t size);
  static void ReleaseArenas();
  static void StopReleasing();
  static std::atomic<bool> exiting;
  // Asks the out-of-memory handler, never under the lock; true to try again.
  static bool Retry(uint64_t size, uint32_t tryOnly);
  // The platform heap's exact measure of a block.
  static uint64_t HeapBlockSize(void* block);
  static bool SwitchSet(const char* name);
  [[noreturn]] static void BadSize(uint64_t size);
};
