#pragma once
#include <cstdint>

// The fill patterns that make stray writes visible: fresh bytes, freed
// blocks, and guard bytes behind what was asked for.
struct LcUMemoryScrub {
  static constexpr unsigned char eFRESH = 0xCD, eFREED = 0xDD, eGUARD = 0xFD;

  // Checks that a free block past its link is still all freed bytes.
  static void OnAlloc(void* block, uint64_t requested, uint64_t blockSize, bool check);
  // Checks the guard bytes, then fills the block as freed.
  static void OnFree(void* block, uint64_t requested, uint64_t blockSize, bool check);
  // Reports the first byte from offset `from` that is not `expected`; the
  // offset printed is `shown`, or the byte's own when shown is negative.
  static bool Verify(const void* block, uint64_t from, uint64_t to, unsigned char expected, int shown);
};
