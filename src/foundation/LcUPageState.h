#pragma once
#include <cstdint>

#include "foundation/LcUPage.h"
#include "foundation/LcUStringA.h"

class LcUPageOutProgress;

// A list of pointers on the allocator; entries may be null while a
// page-out walks it.
struct LcUPageList {
  void** items = nullptr;
  int32_t count = 0;
  int32_t capacity = 0;

  bool Add(void* item);
  // Erases the entry, or nulls it while `keep` holds the places.
  void Remove(void* item, bool keep);
  // Erases the nulls, from the back.
  void Compact();
  void Free();
};

// Everything LcUPage holds between calls.
struct LcUPageState {
  LcUPage::Machine machine;
  uint64_t totalPhysical = 0;
  uint64_t totalVirtual = 0;
  uint64_t memoryLimit = 0;
  uint64_t addressSpaceLimit = 0;
  uint64_t externalProcessLimit = 0;
  uint64_t processLimit = 0;
  uint64_t hardLimit = 0;
  uint64_t softLimit = 0;
  double hardRatio = 0.9;
  uint64_t hardMargin = 0xA00000;
  double softRatio = 0.8;
  uint64_t softMargin = 20971520;
  uint64_t allocLimit = 0;
  uint64_t allocHighThreshold = 0;
  uint64_t allocLowThreshold = 0;
  double allocHighRatio = 0.9;
  uint64_t allocHighMargin = 5242880;
  double allocLowRatio = 0.8;
  uint64_t allocLowMargin = 10485760;
  bool fixedAllocLimit = false;
  bool limitClamped = false;
  uint64_t lastUsage = 0;
  bool outOfMemory = false;
  bool stressTest = false;
  int32_t pageOutDepth = 0;
  LcUPageList pageOuts;
  LcUPageList observers;
  LcUPageOutProgress* hardProgress = nullptr;
  LcUPageOutProgress* allocProgress = nullptr;
  LcUPageOutProgress* stressProgress = nullptr;
  LcUStringA pageFileError;

  // The larger of limit * ratio and limit - margin; the product alone when
  // the margin exceeds the limit.
  static uint64_t Band(uint64_t limit, double ratio, uint64_t margin);
  void ComputeAllocThresholds();
  void ComputeProcessBands();
  // A progress object when memory must go now, else null.
  LcUPageOutProgress* ResetAllocMemoryLimit();
  // The cheap test shared by CheckLimits and IsMemoryLow: the process is
  // asked only after the total moved.
  bool ProcessWantsPageOut(uint64_t total);
};

extern LcUPageState pageState;
