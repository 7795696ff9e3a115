#pragma once
#include <cstdint>

#include "foundation/LcUComponent.h"

// The allocator's view of the platform's virtual memory: reserve, commit,
// release, and how the process uses its address space. Every operation may
// run on any thread.
class LcUSysMemory {
public:
  static LcUComponent component;
  static bool Initialize();
  static void Terminate();

  static uint32_t GetPageSize();
  // Every reservation made without an address starts on this boundary.
  static uint32_t GetAllocationGranularity();

  // Flags -1 asks for the top of the address space. Null on failure.
  static void* Reserve(void* address, uint64_t size, int32_t flags);
  // Aligned to its size, a power of two; ends the process when no aligned
  // place can be had.
  static void* ReserveAligned(uint64_t size, int32_t flags);
  static void* ReserveRegion(uint64_t size, int32_t flags, bool aligned);
  // Reserves and commits; a failed commit leaves the reservation behind.
  static void* Alloc(uint64_t size, int32_t flags, bool aligned);
  // Reserves and commits in one step: on failure nothing stays reserved.
  static void* ReserveCommitted(uint64_t size);
  static bool Commit(void* address, uint64_t size);
  static bool Decommit(void* address, uint64_t size);
  // Releases the whole reservation that starts at address.
  static bool Free(void* address);

  static uint64_t GetTotalPhysical();
  static uint64_t GetTotalVirtual();
  static uint64_t GetProcessPrivateMemoryUsage();
  static uint64_t CalcProcessAddressSpaceLimit();
  static uint64_t CalcProcessAddressSpaceUsage();
  // Returns the sum of the first five.
  static uint64_t GetAddressSpaceUsage(uint64_t& privateBytes, uint64_t& mappedBytes, uint64_t& imageBytes,
                                       uint64_t& reservedBytes, uint64_t& freeBytes, uint64_t& largestFree);
  static void LogMemStats();
  static void LogHeapStats();
  // False when a heap fails validation.
  static bool CheckMemory();
  // GDI objects of this process; 0 where the platform has none.
  static uint32_t GetGDIObjects();

  // The debug output is the log: this layer may not allocate to report.
  static void DebugOutput(const char* format, ...);

  enum RegionKind { eFREE, eRESERVED, ePRIVATE, eMAPPED, eIMAGE };

  struct AddressUsage {
    uint64_t bytes[5] = {};
    uint64_t largestFree = 0;
    void Add(RegionKind kind, uint64_t size);
  };

private:
  struct SystemInfo {
    uint32_t pageSize;
    uint32_t granularity;
    uint64_t totalPhysical;
    uint64_t totalVirtual;
  };
  static SystemInfo ReadSystemInfo();
  // Classifies every region below the end of the user address space.
  static void WalkAddressSpace(uint64_t end, AddressUsage& usage);
};
