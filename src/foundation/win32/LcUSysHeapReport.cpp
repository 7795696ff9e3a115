#include "foundation/LcUSysHeapReport.h"

#include <malloc.h>
#include <windows.h>

#include <cstdint>

int32_t LcUSysHeapReport::ListHeaps(Figures* heaps, int32_t capacity) {
  HANDLE handles[eMAX_LOGGED];
  int32_t count = int32_t(GetProcessHeaps(eMAX_LOGGED, handles));
  if (count > capacity || count > eMAX_LOGGED) return count;
  HANDLE process = GetProcessHeap();
  HANDLE runtime = reinterpret_cast<HANDLE>(_get_heap_handle());
  for (int32_t i = 0; i < count; ++i) {
    Figures& figures = heaps[i];
    figures = {handles[i] == process ? ePROCESS : handles[i] == runtime ? eRUNTIME : eOTHER, 0, 0, 0};
    if (!HeapLock(handles[i])) continue;
    PROCESS_HEAP_ENTRY entry = {};
    while (HeapWalk(handles[i], &entry)) {
      if (!(entry.wFlags & PROCESS_HEAP_REGION)) continue;
      ++figures.regions;
      figures.committed += entry.Region.dwCommittedSize;
      figures.reserved += entry.Region.dwUnCommittedSize;
    }
    HeapUnlock(handles[i]);
  }
  return count;
}

int32_t LcUSysHeapReport::ListHandles(void** heaps, int32_t capacity) {
  return int32_t(GetProcessHeaps(DWORD(capacity), reinterpret_cast<HANDLE*>(heaps)));
}

bool LcUSysHeapReport::Validate(void* heap) {
  return HeapValidate(heap, 0, nullptr) != 0;
}
