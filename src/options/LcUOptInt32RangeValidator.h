#pragma once
#include "options/LcUOptionValidator.h"

// A closed range of Int32 values.
class LcUOptInt32RangeValidator : public LcUOptionValidator {
public:
  LcUOptInt32RangeValidator(int32_t min, int32_t max) : min(min), max(max) {}

  bool GetRange(LcUOptionSet* set, int32_t index, LcUData* minOut, LcUData* maxOut) override;
  bool Validate(LcUOptionSet* set, int32_t index, const LcUData& value, LcUString* errorOut) override;

  int32_t min;
  int32_t max;
};
