#include "environment/LcURegistryNameList.h"

#include <algorithm>

void LcURegistryNameList::GetName(LcUStringA& out) const {
  LcUString::WideToMultiByte(names[position].Get(), out);
}

bool LcURegistryNameList::Add(const char16_t* name) {
  if (!name || !*name) return false;
  auto place = std::lower_bound(names.begin(), names.end(), name, [](const LcUString& held, const char16_t* wanted) {
    return LcUString::CompareNoCase(held.Get(), wanted) < 0;
  });
  if (place != names.end() && LcUString::CompareNoCase(place->Get(), name) == 0) return false;
  names.emplace(place, name);
  return true;
}
