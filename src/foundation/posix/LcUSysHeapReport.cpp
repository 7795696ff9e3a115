#include "foundation/LcUSysHeapReport.h"

#include <malloc.h>

// glibc has one heap, the malloc heap, whose arenas it reports only as a
// whole: its regions are the main arena plus each block mapped on its own.
// It checks itself on every call and aborts on damage, and offers no
// separate validation, so validating succeeds.
int32_t LcUSysHeapReport::ListHeaps(Figures* heaps, int32_t capacity) {
  if (capacity < 1) return 1;
  struct mallinfo2 info = mallinfo2();
  heaps[0] = {ePROCESS, uint32_t(1 + info.hblks), uint64_t(info.arena + info.hblkhd), 0};
  return 1;
}

int32_t LcUSysHeapReport::ListHandles(void** heaps, int32_t capacity) {
  if (capacity >= 1) heaps[0] = nullptr;
  return 1;
}

bool LcUSysHeapReport::Validate(void*) {
  return true;
}
