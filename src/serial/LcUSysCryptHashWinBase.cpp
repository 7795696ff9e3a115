#include "serial/LcUSysCryptHashWinBase.h"

#include "serial/LcUSysCryptHash.h"

LcUSysCryptHashWinBase::LcUSysCryptHashWinBase(Algorithm algorithm) : algorithm(algorithm) {
  LcUSysCryptHash::Initialize();
  Create();
}

LcUSysCryptHashWinBase::~LcUSysCryptHashWinBase() {
  Destroy();
  LcUSysCryptHash::Terminate();
}

uint32_t LcUSysCryptHashWinBase::DigestSize() const {
  return algorithm == eSHA1 ? uint32_t(LcUSysCryptHash::eSHA1_SIZE) : uint32_t(LcUSysCryptHash::eSHA256_SIZE);
}

bool LcUSysCryptHashWinBase::Reset() {
  Destroy();
  return Create();
}
