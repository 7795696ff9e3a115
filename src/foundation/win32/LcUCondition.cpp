#include "foundation/LcUCondition.h"

#include <windows.h>

namespace {
PCONDITION_VARIABLE Variable(void** word) {
  return reinterpret_cast<PCONDITION_VARIABLE>(word);
}
PSRWLOCK Lock(void** word) {
  return reinterpret_cast<PSRWLOCK>(word);
}
}  // namespace

LcUCondition::LcUCondition() {
  InitializeConditionVariable(Variable(&word));
}

LcUCondition::~LcUCondition() = default;

void LcUCondition::Wait(LcUCriticalSection& lock) {
  SleepConditionVariableSRW(Variable(&word), Lock(&lock.word), INFINITE, 0);
}

bool LcUCondition::Wait(LcUCriticalSection& lock, uint32_t milliseconds) {
  return SleepConditionVariableSRW(Variable(&word), Lock(&lock.word), milliseconds, 0) != 0;
}

void LcUCondition::Wake() {
  WakeConditionVariable(Variable(&word));
}

void LcUCondition::WakeAll() {
  WakeAllConditionVariable(Variable(&word));
}
