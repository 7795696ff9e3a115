#include "environment/LcURegistryNameList.h"

void LcURegistryNameList::GetName(LcUStringA& out) const {
  LcUString::WideToMultiByte(names[position].Get(), out);
}
