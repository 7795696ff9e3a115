#pragma once
#include <vector>

#include "environment/LcURegistryLocationProvider.h"
#include "foundation/LcUAllocator.h"

struct LcUSessionInfo;
class LcUSessionRecord;

// Location 0 is Software\<company>\<product>\<version>; then the roots of
// earlier versions the session record names, inherit_root_50 first.
class LcUSessionRegistryLocationProvider : public LcURegistryLocationProvider {
public:
  enum { eMAX_INHERIT_ROOT = 50 };
  // record may be null: location 0 alone.
  LcUSessionRegistryLocationProvider(const LcUSessionInfo& info, const LcUSessionRecord* record);
  int32_t GetLocationCount() const override { return int32_t(locations.size()); }
  const char16_t* GetLocation(int32_t index) const override { return locations[size_t(index)].Get(); }

private:
  std::vector<LcUString, LcUAllocator<LcUString>> locations;
};
