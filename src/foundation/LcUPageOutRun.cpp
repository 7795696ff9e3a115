#include <cstring>

#include "foundation/LcUError.h"
#include "foundation/LcUMemory.h"
#include "foundation/LcUPage.h"
#include "foundation/LcUPageOut.h"
#include "foundation/LcUPageOutObserver.h"
#include "foundation/LcUPageOutProgress.h"
#include "foundation/LcUPageState.h"
#include "foundation/LcUSysMemory.h"

namespace {
constexpr int32_t kMaxPasses = 10;

LcUPageOutObserver* Observer(int32_t i) {
  return static_cast<LcUPageOutObserver*>(pageState.observers.items[i]);
}

void TellObservers(int32_t result) {
  for (int32_t i = 0; i < pageState.observers.count; ++i) Observer(i)->OnPageOutEnd(result);
}

// Asks the page-outs, pass after pass, until the progress says enough or
// none wants another pass. True when enough was given.
bool RunPasses(int32_t a, int32_t b, LcUPageOutProgress* progress, int32_t& lastPass) {
  LcUPageList& list = pageState.pageOuts;
  int32_t count = list.count;
  // One flag per page-out known at the start: those added meanwhile wait.
  uint8_t small[64] = {};
  uint8_t* finished = count <= 64 ? small : static_cast<uint8_t*>(LcUMemory::MallocAlloc(uint64_t(count), 0));
  if (!finished) return false;
  if (finished != small) std::memset(finished, 0, size_t(count));
  bool enough = false;
  for (int32_t pass = 0; pass < kMaxPasses && !enough; ++pass) {
    lastPass = pass;
    bool again = false;
    for (int32_t i = 0; i < count && i < list.count && !enough; ++i) {
      LcUPageOut* pageOut = static_cast<LcUPageOut*>(list.items[i]);
      if (finished[i] || !pageOut) continue;
      if (pageOut->PageOut(a, b, 0, pass, progress))
        finished[i] = 1;
      else
        again = true;
      enough = progress->done != 0;
    }
    if (!again) break;
  }
  if (finished != small) LcUMemory::MallocFree(finished);
  return enough;
}
}  // namespace

bool LcUPageList::Add(void* item) {
  if (count == capacity) {
    int32_t grown = capacity ? capacity * 2 : 8;
    void** fresh = static_cast<void**>(LcUMemory::Realloc(items, uint64_t(capacity) * sizeof(void*),
                                                          uint64_t(grown) * sizeof(void*), alignof(void*)));
    if (!fresh) return false;
    items = fresh;
    capacity = grown;
  }
  items[count++] = item;
  return true;
}

void LcUPageList::Remove(void* item, bool keep) {
  for (int32_t i = 0; i < count; ++i) {
    if (items[i] != item) continue;
    if (keep) {
      items[i] = nullptr;
    } else {
      std::memmove(items + i, items + i + 1, size_t(count - i - 1) * sizeof(void*));
      --count;
    }
    return;
  }
}

void LcUPageList::Compact() {
  for (int32_t i = count - 1; i >= 0; --i)
    if (!items[i]) {
      std::memmove(items + i, items + i + 1, size_t(count - i - 1) * sizeof(void*));
      --count;
    }
}

void LcUPageList::Free() {
  if (items) LcUMemory::Free(items, uint64_t(capacity) * sizeof(void*), alignof(void*));
  *this = LcUPageList();
}

LcUPageOutProgress* LcUPageState::ResetAllocMemoryLimit() {
  if (fixedAllocLimit) return nullptr;
  uint64_t usage = machine.processUsage();
  if (usage < softLimit) {
    allocLimit = hardLimit;
    ComputeAllocThresholds();
    limitClamped = false;
    return nullptr;
  }
  if (usage > processLimit) {
    LcUSysMemory::DebugOutput("LcUPage reset_alloc_memory_limit: Process usage %uMB, limit %uMB\n",
                              unsigned(usage >> 20), unsigned(processLimit >> 20));
    return hardProgress;
  }
  if (usage > hardLimit && !limitClamped) {
    // The process outgrew its band through memory the allocator does not
    // count: the allocator must shrink.
    allocLimit = machine.allocatorTotal();
    ComputeAllocThresholds();
    limitClamped = true;
    LcUError::LogF("LcUPage reset_alloc_memory_limit: Clamped alloc memory limit at %uMB\n",
                   unsigned(allocLimit >> 20));
  }
  return nullptr;
}

bool LcUPageState::ProcessWantsPageOut(uint64_t total) {
  uint64_t moved = total > lastUsage ? total - lastUsage : lastUsage - total;
  if (moved <= allocHighMargin) return false;
  if (ResetAllocMemoryLimit()) {
    lastUsage = 0;
    return true;
  }
  lastUsage = total;
  return false;
}

