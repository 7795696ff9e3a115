#pragma once
#include <cstdint>
#include <vector>

#include "foundation/LcUAllocator.h"
#include "foundation/LcUDeletable.h"
#include "foundation/LcUString.h"

// A cursor over the distinct names a registry listing gathered, in no
// promised order. Made by LcURegistry::ListNames, freed by FreeNameList.
class LcURegistryNameList : public LcUDeletable {
public:
  bool IsValid() const { return position < names.size(); }
  void GetName(LcUString& out) const { out = names[position]; }
  void GetName(LcUStringA& out) const;
  void Next() { ++position; }

  // Empty names and names already held are dropped.
  bool Add(const char16_t* name);
  int32_t Count() const { return int32_t(names.size()); }

private:
  // Kept in order without regard to case, as the registry compares names.
  std::vector<LcUString, LcUAllocator<LcUString>> names;
  size_t position = 0;
};
