#include "serial/LcUStreamSink.h"

#include "foundation/LcUMemory.h"
#include "foundation/LcUSysError.h"

LcUComponent LcUStreamSink::component;

bool LcUStreamSink::Initialize() {
  if (LcUSysError::RegisterComponent(&component, "LcUStreamSink") != 1) return true;
  LcUMemory::Initialize();
  return true;
}

void LcUStreamSink::Terminate() {
  if (LcUSysError::UnregisterComponent(&component) != 1) return;
  LcUMemory::Terminate();
}

bool LcUStreamSink::Flush() {
  return true;
}

bool LcUStreamSink::WriteEnd() {
  return true;
}

bool LcUStreamSink::ReadBegin(LcUStream*) {
  return true;
}

bool LcUStreamSink::ReadEnd() {
  return true;
}

uint64_t LcUStreamSink::RegionRounded(uint32_t size) {
  uint64_t region = LcUMemory::GetRegionSize();
  if (region == 0) region = 65536;
  return (uint64_t(size) + region - 1) / region * region;
}

void* LcUStreamSink::AllocBlock(uint32_t size) {
  return LcUMemory::RegionAlloc(RegionRounded(size));
}

bool LcUStreamSink::FreeBlock(void* block, uint32_t size) {
  LcUMemory::RegionFree(block, RegionRounded(size));
  return true;
}
