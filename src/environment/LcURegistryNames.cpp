// Listing the names under a key across hives and locations.
#include <new>

#include "environment/LcURegistry.h"
#include "environment/LcUSysRegistry.h"

namespace {
void Gather(int hive, const char16_t* location, const char16_t* key, uint32_t what, LcURegistryNameList& names) {
  LcUString path;
  LcURegistry::MakeKeyPath(location, key, path);
  LcUString name;
  // Sub-keys before values.
  if (what & LcURegistry::eLIST_SUB_KEYS)
    for (uint32_t i = 0; LcUSysRegistry::GetSubKey(hive, path.Get(), i, &name, nullptr, nullptr); ++i)
      names.Add(name.Get());
  if (what & LcURegistry::eLIST_VALUES)
    for (uint32_t i = 0; LcUSysRegistry::GetValueName(hive, path.Get(), i, &name, nullptr); ++i)
      names.Add(name.Get());
}
}  // namespace

LcURegistryNameList* LcURegistry::ListNames(const char16_t* key, uint32_t flags, uint32_t what) {
  if (!GetRootKey()) return nullptr;
  auto* names = new LcURegistryNameList();
  if (!names) return nullptr;
  const bool firstOnly = what & eLIST_FIRST_LOCATION;
  auto done = [&] { return firstOnly && names->Count() > 0; };
  const int user = LcUSysRegistry::eHIVE_CURRENT_USER;
  const int machine = LcUSysRegistry::eHIVE_LOCAL_MACHINE;

  if (flags & eREG_USER) {
    LcUString path;
    MakeKeyPath(GetRootKey(), key, path);
    if (!(flags & eREG_WRITE_BACK) || LcUSysRegistry::CreateKey(user, path.Get()))
      Gather(user, GetRootKey(), key, what, *names);
  }
  if (!done()) Gather(machine, GetRootKey(), key, what, *names);
  if (flags & eREG_INHERIT) {
    for (int32_t i = 1; i < GetLocationCount() && !done(); ++i) {
      if (flags & eREG_USER) Gather(user, GetLocation(i), key, what, *names);
      if (!done()) Gather(machine, GetLocation(i), key, what, *names);
    }
  }
  return names;
}

void LcURegistry::FreeNameList(LcURegistryNameList* list) {
  delete list;
}
