#include "environment/LcUSysFileEntry.h"

LcUSysFileEntry::LcUSysFileEntry(const LcUString& folder, LcUString& name, uint32_t attributes)
    : folder(folder), attributes(attributes) {
  this->name.Swap(name);
}

void LcUSysFileEntry::Release() {
  if (--references == 0) delete this;
}
