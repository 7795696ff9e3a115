#include "geometry/LcLMatrix.h"

#include "foundation/LcUError.h"
#include "foundation/LcUSysError.h"

LcUComponent LcLMatrix::component;

bool LcLMatrix::Initialize() {
  if (LcUSysError::RegisterComponent(&component, "LcLMatrix") == 1) return LcUError::Initialize();
  return true;
}

void LcLMatrix::Terminate() {
  if (LcUSysError::UnregisterComponent(&component) == 1) LcUError::Terminate();
}
