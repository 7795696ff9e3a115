#include "options/LcUOptFloatRangeValidator.h"

#include "serial/LcUData.h"

bool LcUOptFloatRangeValidator::GetRange(LcUOptionSet*, int32_t, LcUData* minOut, LcUData* maxOut) {
  if (minOut) minOut->SetFloat(min);
  if (maxOut) maxOut->SetFloat(max);
  return true;
}

bool LcUOptFloatRangeValidator::Validate(LcUOptionSet*, int32_t, const LcUData& value, LcUString*) {
  if (!LcUData::IsFloating(value.GetTag())) return false;
  double number = value.GetFloat();
  return min <= number && number <= max;
}
