#include <cstring>

#include "foundation/LcUMemory.h"
#include "foundation/LcUMemoryPool.h"
#include "foundation/LcUMemoryScrub.h"
#include "foundation/LcUMemoryState.h"

void LcUMemory::InitPool(LcUMemoryPool& pool, uint64_t size, uint64_t chunkBytes, uint32_t alignment) {
  pool = LcUMemoryPool();
  uint64_t s = (size > 8 ? size : 8) - 1;
  uint64_t a = alignment > 8 ? alignment : 8;
  pool.requestedSize = size;
  pool.alignment = alignment;
  pool.blockSize = s - s % a + a;
  pool.chunkBytes = GoodSize(chunkBytes);
}

void LcUMemory::InitPoolForBlocks(LcUMemoryPool& pool, uint64_t size, uint32_t alignment) {
  InitPool(pool, size, 0, alignment);
  pool.chunkBytes = GoodSize(pool.blockSize * 256);
}

namespace {
uint64_t WholeBlockBytes(const LcUMemoryPool& pool) {
  return pool.chunkBytes / pool.blockSize * pool.blockSize;
}
}  // namespace

void* LcUMemory::PoolAlloc(LcUMemoryPool& pool) {
  LcUMemoryState& s = memoryState;
  void* block = pool.freeList;
  if (block) {
    pool.freeList = *static_cast<void**>(block);
  } else if (pool.bumpRemaining) {
    block = pool.bumpPointer;
    pool.bumpPointer += pool.blockSize;
    --pool.bumpRemaining;
  } else {
    LcUMemoryPool::Chunk* chunk = pool.freeChunks;
    if (chunk) {
      pool.freeChunks = chunk->next;
    } else {
      chunk = static_cast<LcUMemoryPool::Chunk*>(ArenaAlloc(s.small[3], 16, 16, 0));
      if (!chunk) return nullptr;
      chunk->memory = static_cast<unsigned char*>(Alloc(pool.chunkBytes, 8, 0));
      if (!chunk->memory) {
        Free(chunk, 16, 8);
        return nullptr;
      }
      // Filled whatever the switches say, so a reset chunk and a new one look alike.
      uint64_t whole = WholeBlockBytes(pool);
      std::memset(chunk->memory, LcUMemoryScrub::eFREED, whole);
      std::memset(chunk->memory + whole, LcUMemoryScrub::eGUARD, pool.chunkBytes - whole);
    }
    chunk->next = pool.usedChunksHead;
    pool.usedChunksHead = chunk;
    if (!pool.usedChunksTail) pool.usedChunksTail = chunk;
    block = chunk->memory;
    pool.bumpPointer = chunk->memory + pool.blockSize;
    pool.bumpRemaining = pool.chunkBytes / pool.blockSize - 1;
  }
  if (s.scrub) LcUMemoryScrub::OnAlloc(block, pool.requestedSize, pool.blockSize, s.check);
  ++pool.usedBlocks;
  return block;
}

void LcUMemory::PoolFree(LcUMemoryPool& pool, void* block) {
  LcUMemoryState& s = memoryState;
  if (s.scrub) LcUMemoryScrub::OnFree(block, pool.requestedSize, pool.blockSize, s.check);
  *static_cast<void**>(block) = pool.freeList;
  pool.freeList = block;
  --pool.usedBlocks;
}

void LcUMemory::PoolDestroy(LcUMemoryPool& pool) {
  LcUMemoryState& s = memoryState;
  uint64_t whole = WholeBlockBytes(pool);
  if (s.scrub)
    for (LcUMemoryPool::Chunk* c = pool.usedChunksHead; c; c = c->next) {
      if (s.check) LcUMemoryScrub::Verify(c->memory, whole, pool.chunkBytes, LcUMemoryScrub::eGUARD, -1);
      std::memset(c->memory, LcUMemoryScrub::eFREED, whole);
    }
  if (pool.usedChunksTail) {
    pool.usedChunksTail->next = pool.freeChunks;
    pool.freeChunks = pool.usedChunksHead;
  }
  pool.usedChunksHead = pool.usedChunksTail = nullptr;
  pool.freeList = nullptr;
  pool.bumpPointer = nullptr;
  pool.bumpRemaining = pool.usedBlocks = 0;
  while (LcUMemoryPool::Chunk* c = pool.freeChunks) {
    pool.freeChunks = c->next;
    if (s.scrub && s.check && LcUMemoryScrub::Verify(c->memory, 0, whole, LcUMemoryScrub::eFREED, -1))
      LcUMemoryScrub::Verify(c->memory, whole, pool.chunkBytes, LcUMemoryScrub::eGUARD, -1);
    Free(c->memory, pool.chunkBytes, 8);
    Free(c, 16, 8);
  }
}
