#pragma once
#include "options/LcUOptionValidator.h"

// Int32 values from a minimum up.
class LcUOptInt32MinValidator : public LcUOptionValidator {
public:
  explicit LcUOptInt32MinValidator(int32_t min) : min(min) {}

  bool Validate(LcUOptionSet* set, int32_t index, const LcUData& value, LcUString* errorOut) override;
  // `minOut` may be null.
  virtual bool GetMin(LcUOptionSet* set, int32_t index, LcUData* minOut);

  int32_t min;
};
