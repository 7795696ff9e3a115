#include "options/LcUOptInt32MinValidator.h"

#include "serial/LcUData.h"

bool LcUOptInt32MinValidator::Validate(LcUOptionSet*, int32_t, const LcUData& value, LcUString*) {
  return value.GetTag() == LcUData::eINT32 && min <= value.GetInt32();
}

bool LcUOptInt32MinValidator::GetMin(LcUOptionSet*, int32_t, LcUData* minOut) {
  if (minOut) minOut->SetInt32(min);
  return true;
}