bool LcUPage::AddPageOut(LcUPageOut* pageOut) {
  return pageOut && pageState.pageOuts.Add(pageOut);
}

void LcUPage::RemovePageOut(LcUPageOut* pageOut) {
  pageState.pageOuts.Remove(pageOut, pageState.pageOutDepth != 0);
}

bool LcUPage::AddObserver(LcUPageOutObserver* observer) {
  return observer && pageState.observers.Add(observer);
}

void LcUPage::RemoveObserver(LcUPageOutObserver* observer) {
  pageState.observers.Remove(observer, false);
}

int32_t LcUPage::CheckLimits() {
  LcUPageState& s = pageState;
  if (!s.stressTest && !s.pageOutDepth) {
    uint64_t total = s.machine.allocatorTotal();
    if (!s.ProcessWantsPageOut(total) && total <= s.allocLimit) return eNOTHING;
  }
  return PageOut(0, 0, nullptr);
}

bool LcUPage::IsMemoryLow(int32_t level) {
  LcUPageState& s = pageState;
  if (s.stressTest || s.pageOutDepth) return true;
  uint64_t total = s.machine.allocatorTotal();
  if (s.ProcessWantsPageOut(total)) return true;
  switch (level) {
    case eLOW: return total > s.allocLowThreshold;
    case eHIGH: return total > s.allocHighThreshold;
    case eLIMIT: return total > s.allocLimit;
    default: return false;
  }
}

int32_t LcUPage::PageOut(int32_t a, int32_t b, LcUPageOutProgress* progress) {
  LcUPageState& s = pageState;
  if (s.pageOutDepth) return eNOTHING;
  if (s.outOfMemory) return eFAILED;
  LcUPageOutProgress* needed = s.ResetAllocMemoryLimit();
  LcUPageOutProgress* chosen = s.stressTest ? s.stressProgress : needed;
  if (!chosen) chosen = s.machine.allocatorTotal() >= s.allocLimit ? s.allocProgress : progress;
  if (!chosen) {
    TellObservers(eNOTHING);
    return eNOTHING;
  }
  int32_t veto = 0;
  for (int32_t i = 0; i < s.observers.count; ++i)
    if (int32_t answer = Observer(i)->OnPageOutBegin()) veto = answer;
  if (veto) {
    if (veto == eFAILED) s.outOfMemory = true;
    TellObservers(veto);
    return veto;
  }
  ++s.pageOutDepth;
  chosen->done = 0;
  int32_t lastPass = 0;
  bool enough = RunPasses(a, b, chosen, lastPass);
  s.pageOuts.Compact();
  int32_t result = eSUCCEEDED;
  if (enough) {
    LcUError::LogF("Page out succeeded after pass %d\n", int(lastPass));
    if (chosen == s.hardProgress && !s.fixedAllocLimit) {
      s.allocLimit = s.machine.allocatorTotal();
      s.ComputeAllocThresholds();
      s.limitClamped = true;
    }
  } else if (!s.stressTest) {
    if (chosen == progress) {
      LcUError::LogF("Page out to external criteria failed\n");
    } else {
      LcUError::LogF("Page out failed - out of memory\n");
      s.outOfMemory = true;
    }
    result = eFAILED;
  }
  --s.pageOutDepth;
  TellObservers(result);
  if (result == eFAILED) LogMemStats();
  return result;
}

void LcUPage::LogUsage() {
  LcUPageState& s = pageState;
  uint64_t committed = 0;
  uint64_t reserved = 0;
  for (uint64_t size = 4; size; size = LcUMemory::GetNextArenaSize(size)) {
    committed += LcUMemory::GetArenaCommittedBytes(size);
    reserved += LcUMemory::GetArenaReservedBytes(size);
  }
  LcUError::LogF(
      "Process memory (MB): %u (limit %u), Alloc memory (MB): %u [%u (%uc, %uv) arena, %u malloc, %u region] "
      "(limit %u), GDI Objects %u\n",
      unsigned(s.machine.processUsage() >> 20), unsigned(s.processLimit >> 20),
      unsigned(s.machine.allocatorTotal() >> 20), unsigned(LcUMemory::GetArenaBytes() >> 20),
      unsigned(committed >> 20), unsigned(reserved >> 20), unsigned(LcUMemory::GetMallocBytes()),
      unsigned(LcUMemory::GetRegionBytes() >> 20), unsigned(s.allocLimit >> 20), LcUSysMemory::GetGDIObjects());
  for (int32_t i = 0; i < s.observers.count; ++i) Observer(i)->LogUsage();
}

void LcUPage::LogMemStats() {
  LcUSysMemory::LogMemStats();
  LogUsage();
}
