#include "foundation/LcULock.h"

#include "foundation/LcUError.h"
#include "foundation/LcUSysError.h"

LcUComponent LcULock::component;

// Reports reach the log from any thread, which is safe only while
// LcUSysError is up.
bool LcULock::Initialize() {
  if (LcUSysError::RegisterComponent(&component, "LcULock") == 1) LcUSysError::InitSysError();
  return true;
}

void LcULock::Terminate() {
  if (LcUSysError::UnregisterComponent(&component) == 1) LcUSysError::TermSysError();
}

void LcULock::Report(int32_t code, void* data, const char16_t* message) {
  LcUSysError::Note(LcUError::eERROR, &component, code, data, message);
}
