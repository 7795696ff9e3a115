#pragma once
#include <cstdint>

#include "foundation/LcUComponent.h"
#include "foundation/LcUStringA.h"

class LcUPageOut;
class LcUPageOutObserver;
class LcUPageOutProgress;

// Keeps a large working set within memory limits. It watches the
// allocator's total and the process's use; past a limit it asks every
// registered page-out, in up to ten passes, to give memory back until the
// progress object says enough. No lock: page-outs run on the one thread
// that manages their clients; other threads only ask IsMemoryLow.
class LcUPage {
public:
  enum Result : int32_t { eNOTHING = 0, eSUCCEEDED = 1, eFAILED = 2 };
  enum Level : int32_t { eLOW = 0, eHIGH = 1, eLIMIT = 2 };
  // Where the figures of the machine and of the process come from; tests
  // put in their own.
  struct Machine {
    uint64_t (*totalPhysical)();
    uint64_t (*totalVirtual)();
    uint64_t (*addressSpaceLimit)();
    uint64_t (*processUsage)();
    uint64_t (*allocatorTotal)();
  };

  static LcUComponent component;
  static bool Initialize();
  static void Terminate();
  // Null restores the system's figures. Takes effect at the next Initialize.
  static void SetMachine(const Machine* machine);

  static bool AddPageOut(LcUPageOut* pageOut);
  static void RemovePageOut(LcUPageOut* pageOut);
  static bool AddObserver(LcUPageOutObserver* observer);
  static void RemoveObserver(LcUPageOutObserver* observer);

  static int32_t PageOut(int32_t a, int32_t b, LcUPageOutProgress* progress);
  // The hot path: a page-out when a limit is passed, else 0.
  static int32_t CheckLimits();
  static bool IsMemoryLow(int32_t level);
  static bool IsAddressSpaceBound();
  static void LogUsage();
  static void LogMemStats();
  static void CalcDefaultProcessMemoryLimit();

  // 0 returns to the derived limit.
  static void SetAllocLimit(uint64_t bytes);
  static void SetAllocLowRatio(double ratio);
  static void SetAllocHighRatio(double ratio);
  static void SetAllocLowMargin(uint64_t bytes);
  static void SetAllocHighMargin(uint64_t bytes);
  static void SetSoftRatio(double ratio);
  static void SetHardRatio(double ratio);
  static void SetSoftMargin(uint64_t bytes);
  static void SetHardMargin(uint64_t bytes);
  static void SetMemoryLimitRatio(double ratio);
  static void SetExternalProcessLimit(uint64_t bytes);
  static void SetStressTest(bool on);

  static uint64_t GetTotalPhysical();
  static uint64_t GetTotalVirtual();
  static uint64_t GetTotalPhysicalMB();
  static uint64_t GetTotalVirtualMB();
  static uint64_t GetMemoryLimit();
  static uint64_t GetAddressSpaceLimit();
  // The smaller of the two above.
  static uint64_t GetMachineLimit();
  static uint64_t GetExternalProcessLimit();
  static uint64_t GetProcessLimit();
  static uint64_t GetHardLimit();
  static uint64_t GetSoftLimit();
  static double GetHardRatio();
  static uint64_t GetHardMargin();
  static double GetSoftRatio();
  static uint64_t GetSoftMargin();
  static uint64_t GetAllocLimit();
  static uint64_t GetAllocHighThreshold();
  static uint64_t GetAllocLowThreshold();
  static double GetAllocHighRatio();
  static uint64_t GetAllocHighMargin();
  static double GetAllocLowRatio();
  static uint64_t GetAllocLowMargin();
  static bool IsAllocLimitFixed();
  static bool IsLimitClamped();
  static uint64_t GetLastUsage();
  static bool IsOutOfMemory();
  static bool IsStressTest();
  static int32_t GetPageOutDepth();

  static void SetPageFileCorrupt(const char* text);
  static const char* GetPageFileError();
  static void ClearOutOfMemory();
  static void SetOutOfMemory();
};
