#include "foundation/LcUMemory.h"
#include "foundation/LcUMemoryState.h"
#include "foundation/LcUSysError.h"
#include "foundation/LcUSysMemory.h"

namespace {
bool WasteOver16th(uint64_t regionBytes, uint64_t previous, uint64_t count) {
  return (regionBytes - (previous + 1) * count) * 16 > regionBytes;
}

uint64_t PowerAtOrAbove(uint64_t n) {
  uint64_t p = 1;
  while (p < n) {
    if (p > (~uint64_t(0) >> 1)) return 0;
    p <<= 1;
  }
  return p;
}
}  // namespace

LcUMemoryArena* LcUMemory::NewArena(uint64_t size, uint32_t alignment, uint64_t regionBytes) {
  LcUMemoryState& s = memoryState;
  LcUMemoryArena* arena = &s.arenas[s.arenaCount++];
  arena->Setup(size, alignment, regionBytes, s.pageSize, s.regionSize);
  return arena;
}

// Sizes that fit the same number of blocks into a region share one arena of
// the group's largest size; a group that would waste more than a sixteenth
// of its region is split with a doubled region.
int LcUMemory::BuildMediumTable(LcUMemoryArena** table, uint64_t step, uint64_t previous, uint64_t first,
                                uint64_t last, uint64_t regionBytes) {
  uint64_t count = (regionBytes - 32) / first;
  int filled = 0, index = 0;
  uint64_t groupFirst = first;
  if (first > last) {
    uint64_t t = first - step;
    if (t == previous || !WasteOver16th(regionBytes, previous, count)) return 0;
    return BuildMediumTable(table, step, previous, first, t, regionBytes * 2);
  }
  uint64_t v = first;
  for (; v <= last; v += step, ++index) {
    uint64_t c = (regionBytes - 32) / v;
    if (c == count) continue;
    if (WasteOver16th(regionBytes, previous, count))
      filled += BuildMediumTable(table + filled, step, previous, groupFirst, v - step, regionBytes * 2);
    LcUMemoryArena* arena = NewArena(v - step, 8, regionBytes);
    ++memoryState.mediumCount;
    for (int i = filled; i < index; ++i) table[i] = arena;
    previous = v - step;
    groupFirst = v;
    filled = index;
    count = c;
  }
  uint64_t w = v - step;
  if (w == previous || !WasteOver16th(regionBytes, previous, count)) return filled;
  return filled + BuildMediumTable(table + filled, step, previous, groupFirst, w, regionBytes * 2);
}

void LcUMemory::BuildTables() {
  LcUMemoryState& s = memoryState;
  s.arenaCount = s.mediumCount = s.exactCount = 0;
  for (int i = 0; i < LcUMemoryState::eSMALL_ARENAS; ++i) {
    uint64_t size = uint64_t(i + 1) * 4;
    s.small[i] = NewArena(size, size % 8 == 0 ? 8 : 4, 0);
  }
  for (auto& table : s.medium)
    for (auto& entry : table) entry = nullptr;
  if (s.mediumEnabled) {
    uint64_t previous = LcUMemoryState::eSMALL_LIMIT;
    for (int t = 0; t < LcUMemoryState::eMEDIUM_TABLES; ++t) {
      uint64_t step = uint64_t(8) << t;
      uint64_t low = uint64_t(512) << t;
      BuildMediumTable(s.medium[t], step, previous, low + step, low * 2, s.regionSize);
      previous = s.mediumTops[t] = s.medium[t][62]->blockSize;
      if (t > 0) s.medium[t - 1][63] = s.medium[t][0];
    }
    if (LcUSysError::GetTraceLevel() >= 5)
      LcUSysMemory::DebugOutput("Created %d medium block allocators\n", s.mediumCount);
  }
  uint64_t power = 2 * (s.mediumEnabled ? PowerAtOrAbove(LcUMemoryState::eMEDIUM_LIMIT) : 512);
  for (; power < s.regionSize && s.exactCount < LcUMemoryState::eMAX_EXACT; power *= 2) {
    uint64_t size = power < s.pageSize ? power - 8 : power - 48;
    s.exactSizes[s.exactCount] = size;
    s.exact[s.exactCount++] = NewArena(size, 8, 0);
  }
}

LcUMemoryArena* LcUMemory::ExactArena(uint64_t size) {
  LcUMemoryState& s = memoryState;
  for (int i = 0; i < s.exactCount; ++i)
    if (s.exactSizes[i] == size) return s.exact[i];
  return nullptr;
}

LcUMemoryArena* LcUMemory::ArenaOf(uint64_t size) {
  LcUMemoryState& s = memoryState;
  if (size == 0) return nullptr;
  uint64_t rounded;
  if (size <= LcUMemoryState::eSMALL_LIMIT) return s.SmallArena(size, 4, rounded);
  if (size <= LcUMemoryState::eMEDIUM_LIMIT && s.mediumEnabled) return s.MediumArena(size);
  return ExactArena(size);
}

uint64_t LcUMemory::GoodSize(uint64_t n) {
  LcUMemoryState& s = memoryState;
  if (n < 5) return 4;
  if (n <= LcUMemoryState::eSMALL_LIMIT) return PowerAtOrAbove(n);
  if (n <= LcUMemoryState::eMEDIUM_LIMIT && s.mediumEnabled)
    for (uint64_t top : s.mediumTops)
      if (top >= n) return top;
  if (n < s.regionSize) {
    for (int i = 0; i < s.exactCount; ++i)
      if (s.exactSizes[i] >= n) return s.exactSizes[i];
    return s.regionSize;
  }
  return PowerAtOrAbove(n);
}

uint64_t LcUMemory::GetNextArenaSize(uint64_t n) {
  LcUMemoryState& s = memoryState;
  if (n < LcUMemoryState::eSMALL_LIMIT) return n + 4;
  if (n < LcUMemoryState::eMEDIUM_LIMIT && s.mediumEnabled) return s.MediumArena(n + 1)->blockSize;
  uint64_t good = GoodSize(n + 1);
  return good < s.regionSize ? good : 0;
}
