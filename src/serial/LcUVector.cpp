#include "serial/LcUVector.h"

#include "foundation/LcUError.h"

void LcUVectorNegativeSize(int32_t size) {
  LcUError::PostF(LcUError::eWARNING, nullptr, "LcUVector- Negative size %d", size);
}
