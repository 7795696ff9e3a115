#include "foundation/LcUMemory.h"
#include "foundation/LcUMemoryState.h"
#include "foundation/LcUSysMemory.h"

namespace {
template <typename F>
uint64_t ArenaFigure(LcUMemoryArena* arena, F figure) {
  if (!arena) return 0;
  memoryState.lock.Lock();
  uint64_t value = figure(*arena);
  memoryState.lock.Unlock();
  return value;
}
}  // namespace

uint64_t LcUMemory::GetArenaCommittedBytes(uint64_t size) {
  return ArenaFigure(ArenaOf(size), [](LcUMemoryArena& a) { return a.CommittedBytes(); });
}

uint64_t LcUMemory::GetArenaReservedBytes(uint64_t size) {
  return ArenaFigure(ArenaOf(size), [](LcUMemoryArena& a) { return a.ReservedBytes(); });
}

uint64_t LcUMemory::GetArenaUsedBlocks(uint64_t size) {
  return ArenaFigure(ArenaOf(size), [](LcUMemoryArena& a) { return a.usedBlocks; });
}

uint64_t LcUMemory::GetArenaRegionBytes(uint64_t size) {
  return ArenaFigure(ArenaOf(size), [](LcUMemoryArena& a) { return a.regionBytes; });
}

uint64_t LcUMemory::GetArenaBytes() {
  return memoryState.arenaBytes;
}

uint64_t LcUMemory::GetMallocBytes() {
  return memoryState.mallocBytes;
}

uint64_t LcUMemory::GetRegionBytes() {
  return memoryState.regionBytes;
}

uint64_t LcUMemory::GetRegionSize() {
  return memoryState.regionSize;
}

uint64_t LcUMemory::GetTotalBytes() {
  LcUMemoryState& s = memoryState;
  uint64_t total = s.externalBytes + s.regionBytes + s.mallocBytes + s.arenaBytes;
  for (LcUMemoryState::Callback* c = s.callbacks; c; c = c->next) total += c->function();
  return total;
}

void LcUMemory::AddExternalBytes(uint64_t bytes) {
  memoryState.lock.Lock();
  LcUMemoryState::Add(memoryState.externalBytes, bytes);
  memoryState.lock.Unlock();
}

void LcUMemory::RemoveExternalBytes(uint64_t bytes) {
  memoryState.lock.Lock();
  LcUMemoryState::Sub(memoryState.externalBytes, bytes);
  memoryState.lock.Unlock();
}

// Nodes come straight from the 16-byte arena, outside arena bytes, so that
// registered callbacks never keep Terminate from tearing down.
bool LcUMemory::AddUsageCallback(LcUMemoryUsageCallback callback) {
  LcUMemoryState& s = memoryState;
  s.lock.Lock();
  auto* node = static_cast<LcUMemoryState::Callback*>(s.small[3]->AllocBlock(s.scrub, s.check));
  if (node) {
    node->function = callback;
    node->next = nullptr;
    LcUMemoryState::Callback* tail = s.callbacks;
    while (tail && tail->next) tail = tail->next;
    if (tail) tail->next = node;
    else s.callbacks = node;
  }
  s.lock.Unlock();
  return node != nullptr;
}

void LcUMemory::RemoveUsageCallback(LcUMemoryUsageCallback callback) {
  LcUMemoryState& s = memoryState;
  s.lock.Lock();
  LcUMemoryState::Callback* previous = nullptr;
  for (LcUMemoryState::Callback* c = s.callbacks; c; previous = c, c = c->next) {
    if (c->function != callback) continue;
    if (previous) previous->next = c->next;
    else s.callbacks = c->next;
    s.small[3]->FreeBlock(c, s.scrub, s.check);
    break;
  }
  s.lock.Unlock();
}

bool LcUMemory::CheckMemory() {
  LcUMemoryState& s = memoryState;
  bool good = true;
  s.lock.Lock();
  for (LcUMemoryArena* arena : s.small) good = arena->Validate() && good;
  for (auto& table : s.medium)
    for (int i = 0; i < 63; ++i)
      if (table[i]) good = table[i]->Validate() && good;
  for (int i = 0; i < s.exactCount; ++i) good = s.exact[i]->Validate() && good;
  s.lock.Unlock();
  return LcUSysMemory::CheckMemory() && good;
}
