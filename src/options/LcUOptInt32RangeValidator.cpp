#include "options/LcUOptInt32RangeValidator.h"

#include "serial/LcUData.h"

bool LcUOptInt32RangeValidator::GetRange(LcUOptionSet*, int32_t, LcUData* minOut, LcUData* maxOut) {
  if (minOut) minOut->SetInt32(min);
  if (maxOut) maxOut->SetInt32(max);
  return true;
}

bool LcUOptInt32RangeValidator::Validate(LcUOptionSet*, int32_t, const LcUData& value, LcUString*) {
  return value.GetTag() == LcUData::eINT32 && min <= value.GetInt32() && value.GetInt32() <= max;
}
