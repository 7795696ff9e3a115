#include "options/LcUOptValueEnabler.h"

#include "options/LcUOption.h"

bool LcUOptValueEnabler::IsDisabled(LcUOptionSet* set, int32_t, void*) {
  LcUData present;
  bool found = relative ? LcUOption::GetData(set, path.Get(), present) : LcUOption::GetData(path.Get(), present);
  return !found || !LcUData::Equal(present, value);
}
