#pragma once
#include "options/LcUOptionValidator.h"

// A closed range for any of the floating kinds.
class LcUOptFloatRangeValidator : public LcUOptionValidator {
public:
  LcUOptFloatRangeValidator(double min, double max) : min(min), max(max) {}

  bool GetRange(LcUOptionSet* set, int32_t index, LcUData* minOut, LcUData* maxOut) override;
  bool Validate(LcUOptionSet* set, int32_t index, const LcUData& value, LcUString* errorOut) override;

  double min;
  double max;
};
