#pragma once
#include <cstdint>

// One link of the chunk chains that block buffers and block data share: a
// heap allocation holding the link, a pointer to the data, and the data at
// the first 8-aligned address past both.
struct LcUStreamChunk {
  enum : uint32_t { eDATA_SIZE = 4064, eALLOCATION_SIZE = 4088 };

  LcUStreamChunk* next;
  uint8_t* data;

  // Null when the heap has no room.
  static LcUStreamChunk* New();
  static void FreeChain(LcUStreamChunk* chunk);
};
