#pragma once
#include "options/LcUOption.h"

// Holds the option lock for a scope: how composite reads and writes, and
// users of sets from GetSet, stay consistent.
class LcUOptionLock {
public:
  LcUOptionLock() { LcUOption::Lock(); }
  ~LcUOptionLock() { LcUOption::Unlock(); }
  LcUOptionLock(const LcUOptionLock&) = delete;
  LcUOptionLock& operator=(const LcUOptionLock&) = delete;
};
