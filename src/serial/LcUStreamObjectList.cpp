#include "serial/LcUStreamObjectList.h"

#include "foundation/LcUMemory.h"

void LcUStreamObjectList::Clear() {
  if (rows) LcUMemory::MallocFree(rows);
  rows = nullptr;
  count = capacity = 0;
}

bool LcUStreamObjectList::Grow() {
  uint32_t grown = capacity ? capacity * 2 : 1024;
  Row* fresh = static_cast<Row*>(LcUMemory::MallocRealloc(rows, uint64_t(grown) * sizeof(Row), 1));
  if (!fresh) return false;
  rows = fresh;
  capacity = grown;
  return true;
}
