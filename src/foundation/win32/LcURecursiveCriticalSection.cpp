#include "foundation/LcURecursiveCriticalSection.h"

#include <windows.h>

namespace {
CRITICAL_SECTION* Section(void* storage) {
  return static_cast<CRITICAL_SECTION*>(storage);
}
}  // namespace

LcURecursiveCriticalSection::LcURecursiveCriticalSection() {
  static_assert(sizeof(section) == sizeof(CRITICAL_SECTION), "the storage holds a CRITICAL_SECTION");
  InitializeCriticalSection(Section(section));
}

LcURecursiveCriticalSection::~LcURecursiveCriticalSection() {
  DeleteCriticalSection(Section(section));
}

void LcURecursiveCriticalSection::Lock() {
  EnterCriticalSection(Section(section));
}

void LcURecursiveCriticalSection::Unlock() {
  LeaveCriticalSection(Section(section));
}

bool LcURecursiveCriticalSection::TryLock() {
  return TryEnterCriticalSection(Section(section)) != 0;
}
