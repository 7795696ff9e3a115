#include "foundation/LcUSysMemory.h"

#include <windows.h>
#include <psapi.h>

LcUSysMemory::SystemInfo LcUSysMemory::ReadSystemInfo() {
  SYSTEM_INFO system;
  GetSystemInfo(&system);
  MEMORYSTATUSEX status = {};
  status.dwLength = sizeof(status);
  GlobalMemoryStatusEx(&status);
  return {system.dwPageSize, system.dwAllocationGranularity, status.ullTotalPhys, status.ullTotalVirtual};
}

void* LcUSysMemory::Reserve(void* address, uint64_t size, int32_t flags) {
  DWORD type = MEM_RESERVE | (flags == -1 ? MEM_TOP_DOWN : 0);
  void* result = VirtualAlloc(address, SIZE_T(size), type, PAGE_READWRITE);
  if (!result) DebugOutput("LcUSysMemory::Reserve: Failed to reserve size %d\n", int(size));
  return result;
}

void* LcUSysMemory::ReserveCommitted(uint64_t size) {
  return VirtualAlloc(nullptr, SIZE_T(size), MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
}

bool LcUSysMemory::Commit(void* address, uint64_t size) {
  return VirtualAlloc(address, SIZE_T(size), MEM_COMMIT, PAGE_READWRITE) != nullptr;
}

bool LcUSysMemory::Decommit(void* address, uint64_t size) {
  return VirtualFree(address, SIZE_T(size), MEM_DECOMMIT) != 0;
}

bool LcUSysMemory::Free(void* address) {
  return VirtualFree(address, 0, MEM_RELEASE) != 0;
}

uint64_t LcUSysMemory::GetProcessPrivateMemoryUsage() {
  PROCESS_MEMORY_COUNTERS counters = {};
  if (!K32GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof(counters))) {
    DebugOutput("LcUSysMemory::GetProcessPrivateMemoryUsage failed, last error is %d\n", int(GetLastError()));
    return 0;
  }
  return counters.PagefileUsage;
}

// By state first, and by type only for committed regions.
void LcUSysMemory::WalkAddressSpace(uint64_t end, AddressUsage& usage) {
  uint64_t address = 0;
  while (address < end) {
    MEMORY_BASIC_INFORMATION region;
    if (!VirtualQuery(reinterpret_cast<void*>(uintptr_t(address)), &region, sizeof(region))) break;
    if (region.RegionSize == 0) break;
    RegionKind kind = region.State == MEM_FREE      ? eFREE
                      : region.State == MEM_RESERVE ? eRESERVED
                      : region.Type == MEM_IMAGE    ? eIMAGE
                      : region.Type == MEM_MAPPED   ? eMAPPED
                                                    : ePRIVATE;
    usage.Add(kind, region.RegionSize);
    address = uint64_t(reinterpret_cast<uintptr_t>(region.BaseAddress)) + region.RegionSize;
  }
}

uint32_t LcUSysMemory::GetGDIObjects() {
  return GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
}
