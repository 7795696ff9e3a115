#include "serial/LcUStreamObjectIds.h"

#include <cstring>

#include "foundation/LcUMemory.h"

void LcUStreamObjectIds::Clear() {
  if (slots) LcUMemory::MallocFree(slots);
  slots = nullptr;
  capacity = count = 0;
  shift = 64;
}

bool LcUStreamObjectIds::Grow() {
  uint32_t grown = capacity ? capacity * 2 : 1024;
  Slot* fresh = static_cast<Slot*>(LcUMemory::MallocAlloc(uint64_t(grown) * sizeof(Slot), 1));
  if (!fresh) return false;
  std::memset(fresh, 0, size_t(grown) * sizeof(Slot));
  uint32_t freshShift = 64;
  for (uint32_t n = grown; n > 1; n >>= 1) --freshShift;
  for (uint32_t i = 0; i < capacity; ++i) {
    if (!slots[i].object) continue;
    uint32_t at = uint32_t(Hash(slots[i].object) >> freshShift);
    while (fresh[at].object) at = (at + 1) & (grown - 1);
    fresh[at] = slots[i];
  }
  if (slots) LcUMemory::MallocFree(slots);
  slots = fresh;
  capacity = grown;
  shift = freshShift;
  return true;
}

uint32_t LcUStreamObjectIds::Insert(const void* object, uint32_t id, bool& added) {
  added = false;
  // At most half full, so that probes stay short.
  if (count * 2 >= capacity && !Grow()) return 0;
  uint32_t at = uint32_t(Hash(object) >> shift);
  while (slots[at].object) {
    if (slots[at].object == object) return slots[at].id;
    at = (at + 1) & (capacity - 1);
  }
  slots[at] = {object, id};
  ++count;
  added = true;
  return id;
}
