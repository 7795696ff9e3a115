#include "serial/LcUStreamBuffer.h"

#include <cstring>

#include "foundation/LcUMemory.h"

LcUStreamBuffer::~LcUStreamBuffer() {
  Release();
}

void LcUStreamBuffer::Release() {
  if (owned) LcUMemory::MallocFree(start);
  start = end = cursor = nullptr;
  owned = 0;
  capacity = 0;
}

bool LcUStreamBuffer::SetData(const void* data, uint32_t size, uint32_t copy) {
  Release();
  uint8_t* bytes = static_cast<uint8_t*>(const_cast<void*>(data));
  if (!copy && Aligned(bytes) == bytes) {
    start = bytes;
    end = bytes + size;
    return true;
  }
  start = static_cast<uint8_t*>(LcUMemory::MallocAlloc(uint64_t(size) + 7, 0));
  if (!start) return false;
  owned = 1;
  capacity = uint64_t(size) + 7;
  if (size) std::memcpy(Aligned(start), data, size);
  end = Aligned(start) + size;
  return true;
}

void* LcUStreamBuffer::Detach() {
  void* block = owned ? start : nullptr;
  owned = 0;
  start = end = cursor = nullptr;
  capacity = 0;
  return block;
}

bool LcUStreamBuffer::WriteBegin(LcUStream*) {
  if (!start) {
    start = static_cast<uint8_t*>(LcUMemory::MallocAlloc(eINITIAL_SIZE, 0));
    if (!start) return false;
    owned = 1;
    capacity = eINITIAL_SIZE;
    end = start + capacity;
  } else if (owned) {
    end = start + capacity;
  }
  cursor = Aligned(start);
  end = AlignedDown(end);
  return cursor <= end;
}

bool LcUStreamBuffer::Grow() {
  uint64_t used = uint64_t(cursor - Aligned(start));
  uintptr_t oldPhase = reinterpret_cast<uintptr_t>(start) & 7;
  uint64_t size = capacity * 2;
  uint8_t* grown = static_cast<uint8_t*>(LcUMemory::MallocRealloc(start, size, 1));
  if (!grown) {
    size = capacity + eINITIAL_SIZE;
    grown = static_cast<uint8_t*>(LcUMemory::MallocRealloc(start, size, 1));
  }
  if (!grown) return false;
  // The data sits at the first aligned address of the old block; realloc may
  // have put it at another distance from the new one.
  if ((reinterpret_cast<uintptr_t>(grown) & 7) != oldPhase)
    std::memmove(Aligned(grown), grown + ((8 - oldPhase) & 7), used);
  start = grown;
  capacity = size;
  cursor = Aligned(start) + used;
  end = AlignedDown(start + capacity);
  return true;
}

bool LcUStreamBuffer::GetWriteBlock(uint8_t** block, uint32_t* size) {
  if (cursor >= end && (!owned || !Grow())) return false;
  *block = cursor;
  uint64_t room = uint64_t(end - cursor);
  *size = room > 0x7FFFFFF8u ? 0x7FFFFFF8u : uint32_t(room);
  return true;
}

bool LcUStreamBuffer::CommitWrite(uint32_t count) {
  if (count > uint64_t(end - cursor)) return false;
  cursor += count;
  return true;
}

bool LcUStreamBuffer::WriteEnd() {
  if (owned && cursor < end) {
    if (cursor == Aligned(start)) {
      Release();
      return true;
    }
    end = cursor;
  }
  return true;
}

bool LcUStreamBuffer::ReadBegin(LcUStream*) {
  cursor = Aligned(start);
  return true;
}

int32_t LcUStreamBuffer::GetReadBlock(const uint8_t** block, uint32_t* size) {
  *block = nullptr;
  *size = 0;
  if (!cursor || cursor >= end) return 0;
  *block = cursor;
  uint64_t rest = uint64_t(end - cursor);
  *size = rest > 0x7FFFFFF8u ? 0x7FFFFFF8u : uint32_t(rest);
  return 0;
}

bool LcUStreamBuffer::ConsumeRead(uint32_t count) {
  if (count == 0) return true;
  if (!cursor || count > uint64_t(end - cursor)) return false;
  cursor += count;
  return true;
}
