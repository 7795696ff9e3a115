#include "foundation/LcUCriticalSection.h"

#include <windows.h>

static_assert(sizeof(void*) == sizeof(SRWLOCK), "an SRWLOCK is one pointer");

LcUCriticalSection::LcUCriticalSection() {
  InitializeSRWLock(reinterpret_cast<PSRWLOCK>(&word));
}

LcUCriticalSection::~LcUCriticalSection() = default;

void LcUCriticalSection::Lock() {
  AcquireSRWLockExclusive(reinterpret_cast<PSRWLOCK>(&word));
}

void LcUCriticalSection::Unlock() {
  ReleaseSRWLockExclusive(reinterpret_cast<PSRWLOCK>(&word));
}

bool LcUCriticalSection::TryLock() {
  return TryAcquireSRWLockExclusive(reinterpret_cast<PSRWLOCK>(&word)) != 0;
}
