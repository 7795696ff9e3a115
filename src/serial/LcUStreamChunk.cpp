#include "serial/LcUStreamChunk.h"

#include "foundation/LcUMemory.h"

LcUStreamChunk* LcUStreamChunk::New() {
  void* block = LcUMemory::MallocAlloc(eALLOCATION_SIZE, 1);
  if (!block) return nullptr;
  LcUStreamChunk* chunk = static_cast<LcUStreamChunk*>(block);
  uintptr_t past = reinterpret_cast<uintptr_t>(chunk) + sizeof(LcUStreamChunk) + 1;
  chunk->next = nullptr;
  chunk->data = reinterpret_cast<uint8_t*>((past + 7) & ~uintptr_t(7));
  return chunk;
}

void LcUStreamChunk::FreeChain(LcUStreamChunk* chunk) {
  while (chunk) {
    LcUStreamChunk* next = chunk->next;
    LcUMemory::MallocFree(chunk);
    chunk = next;
  }
}
