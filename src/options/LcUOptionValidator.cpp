#include "options/LcUOptionValidator.h"

bool LcUOptionValidator::IsDisabled(LcUOptionSet*, int32_t, void*) {
  return false;
}

bool LcUOptionValidator::GetRange(LcUOptionSet*, int32_t, LcUData*, LcUData*) {
  return false;
}

bool LcUOptionValidator::Validate(LcUOptionSet*, int32_t, const LcUData&, LcUString*) {
  return true;
}
