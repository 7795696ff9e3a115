#pragma once
#include <atomic>
#include <cstdint>

#include "foundation/LcUCriticalSection.h"
#include "foundation/LcUMemory.h"
#include "foundation/LcUMemoryArena.h"

// The allocator's global state; the lock guards the arenas, tables and
// counter updates, while counter reads go without it.
struct LcUMemoryState {
  static constexpr int eSMALL_ARENAS = 128;
  static constexpr int eMEDIUM_TABLES = 5;
  static constexpr int eMEDIUM_ENTRIES = 64;
  static constexpr int eMAX_EXACT = 16;
  static constexpr int eMAX_ARENAS = eSMALL_ARENAS + eMEDIUM_TABLES * eMEDIUM_ENTRIES + eMAX_EXACT;
  static constexpr uint64_t eBAD_SIZE = 0x7FF00000;
  static constexpr uint64_t eSMALL_LIMIT = 512;
  static constexpr uint64_t eMEDIUM_LIMIT = 16256;

  struct Callback {
    Callback* next;
    LcUMemoryUsageCallback function;
  };

  LcUMemoryArena arenas[eMAX_ARENAS];
  int arenaCount = 0;
  int mediumCount = 0;
  LcUMemoryArena* small[eSMALL_ARENAS] = {};
  LcUMemoryArena* medium[eMEDIUM_TABLES][eMEDIUM_ENTRIES] = {};
  uint64_t mediumTops[eMEDIUM_TABLES] = {};
  int exactCount = 0;
  uint64_t exactSizes[eMAX_EXACT] = {};
  LcUMemoryArena* exact[eMAX_EXACT] = {};

  std::atomic<uint64_t> arenaBytes{0}, mallocBytes{0}, regionBytes{0}, externalBytes{0};
  std::atomic<LcUOutOfMemoryHandler> handler{nullptr};
  std::atomic<Callback*> callbacks{nullptr};
  bool scrub = false, check = false, mediumEnabled = true;
  uint64_t pageSize = 4096, regionSize = 65536, largeLimit = 65536 * 128;
  LcUCriticalSection lock;

  // Inline for the hot paths: with -fPIC, GCC does not inline a function
  // that could be interposed.
  LcUMemoryArena* SmallArena(uint64_t size, uint32_t alignment, uint64_t& rounded) const {
    uint64_t unit = alignment < 8 ? 4 : 8;
    rounded = (size + unit - 1) & ~(unit - 1);
    return small[rounded / 4 - 1];
  }
  // Tables start at 513, 1025, 2049, 4097 and 8193 with steps 8 to 128;
  // (size - 1) >> 9 is 1, 2-3, 4-7, 8-15 or 16-31 for them.
  LcUMemoryArena* MediumArena(uint64_t size) const {
    int t = 63 - __builtin_clzll((size - 1) >> 9);
    uint64_t low = uint64_t(512) << t;
    return medium[t][(size - low - 1) >> (3 + t)];
  }

  // Only under the lock.
  static void Add(std::atomic<uint64_t>& counter, uint64_t bytes) {
    counter.store(counter.load(std::memory_order_relaxed) + bytes, std::memory_order_relaxed);
  }
  static void Sub(std::atomic<uint64_t>& counter, uint64_t bytes) {
    counter.store(counter.load(std::memory_order_relaxed) - bytes, std::memory_order_relaxed);
  }
};

extern LcUMemoryState& memoryState;
