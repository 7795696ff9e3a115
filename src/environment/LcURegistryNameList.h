#pragma once
#include <cstdint>

#include "foundation/LcUDeletable.h"
#include "foundation/LcUString.h"
#include "foundation/LcUStringSet.h"

// A cursor over the distinct names a registry listing gathered, in no
// promised order. Made by LcURegistry::ListNames, freed by FreeNameList.
class LcURegistryNameList : public LcUDeletable {
public:
  bool IsValid() const { return position < names.Count(); }
  void GetName(LcUString& out) const { out = names[position]; }
  void GetName(LcUStringA& out) const;
  void Next() { ++position; }

  // Empty names and names already held are dropped.
  bool Add(const char16_t* name) { return names.Insert(name); }
  int32_t Count() const { return names.Count(); }

private:
  // Without regard to case, as the registry compares names.
  LcUStringSet names{true};
  int32_t position = 0;
};
