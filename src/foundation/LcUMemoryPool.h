#pragma once
#include <cstdint>

// A private allocator of one block size, owned and serialised by one user.
// Chunks come from LcUMemory; blocks go back only when the pool goes.
struct LcUMemoryPool {
  struct Chunk {
    Chunk* next;
    unsigned char* memory;
  };

  uint64_t requestedSize = 0;
  uint64_t alignment = 0;
  uint64_t blockSize = 0;
  uint64_t chunkBytes = 0;
  uint64_t usedBlocks = 0;
  void* freeList = nullptr;
  unsigned char* bumpPointer = nullptr;
  uint64_t bumpRemaining = 0;
  Chunk* usedChunksHead = nullptr;
  Chunk* usedChunksTail = nullptr;
  Chunk* freeChunks = nullptr;
};
