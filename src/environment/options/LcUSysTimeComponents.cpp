// The clocks' start reads their options, which stand above this library,
// so their start and stop are built into the options library.
#include "environment/LcUSysTime.h"
#include "environment/LcUTime.h"
#include "foundation/LcUError.h"
#include "foundation/LcUSysError.h"
#include "options/LcUOption.h"

namespace {
const char kAllow[] = "model.performance.timing.allow_performance_counter_timing";
const char kPrefer[] = "model.performance.timing.prefer_performance_counter_timing";
// Not offered to the user.
constexpr int32_t kLevel = 1;
constexpr uint32_t kHidden = 8;
}  // namespace

bool LcUSysTime::Initialize() {
  if (LcUSysError::RegisterComponent(&component, "LcUSysTime") != 1) return true;
  LcUError::Initialize();
  LcUOption::Initialize();
  Configure(LcUOption::DefineBooleanAndGet(kAllow, true, kLevel, kHidden), QueryFrequency(), QueryLowResolution());
  return true;
}

void LcUSysTime::Terminate() {
  if (LcUSysError::UnregisterComponent(&component) != 1) return;
  LcUOption::Undefine(kAllow);
  LcUOption::Terminate();
  LcUError::Terminate();
}

bool LcUTime::Initialize() {
  if (LcUSysError::RegisterComponent(&component, "LcUTime") != 1) return true;
  LcUSysTime::Initialize();
  LcUOption::Initialize();
  Configure(LcUOption::DefineBooleanAndGet(kPrefer, false, kLevel, kHidden));
  return true;
}

void LcUTime::Terminate() {
  if (LcUSysError::UnregisterComponent(&component) != 1) return;
  LcUOption::Undefine(kPrefer);
  LcUOption::Terminate();
  LcUSysTime::Terminate();
}
