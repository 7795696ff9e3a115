#include "serial/LcUStreamUnknownData.h"

#include "foundation/LcUMemory.h"

LcUStreamUnknownData::LcUStreamUnknownData(int32_t entry, void* block, const uint8_t* data, uint32_t size)
    : entry(entry), data(data), size(size), block(block) {}

LcUStreamUnknownData::~LcUStreamUnknownData() {
  if (block) LcUMemory::MallocFree(block);
}
