#include "foundation/LcUSysHeapReport.h"

#include <cinttypes>
#include <cstdio>

#include "foundation/LcUSysMemory.h"

void LcUSysHeapReport::FormatSize(uint64_t size, char* target, int32_t capacity) {
  if (size > 0xA00000)
    std::snprintf(target, size_t(capacity), "%" PRIu64 "M", size >> 20);
  else if (size > 10240)
    std::snprintf(target, size_t(capacity), "%" PRIu64 "K", size >> 10);
  else
    std::snprintf(target, size_t(capacity), "%" PRIu64, size);
}

namespace {
void LogRow(const char* label, uint32_t regions, uint64_t committed, uint64_t reserved) {
  char cmt[32], rsv[32];
  LcUSysHeapReport::FormatSize(committed, cmt, sizeof(cmt));
  LcUSysHeapReport::FormatSize(reserved, rsv, sizeof(rsv));
  LcUSysMemory::DebugOutput("%s%u\t%s\t%s\n", label, regions, cmt, rsv);
}
}  // namespace

void LcUSysHeapReport::Log(const Figures* heaps, int32_t count) {
  if (count > eMAX_LOGGED) {
    LcUSysMemory::DebugOutput("Num Heaps=%d\n", count);
    return;
  }
  LcUSysMemory::DebugOutput("Heap\tRgns\tCmt\tRsv\n");
  Figures total = {eOTHER, 0, 0, 0};
  for (int32_t i = 0; i < count; ++i) {
    const Figures& heap = heaps[i];
    char label[16];
    if (heap.kind == ePROCESS)
      std::snprintf(label, sizeof(label), "PRC:\t");
    else if (heap.kind == eRUNTIME)
      std::snprintf(label, sizeof(label), "CRT:\t");
    else
      std::snprintf(label, sizeof(label), "%d:\t", i);
    LogRow(label, heap.regions, heap.committed, heap.reserved);
    total.regions += heap.regions;
    total.committed += heap.committed;
    total.reserved += heap.reserved;
  }
  LogRow("TOT:\t", total.regions, total.committed, total.reserved);
}

bool LcUSysHeapReport::Check(void* const* heaps, int32_t count) {
  if (count > eMAX_CHECKED) {
    LcUSysMemory::DebugOutput("LcUMemory::CheckMemory: Too many heaps to validate\n");
    return true;
  }
  bool valid = true;
  for (int32_t i = 0; i < count; ++i) {
    if (Validate(heaps[i])) continue;
    LcUSysMemory::DebugOutput("Failed to validate heap %x (%d of %d)", unsigned(reinterpret_cast<uintptr_t>(heaps[i])),
                              i, count);
    valid = false;
  }
  return valid;
}
