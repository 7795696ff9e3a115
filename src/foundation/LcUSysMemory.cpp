#include "foundation/LcUSysMemory.h"

#include <cstdarg>
#include <cstdio>

#include "foundation/LcUError.h"
#include "foundation/LcUSysError.h"
#include "foundation/LcUSysHeapReport.h"

LcUComponent LcUSysMemory::component;

namespace {
constexpr int32_t eALIGN_ATTEMPTS = 100;
constexpr uint64_t eHEADROOM = 0x10000000;

uint32_t pageSize = 4096;
uint32_t granularity = 65536;
}  // namespace

bool LcUSysMemory::Initialize() {
  if (LcUSysError::RegisterComponent(&component, "LcUSysMemory") != 1) return true;
  // Any thread may write to the log, which is locked only while it is up.
  LcUSysError::InitSysError();
  SystemInfo info = ReadSystemInfo();
  pageSize = info.pageSize;
  granularity = info.granularity;
  return true;
}

void LcUSysMemory::Terminate() {
  if (LcUSysError::UnregisterComponent(&component) == 1) LcUSysError::TermSysError();
}

uint32_t LcUSysMemory::GetPageSize() {
  return pageSize;
}

uint32_t LcUSysMemory::GetAllocationGranularity() {
  return granularity;
}

void LcUSysMemory::DebugOutput(const char* format, ...) {
  char text[512];
  va_list args;
  va_start(args, format);
  std::vsnprintf(text, sizeof(text), format, args);
  va_end(args);
  LcUSysError::Log(text);
}

// The platform aligns reservations only to the granularity, so the aligned
// place is found inside a double-size trial reservation, which is then given
// back and taken again exactly; another thread may win it in between.
void* LcUSysMemory::ReserveAligned(uint64_t size, int32_t flags) {
  if (size == granularity) return Reserve(nullptr, size, flags);
  void* result = nullptr;
  uint64_t wanted = 0;
  int32_t failures = 0;
  for (int32_t attempt = 0; attempt < eALIGN_ATTEMPTS && !result; ++attempt) {
    void* trial = Reserve(nullptr, size * 2 - granularity, flags);
    if (!trial) return nullptr;
    uint64_t address = uint64_t(reinterpret_cast<uintptr_t>(trial));
    wanted = (address & (size - 1)) == 0 ? address : (address + size) & ~(size - 1);
    Free(trial);
    result = Reserve(reinterpret_cast<void*>(uintptr_t(wanted)), size, flags);
    if (!result) ++failures;
  }
  if (failures)
    DebugOutput("LcUSysMemory::ReserveAligned: Allocating at %x, size %d, returned 0 %d times\n", unsigned(wanted),
                int(size), failures);
  if (!result) LcUSysError::Fatal();
  if (uint64_t(reinterpret_cast<uintptr_t>(result)) != wanted) {
    DebugOutput("LcUSysMemory::ReserveAligned: Allocating at %x, size %d, returned block at %x\n", unsigned(wanted),
                int(size), unsigned(reinterpret_cast<uintptr_t>(result)));
    LcUSysError::Fatal();
  }
  return result;
}

void* LcUSysMemory::ReserveRegion(uint64_t size, int32_t flags, bool aligned) {
  return aligned ? ReserveAligned(size, flags) : Reserve(nullptr, size, flags);
}

void* LcUSysMemory::Alloc(uint64_t size, int32_t flags, bool aligned) {
  void* region = ReserveRegion(size, flags, aligned);
  if (!region || !Commit(region, size)) return nullptr;
  return region;
}

uint64_t LcUSysMemory::GetTotalPhysical() {
  return ReadSystemInfo().totalPhysical;
}

uint64_t LcUSysMemory::GetTotalVirtual() {
  return ReadSystemInfo().totalVirtual;
}

void LcUSysMemory::AddressUsage::Add(RegionKind kind, uint64_t size) {
  bytes[kind] += size;
  if (kind == eFREE && size > largestFree) largestFree = size;
}

uint64_t LcUSysMemory::GetAddressSpaceUsage(uint64_t& privateBytes, uint64_t& mappedBytes, uint64_t& imageBytes,
                                            uint64_t& reservedBytes, uint64_t& freeBytes, uint64_t& largestFree) {
  AddressUsage usage;
  WalkAddressSpace(GetTotalVirtual(), usage);
  privateBytes = usage.bytes[ePRIVATE];
  mappedBytes = usage.bytes[eMAPPED];
  imageBytes = usage.bytes[eIMAGE];
  reservedBytes = usage.bytes[eRESERVED];
  freeBytes = usage.bytes[eFREE];
  largestFree = usage.largestFree;
  return privateBytes + mappedBytes + imageBytes + reservedBytes + freeBytes;
}

uint64_t LcUSysMemory::CalcProcessAddressSpaceUsage() {
  uint64_t p, m, i, r, f, largest;
  return GetAddressSpaceUsage(p, m, i, r, f, largest);
}

// What cannot be allocated anyway (images, mappings) is not counted, and a
// headroom is kept. A walk that fell short of the whole space is not trusted.
uint64_t LcUSysMemory::CalcProcessAddressSpaceLimit() {
  uint64_t p, mapped, image, r, f, largest;
  uint64_t sum = GetAddressSpaceUsage(p, mapped, image, r, f, largest);
  SystemInfo info = ReadSystemInfo();
  if (sum >= info.totalVirtual) return sum - image - mapped - eHEADROOM;
  LcUError::PostF(LcUError::eWARNING, &component, "CalcProcessAddressSpaceUsage returned %d", int(sum));
  return info.totalPhysical;
}

void LcUSysMemory::LogMemStats() {
  uint64_t p, m, i, r, f, largest;
  uint64_t total = GetAddressSpaceUsage(p, m, i, r, f, largest);
  DebugOutput(
      "LcUSysMemory::LogMemStats (MB): private(%d), mapped(%d), image(%d), reserved(%d), free(%d), "
      "max contiguous free(%d), total(%d)\n",
      int(p >> 20), int(m >> 20), int(i >> 20), int(r >> 20), int(f >> 20), int(largest >> 20), int(total >> 20));
}

void LcUSysMemory::LogHeapStats() {
  LcUSysHeapReport::Figures heaps[LcUSysHeapReport::eMAX_LOGGED];
  LcUSysHeapReport::Log(heaps, LcUSysHeapReport::ListHeaps(heaps, LcUSysHeapReport::eMAX_LOGGED));
}

bool LcUSysMemory::CheckMemory() {
  void* heaps[LcUSysHeapReport::eMAX_CHECKED];
  return LcUSysHeapReport::Check(heaps, LcUSysHeapReport::ListHandles(heaps, LcUSysHeapReport::eMAX_CHECKED));
}
